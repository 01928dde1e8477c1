#ifndef ZEG_WS_CORE_WSWSCONFIG_H
#define ZEG_WS_CORE_WSWSCONFIG_H

#include <string>
#include <vector>

#include "ws/core/wsExport.h"
#include "ws/core/wsConfig.h"

namespace ws {

// The segmenter's option set: the parsed configuration file (every component
// reads its own keys from it through the Config getters) plus the options
// the segmenter core decides on, read once by init into the public members
// below. Before init the members hold the constructor values; init stores
// 0 / false / 0.0 for every key the file lacks, not the constructor value.
// Thread safety: none; built once, then shared read-only. Copyable.
class WS_EXPORT WsConfig : public Config {
public:
    // Empty configuration, constructor values, no plug-ins.
    WsConfig();
    // Loads `path` like Config(path) (ENDS THE PROCESS when it cannot be
    // opened) but does not read the options: call init before using them.
    explicit WsConfig(const char* path);
    ~WsConfig() override;

    // Config::init(path), then reads every option and the plug-in lists.
    // False when the file cannot be opened; the members are then unchanged.
    bool init(const char* path) override;

    bool enableRemoveSpace = false;              // "ENABLE_REMOVE_SPACE"
    long enableNormalize = 0;                    // "ENABLE_NORMALIZE"
    bool enableDenormalize = false;              // "ENABLE_DENORMALIZE"
    bool enableNumericRecognizer = false;        // "ENABLE_NUMERIC_EXPRESSION_RECOGNIZER"
    bool enableRuleNameTagger = false;           // "ENABLE_RULEBASED_NAME_TAGGER"
    bool enableMaxentPersonNameTagger = false;   // "ENABLE_MAXENT_PERSON_NAME_TAGGER"
    bool enableFamilyNameCheck = false;          // "ENABLE_FAMILY_NAME_CHECK"
    bool enableRightBoundaryCheck = false;       // "ENABLE_RIGHT_BOUNDARY_CHECK"
    bool enableMaxentPlaceNameTagger = false;    // "ENABLE_MAXENT_PLACE_NAME_TAGGER"
    bool enableCombineSingleCharacter = false;   // "ENABLE_COMBINE_SINGLE_CHARACTER"
    bool enableMergeSuffix = false;              // "ENABLE_MERGE_SUFFIX"
    bool enableSplitSuffix = false;              // "ENABLE_SPLIT_SUFFIX"
    bool enableMergeTwoChar = false;             // "ENABLE_MERGE_TWO_CHAR"
    bool enableCompoundPhrase = false;           // "ENABLE_COMPOUND_PHRASE"
    bool enableCorrectPhrase = false;            // "ENABLE_CORRECT_PHRASE"
    bool enableMultipleSegmentationPhrase = false;  // "ENABLE_MULTIPLE_SEGMENTATION_PHRASE"
    long enablePosTagger = 0;                    // "ENABLE_POS_TAGGER"
    long enableWordId = 0;                       // "ENABLE_WORD_ID"
    bool enableWordRichInfo = false;             // "ENABLE_WORD_RICH_INFO"
    bool enablePlugIn = false;                   // "ENABLE_PLUG_IN"
    bool enableRuleOrgnizationTagger = false;    // "ENABLE_RULEBASED_ORGNIZATION_TAGGER"
    long segmentResultNum = 1;                   // "SEGMENT_RESULT_NUM"
    long outType = 1;                            // "OUT_TYPE"
    long segType = 0;                            // "SEG_TYPE"
    double numericThreshold = 10.0;              // "NUMERIC_THRESHOLD"
    double ruleNameThreshold = 10.0;             // "RULEBASED_NAME_THRESHOLD"
    double maxentNameThreshold = 10.0;           // "MAXENT_NAME_THRESHOLD"
    double orgnizationThreshold = 10.0;          // "ORGNIZATION_THRESHOLD"

    // Shared-library file names of the plug-ins; filled only when
    // enablePlugIn is set.
    std::vector<std::string> preProcessPlugIns;   // "PREPROCESS_PLUG_IN"
    std::vector<std::string> postProcessPlugIns;  // "POSTPROCESS_PLUG_IN"
    std::vector<std::string> reviserPlugIns;      // "REVISER_PLUG_IN"

protected:
    // When plug-ins are enabled and `key` has a non-empty value, replaces
    // `list` with its space-separated names; otherwise leaves `list` alone.
    void _getPlugInFileName(const char* key, std::vector<std::string>& list);

private:
    void readOptions();
};

}  // namespace ws

#endif
