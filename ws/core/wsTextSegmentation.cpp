#include "ws/core/wsTextSegmentation.h"

#include <cstddef>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsWsLogger.h"

#define ZEG_STRINGIFY_(x) #x
#define ZEG_STRINGIFY(x) ZEG_STRINGIFY_(x)

namespace ws {

void logAllocationFailure() {
    WsLogger::getWsLogger()->error("allocate memory fail in %s:%s!\n", "wsTextSegmentation.cpp",
                                   ZEG_STRINGIFY(__LINE__));
}

WS_HOT bool TextSegmentation::init(const unsigned short* orgText, unsigned short* spaceFreeText,
                                   unsigned short* normalizedText, unsigned int len) {
    if (len == 0 || orgText == nullptr) return false;
    this->orgText = orgText;
    this->spaceFreeText = spaceFreeText;
    this->normalizedText = normalizedText;
    text = orgText;
    textLen = spaceFreeLen = normalizedLen = len;
    removedSpaces.clear();
    bool ready = true;
    for (NewWordBuffer& buffer : newWordBuffers) ready = buffer.init(len) && ready;
    ready = resultByDict.init(len) && ready;
    ready = result.init(len) && ready;
    if (!ready) textLen = spaceFreeLen = normalizedLen = 0;
    return ready;
}

unsigned int TextSegmentation::addNewWordBuffer(unsigned short prop, float threshold) {
    if (!allocateOrLog([&] { newWordBuffers.emplace_back(prop, threshold); })) return kNoBuffer;
    return static_cast<unsigned int>(newWordBuffers.size() - 1);
}

unsigned int TextSegmentation::getPropIdx(unsigned short prop) const {
    for (std::size_t i = 0; i < newWordBuffers.size(); ++i)
        if (newWordBuffers[i].prop == prop) return static_cast<unsigned int>(i);
    return kNoBuffer;
}

unsigned int TextSegmentation::getSegResultWordNum() const {
    const std::vector<SegmentResult::Cell>& cells = result.cells;
    unsigned int words = 0;
    for (std::size_t pos = 0; pos < textLen; ++words) {
        if (pos >= cells.size()) {
            WsLogger::getWsLogger()->errorPos("wsTextSegmentation.cpp", __LINE__,
                                              "no word cell at position %zu of %u\n", pos, textLen);
            break;
        }
        std::size_t len = cells[pos].len;
        if (len == 0) {
            WsLogger::getWsLogger()->errorPos("wsTextSegmentation.cpp", __LINE__,
                                              "zero-length word at position %zu\n", pos);
            len = 1;
        }
        pos += len;
    }
    return words;
}

}  // namespace ws
