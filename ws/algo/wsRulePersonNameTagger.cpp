#include "ws/algo/wsRulePersonNameTagger.h"

#include <cstdlib>
#include <functional>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWsConfig.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsCharFreqDict.h"
#include "ws/core/wsLineReader.h"

namespace ws {

namespace {

const char kSource[] = "wsRulePersonNameTagger";
const std::size_t kLineBuffer = 1024;
const unsigned short kMiddleDot = 0x00B7;

// Calls f(units, count, line number) for every usable line of a list;
// false, logged, when the file cannot be read.
template <typename F>
bool readList(const std::string& path, F&& f) {
    LineReader reader(kLineBuffer);
    if (!reader.open(path.c_str())) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "Can not open file '%s'", path.c_str());
        return false;
    }
    std::string line;
    for (unsigned lineNo = 1; reader.next(line); ++lineNo) {
        const size_t end = line.find_first_of("\t\r\n");
        const std::string entry = line.substr(0, end);
        const long count = end != std::string::npos && line[end] == '\t'
                               ? std::strtol(line.c_str() + end + 1, nullptr, 10)
                               : 1;
        unsigned short units[4];
        const int n = EncodeConverter::utf8ToUtf16(
            reinterpret_cast<const unsigned char*>(entry.data()), entry.size(), units, 4);
        if (n < 1 || n > 3) {
            WsLogger::getWsLogger()->warn("%s:%u: not an entry of one to three characters",
                                          path.c_str(), lineNo);
            continue;
        }
        f(units, static_cast<unsigned>(n), count);
    }
    return !reader.failed();
}

}  // namespace

RulePersonNameTagger::RulePersonNameTagger(const CharFreqDict* charFreq)
    : m_charFreq(charFreq) {}

uint64_t RulePersonNameTagger::_pack(const unsigned short* units, unsigned len) {
    uint64_t key = len;
    for (unsigned k = 0; k < len; ++k) key |= static_cast<uint64_t>(units[k]) << (16 * k + 2);
    return key;
}

bool RulePersonNameTagger::init(const WsConfig& config, int bufferIndex) {
    m_bufferIndex = bufferIndex;
    m_familyMin = static_cast<long>(config.getDouble("CHN_FAMILY_NAME_PROB_THRESHOLD", 1));
    m_familyHigh = static_cast<long>(config.getDouble("CHN_FAMILY_NAME_PROB_HIGH_THRESHOLD", 100));
    m_inWordMin = static_cast<float>(config.getDouble("CHAR_IN_WORD_PROB_THRESHOLD", 0.5));
    m_family.clear();
    m_left.clear();
    m_right.clear();
    m_given.assign(65536, 0);
    m_foreign.assign(65536, 0);
    const std::string family = config.getString("CHN_FAMILY_NAME_DICT", "");
    if (family.empty()) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "CHN_FAMILY_NAME_DICT is not set");
        return false;
    }
    bool ok = readList(family, [&](const unsigned short* u, unsigned n, long count) {
        if (n <= 2) m_family[_pack(u, n)] = count;
    });
    auto flags = [](std::vector<unsigned char>& set) {
        return [&set](const unsigned short* u, unsigned n, long) {
            if (n == 1) set[u[0]] = 1;
        };
    };
    auto words = [](std::unordered_set<uint64_t>& set) {
        return [&set](const unsigned short* u, unsigned n, long) { set.insert(_pack(u, n)); };
    };
    const struct {
        const char* key;
        std::function<void(const unsigned short*, unsigned, long)> add;
    } lists[] = {{"CHN_GIVEN_NAME_DICT", flags(m_given)},
                 {"FOREIGN_NAME_CHAR_DICT", flags(m_foreign)},
                 {"FULL_CONTEXT_DICT", words(m_left)},
                 {"RIGHT_CONTEXT_DICT", words(m_right)}};
    for (const auto& list : lists) {
        const std::string path = config.getString(list.key, "");
        if (ok && !path.empty()) ok = readList(path, list.add);
    }
    return ok;
}

