#ifndef ZEG_WS_CORE_WSSEGMENTER_H
#define ZEG_WS_CORE_WSSEGMENTER_H

namespace ws {

class WsConfig;
struct TextSegmentation;

// A segmentation algorithm: cuts `seg.text` into words. Whoever owns one
// deletes it through this interface. Not copyable. Thread safety: each
// implementation states its own; the pipeline calls it for one text at a time.
class Segmenter {
public:
    Segmenter() = default;
    virtual ~Segmenter() = default;
    Segmenter(const Segmenter&) = delete;
    Segmenter& operator=(const Segmenter&) = delete;

    // Segments `seg.text[0, seg.textLen)` into `seg.resultByDict` or
    // `seg.result`. The core passes 1 as the first integer and, as `mode`, 2
    // when the dictionary pass already produced a valid result, else 0; each
    // algorithm states what it makes of them and of its result.
    virtual int doSegment(TextSegmentation& seg, int, int mode) = 0;
    // Reads the algorithm's options. False when it cannot work.
    virtual bool init(const WsConfig& config) = 0;
};

}  // namespace ws

#endif
