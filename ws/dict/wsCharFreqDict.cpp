#include "ws/dict/wsCharFreqDict.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"
#include "ws/core/wsLineReader.h"
#include "ws/core/wsPrefault.h"

namespace ws {

namespace {

const char kSource[] = "wsCharFreqDict";
// The positions these two messages have always named; log readers match them.
const int kOutOfMemoryLine = 34;
const int kCannotOpenLine = 173;

const std::size_t kLineBuffer = 1024;

const float kDefaultAloneProb = 0.5f;
const float kDefaultInWordProb = 0.5f;
const float kDefaultPlaceProb = 1.0f / 6;

// Base 10 with strtol's leniency (leading white space and a sign
// accepted, parsing stops at the first non-digit, no digits read as 0),
// clamped to int. Hand-written: strtol was a third of loading the table.
// The field is [p, end).
int parseCount(const char* p, const char* end) {
    while (p != end && (*p == ' ' || (*p >= '\t' && *p <= '\r'))) ++p;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;
    long long v = 0;
    for (; p != end && *p >= '0' && *p <= '9'; ++p) {
        v = v * 10 + (*p - '0');
        if (v > static_cast<long long>(INT_MAX) + 1) break;  // clamps either way
    }
    if (negative) v = -v;
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Splits `line` at blanks into at most `max` fields; the number found, which
// may exceed `max` (the extra ones are counted, not stored). No copies: the
// table has a line per character and loads at every start.
size_t splitFields(const char* p, const char* const end, CharFreqDict::Field* out, size_t max) {
    size_t n = 0;
    for (;;) {
        while (p != end && blank(*p)) ++p;
        if (p == end) return n;
        const char* const start = p;
        while (p != end && !blank(*p)) ++p;
        if (n < max) out[n] = CharFreqDict::Field{start, p};
        ++n;
    }
}

// The usual line, a character and four counts of one to nine digits
// between blanks, read in one pass: `character` and `counts` get what the
// split and parseCount would give. False for any other line, which the
// general path reads.
bool readPlainLine(const char* p, const char* const end, CharFreqDict::Field& character,
                   int* counts) {
    while (p != end && blank(*p)) ++p;
    const char* const start = p;
    while (p != end && !blank(*p)) ++p;
    if (p == start) return false;
    character = CharFreqDict::Field{start, p};
    for (int k = 0; k < 4; ++k) {
        while (p != end && blank(*p)) ++p;
        const char* const digits = p;
        int v = 0;
        for (; p != end && p - digits < 9 && *p >= '0' && *p <= '9'; ++p) v = v * 10 + (*p - '0');
        if (p == digits || (p != end && !blank(*p))) return false;
        counts[k] = v;
    }
    while (p != end && blank(*p)) ++p;
    return p == end;
}

}  // namespace

const CharFreqEntry CharFreqDict::kNoEntry;

CharFreqDict::CharFreqDict() {
    try {
        m_entries.resize(1);
        assignPrefaulted(m_index, kTableSize, static_cast<unsigned short>(0));
    } catch (const std::bad_alloc&) {
        WsLogger::getWsLogger()->printErr(nullptr, WS_ERR_MEMORY, kSource, kOutOfMemoryLine,
                                          nullptr);
    }
}

// Room for as many entries as the file can have lines (each takes at least
// ten bytes), so that growing never copies entries: the untouched rest of
// a large allocation costs no memory.
void CharFreqDict::_reserveFor(const char* path) {
    struct stat st;
    if (::stat(path, &st) != 0 || st.st_size <= 0) return;
    const size_t lines = static_cast<size_t>(st.st_size) / 10 + 2;
    try {
        m_entries.reserve(m_entries.size() + std::min<size_t>(lines, kTableSize));
        prefaultForWrite(m_entries.data() + m_entries.size(),
                         (m_entries.capacity() - m_entries.size()) * sizeof(CharFreqEntry));
    } catch (const std::bad_alloc&) {
        // Growing entry by entry still works.
    }
}

bool CharFreqDict::loadText(const char* path) {
    WsLogger* log = WsLogger::getWsLogger();
    LineReader reader(kLineBuffer);
    if (!reader.open(path)) {
        log->errorPos(kSource, kCannotOpenLine, "cannot open file: %s\n", path ? path : "");
        return false;
    }
    if (m_index.empty()) {
        log->printErr(nullptr, WS_ERR_MEMORY, kSource, __LINE__, nullptr);
        return false;
    }
    _reserveFor(path);
    std::string spill;
    const char* line = nullptr;
    size_t size = 0;
    Field fields[kFields];
    int counts[kFields - 1];
    while (reader.next(line, size, spill)) {
        if (!readPlainLine(line, line + size, fields[0], counts)) {
            if (splitFields(line, line + size, fields, kFields) < kFields) {
                log->errorPos(kSource, __LINE__, "wrong format: %s\n", path);
                return false;
            }
            for (size_t k = 1; k < kFields; ++k)
                counts[k - 1] = parseCount(fields[k].begin, fields[k].end);
        }
        if (!_setEntry(fields[0], counts, path)) return false;
    }
    return true;
}

bool CharFreqDict::_setEntry(const Field& character, const int* counts, const char* path) {
    const unsigned short c = _firstUnit(character.begin, character.end);
    if (c == 0) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "utf8 to utf16 fail: %s\n", path);
        return false;
    }
    if (c >= m_index.size()) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__,
                                          "no entry for character U+%04X: %s\n", c, path);
        return false;
    }
    if (m_index[c] == 0) {
        try {
            m_entries.emplace_back();
        } catch (const std::bad_alloc&) {
            WsLogger::getWsLogger()->printErr(nullptr, WS_ERR_MEMORY, kSource, __LINE__, nullptr);
            return false;
        }
        m_index[c] = static_cast<unsigned short>(m_entries.size() - 1);
    }
    CharFreqEntry& e = m_entries[m_index[c]];
    e.character = c;
    e.aloneCount = counts[0];
    e.firstCount = counts[1];
    e.middleCount = counts[2];
    e.finalCount = counts[3];
    // Unsigned sums: counts near INT_MAX wrap instead of overflowing.
    const unsigned inWord = static_cast<unsigned>(e.firstCount) +
                            static_cast<unsigned>(e.middleCount) +
                            static_cast<unsigned>(e.finalCount);
    e.inWordCount = static_cast<int>(inWord);
    const float total = static_cast<float>(static_cast<unsigned>(e.aloneCount) + inWord);
    e.aloneProb = e.aloneCount / total;
    e.firstProb = e.firstCount / total;
    e.middleProb = e.middleCount / total;
    e.finalProb = e.finalCount / total;
    e.inWordProb = e.inWordCount / total;
    return true;
}