bool RulePersonNameTagger::_givenChar(unsigned short c) const {
    if (!m_given[c]) return false;
    return m_charFreq == nullptr || m_charFreq->getCharInWordProb(c) >= m_inWordMin;
}

bool RulePersonNameTagger::_leftContext(const unsigned short* text, unsigned s) const {
    for (unsigned len = 1; len <= kMaxContextLength && len <= s; ++len)
        if (m_left.count(_pack(text + s - len, len))) return true;
    return false;
}

bool RulePersonNameTagger::_rightContext(const unsigned short* text, unsigned n,
                                         unsigned e) const {
    for (unsigned len = 1; len <= kMaxContextLength && e + len <= n; ++len)
        if (m_right.count(_pack(text + e, len))) return true;
    return false;
}

unsigned RulePersonNameTagger::_givenLength(const unsigned short* text, unsigned n,
                                            unsigned at) const {
    if (at >= n || !_givenChar(text[at])) return 0;
    if (at + 1 < n && _givenChar(text[at + 1]) && !_rightContext(text, n, at + 1)) return 2;
    return 1;
}

unsigned RulePersonNameTagger::_chineseName(const TextSegmentation& seg, unsigned s) const {
    const unsigned short* text = seg.text;
    const unsigned n = seg.textLen;
    const unsigned dictWord = seg.resultByDict.positions[s].len;
    for (unsigned f = 2; f >= 1; --f) {
        if (s + f >= n) continue;
        const auto it = m_family.find(_pack(text + s, f));
        if (it == m_family.end() || it->second < m_familyMin) continue;
        const unsigned given = _givenLength(text, n, s + f);
        if (given == 0) continue;
        const unsigned e = s + f + given;
        if (_leftContext(text, s) || _rightContext(text, n, e)) return e - s;
        if (it->second >= m_familyHigh && dictWord <= f) return e - s;
    }
    return 0;
}

unsigned RulePersonNameTagger::_foreignName(const TextSegmentation& seg, unsigned s) const {
    const unsigned short* text = seg.text;
    const unsigned n = seg.textLen;
    if (text[s] == kMiddleDot) return 0;
    unsigned e = s;
    while (e < n && e - s < kMaxForeignLength && (m_foreign[text[e]] || text[e] == kMiddleDot)) ++e;
    while (e > s && text[e - 1] == kMiddleDot) --e;
    // Back off to the last end of a dictionary word.
    unsigned lastEnd = s;
    for (unsigned p = s; p < e;) {
        p += seg.resultByDict.positions[p].len;
        if (p <= e) lastEnd = p;
    }
    return lastEnd - s >= 3 ? lastEnd - s : 0;
}

int RulePersonNameTagger::tag(TextSegmentation& seg) const {
    const unsigned n = seg.textLen;
    if (!seg.resultByDict.valid || seg.text == nullptr || m_bufferIndex < 0 ||
        static_cast<unsigned>(m_bufferIndex) >= seg.newWordBuffers.size() || m_given.empty())
        return 0;
    NewWordBuffer& buf = seg.newWordBuffers[m_bufferIndex];
    if (buf.words.size() < n || seg.resultByDict.positions.size() < n) return 0;
    int names = 0;
    for (unsigned s = 0; s < n;) {
        unsigned len = _chineseName(seg, s);
        if (len == 0) len = _foreignName(seg, s);
        if (len >= 2) {
            buf.words[s].len = static_cast<unsigned char>(len);
            buf.words[s].flag = 1;
            ++names;
            s += len;
        } else {
            const unsigned step = seg.resultByDict.positions[s].len;
            s += step > 0 ? step : 1;
        }
    }
    if (names > 0) buf.count = static_cast<unsigned>(names) % 255 + 1;
    return names;
}

}  // namespace ws
