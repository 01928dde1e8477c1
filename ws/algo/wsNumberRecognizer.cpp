#include "ws/algo/wsNumberRecognizer.h"

#include <new>

#include "ws/algo/wsRuleText.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsPrefault.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"

namespace ws {

namespace {

const unsigned char kLetter = 1;
const unsigned char kMid = 2;
const unsigned char kDigit = 4;
const unsigned char kEnd = 8;
const unsigned char kChinese = 16;
const unsigned char kChineseMid1 = 32;
const unsigned char kChineseMid2 = 64;
const unsigned char kLMD = kLetter | kMid | kDigit;
const unsigned char kDM = kDigit | kMid;
const unsigned char kRunStart = kLetter | kDigit | kChinese;

// Code units 0 .. 0xFFFE; 0xFFFF is no character and has no class.
const unsigned int kTableSize = 65535;
const char kEndMark[] = "end#";

struct ClassKey {
    const char* key;
    unsigned char bit;
};

const ClassKey kClassKeys[] = {
    {"english_letter=", kLetter},  {"english_number=", kDigit},     {"number_mid=", kMid},
    {"number_end=", kEnd},         {"chinese_numble=", kChinese},   {"chinese_mid1=", kChineseMid1},
    {"chinese_mid2=", kChineseMid2},
};

}  // namespace

NumberRecognizer::~NumberRecognizer() { close(); }

void NumberRecognizer::close() { std::vector<unsigned char>().swap(m_table); }

int NumberRecognizer::getProperty(std::vector<unsigned short>& props) {
    props.push_back(WS_PROPERTY_NUM);
    props.push_back(WS_PROPERTY_LET);
    props.push_back(WS_PROPERTY_LETNUM);
    props.push_back(WS_PROPERTY_CHINESE_NUM);
    return 4;
}

int NumberRecognizer::init(const char* path, int numIdx, int letIdx, int letnumIdx,
                           int chineseNumIdx) {
    m_numIdx = numIdx;
    m_letIdx = letIdx;
    m_letnumIdx = letnumIdx;
    m_chineseNumIdx = chineseNumIdx;
    try {
        std::string content;
        if (!RuleText::read(path, content) || content.empty()) return -1;
        std::vector<unsigned char> table;
        assignPrefaulted(table, kTableSize, static_cast<unsigned char>(0));
        std::vector<unsigned short> units;
        std::string members;
        RuleText::Spans claimed;
        for (const ClassKey& k : kClassKeys) {
            if (RuleText::between(content, k.key, kEndMark, members, claimed) != 0) continue;
            units.clear();
            RuleText::appendUtf16(members, units);
            for (unsigned short u : units) {
                if (u < kTableSize) table[u] |= k.bit;
            }
        }
        RuleText::reportUnclaimed(path, content, claimed);
        // A file without a single class would silently cut every run apart.
        if (claimed.empty()) return -1;
        m_table.swap(table);
    } catch (const std::bad_alloc&) {
        close();
        return -2;
    }
    return 0;
}

int NumberRecognizer::getmiddle(const std::string& content, const std::string& key,
                                const std::string& endMark, std::vector<unsigned short>& out) {
    std::string members;
    const int found = RuleText::between(content, key, endMark, members);
    return found < 0 ? found : RuleText::appendUtf16(members, out);
}

int NumberRecognizer::getmiddle(const std::string& content, const std::string& key,
                                const std::string& endMark, std::vector<unsigned int>& out) {
    std::string members;
    const int found = RuleText::between(content, key, endMark, members);
    return found < 0 ? found : RuleText::appendUtf16(members, out);
}

WS_HOT int NumberRecognizer::doRecognize(TextSegmentation& seg) {
    const unsigned short* text = seg.text;
    const unsigned int n = text == nullptr ? 0 : seg.textLen;
    unsigned int p = 0;
    while (p < n) {
        if ((_cls(text[p]) & kRunStart) == 0) {
            ++p;
            continue;
        }
        const Run run = _run(text, n, p);
        // A start character that is also a separator can leave nothing.
        if (run.len == 0) {
            ++p;
            continue;
        }
        if (run.len <= kMaxRunLength) {
            const int idx = run.prop == WS_PROPERTY_NUM      ? m_numIdx
                            : run.prop == WS_PROPERTY_LET    ? m_letIdx
                            : run.prop == WS_PROPERTY_LETNUM ? m_letnumIdx
                                                             : m_chineseNumIdx;
            _record(seg, idx, p, run.len);
        }
        p += run.len;
    }
    return 0;
}

int NumberRecognizer::doMaxMatch(TextSegmentation& seg, int pos, unsigned short& type) {
    if (seg.text == nullptr || pos < 0 || static_cast<unsigned int>(pos) >= seg.textLen) return 0;
    const Run run = _run(seg.text, seg.textLen, static_cast<unsigned int>(pos));
    if (run.len == 0 || run.len > static_cast<unsigned int>(kMaxRunLength)) {
        type = WS_PROPERTY_WORD;
        return 1;
    }
    type = run.prop;
    return static_cast<int>(run.len);
}

void NumberRecognizer::_record(TextSegmentation& seg, int idx, unsigned int s, unsigned int len) {
    if (idx < 0 || static_cast<unsigned int>(idx) >= seg.newWordBuffers.size()) return;
    NewWordBuffer& buffer = seg.newWordBuffers[idx];
    if (s >= buffer.words.size()) return;
    buffer.words[s].len = static_cast<unsigned char>(len);
    if ((buffer.count & 0xFF) == 0) buffer.count = 1;
}

WS_HOT NumberRecognizer::Run NumberRecognizer::_run(const unsigned short* text, unsigned int n,
                                                    unsigned int s) const {
    const unsigned char c = _cls(text[s]);
    unsigned short prop = 0;
    unsigned int p = s;
    if (c & kLetter) {
        p = _letterRun(text, n, s, prop);
    } else if (c & kDigit) {
        p = _digitRun(text, n, s, prop);
    } else if (c & kChinese) {
        p = _chineseRun(text, n, s);
        prop = WS_PROPERTY_CHINESE_NUM;
    }
    p = _dropSeparators(text, s, p);
    return {p - s, prop};
}

unsigned int NumberRecognizer::_skip(const unsigned short* text, unsigned int n, unsigned int p,
                                     unsigned char bits) const {
    while (p < n && (_cls(text[p]) & bits) != 0) ++p;
    return p;
}

unsigned int NumberRecognizer::_dropSeparators(const unsigned short* text, unsigned int s,
                                               unsigned int p) const {
    while (p > s && (_cls(text[p - 1]) & kMid) != 0) --p;
    return p;
}

unsigned int NumberRecognizer::_letterRun(const unsigned short* text, unsigned int n,
                                          unsigned int s, unsigned short& prop) const {
    unsigned int p = _skip(text, n, s, kLetter);
    prop = WS_PROPERTY_LET;
    if (p >= n || (_cls(text[p]) & kDM) == 0) return p;
    bool digit = false;
    for (; p < n && (_cls(text[p]) & kLMD) != 0; ++p) {
        if (_cls(text[p]) & kDigit) digit = true;
    }
    if (digit) prop = WS_PROPERTY_LETNUM;
    return _dropSeparators(text, s, p);
}

unsigned int NumberRecognizer::_digitRun(const unsigned short* text, unsigned int n,
                                         unsigned int s, unsigned short& prop) const {
    unsigned int p = _skip(text, n, s, kDM);
    prop = WS_PROPERTY_NUM;
    if (p >= n) return p;
    const unsigned char stop = _cls(text[p]);
    if (stop & kLetter) {
        prop = WS_PROPERTY_LETNUM;
        return _dropSeparators(text, s, _skip(text, n, p, kLMD));
    }
    if (stop & kEnd) {
        // "3.%": the separator is not part of the number, so neither is the sign.
        if (_cls(text[p - 1]) & kMid) return _dropSeparators(text, s, p);
        return _skip(text, n, p, kEnd);
    }
    return p;
}

unsigned int NumberRecognizer::_chineseRun(const unsigned short* text, unsigned int n,
                                           unsigned int s) const {
    unsigned int p = _skip(text, n, s, kChinese);
    // One joining pair, as in 三分之一; it needs a numeral after it.
    if (p + 2 < n && (_cls(text[p]) & kChineseMid1) && (_cls(text[p + 1]) & kChineseMid2) &&
        (_cls(text[p + 2]) & kChinese)) {
        p = _skip(text, n, p + 2, kChinese);
    }
    return p;
}

}  // namespace ws
