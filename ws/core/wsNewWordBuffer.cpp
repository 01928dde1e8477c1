#include "ws/core/wsNewWordBuffer.h"

#include "ws/core/wsBufferGrowth.h"

namespace ws {

NewWordBuffer::NewWordBuffer(unsigned short prop, float threshold)
    : prop(prop), threshold(threshold) {}

bool NewWordBuffer::init(unsigned int n) {
    if (!growArray(words, capacity, n)) return false;
    for (unsigned int i = 0; i < n; ++i) {
        Record& r = words[i];
        r.len = 0;
        r.subWords.clear();
        r.flag = 0;
        r.attr = 0;
    }
    count = 0;
    return true;
}

}  // namespace ws
