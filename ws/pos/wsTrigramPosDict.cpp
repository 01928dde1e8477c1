#include "ws/pos/wsTrigramPosDict.h"

#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <iostream>
#include <memory>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsDictSet.h"
#include "ws/pos/wsPosTextReader.h"

namespace ws {

namespace {

const unsigned char* bytes(const void* p) { return static_cast<const unsigned char*>(p); }

int32_t readInt(const char* p) {
    int32_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

bool isDigit(unsigned short c) { return (c >= '0' && c <= '9') || (c >= 0xFF10 && c <= 0xFF19); }

bool isLatin(unsigned short c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= 0xFF21 && c <= 0xFF3A) ||
           (c >= 0xFF41 && c <= 0xFF5A);
}

bool isChineseDigit(unsigned short c) {
    static const unsigned short kDigits[] = {0x3007, 0x96F6, 0x4E00, 0x4E8C, 0x4E09, 0x56DB,
                                             0x4E94, 0x516D, 0x4E03, 0x516B, 0x4E5D, 0x5341,
                                             0x767E, 0x5343, 0x4E07, 0x4EBF, 0x4E24};
    return std::find(std::begin(kDigits), std::end(kDigits), c) != std::end(kDigits);
}

// Signs that stay inside a number: decimal point, percent, per mille.
bool isNumberSign(unsigned short c) {
    return c == '.' || c == '%' || c == 0xFF0E || c == 0xFF05 || c == 0x2030 || c == 0x00B7;
}

// ASCII and full-width punctuation, general punctuation, CJK symbols.
bool isPunctuation(unsigned short c) {
    return (c >= 0x21 && c <= 0x2F) || (c >= 0x3A && c <= 0x40) || (c >= 0x5B && c <= 0x60) ||
           (c >= 0x7B && c <= 0x7E) || (c >= 0x2000 && c <= 0x206F) ||
           (c >= 0x3000 && c <= 0x303F) || (c >= 0xFF01 && c <= 0xFF0F) ||
           (c >= 0xFF1A && c <= 0xFF20) || (c >= 0xFF3B && c <= 0xFF40) ||
           (c >= 0xFF5B && c <= 0xFF65) || c == 0x00B7 || c == 0x2014;
}

bool isHan(unsigned short c) { return c >= 0x4E00 && c <= 0x9FFF; }

// Province, city, county, district, township, town, village, street, road.
bool isPlaceSuffix(unsigned short c) {
    return c == 0x7701 || c == 0x5E02 || c == 0x53BF || c == 0x533A || c == 0x4E61 || c == 0x9547 ||
           c == 0x6751 || c == 0x8857 || c == 0x8DEF;
}

// Year, month, day, hour, minute, second: a number before one is a time.
bool isTimeUnit(unsigned short c) {
    return c == 0x5E74 || c == 0x6708 || c == 0x65E5 || c == 0x65F6 || c == 0x5206 || c == 0x79D2;
}

}  // namespace

struct TrigramPosDict::WordTags {
    std::vector<unsigned short> word;
    std::vector<std::pair<int, float>> tags;  // tag id, score
};

TrigramPosDict::TrigramPosDict(WsDictSet* dicts) : m_trie(new DoubleTrie()), m_dicts(dicts) {}

TrigramPosDict::~TrigramPosDict() = default;

float TrigramPosDict::getProbAt(const char* list, int i) {
    float v;
    std::memcpy(&v, list + 4 * ((getNumTags(list) + 4) / 4) + 4 * i, sizeof v);
    return v;
}

void TrigramPosDict::clear() {
    m_tagInfo.clear();
    m_trie.reset(new DoubleTrie());
    m_area = nullptr;
    m_areaSize = 0;
    std::vector<char>().swap(m_areaStore);
    m_newWordTags.clear();
    m_map.reset();
    m_guessIndex = -1;
}

// ---- loading ----

int TrigramPosDict::loadDict(const char* path) {
    std::unique_ptr<MMap> map(new MMap());
    void* addr = map->mapFile(path);
    if (addr == MAP_FAILED) {
        clear();
        return WS_ERR_OPEN_FILE;
    }
    const unsigned size =
        map->length() > UINT_MAX ? UINT_MAX : static_cast<unsigned>(map->length());
    const int rc = _loadFromMem(static_cast<const char*>(addr), size);
    if (rc == 0) m_map = std::move(map);
    return rc;
}

int TrigramPosDict::_loadFromMem(const char* buf, unsigned size) {
    clear();
    TagInfo info;
    const int64_t used = info.loadFromMem(buf, size);
    if (used < 0) return WS_ERR_OPEN_FILE;
    if (size - used < 4) return WS_ERR_FILE_TOO_SMALL;
    const int32_t areaSize = readInt(buf + used);
    if (areaSize < 1) return WS_ERR_READ;
    const int64_t rest = static_cast<int64_t>(size) - used - 4;
    if (areaSize > rest) return WS_ERR_FILE_TOO_SMALL;
    const char* area = buf + used + 4;
    std::unique_ptr<DoubleTrie> trie(new DoubleTrie());
    // Used in place and never written through.
    if (trie->load(const_cast<char*>(area) + areaSize,
                   static_cast<unsigned long>(rest - areaSize)) == nullptr)
        return WS_ERR_TEXT;
    m_tagInfo = std::move(info);
    m_trie = std::move(trie);
    m_area = area;
    m_areaSize = areaSize;
    setNewWordTags(m_tagInfo.getNumTags());
    return 0;
}

int TrigramPosDict::loadPatchDict(const char* path) {
    if (path == nullptr || path[0] == '\0') return 0;
    std::unique_ptr<BaseDict> patch(new (std::nothrow) BaseDict());
    if (!patch) return WS_ERR_MEMORY;
    const int rc = patch->loadDict(path);
    m_patch = std::move(patch);  // kept on failure too, for getPatchTrieErr
    if (rc != 0) m_patch->clearData();
    return rc;
}

int TrigramPosDict::loadTypeId2TagNameFile(const char* path) {
    PosTextReader reader;
    if (!reader.open(path)) {
        std::cerr << "can not open TypeIdTag File: " << (path != nullptr ? path : "") << '\n';
        return -1;
    }
    std::map<int, std::string> names;
    std::map<int, int> ids;
    std::vector<std::string> fields;
    while (reader.next(" \t\r", fields)) {
        char* end = nullptr;
        const long id = fields.size() == 2 ? std::strtol(fields[0].c_str(), &end, 10) : -1;
        const int tag = m_tagInfo.getTagId(fields.back().c_str());
        if (fields.size() != 2 || *end != '\0' || id < SHRT_MIN || id > SHRT_MAX || tag < 1) {
            reader.report("expected a property id and a known tag name");
            continue;
        }
        names[static_cast<int>(id)] = fields[1];
        ids[static_cast<int>(id)] = tag;
    }
    if (reader.failed()) return -1;
    m_typeToTag.swap(names);
    m_typeToTagId.swap(ids);
    return 0;
}

int TrigramPosDict::readWordTags(const char* path, std::vector<WordTags>& words) const {
    PosTextReader reader;
    if (!reader.open(path)) {
        std::cerr << "cannot open word tags file: " << (path != nullptr ? path : "") << '\n';
        return -1;
    }
    std::vector<std::string> fields;
    std::string tag, count;
    while (reader.next(" \t\r", fields)) {
        if (fields.size() < 2) {
            reader.report("IGNORED: " + fields[0]);
            continue;
        }
        WordTags w;
        const EncodeConverter::Utf16String units =
            EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(
                bytes(fields[0].data()), bytes(fields[0].data()) + fields[0].size()));
        w.word.assign(units.begin(), units.end());
        for (size_t i = 1; i < fields.size(); ++i) {
            Utility::extractWordPos(fields[i], tag, count);
            const int id = m_tagInfo.getTagId(tag.c_str());
            const double n = std::strtod(count.c_str(), nullptr);
            if (id < 1 || !(n > 0) || m_tagInfo.getTagFreq(id) <= 0) {
                reader.report("bad item '" + fields[i] + "'");
                continue;
            }
            w.tags.emplace_back(id, static_cast<float>(std::log(n / m_tagInfo.getTagFreq(id))));
        }
        if (w.tags.empty() || w.tags.size() > 127 || w.word.empty()) {
            reader.report("no usable tags");
            continue;
        }
        std::stable_sort(w.tags.begin(), w.tags.end(),
                         [](const std::pair<int, float>& a, const std::pair<int, float>& b) {
                             return a.second > b.second;
                         });
        words.push_back(std::move(w));
    }
    std::cout << "Number of lines in " << path << ": " << reader.lineNumber() << '\n';
    return reader.failed() ? -1 : 0;
}

