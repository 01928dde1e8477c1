#include "normalize/Implement.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "norm_utility/AlgoUtil.h"
#include "norm_utility/ErrorLine.h"
#include "norm_utility/YException.h"
#include "normalize/CNormHashtable.h"
#include "normalize/Translate.h"
#include "normalize/WordLists.h"
#include "normalize/nmConfig.h"
#include "ws/core/wsHot.h"

namespace normalize {

using norm_utility::AlgoUtil;
using norm_utility::writeErrorLine;
using norm_utility::YException;

namespace {

constexpr std::string_view kGbkDe = "\xB5\xC4";  // "的", dropped from canonically ordered results

// Erases every space that directly follows a space.
void collapseSpaces(std::string& text) {
    const auto doubled = [](char a, char b) { return a == ' ' && b == ' '; };
    text.erase(std::unique(text.begin(), text.end(), doubled), text.end());
}

}  // namespace

// One message covers the synonym file's and the segmenter's settings
// look-ups; the line is kept as it has always read.
const char kSettingsFailure[] = "[Implement::init] Get synonyms file from config failed:";

Implement::Implement() = default;

Implement::~Implement() = default;

bool Implement::init(const std::string& configPath) {
    nmConfig* config = nmConfig::getInstance();
    try {
        config->init(configPath);
    } catch (const YException&) {
        writeErrorLine("[Implement::init] Load configuration file " + configPath + " failed.");
        return false;
    }
    try {
        if (!loadStopFile(config->getStopFile())) return false;
    } catch (const YException& e) {
        writeErrorLine(std::string("[Implement::init] Get stop file from config failed:") +
                       e.GetMsg());
        return false;
    }
    try {
        if (!loadSynonymsFile(config->getSynonymsFile())) return false;
    } catch (const YException& e) {
        writeErrorLine(kSettingsFailure + std::string(e.GetMsg()));
        return false;
    }
    return initWorker();
}

bool Implement::initWorker() {
    try {
        if (m_segment.init(nmConfig::getInstance()->getwsConfig()) != 0) {
            writeErrorLine("[Implement::init] zeg segment init failed");
            return false;
        }
    } catch (const YException& e) {
        writeErrorLine(kSettingsFailure + std::string(e.GetMsg()));
        return false;
    }
    if (m_gbkToUtf8.open("gbk", "utf-8") < 0) {
        writeErrorLine("[Implement::init] init gbk to utf-8 iconv failed");
        return false;
    }
    if (m_utf8ToGbk.open("utf-8", "gbk") < 0) {
        writeErrorLine("[Implement::init] init utf-8 to gbk iconv failed");
        return false;
    }
    return true;
}

WS_HOT int Implement::doNormalize(const std::string& query, int mode, std::string& out,
                                  std::vector<std::string>& words, bool inputIsGbk,
                                  bool outputIsGbk) {
    out.clear();
    words.clear();
    if (query.empty()) return 0;

    if (!inputIsGbk) convert(m_utf8ToGbk, query, m_gbk);
    const std::string& gbk = inputIsGbk ? query : m_gbk;
    int maxInputLength = 0;
    try {
        maxInputLength = nmConfig::getInstance()->getMaxInputLength();
    } catch (const YException&) {
        writeErrorLine("[Implement::doNormalize] get max input size from nmConfig failed.");
        return -1;
    }
    if (gbk.size() > static_cast<std::size_t>(maxInputLength)) {
        writeErrorLine("[Implement::doNormalize] input for normalization is too long. Will return "
                       "input as normalization result.");
        if (outputIsGbk)
            out = gbk;
        else if (inputIsGbk)
            convert(m_gbkToUtf8, query, out);
        else
            out = query;
        return 0;
    }
    if (mode <= 0) {
        writeErrorLine("[Implement::doNormalize] invalid input parameter [" + std::to_string(mode) +
                       "] for query [" + query + "]");
        return -1;
    }

    std::string& text = m_text;
    Translate(gbk, mode, text);
    AlgoUtil::trim(text);
    collapseSpaces(text);
    if (text.empty()) return 0;
    if (mode & kSynonyms) {
        m_synonyms.refresh(gSynonymsWords);
        text = _getSynonymsWord(text, mode);
    }

    if (!(mode & (kCanonicalOrder | kSynonyms))) {
        _split(words, text);
    } else if (m_segment.doSegment(text, words) != 0) {
        writeErrorLine("[Implement::doNormalize] doSegment failed for input [" + text + "]");
        return -1;
    }
    if (mode & kSynonyms) {
        for (std::string& word : words) word = _getSynonymsWord(word, mode);
    }

    joinWords(words, mode, m_joined);
    if (outputIsGbk)
        out = m_joined;
    else
        convert(m_gbkToUtf8, m_joined, out);
    return 0;
}

// Keys were stored with ASCII letters upper-cased byte by byte, so the word
// is looked up folded by exactly that rule: whatever case the query and the
// synonym file use, a listed word is found. Case bits of `mode` have already
// done their work in Translate and do not change the lookup; the replacement
// comes back as the file spells it.
WS_HOT const std::string& Implement::_getSynonymsWord(const std::string& word, int /*mode*/) {
    if (!m_synonyms.mayContain(word)) return word;
    m_key = word;
    AlgoUtil::stringToupper(m_key);
    const auto found = gSynonymsWords.find(m_key);
    return found == gSynonymsWords.end() ? word : found->second;
}

void Implement::_split(std::vector<std::string>& words, const std::string& text) {
    // doNormalize has collapsed the spaces already.
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = text.find(' ', begin);
        words.emplace_back(text, begin, end == std::string::npos ? end : end - begin);
        if (end == std::string::npos) break;
        begin = end + 1;
    }
}

void Implement::convert(norm_utility::AlgoIconv& converter, const std::string& text,
                        std::string& out) {
    reserveForUtf8(m_buffer, text.size());
    const int n = converter.conv(text.data(), static_cast<int>(text.size()), m_buffer);
    out.assign(m_buffer.data(), static_cast<std::size_t>(n));
}

// The words in list order, or in canonical (hash) order with "的" and every
// space left out, so that word order and spacing cannot tell two queries apart.
WS_HOT void Implement::joinWords(const std::vector<std::string>& words, int mode,
                                 std::string& joined) {
    const bool canonical = (mode & kCanonicalOrder) != 0;
    // Sorted by the first hash, then the second, then the text: equal
    // entries are equal words, so the order among them cannot show. The
    // second hash only breaks ties of the first, so it is taken only then.
    m_order.clear();
    for (const std::string& word : words)
        m_order.push_back({canonical ? CNormHashtable::hashString(word.c_str(), 0) : 0, &word});
    if (canonical) {
        std::sort(m_order.begin(), m_order.end(), [](const auto& a, const auto& b) {
            if (a.first != b.first) return a.first < b.first;
            const unsigned int secondA = CNormHashtable::hashString(a.second->c_str(), 1);
            const unsigned int secondB = CNormHashtable::hashString(b.second->c_str(), 1);
            return secondA != secondB ? secondA < secondB : *a.second < *b.second;
        });
    }
    joined.clear();
    for (const auto& entry : m_order) {
        if (canonical && std::string_view(*entry.second) == kGbkDe) continue;
        joined += *entry.second;
    }
    AlgoUtil::trim(joined);
    if (canonical) joined.erase(std::remove(joined.begin(), joined.end(), ' '), joined.end());
}

}  // namespace normalize
