#include "ws/core/wsSegmentResultByDict.h"

#include <cstddef>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"

namespace ws {

WS_HOT bool SegmentResultByDict::init(unsigned int n) {
    if (!_grow(n)) return false;
    // size_t: for n near 2^32, n + 2 and k <= n must not wrap.
    for (std::size_t k = 1; k <= n; ++k) {
        prev[k] = static_cast<unsigned int>(k - 1);
        scores[k] = kUnreached;
    }
    prev[0] = 0;
    scores[0] = 0.0;
    for (std::size_t i = 0; i < n; ++i) positions[i] = BasicWordPosition();
    valid = 0;
    return true;
}

WS_HOT bool SegmentResultByDict::_grow(unsigned int n) {
    const std::size_t nodes = static_cast<std::size_t>(n) + 2;
    if (positions.size() >= n && scores.size() >= nodes && prev.size() >= nodes) return true;
    bool grown = allocateOrLog([&] {
        _release();
        renewArray(positions, n);
        renewArray(scores, nodes);
        renewArray(prev, nodes);
    });
    if (!grown) {
        _release();
        return false;
    }
    capacity = n;
    return true;
}

void SegmentResultByDict::_release() {
    releaseArray(positions);
    releaseArray(scores);
    releaseArray(prev);
}

}  // namespace ws
