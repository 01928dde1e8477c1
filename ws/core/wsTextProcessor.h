#ifndef ZEG_WS_CORE_WSTEXTPROCESSOR_H
#define ZEG_WS_CORE_WSTEXTPROCESSOR_H

namespace ws {

struct TextSegmentation;

// A stage that rewrites the text before segmentation and maps the result
// back onto the caller's text after it. Plug-in libraries provide them too;
// whoever owns one deletes it through this interface. Not copyable.
// Thread safety: each implementation states its own; the pipeline calls a
// stage for one text at a time.
class TextProcessor {
public:
    TextProcessor() = default;
    virtual ~TextProcessor() = default;
    TextProcessor(const TextProcessor&) = delete;
    TextProcessor& operator=(const TextProcessor&) = delete;

    // Runs before the recognisers. Non-zero ends the pipeline for this text.
    virtual int doPreProcess(TextSegmentation& seg) = 0;
    // Runs last, after tagging; the pipeline ignores the result.
    virtual int doPostProcess(TextSegmentation& seg) = 0;
};

}  // namespace ws

#endif
