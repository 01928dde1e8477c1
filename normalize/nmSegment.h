#ifndef ZEG_NORMALIZE_NMSEGMENT_H
#define ZEG_NORMALIZE_NMSEGMENT_H

#include <string>
#include <vector>

#include "norm_utility/AlgoIconv.h"
#include "norm_utility/GbkCodec.h"
#include "ws/core/wsInterface.h"

namespace normalize {

// The word segmenter seen from the GBK side: takes a GBK text, segments it
// and hands back the words in GBK, in text order. Texts go through the
// codec's tables straight to UTF-16 and back; one with a character the
// tables leave to iconv goes through UTF-8 and iconv, with the same words. It is the
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
    // False when some character of the text is left to iconv.
    bool _toUnits(const std::string& gbkText);
    void _wordsFromUnits(std::vector<std::string>& words);
    void _wordsFromUtf8(std::vector<std::string>& words);
    // Appends the GBK of `bytes` bytes of UTF-8, converted as iconv would.
    void _appendUtf8Word(const char* utf8, int bytes, std::vector<std::string>& words);

    int m_initialised = 0;
    const norm_utility::GbkCodec* m_codec = nullptr;
    norm_utility::AlgoIconv m_gbkToUtf8;
    norm_utility::AlgoIconv m_utf8ToGbk;
    std::vector<char> m_buffer;
    std::vector<std::vector<ws::WORD_UTF8_T> > m_result;
    std::vector<unsigned short> m_units;
    std::size_t m_unitCount = 0;
    std::vector<ws::WORD_T> m_unitWords;
    std::vector<unsigned char> m_gbkWord;
};

// Grows `buffer` so that AlgoIconv::conv can write `length` bytes of GBK as
// UTF-8 in full, whatever the bytes.
void reserveForUtf8(std::vector<char>& buffer, std::size_t length);

}  // namespace normalize

#endif
