#ifndef ZEG_NORMALIZE_NMSEGMENT_H
#define ZEG_NORMALIZE_NMSEGMENT_H

#include <string>
#include <vector>

#include "norm_utility/AlgoIconv.h"
#include "ws/core/wsInterface.h"

namespace normalize {

// The word segmenter seen from the GBK side: takes a GBK text, segments it
// as UTF-8 and hands back the words in GBK, in text order. It is the
// segmenter itself (derived from it) plus its own pair of converters.
// Not copyable. Thread safety: one text at a time; the segmenter, the
// converters and the buffers below are reused by every call.
class nmSegment : public ws::WsSegmenter {
public:
    nmSegment();
    ~nmSegment() override;

    // Loads the segmenter from its configuration file and opens the
    // converters. 0 on success, -1 (with a message on standard error) on
    // failure. Once it has succeeded, later calls return 0 and keep the
    // segmenter they already have, whatever the path.
    int init(std::string segmenterConfigPath);

    // Replaces `words` with the words of the GBK text `gbkText`, in GBK. Bytes
    // that are not GBK are dropped before segmentation. 0 on success, -1
    // (with a message) when not initialised or when the segmenter fails.
    int doSegment(const std::string& gbkText, std::vector<std::string>& words);

private:
    int m_initialised = 0;
    norm_utility::AlgoIconv m_gbkToUtf8;
    norm_utility::AlgoIconv m_utf8ToGbk;
    std::vector<char> m_buffer;
    std::vector<std::vector<ws::WORD_UTF8_T> > m_result;
};

// Grows `buffer` so that AlgoIconv::conv can write `length` bytes of GBK as
// UTF-8 in full, whatever the bytes.
void reserveForUtf8(std::vector<char>& buffer, std::size_t length);

}  // namespace normalize

#endif
