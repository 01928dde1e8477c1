#ifndef ZEG_WS_ALGO_WSPERSONRECOGNIZER_H
#define ZEG_WS_ALGO_WSPERSONRECOGNIZER_H

#include <memory>
#include <vector>

#include "ws/core/wsRecognizer.h"

namespace ws {

class CharFreqDict;
class FamilyNameDict;
class MaxentDict;
class MEPersonNameTagger;
class RulePersonNameTagger;
class Segmenter;
class WsConfig;
class WsDictSet;

// Finds person names before segmentation with two taggers, each filling a
// new-word buffer: the rule-based one (WS_PROPERTY_PER_RULE) and the
// maximum-entropy one (WS_PROPERTY_PER_ME). The maximum-entropy names may
// then be filtered: a name must start with a listed family name, and a
// three-character name whose last character makes a dictionary word with
// the next one loses that character.
//
// Configuration: the switches ENABLE_RULEBASED_NAME_TAGGER,
// ENABLE_MAXENT_PERSON_NAME_TAGGER, ENABLE_FAMILY_NAME_CHECK and
// ENABLE_RIGHT_BOUNDARY_CHECK; MAXENT_PERSON_NAME_DICT (the model),
// MAXENT_NAME_BIAS (the tagger's name bias, 0 by default),
// CHN_FAMILY_NAME_FREQ_DICT and CHN_FAMILY_NAME_FREQ_THRESHOLD (the
// family-name list and the least frequency of a name in it); the
// rule-based tagger's own keys.
//
// Owns the taggers, the model and the family-name list; the segmenter, the
// character frequencies and the dictionary set are borrowed and must
// outlive it. Not copyable. Thread safety: the segmenter and the
// maximum-entropy tagger keep per-call state, so one text at a time.
class PersonRecognizer : public Recognizer {
public:
    PersonRecognizer();
    PersonRecognizer(Segmenter* segmenter, CharFreqDict* charFreq, WsDictSet* dicts);
    ~PersonRecognizer() override;

    // Creates and loads what the switches ask for; `meIdx` and `ruleIdx`
    // are the buffers of WS_PROPERTY_PER_ME and WS_PROPERTY_PER_RULE. False,
    // logged, at the first failure (what was built before stays). A second
    // call replaces the owned parts.
    bool init(const WsConfig& config, int meIdx, int ruleIdx);

    // Runs the switched-on stages over `seg`: the rule-based tagger (after
    // the segmenter's dictionary pass when that is not valid yet), the
    // maximum-entropy tagger, the family-name check and the right-boundary
    // trim. Returns 1.
    int doRecognize(TextSegmentation& seg) override;
    // Appends WS_PROPERTY_PER_RULE and WS_PROPERTY_PER_ME; returns 2.
    int getProperty(std::vector<unsigned short>& props) override;

    // Cuts every three-character candidate of buffer `idx` to two when its
    // last character and the one after it form a dictionary word. A name
    // that ends the text is kept. `prop` is not used.
    void _checkRightBoundary(TextSegmentation& seg, unsigned short prop, int idx);

private:
    bool _initMaxent(const WsConfig& config, int meIdx);
    bool _initFamilyNames(const WsConfig& config);

    bool m_ruleOn = false;
    bool m_maxentOn = false;
    bool m_familyCheckOn = false;
    bool m_rightBoundaryOn = false;
    Segmenter* m_segmenter = nullptr;
    int m_meIdx = -1;
    std::unique_ptr<RulePersonNameTagger> m_ruleTagger;
    CharFreqDict* m_charFreq = nullptr;
    std::unique_ptr<MEPersonNameTagger> m_meTagger;
    std::unique_ptr<MaxentDict> m_model;
    WsDictSet* m_dicts = nullptr;
    std::unique_ptr<FamilyNameDict> m_familyNames;
};

}  // namespace ws

#endif