int TrigramPosDict::loadFromFiles(const char* tagNames, const char* tagFreq, const char* initTags,
                                  const char* bigrams, const char* trigrams, const char* wordTags) {
    clear();
    if (m_tagInfo.loadTagInfo(tagNames, tagFreq, initTags, bigrams, trigrams) != 0) return -1;
    std::vector<WordTags> words;
    if (readWordTags(wordTags, words) != 0) {
        clear();
        return -1;
    }
    int64_t size = kAreaStart;
    for (const WordTags& w : words) size += calcDataLen(static_cast<int>(w.tags.size()));
    if (size > INT32_MAX) {
        clear();
        return -1;
    }
    m_areaStore.assign(static_cast<size_t>(size), '\0');
    int32_t at = kAreaStart;
    for (const WordTags& w : words) {
        const int key = m_trie->match(bytes(w.word.data()), static_cast<int>(w.word.size() * 2));
        if (key > 0) {
            const std::string utf8 = reinterpret_cast<const char*>(
                EncodeConverter::utf16ToUtf8(
                    EncodeConverter::Utf16String(w.word.begin(), w.word.end()))
                    .c_str());
            std::cerr << utf8 << " in dictionary already, entry ignored\n";
            continue;
        }
        char* list = &m_areaStore[static_cast<size_t>(at)];
        const int n = static_cast<int>(w.tags.size());
        list[0] = static_cast<char>(n);
        const int scoresAt = 4 * ((n + 4) / 4);
        for (int i = 0; i < n; ++i) {
            list[1 + i] = static_cast<char>(w.tags[static_cast<size_t>(i)].first);
            std::memcpy(list + scoresAt + 4 * i, &w.tags[static_cast<size_t>(i)].second, 4);
        }
        m_trie->add(bytes(w.word.data()), static_cast<int>(w.word.size() * 2), at);
        at += calcDataLen(n);
    }
    m_area = m_areaStore.data();
    m_areaSize = static_cast<int32_t>(m_areaStore.size());
    setNewWordTags(m_tagInfo.getNumTags());
    return 0;
}

