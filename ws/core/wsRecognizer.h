#ifndef ZEG_WS_CORE_WSRECOGNIZER_H
#define ZEG_WS_CORE_WSRECOGNIZER_H

#include <vector>

namespace ws {

struct TextSegmentation;

// A stage that finds new words (numbers, names, organisations) before
// segmentation and records them as candidates in the segmentation's new-word
// buffers. Whoever owns one deletes it through this interface. Not copyable.
// Thread safety: each implementation states its own; the pipeline calls it
// for one text at a time.
class Recognizer {
public:
    Recognizer() = default;
    virtual ~Recognizer() = default;
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;

    // Fills the new-word buffers of the properties it produces; the pipeline
    // ignores the result.
    virtual int doRecognize(TextSegmentation& seg) = 0;
    // Appends the WS_PROPERTY_* bits it produces to `props`; returns how many.
    virtual int getProperty(std::vector<unsigned short>& props) = 0;
};

}  // namespace ws

#endif
