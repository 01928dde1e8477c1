#ifndef ZEG_WS_ALGO_WSORGNIZATIONRECOGNIZER_H
#define ZEG_WS_ALGO_WSORGNIZATIONRECOGNIZER_H

#include <vector>

#include "ws/algo/wsRuleOrgnizationTagger.h"
#include "ws/core/wsRecognizer.h"

namespace ws {

class Segmenter;
class WsConfig;

// The recogniser of organisation names: has the segmenter compute the
// dictionary-only cut when it is not there yet, then lets its rule-based
// tagger write candidates of WS_PROPERTY_ORG into their new-word buffer.
// Thread safety: one text at a time (the segmenter and the tagger keep
// per-call state).
class OrgnizationRecognizer : public Recognizer {
public:
    // `segmenter` (not owned) must outlive the recogniser.
    explicit OrgnizationRecognizer(Segmenter* segmenter);

    // Initialises the tagger from the options with the buffer index of
    // WS_PROPERTY_ORG. False (logged) when it cannot work.
    bool init(const WsConfig& config, int bufferIndex);

    // Returns 1.
    int doRecognize(TextSegmentation& seg) override;
    // Appends WS_PROPERTY_ORG; returns 1.
    int getProperty(std::vector<unsigned short>& props) override;

private:
    Segmenter* m_segmenter;
    RuleOrgnizationTagger m_tagger;
};

}  // namespace ws

#endif
