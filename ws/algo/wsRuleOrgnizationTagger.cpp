#include "ws/algo/wsRuleOrgnizationTagger.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWsConfig.h"
#include "ws/core/wsWsLogger.h"
#include "ws/core/wsLineReader.h"

namespace ws {

namespace {

const char kSource[] = "wsRuleOrgnizationTagger.cpp";
const size_t kMaxLine = 1024;

// Reads "TAB number" off the front of `rest`; false when it is not there.
bool takeShare(const char*& rest, float& share) {
    if (*rest != '\t') return false;
    char* end = nullptr;
    share = std::strtof(rest + 1, &end);
    if (end == rest + 1 || share < 0 || share > 1) return false;
    rest = end;
    return true;
}

}  // namespace

size_t RuleOrgnizationTagger::KeyHash::operator()(const Key& k) const {
    size_t h = 1469598103934665603ull;
    for (unsigned short u : k) h = (h ^ u) * 1099511628211ull;
    return h;
}

bool RuleOrgnizationTagger::init(const WsConfig& config, int bufferIndex) {
    const struct {
        const char* key;
        Kind kind;
    } lists[] = {{"ORGNIZATION_SUFFIX_DICT", kSuffix},
                 {"ORGNIZATION_ZONE_DICT", kZone},
                 {"ORGNIZATION_TEZHI_DICT", kTezhi},
                 {"ORGNIZATION_INNERWORD_DICT", kInner}};
    if (bufferIndex < 0) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "no new-word buffer for organisations\n");
        return false;
    }
    Words words;
    try {
        for (const auto& list : lists)
            if (!_loadList(config.getString(list.key, ""), list.kind, words)) return false;
    } catch (const std::bad_alloc&) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "allocate memory fail!\n");
        return false;
    }
    bool anySuffix = false;
    for (const auto& w : words) anySuffix = anySuffix || (w.second.kinds & kSuffix) != 0;
    if (!anySuffix) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "%s: no suffix word\n",
                                          config.getString("ORGNIZATION_SUFFIX_DICT", "").c_str());
        return false;
    }
    m_words.swap(words);
    m_buffer = bufferIndex;
    m_minSuffixShare =
        static_cast<float>(config.getDouble("ORGNIZATION_MIN_SUFFIX_SHARE", kMinSuffixShare));
    m_minWholeShare =
        static_cast<float>(config.getDouble("ORGNIZATION_MIN_WHOLE_SHARE", kMinWholeShare));
    m_key.reserve(256);
    return true;
}

bool RuleOrgnizationTagger::_loadList(const std::string& path, Kind kind, Words& words) {
    LineReader reader(kMaxLine + 1);
    if (!reader.open(path.c_str())) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "%s: %s\n", path.c_str(),
                                          std::strerror(errno));
        return false;
    }
    std::string piece, why;
    bool ok = true;
    for (unsigned long line = 1; reader.next(piece); ++line) {
        const bool whole = !piece.empty() && piece.back() == '\n';
        if (!whole && piece.size() >= kMaxLine) {
            WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "%s:%lu: line longer than %zu bytes\n",
                                              path.c_str(), line, kMaxLine);
            return false;
        }
        if (whole) piece.pop_back();
        if (!piece.empty() && piece.back() == '\r') piece.pop_back();
        if (piece.empty() || piece[0] == '#') continue;
        if (!_parseLine(piece, kind, words, why)) {
            WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "%s:%lu: %s\n", path.c_str(), line,
                                              why.c_str());
            ok = false;
        }
    }
    if (reader.failed()) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "%s: read error\n", path.c_str());
        return false;
    }
    return ok;
}

bool RuleOrgnizationTagger::_parseLine(const std::string& line, Kind kind, Words& words,
                                       std::string& why) {
    const size_t tab = line.find('\t');
    const std::string word = line.substr(0, tab);
    const EncodeConverter::Utf8String bytes(word.begin(), word.end());
    const EncodeConverter::Utf16String units = EncodeConverter::utf8ToUtf16(bytes);
    if (units.empty() || units.size() > kMaxLength || EncodeConverter::utf16ToUtf8(units) != bytes) {
        why = "not a UTF-8 word of 1 to 20 characters";
        return false;
    }
    Entry entry;
    const char* rest = line.c_str() + word.size();
    if (kind == kSuffix) {
        if (!takeShare(rest, entry.suffixShare)) {
            why = "expected word TAB suffix-share [TAB whole-share], shares from 0 to 1";
            return false;
        }
        if (*rest != '\0' && !takeShare(rest, entry.wholeShare)) {
            why = "bad whole-share";
            return false;
        }
    }
    if (*rest != '\0') {
        why = "unexpected text after the word";
        return false;
    }
    Entry& e = words[Key(units.begin(), units.end())];
    e.kinds |= kind;
    if (kind == kSuffix) {
        e.suffixShare = entry.suffixShare;
        e.wholeShare = entry.wholeShare;
    }
    return true;
}

const RuleOrgnizationTagger::Entry* RuleOrgnizationTagger::_find(const unsigned short* word,
                                                                 unsigned int len) {
    m_key.assign(word, len);
    const auto it = m_words.find(m_key);
    return it != m_words.end() ? &it->second : nullptr;
}

void RuleOrgnizationTagger::_add(TextSegmentation& seg, unsigned int start, unsigned int len,
                                 int& found) const {
    NewWordBuffer::Record& r = seg.newWordBuffers[m_buffer].words[start];
    if (len <= r.len) return;
    if (r.flag == 0) {
        ++seg.newWordBuffers[m_buffer].count;
        ++found;
    }
    r.len = static_cast<unsigned char>(len);
    r.flag = 1;
}

int RuleOrgnizationTagger::tag(TextSegmentation& seg) {
    if (m_buffer < 0 || static_cast<size_t>(m_buffer) >= seg.newWordBuffers.size() ||
        !seg.resultByDict.valid)
        return 0;
    const unsigned int n = seg.textLen;
    m_starts.clear();
    for (unsigned int pos = 0; pos < n;) {
        m_starts.push_back(pos);
        const unsigned int len = seg.resultByDict.positions[pos].len;
        pos += len != 0 ? len : 1;
    }
    const unsigned int words = static_cast<unsigned int>(m_starts.size());
    m_starts.push_back(n);
    int found = 0;
    for (unsigned int j = 0; j < words; ++j) {
        const unsigned int end = m_starts[j + 1];
        const Entry* suffix = _find(seg.text + m_starts[j], end - m_starts[j]);
        if (suffix == nullptr || (suffix->kinds & kSuffix) == 0) continue;
        if (suffix->wholeShare >= m_minWholeShare) _add(seg, m_starts[j], end - m_starts[j], found);
        if (suffix->suffixShare < m_minSuffixShare) continue;
        int begin = -1;
        for (unsigned int k = j; k-- > 0 && j - k <= kMaxWords;) {
            if (end - m_starts[k] > kMaxLength) break;
            const Entry* e = _find(seg.text + m_starts[k], m_starts[k + 1] - m_starts[k]);
            if (e == nullptr) break;
            if (e->kinds & (kZone | kTezhi)) begin = static_cast<int>(k);
            else if ((e->kinds & kInner) == 0) break;
        }
        if (begin >= 0) _add(seg, m_starts[begin], end - m_starts[begin], found);
    }
    return found;
}

}  // namespace ws
