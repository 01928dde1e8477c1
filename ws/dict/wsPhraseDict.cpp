#include "ws/dict/wsPhraseDict.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsWsLogger.h"
#include "ws/core/wsLineReader.h"

namespace ws {

namespace {

const char kSource[] = "wsPhraseDict";
const char kSourceFile[] = "wsPhraseDict.cpp";

const unsigned char* keyBytes(const unsigned short* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

bool readAll(std::FILE* fp, void* out, size_t size) {
    return size == 0 || std::fread(out, 1, size, fp) == size;
}

bool writeAll(std::FILE* fp, const void* data, size_t size) {
    return size == 0 || std::fwrite(data, 1, size, fp) == size;
}

// The table length of a file at the stream's position; false when the
// length field or the table itself does not fit in what is left.
bool readTableLength(std::FILE* fp, uint32_t& length) {
    const int64_t remaining = TrieBase::remainingBytes(fp);
    if (remaining < 4 || !readAll(fp, &length, 4)) return false;
    return length <= static_cast<uint64_t>(remaining) - 4;
}

}  // namespace

const char PhraseDict::PHRASE_TABLE_LOGO[] = "PHRASE_TABLE";

PhraseDict::PhraseDict() : m_trie(new DADLTrie()), m_table(PHRASE_TABLE_LOGO, kLogoSize) {}

PhraseDict::~PhraseDict() = default;

// ---- loading and writing ----

int PhraseDict::loadDict(const char* path) {
    File f;
    if (!f.open(path, "rb")) {
        _clear();
        return -1;
    }
    return loadDict(f.get());
}

void PhraseDict::_clear() {
    std::vector<uint64_t>().swap(m_firstUnits);
    m_trie.reset(new DADLTrie());
    m_table.assign(PHRASE_TABLE_LOGO, kLogoSize);
    m_phraseCount = 0;
    m_skipped = 0;
}

int PhraseDict::loadDict(std::FILE* fp) {
    _clear();
    uint32_t length = 0;
    if (fp == nullptr || !readTableLength(fp, length) || length < kLogoSize) return -1;
    std::string table(length, '\0');
    if (!readAll(fp, &table[0], length)) return -1;
    if (std::memcmp(table.data(), PHRASE_TABLE_LOGO, kLogoSize) != 0) return -1;
    std::unique_ptr<DADLTrie> trie(new DADLTrie());
    if (!trie->load(fp)) {
        m_trie = std::move(trie);  // keeps the trie's message for getTrieErr
        return -1;
    }
    m_trie = std::move(trie);
    m_table.swap(table);
    _markFirstUnits();
    return 0;
}

// A phrase's key is its code units as bytes, so its first unit is the
// first two key bytes.
void PhraseDict::_markFirstUnits() {
    std::vector<uint64_t> bits(65536 / 64, 0);
    m_trie->markBytePairs(bits);
    m_firstUnits.swap(bits);
}

int PhraseDict::writeDict(const char* path) const {
    File f;
    if (!f.open(path, "wb")) return WS_ERR_WRITE;
    const uint32_t length = static_cast<uint32_t>(m_table.size());
    const bool ok = writeAll(f.get(), &length, 4) &&
                    writeAll(f.get(), m_table.data(), m_table.size()) && m_trie->write(f.get());
    // A buffered tail that cannot be flushed is a failed write too.
    return f.close() == 0 && ok ? 0 : WS_ERR_WRITE;
}

const char* PhraseDict::dictVersion(const char* path) {
    File f;
    uint32_t length = 0;
    if (f.open(path, "rb") && readTableLength(f.get(), length) &&
        std::fseek(f.get(), static_cast<long>(length), SEEK_CUR) == 0) {
        DADLTrie probe;
        const char* magic = probe.dictVersion(f.get());
        if (magic != probe.get_err()) {
            std::strncpy(m_version, magic, sizeof m_version - 1);
            return m_version;
        }
    }
    WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "load %s fail!\n", path ? path : "");
    return nullptr;
}

// ---- the text form ----

int PhraseDict::loadText(const char* path) {
    WsLogger* log = WsLogger::getWsLogger();
    LineReader reader(kMaxLineBytes + 1);
    if (!reader.open(path)) {
        log->errorPos(kSource, __LINE__, "load %s fail!\n", path ? path : "");
        return -1;
    }
    try {
        std::unique_ptr<DADLTrie> trie(new DADLTrie());
        trie->init();
        std::string table(PHRASE_TABLE_LOGO, kLogoSize);
        unsigned count = 0, skipped = 0, lineNo = 0;
        bool inLongLine = false;
        std::string piece;
        Entry e;
        while (reader.next(piece)) {
            const bool lineEnds = !piece.empty() && piece.back() == '\n';
            if (inLongLine) {  // the rest of a line already reported
                inLongLine = !lineEnds;
                continue;
            }
            ++lineNo;
            const char* reason = nullptr;
            if (!lineEnds && piece.size() >= kMaxLineBytes) {
                inLongLine = true;
                reason = "line longer than 1023 bytes";
            } else {
                reason = _parseLine(piece, e);
            }
            if (reason != nullptr) {
                log->error("%s:%u: %s\n", path, lineNo, reason);
                ++skipped;
                continue;
            }
            if (e.phrase.empty()) continue;
            const int offset = static_cast<int>(table.size());
            table.push_back(static_cast<char>(e.lens.size()));
            table.append(e.lens.data(), e.lens.size());
            const int keyLen = static_cast<int>(e.phrase.size() * 2);
            if (trie->match(keyBytes(e.phrase.data()), keyLen) == 0) ++count;
            trie->add(keyBytes(e.phrase.data()), keyLen, offset);
        }
        if (reader.failed()) {
            log->errorPos(kSource, __LINE__, "load %s fail!\n", path);
            return -1;
        }
        m_trie = std::move(trie);
        m_table.swap(table);
        _markFirstUnits();
        m_phraseCount = count;
        m_skipped = skipped;
        return 0;
    } catch (const std::bad_alloc&) {
        log->errorPos(kSource, __LINE__, "allocate memory fail at %s : %s!\n", kSourceFile,
                      "loadText");
        return WS_ERR_MEMORY;
    }
}

const char* PhraseDict::_parseLine(const std::string& line, Entry& e) {
    e.phrase.clear();
    e.lens.clear();
    size_t end = line.size();
    while (end > 0 && (line[end - 1] == '\n' || line[end - 1] == '\r')) --end;
    const auto* bytes = reinterpret_cast<const unsigned char*>(line.data());
    if (!EncodeConverter::isUTF8(bytes, end)) return "not UTF-8 text";
    const EncodeConverter::Utf16String units =
        EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(bytes, end));
    std::vector<std::vector<unsigned short>> fields;
    _splitLine(std::vector<unsigned short>(units.begin(), units.end()), fields);
    if (fields.empty()) return nullptr;
    if (fields.size() == 1) return "no words after the phrase";
    if (fields[0].size() > kMaxPhraseLen) return "phrase longer than 64 characters";
    return _getPhraseArray(fields, e);
}

