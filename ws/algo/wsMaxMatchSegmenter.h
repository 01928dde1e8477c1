#ifndef ZEG_WS_ALGO_WSMAXMATCHSEGMENTER_H
#define ZEG_WS_ALGO_WSMAXMATCHSEGMENTER_H

#include <memory>

#include "ws/core/wsSegmenter.h"

namespace ws {

class NumberRecognizer;
class WsDictSet;

// Forward maximum matching: at each position the longest word of the base
// and user dictionaries (of at most 32 found there) wins; where none starts,
// the numeric recogniser's run, else one character. Writes one cell of
// `seg.result` per word start. Not copyable.
// Thread safety: doSegment keeps its state on the stack and only reads the
// dictionary set and the recogniser, so several threads may segment at once
// with a TextSegmentation each.
class MaxMatchSegmenter : public Segmenter {
public:
    // `dicts` is not owned and must outlive the segmenter.
    explicit MaxMatchSegmenter(WsDictSet* dicts);
    ~MaxMatchSegmenter() override;

    // Creates the numeric recogniser from NUMERIC_RULE_FILE. False (logged)
    // when the rule file cannot be loaded; the recogniser then stays, empty.
    bool init(const WsConfig& config) override;
    // Initialisation by file names: nothing to do. Returns 0.
    int init(const char*, const char*);

    // Segments all of seg.text. The integers are not used. Returns 0.
    int doSegment(TextSegmentation& seg, int, int) override;

private:
    WsDictSet* m_dicts;
    std::unique_ptr<NumberRecognizer> m_numbers;
};

}  // namespace ws

#endif
