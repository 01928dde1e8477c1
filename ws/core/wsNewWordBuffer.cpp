#include "ws/core/wsNewWordBuffer.h"

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"

namespace ws {

NewWordBuffer::NewWordBuffer(unsigned short prop, float threshold)
    : prop(prop), threshold(threshold) {}

WS_HOT bool NewWordBuffer::_init(unsigned int n) {
    const size_t before = words.size();
    if (!growArray(words, capacity, n)) return false;
    if (words.size() != before) m_clean = 0;  // fresh records, but count them once
    // Most buffers stay untouched for most texts: clear only what may have
    // been written, that is everything after a write, else the new tail.
    const unsigned int from = count == 0 && m_clean <= n ? m_clean : 0;
    if (count == 0 && n <= m_clean) return true;
    for (unsigned int i = from; i < n; ++i) {
        Record& r = words[i];
        r.len = 0;
        r.subWords.clear();
        r.flag = 0;
        r.attr = 0;
    }
    count = 0;
    m_clean = n;
    return true;
}

}  // namespace ws