int TrigramPosDict::writeDict(const char* path) const {
    File f;
    if (!f.open(path, "wb")) return WS_ERR_OPEN_FILE;
    const int rc = writeDict(f.get());
    return f.close() != 0 && rc == 0 ? WS_ERR_WRITE : rc;
}

int TrigramPosDict::writeDict(std::FILE* fp) const {
    if (!m_tagInfo.isInitialized() || m_areaSize < 1) return WS_ERR_OPEN_FILE;
    // An empty trie cannot be used in place.
    if (m_trie->front().length() == 0) m_trie->init();
    if (m_tagInfo.write(fp) != 0 || std::fwrite(&m_areaSize, 4, 1, fp) != 1 ||
        std::fwrite(m_area, 1, static_cast<size_t>(m_areaSize), fp) !=
            static_cast<size_t>(m_areaSize) ||
        !m_trie->write(fp))
        return WS_ERR_WRITE;
    return std::fflush(fp) != 0 || std::ferror(fp) ? WS_ERR_WRITE : 0;
}

// ---- lookups ----

const char* TrigramPosDict::listAt(int offset) const {
    if (offset < 1 || offset >= m_areaSize) return nullptr;
    const char* list = m_area + offset;
    const int n = getNumTags(list);
    if (n < 1 || calcDataLen(n) > m_areaSize - offset) return nullptr;
    for (int i = 0; i < n; ++i) {
        const int id = getTagIdAt(list, i);
        if (id < 1 || id > m_tagInfo.getNumTags()) return nullptr;
    }
    return list;
}