float CharFreqDict::_prob(unsigned short c, float CharFreqEntry::*field, float def) const {
    const CharFreqEntry& e = (*this)[c];
    return e.character == 0 ? def : e.*field;
}

float CharFreqDict::getAloneCharProb(unsigned short c) const {
    return _prob(c, &CharFreqEntry::aloneProb, kDefaultAloneProb);
}

float CharFreqDict::getCharInWordProb(unsigned short c) const {
    return _prob(c, &CharFreqEntry::inWordProb, kDefaultInWordProb);
}

float CharFreqDict::getFirstCharProb(unsigned short c) const {
    return _prob(c, &CharFreqEntry::firstProb, kDefaultPlaceProb);
}

float CharFreqDict::getMiddleCharProb(unsigned short c) const {
    return _prob(c, &CharFreqEntry::middleProb, kDefaultPlaceProb);
}

float CharFreqDict::getFinalCharProb(unsigned short c) const {
    return _prob(c, &CharFreqEntry::finalProb, kDefaultPlaceProb);
}

float CharFreqDict::getAloneCharProb(const std::string& s) const {
    return getAloneCharProb(_firstUnit(s));
}

float CharFreqDict::getCharInWordProb(const std::string& s) const {
    return getCharInWordProb(_firstUnit(s));
}

float CharFreqDict::getFirstCharProb(const std::string& s) const {
    return getFirstCharProb(_firstUnit(s));
}

float CharFreqDict::getMiddleCharProb(const std::string& s) const {
    return getMiddleCharProb(_firstUnit(s));
}

float CharFreqDict::getFinalCharProb(const std::string& s) const {
    return getFinalCharProb(_firstUnit(s));
}

unsigned short CharFreqDict::_firstUnit(const std::string& s) {
    return _firstUnit(s.data(), s.data() + s.size());
}

unsigned short CharFreqDict::_firstUnit(const char* begin, const char* end) {
    unsigned short c = 0;
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(begin),
                                               static_cast<size_t>(end - begin), &c, 1);
    return n < 1 ? 0 : c;
}

void CharFreqDict::print() const {
    WsLogger* log = WsLogger::getWsLogger();
    for (const unsigned short k : m_index) {
        const CharFreqEntry& e = m_entries[k];
        if (e.character == 0) continue;
        unsigned char utf8[4];
        const int n = EncodeConverter::utf16ToUtf8(&e.character, 1, utf8, sizeof utf8);
        if (n < 1) {
            log->error("utf16 to utf8 fail in CharFreqDict\n");
            continue;
        }
        utf8[n] = 0;
        log->info("%s\t%d\t%d\t%f\t%f\n", reinterpret_cast<const char*>(utf8), e.aloneCount,
                  e.inWordCount, e.aloneProb, e.inWordProb);
    }
}

}  // namespace ws
