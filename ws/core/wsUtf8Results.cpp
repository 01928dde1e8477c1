#include "ws/core/wsUtf8Results.h"

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"

namespace ws {

namespace {

// Bytes of the UTF-8 form of the first `units` code units of `w`.
unsigned int utf8Bytes(const unsigned short* w, unsigned int units) {
    unsigned int bytes = 0;
    for (unsigned int i = 0; i < units; ++i) bytes += w[i] < 0x80 ? 1 : w[i] < 0x800 ? 2 : 3;
    return bytes;
}

}  // namespace

WS_HOT void Utf8Results::transform(const std::vector<WORD_T>& words,
                                   std::vector<WORD_UTF8_T>& out) {
    size_t units = 0;
    for (const WORD_T& w : words) units += w.wordLen;
    growTo(m_buffer, 3 * units + 1);
    out.clear();
    char* p = m_buffer.data();
    for (const WORD_T& w : words) {
        const int n = EncodeConverter::utf16ToUtf8(w.word, w.wordLen,
                                                   reinterpret_cast<unsigned char*>(p),
                                                   3 * static_cast<unsigned long>(w.wordLen) + 1);
        const unsigned int bytes = n > 0 ? static_cast<unsigned int>(n) : 0;
        out.emplace_back(p, bytes, nullptr, 0u, w.prop, w.tag, w.wordId, w.usrValue, w.usrValueLen,
                         w.subWordNum, w.subWordStart);
        WORD_UTF8_T& u = out.back();
        u.types = w.types;
        u.props = w.props;
        for (const SemItem& s : w.semItems) {
            const unsigned int start = utf8Bytes(w.word, s.offset);
            const unsigned int length = utf8Bytes(w.word + s.offset, s.length);
            u.semItems.push_back(SemItem{static_cast<unsigned char>(start),
                                         static_cast<unsigned char>(length)});
        }
        p += bytes;
    }
}

}  // namespace ws