char* TrigramPosDict::nextGuessBuffer() {
    m_guessIndex = (m_guessIndex + 1) % 3;
    char* buf = m_guess[m_guessIndex];
    buf[0] = 0;
    return buf;
}

const char* TrigramPosDict::patchedList(const unsigned short* word, int len) {
    if (!m_patch || !m_patch->isLoaded()) return nullptr;
    const char* entry =
        m_patch->match(reinterpret_cast<const char*>(word), static_cast<unsigned>(len) * 2);
    if (entry == nullptr) return nullptr;
    const float value = DATDict::recordWeight(entry);
    if (!(value >= 1.0f && value <= static_cast<float>(m_tagInfo.getNumTags()))) return nullptr;
    nextGuessBuffer();
    setTagId(static_cast<int>(value), 0.0f);
    return m_guess[m_guessIndex];
}

const char* TrigramPosDict::getWordInfoBuf(const unsigned short* word, int len, const WORD_T* rec) {
    if (word == nullptr || len < 1 || len > INT_MAX / 2) return guessWordInfo(word, 0, rec);
    if (const char* patched = patchedList(word, len)) return patched;
    const int offset = m_trie->match(bytes(word), len * 2);
    if (const char* list = listAt(offset)) return list;
    return guessWordInfo(word, len, rec);
}

const char* TrigramPosDict::getWordInfoBuf(const char* utf8, int len, const WORD_T* rec) {
    if (utf8 == nullptr || len < 1) return guessWordInfo(nullptr, 0, rec);
    std::vector<unsigned short> units(static_cast<size_t>(len) + 1);
    const int n = EncodeConverter::utf8ToUtf16(bytes(utf8), static_cast<unsigned long>(len),
                                               units.data(), units.size());
    return getWordInfoBuf(units.data(), n, rec);
}

const char* TrigramPosDict::guessWordInfo(const unsigned short* word, int len, const WORD_T* rec) {
    char* buf = nextGuessBuffer();
    if (word != nullptr && len > 0) guessFromDictionary(word, len, rec);
    if (rec != nullptr) guessFromProperty(rec->prop);
    if (buf[0] == 0 && word != nullptr && len > 0) guessFromText(word, len);
    if (buf[0] == 0) setDefaultProbs();
    // A model without any of the default tags still gives every word a tag.
    if (buf[0] == 0 && m_tagInfo.getNumTags() > 0) setTagId(1, 0.0f);
    return buf;
}

void TrigramPosDict::guessFromDictionary(const unsigned short* word, int len, const WORD_T* rec) {
    if (m_dicts == nullptr || m_typeToTagId.empty()) return;
    int id = rec != nullptr ? rec->wordId : -1;
    if (id < 0) id = m_dicts->getWordId(word, static_cast<unsigned>(len), 7);
    unsigned char* value = nullptr;
    float weight = 0;
    if (id < 0 || m_dicts->getValue(id, &value, weight) <= 0 || value == nullptr) return;
    m_props.clear();
    m_weights.clear();
    m_dicts->getPropWght(value, m_props, m_weights);
    for (size_t i = 0; i < m_props.size() && i < m_weights.size(); ++i) {
        const auto it = m_typeToTagId.find(m_props[i]);
        if (it != m_typeToTagId.end() && m_weights[i] > -1.0f)
            setTagId(it->second, static_cast<float>(std::log(m_weights[i] + 1.0)));
    }
}

void TrigramPosDict::guessFromProperty(unsigned short prop) {
    static const struct {
        unsigned short bits;
        const char* tag;
    } kFlags[] = {{WS_PROPERTY_PER_RULE | WS_PROPERTY_PER_ME, "nr"},
                  {WS_PROPERTY_ORG, "nt"},
                  {WS_PROPERTY_NUM | WS_PROPERTY_CHINESE_NUM, "m"}};
    for (const auto& f : kFlags) {
        const int tag = m_tagInfo.getTagId(f.tag);
        if ((prop & f.bits) != 0 && tag > 0) setTagId(tag, 10.0f);
    }
}

