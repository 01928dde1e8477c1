#include "ws/core/wsWsConfig.h"

#include "ws/core/wsUtility.h"

namespace ws {

WsConfig::WsConfig() = default;

WsConfig::WsConfig(const char* path) : Config(path) {}

WsConfig::~WsConfig() = default;

bool WsConfig::init(const char* path) {
    if (!Config::init(path)) return false;
    readOptions();
    return true;
}

// Every default is 0 / false / 0.0, so an absent key switches its option
// off rather than keeping the constructor value.
void WsConfig::readOptions() {
    enableRemoveSpace = getBool("ENABLE_REMOVE_SPACE", false);
    enableNormalize = getLong("ENABLE_NORMALIZE", 0);
    enableDenormalize = getBool("ENABLE_DENORMALIZE", false);
    enableNumericRecognizer = getBool("ENABLE_NUMERIC_EXPRESSION_RECOGNIZER", false);
    enableRuleNameTagger = getBool("ENABLE_RULEBASED_NAME_TAGGER", false);
    enableMaxentPersonNameTagger = getBool("ENABLE_MAXENT_PERSON_NAME_TAGGER", false);
    enableFamilyNameCheck = getBool("ENABLE_FAMILY_NAME_CHECK", false);
    enableRightBoundaryCheck = getBool("ENABLE_RIGHT_BOUNDARY_CHECK", false);
    enableMaxentPlaceNameTagger = getBool("ENABLE_MAXENT_PLACE_NAME_TAGGER", false);
    enableCombineSingleCharacter = getBool("ENABLE_COMBINE_SINGLE_CHARACTER", false);
    enableMergeSuffix = getBool("ENABLE_MERGE_SUFFIX", false);
    enableSplitSuffix = getBool("ENABLE_SPLIT_SUFFIX", false);
    enableMergeTwoChar = getBool("ENABLE_MERGE_TWO_CHAR", false);
    enableCompoundPhrase = getBool("ENABLE_COMPOUND_PHRASE", false);
    enableCorrectPhrase = getBool("ENABLE_CORRECT_PHRASE", false);
    enableMultipleSegmentationPhrase = getBool("ENABLE_MULTIPLE_SEGMENTATION_PHRASE", false);
    enablePosTagger = getLong("ENABLE_POS_TAGGER", 0);
    enableWordId = getLong("ENABLE_WORD_ID", 0);
    enablePlugIn = getBool("ENABLE_PLUG_IN", false);
    _getPlugInFileName("PREPROCESS_PLUG_IN", preProcessPlugIns);
    _getPlugInFileName("POSTPROCESS_PLUG_IN", postProcessPlugIns);
    _getPlugInFileName("REVISER_PLUG_IN", reviserPlugIns);
    enableWordRichInfo = getBool("ENABLE_WORD_RICH_INFO", false);
    enableRuleOrgnizationTagger = getBool("ENABLE_RULEBASED_ORGNIZATION_TAGGER", false);
    segmentResultNum = getLong("SEGMENT_RESULT_NUM", 0);
    outType = getLong("OUT_TYPE", 0);
    segType = getLong("SEG_TYPE", 0);
    numericThreshold = getDouble("NUMERIC_THRESHOLD", 0.0);
    ruleNameThreshold = getDouble("RULEBASED_NAME_THRESHOLD", 0.0);
    maxentNameThreshold = getDouble("MAXENT_NAME_THRESHOLD", 0.0);
    orgnizationThreshold = getDouble("ORGNIZATION_THRESHOLD", 0.0);
}

void WsConfig::_getPlugInFileName(const char* key, std::vector<std::string>& list) {
    if (!enablePlugIn) return;
    const std::string names = getString(key, "");
    if (!names.empty()) Utility::splitLine(names, " ", list);
}

}  // namespace ws
