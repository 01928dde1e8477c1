#ifndef ZEG_WS_CORE_WSREVISER_H
#define ZEG_WS_CORE_WSREVISER_H

namespace ws {

struct TextSegmentation;

// A stage that corrects the cut in `seg.result` after segmentation. Plug-in
// libraries provide them too; whoever owns one deletes it through this
// interface. Not copyable. Thread safety: each implementation states its
// own; the pipeline calls it for one text at a time.
class Reviser {
public:
    Reviser() = default;
    virtual ~Reviser() = default;
    Reviser(const Reviser&) = delete;
    Reviser& operator=(const Reviser&) = delete;

    // Rewrites cells of `seg.result`; the pipeline ignores the result.
    virtual int doRevise(TextSegmentation& seg) = 0;
};

}  // namespace ws

#endif