void TrigramPosDict::guessFromText(const unsigned short* word, int len) {
    const char* tag = nullptr;
    int digits = 0, latin = 0;
    for (int i = 0; i < len; ++i) {
        digits += isDigit(word[i]) || isChineseDigit(word[i]) || (i > 0 && isNumberSign(word[i]));
        latin += isLatin(word[i]);
    }
    if (len == 1 && isPunctuation(word[0])) {
        tag = "w";
    } else if (digits == len) {
        tag = "m";
    } else if (len > 1 && digits == len - 1 && isTimeUnit(word[len - 1])) {
        tag = "t";
    } else if (latin == len) {
        tag = "nx";
    } else if (len > 2 && isPlaceSuffix(word[len - 1])) {
        tag = "ns";
    } else if (len == 2 && isHan(word[0]) && isHan(word[1])) {
        // Two characters in no dictionary: most often a given name.
        tag = "nr";
    }
    const int id = tag != nullptr ? m_tagInfo.getTagId(tag) : -1;
    if (id > 0) setTagId(id, 0.0f);
}

int TrigramPosDict::setTagId(int tag, float score) {
    if (m_guessIndex < 0) nextGuessBuffer();
    char* list = m_guess[m_guessIndex];
    int n = getNumTags(list);
    signed char ids[kMaxGuessTags + 1];
    float scores[kMaxGuessTags + 1];
    for (int i = 0; i < n; ++i) {
        ids[i] = static_cast<signed char>(getTagIdAt(list, i));
        scores[i] = getProbAt(list, i);
    }
    int at = 0;
    while (at < n && ids[at] != tag) ++at;
    if (at < n) {
        scores[at] += score;
        for (; at > 0 && scores[at] > scores[at - 1]; --at) {
            std::swap(scores[at], scores[at - 1]);
            std::swap(ids[at], ids[at - 1]);
        }
    } else {
        if (n >= kMaxGuessTags) return n;
        at = 0;
        while (at < n && scores[at] >= score) ++at;
        std::memmove(ids + at + 1, ids + at, static_cast<size_t>(n - at));
        std::memmove(scores + at + 1, scores + at, sizeof(float) * static_cast<size_t>(n - at));
        ids[at] = static_cast<signed char>(tag);
        scores[at] = score;
        ++n;
    }
    list[0] = static_cast<char>(n);
    std::memcpy(list + 1, ids, static_cast<size_t>(n));
    std::memcpy(list + 4 * ((n + 4) / 4), scores, sizeof(float) * static_cast<size_t>(n));
    return n;
}

void TrigramPosDict::setDefaultProbs() {
    static const struct {
        const char* tag;
        float score;
    } kDefaults[] = {{"n", 10.0f},   {"ns", -7.0f}, {"nt", -9.0f},
                     {"nr", -11.0f}, {"v", -10.0f}, {"a", -11.0f}};
    if (m_guessIndex < 0) nextGuessBuffer();
    char* list = m_guess[m_guessIndex];
    // Written as listed, not sorted: the order is part of the behaviour.
    int n = 0;
    for (const auto& d : kDefaults) n += m_tagInfo.getTagId(d.tag) > 0;
    list[0] = static_cast<char>(n);
    int i = 0;
    for (const auto& d : kDefaults) {
        const int id = m_tagInfo.getTagId(d.tag);
        if (id < 1) continue;
        list[1 + i] = static_cast<char>(id);
        std::memcpy(list + 4 * ((n + 4) / 4) + 4 * i, &d.score, 4);
        ++i;
    }
}

void TrigramPosDict::setNewWordTags(int numTags) {
    const int n = std::max(0, std::min(numTags, 127));
    m_newWordTags.assign(static_cast<size_t>(calcDataLen(n)), '\0');
    m_newWordTags[0] = static_cast<char>(n);
    for (int i = 0; i < n; ++i) {
        m_newWordTags[static_cast<size_t>(1 + i)] = static_cast<char>(i);
        std::memcpy(&m_newWordTags[static_cast<size_t>(4 * ((n + 4) / 4) + 4 * i)], &kNewWordScore,
                    4);
    }
}

}  // namespace ws
