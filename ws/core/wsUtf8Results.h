#ifndef ZEG_WS_CORE_WSUTF8RESULTS_H
#define ZEG_WS_CORE_WSUTF8RESULTS_H

#include <vector>

#include "ws/core/wsWordRecord.h"

namespace ws {

// Turns UTF-16 result words into UTF-8 ones whose texts lie one after
// another in a single buffer owned by this object; the buffer grows to the
// longest result seen and is reused, so the words stay valid until the next
// transform. Thread safety: one transform at a time per object.
class Utf8Results {
public:
    // Replaces `out` with one WORD_UTF8_T per word of `words`: the same
    // property, tag, word id, user value, sub-word, type and property fields;
    // no original word; semantic items recomputed in bytes and stored in 8
    // bits (they wrap for long words). A word without a UTF-8 form gets an
    // empty text.
    void transform(const std::vector<WORD_T>& words, std::vector<WORD_UTF8_T>& out);

private:
    std::vector<char> m_buffer;
};

}  // namespace ws

#endif