void PhraseDict::_splitLine(const std::vector<unsigned short>& line,
                            std::vector<std::vector<unsigned short>>& fields) {
    fields.clear();
    size_t i = 0;
    while (i < line.size()) {
        if (_isBlankspace1(line[i]) || _isBlankspace2(line[i])) {
            ++i;
            continue;
        }
        if (line[i] == '#') return;
        const size_t start = i;
        while (i < line.size() && !_isBlankspace1(line[i]) && !_isBlankspace2(line[i])) ++i;
        fields.emplace_back(line.begin() + start, line.begin() + i);
    }
}

const char* PhraseDict::_getPhraseArray(const std::vector<std::vector<unsigned short>>& fields,
                                        Entry& e) {
    const std::vector<unsigned short>& phrase = fields[0];
    const int n = static_cast<int>(phrase.size());
    int pos = 0;
    for (size_t w = 1; w < fields.size(); ++w) {
        const int m = static_cast<int>(fields[w].size());
        // Each word must stand right where the one before it ended.
        if (_getWordOffset(phrase.data() + pos, n - pos, fields[w].data(), m) != 1)
            return "the words do not spell the phrase";
        e.lens.push_back(static_cast<char>(m));
        pos += m;
    }
    if (pos != n) return "the words do not spell the phrase";
    e.phrase = phrase;
    return nullptr;
}

