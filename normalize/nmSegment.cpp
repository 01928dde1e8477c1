#include "normalize/nmSegment.h"

#include "norm_utility/ErrorLine.h"
#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"

namespace normalize {

using norm_utility::writeErrorLine;

// conv sizes its output for two bytes per input byte, but GBK's one-byte euro
// sign (0x80) takes three in UTF-8: with less room the result would be cut,
// and by how much would depend on what earlier calls left in the buffer.
WS_HOT void reserveForUtf8(std::vector<char>& buffer, std::size_t length) {
    ws::growTo(buffer, 3 * length + 1);
}

nmSegment::nmSegment() = default;

nmSegment::~nmSegment() {
    m_gbkToUtf8.close();
    m_utf8ToGbk.close();
}

int nmSegment::init(std::string segmenterConfigPath) {
    if (m_initialised) return 0;
    if (!WsSegmenter::init(segmenterConfigPath.c_str())) {
        writeErrorLine("[nmSegment::init] zeg nmSegment init failed");
        return -1;
    }
    if (m_gbkToUtf8.open("gbk", "utf-8") < 0) {
        writeErrorLine("[nmSegment::init] init gbk to utf-8 iconv failed");
        return -1;
    }
    if (m_utf8ToGbk.open("utf-8", "gbk") < 0) {
        writeErrorLine("[nmSegment::init] init utf-8 to gbk iconv failed");
        return -1;
    }
    m_codec = norm_utility::GbkCodec::instance();
    m_initialised = 1;
    return 0;
}

WS_HOT int nmSegment::doSegment(const std::string& gbkText, std::vector<std::string>& words) {
    words.clear();
    if (!m_initialised) {
        writeErrorLine("[nmSegment::doSegment] zeg not init!");
        return -1;
    }
    const bool direct = _toUnits(gbkText);
    bool segmented = false;
    if (direct) {
        segmented =
            segmentWords(m_units.data(), static_cast<unsigned int>(m_unitCount), m_unitWords);
    } else {
        reserveForUtf8(m_buffer, gbkText.size());
        const int n = m_gbkToUtf8.conv(gbkText.data(), static_cast<int>(gbkText.size()), m_buffer);
        // The result's lists stay allocated from call to call: a successful
        // segment() replaces them whole.
        segmented = segment(m_buffer.data(), static_cast<unsigned int>(n), m_result);
    }
    if (!segmented) {
        writeErrorLine("[nmSegment::doSegment] do zeg segment failed for query [" + gbkText + "]");
        return -1;
    }
    if (direct)
        _wordsFromUnits(words);
    else
        _wordsFromUtf8(words);
    return 0;
}

WS_HOT bool nmSegment::_toUnits(const std::string& gbkText) {
    if (m_codec == nullptr) return false;
    ws::growTo(m_units, gbkText.size() + 1);
    return m_codec->gbkToUtf16(reinterpret_cast<const unsigned char*>(gbkText.data()),
                               gbkText.size(), m_units.data(), &m_unitCount);
}

WS_HOT void nmSegment::_wordsFromUnits(std::vector<std::string>& words) {
    for (const ws::WORD_T& word : m_unitWords) {
        ws::growTo(m_gbkWord, 3 * static_cast<std::size_t>(word.wordLen) + 1);
        std::size_t n = 0;
        if (m_codec->utf16ToGbk(word.word, word.wordLen, m_gbkWord.data(), &n)) {
            words.emplace_back(reinterpret_cast<const char*>(m_gbkWord.data()), n);
            continue;
        }
        // The way the UTF-8 results would have gone.
        const int bytes =
            EncodeConverter::utf16ToUtf8(word.word, word.wordLen, m_gbkWord.data(),
                                         3 * static_cast<unsigned long>(word.wordLen) + 1);
        _appendUtf8Word(reinterpret_cast<const char*>(m_gbkWord.data()), bytes > 0 ? bytes : 0,
                        words);
    }
}

WS_HOT void nmSegment::_appendUtf8Word(const char* utf8, int bytes,
                                       std::vector<std::string>& words) {
    const int n = m_utf8ToGbk.conv(utf8, bytes, m_buffer);
    words.emplace_back(m_buffer.data(), static_cast<std::size_t>(n));
}

// A segmenter that answers with no level at all has found no words.
WS_HOT void nmSegment::_wordsFromUtf8(std::vector<std::string>& words) {
    if (m_result.empty()) return;
    for (const ws::WORD_UTF8_T& word : m_result.back())
        _appendUtf8Word(word.word, static_cast<int>(word.wordLen), words);
}

}  // namespace normalize
