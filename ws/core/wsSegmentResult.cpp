#include "ws/core/wsSegmentResult.h"

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"

namespace ws {

WS_HOT bool SegmentResult::init(unsigned int n) {
    if (!growArray(cells, capacity, n)) return false;
    for (unsigned int i = 0; i < n; ++i) {
        Cell& c = cells[i];
        c.len = 1;
        c.subWords.clear();  // not reassigned: the list keeps its memory for the next text
        c.partNum = 0;
        c.attr = 0;
        c.prop = WS_PROPERTY_WORD;
        c.tag = 0;
        c.wordId = -1;
        c.value = nullptr;
    }
    return true;
}

}  // namespace ws