int PhraseDict::_getWordOffset(const unsigned short* text, int n, const unsigned short* word,
                               int m) {
    if (text == nullptr || word == nullptr || n <= 0 || m > n) return -1;
    for (int p = 0; p + m <= n; ++p)
        if (std::memcmp(text + p, word, static_cast<size_t>(m) * 2) == 0) return p + 1;
    return -1;
}

// ---- lookups ----

int PhraseDict::match(const unsigned short* text, unsigned n) const {
    if (text == nullptr || n == 0 || n > kMaxPhraseLen) return 0;
    const int offset = m_trie->match(keyBytes(text), static_cast<int>(n * 2));
    return offset > 0 && _checkSafe(text, static_cast<int>(n), static_cast<unsigned>(offset))
               ? offset
               : 0;
}

bool PhraseDict::_checkSafe(const unsigned short* phrase, int len, unsigned offset) const {
    const size_t size = m_table.size();
    if (phrase == nullptr || offset < kLogoSize || offset >= size) return false;
    const int k = static_cast<signed char>(m_table[offset]);
    if (k < 1 || static_cast<unsigned>(k) > kMaxWords || offset + 1 + k > size) return false;
    int sum = 0;
    for (int i = 1; i <= k; ++i) {
        const int l = static_cast<signed char>(m_table[offset + i]);
        if (l < 1) return false;
        sum += l;
    }
    return sum == len;
}

template <typename LenAt>
int PhraseDict::_matchPosition(const unsigned short* text, unsigned n, LenAt lenAt,
                               unsigned& phraseLen) const {
    phraseLen = 0;
    if (text == nullptr || n == 0) return -1;
    // A match ending inside the first unit is never taken (see below).
    const unsigned pair = keyBytes(text)[0] | keyBytes(text)[1] << 8;
    if (!m_firstUnits.empty() && (m_firstUnits[pair / 64] >> (pair % 64) & 1) == 0) return -1;
    const unsigned units = n < kMaxPhraseLen ? n : kMaxPhraseLen;
    TrieBase::MatchInfo found[kMaxMatches];
    const int count =
        m_trie->matchAll(keyBytes(text), static_cast<int>(units * 2), found, kMaxMatches);
    int best = -1;
    unsigned boundary = lenAt(0);
    // Matches come shortest first; the boundaries rise with them.
    for (int m = 0; m < count;) {
        if (found[m].pos % 2 == 0) {  // ends inside a code unit
            ++m;
            continue;
        }
        const unsigned len = static_cast<unsigned>(found[m].pos + 1) / 2;
        if (len > boundary) {
            boundary += lenAt(boundary);
            continue;
        }
        if (len == boundary && found[m].value > 0 &&
            _checkSafe(text, static_cast<int>(len), static_cast<unsigned>(found[m].value))) {
            best = found[m].value;
            phraseLen = len;
        }
        ++m;
    }
    return best;
}

namespace {

unsigned atLeastOne(unsigned len) { return len == 0 ? 1 : len; }

}  // namespace

int PhraseDict::matchPosition(const unsigned short* text, unsigned n, const char* wordLens,
                              unsigned& phraseLen) const {
    if (wordLens == nullptr) {
        phraseLen = 0;
        return -1;
    }
    return _matchPosition(
        text, n,
        [wordLens](unsigned i) { return atLeastOne(static_cast<unsigned char>(wordLens[i])); },
        phraseLen);
}

int PhraseDict::matchPosition(const unsigned short* text, unsigned n,
                              const char* wordLens) const {
    unsigned phraseLen = 0;
    return matchPosition(text, n, wordLens, phraseLen);
}

int PhraseDict::matchPosition(const unsigned short* text, unsigned n,
                              const SegmentResult::Cell* cells, unsigned& phraseLen) const {
    if (cells == nullptr) {
        phraseLen = 0;
        return -1;
    }
    return _matchPosition(
        text, n, [cells](unsigned i) { return atLeastOne(cells[i].len); }, phraseLen);
}

int PhraseDict::matchPosition(const unsigned short* text, unsigned n,
                              const SegmentResult::Cell* cells) const {
    unsigned phraseLen = 0;
    return matchPosition(text, n, cells, phraseLen);
}

}  // namespace ws
