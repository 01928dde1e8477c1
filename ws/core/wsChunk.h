#ifndef ZEG_WS_CORE_WSCHUNK_H
#define ZEG_WS_CORE_WSCHUNK_H

namespace ws {

// A span of text that the chunker cuts off to be segmented on its own.
// `text` points into the caller's UTF-16 text (not owned); `len` counts
// code units. Thread safety: a plain value.
struct CHUNK_T {
    const unsigned short* text;
    unsigned int len;
};

}  // namespace ws

#endif
