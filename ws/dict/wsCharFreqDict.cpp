#include "ws/dict/wsCharFreqDict.h"

#include <climits>
#include <cstdlib>
#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"
#include "ws/core/wsLineReader.h"

namespace ws {

namespace {

const char kSource[] = "wsCharFreqDict";
// The positions these two messages have always named; log readers match them.
const int kOutOfMemoryLine = 34;
const int kCannotOpenLine = 173;

const std::size_t kLineBuffer = 1024;
const char kBlanks[] = " \t\r\n";

const float kDefaultAloneProb = 0.5f;
const float kDefaultInWordProb = 0.5f;
const float kDefaultPlaceProb = 1.0f / 6;

// Base 10 with strtol's leniency (no digits read as 0), clamped to int.
int parseCount(const std::string& field) {
    const long v = std::strtol(field.c_str(), nullptr, 10);
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

}  // namespace

const CharFreqEntry CharFreqDict::kNoEntry;

CharFreqDict::CharFreqDict() {
    try {
        m_table.resize(kTableSize);
    } catch (const std::bad_alloc&) {
        WsLogger::getWsLogger()->printErr(nullptr, WS_ERR_MEMORY, kSource, kOutOfMemoryLine,
                                          nullptr);
    }
}

bool CharFreqDict::loadText(const char* path) {
    WsLogger* log = WsLogger::getWsLogger();
    LineReader reader(kLineBuffer);
    if (!reader.open(path)) {
        log->errorPos(kSource, kCannotOpenLine, "cannot open file: %s\n", path ? path : "");
        return false;
    }
    if (m_table.empty()) {
        log->printErr(nullptr, WS_ERR_MEMORY, kSource, __LINE__, nullptr);
        return false;
    }
    std::string line;
    std::vector<std::string> fields;
    while (reader.next(line)) {
        Utility::splitLine(line, kBlanks, fields);
        if (fields.size() < 5) {
            log->errorPos(kSource, __LINE__, "wrong format: %s\n", path);
            return false;
        }
        if (!_setEntry(fields, path)) return false;
    }
    return true;
}

bool CharFreqDict::_setEntry(const std::vector<std::string>& fields, const char* path) {
    const unsigned short c = _firstUnit(fields[0]);
    if (c == 0) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "utf8 to utf16 fail: %s\n", path);
        return false;
    }
    if (c >= m_table.size()) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__,
                                          "no entry for character U+%04X: %s\n", c, path);
        return false;
    }
    CharFreqEntry& e = m_table[c];
    e.character = c;
    e.aloneCount = parseCount(fields[1]);
    e.firstCount = parseCount(fields[2]);
    e.middleCount = parseCount(fields[3]);
    e.finalCount = parseCount(fields[4]);
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
    unsigned short c = 0;
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(s.data()),
                                               s.size(), &c, 1);
    return n < 1 ? 0 : c;
}

void CharFreqDict::print() const {
    WsLogger* log = WsLogger::getWsLogger();
    for (const CharFreqEntry& e : m_table) {
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
