#include "tools/WordListReader.h"
#include "tools/BoundedLine.h"

#include <vector>

#include "ws/core/wsEncodeConverter.h"

namespace zeg_tools {

namespace {

const char kBlanks[] = " \t";

std::vector<std::string> splitFields(const std::string& line) {
    std::vector<std::string> fields;
    size_t at = line.find_first_not_of(kBlanks);
    while (at != std::string::npos) {
        const size_t end = line.find_first_of(kBlanks, at);
        fields.push_back(line.substr(at, end == std::string::npos ? end : end - at));
        at = line.find_first_not_of(kBlanks, end);
    }
    return fields;
}

bool looksNumeric(const std::string& field) {
    const char c = field[0];
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
}

bool parseFreq(const std::string& field, uint64_t& freq, std::string& reason) {
    const bool negative = field[0] == '-';
    const size_t start = (field[0] == '-' || field[0] == '+') ? 1 : 0;
    uint64_t value = 0;
    bool digits = start < field.size();
    for (size_t i = start; digits && i < field.size(); ++i) {
        const char c = field[i];
        digits = c >= '0' && c <= '9';
        if (digits && value <= WordListReader::kMaxFreq) value = value * 10 + (c - '0');
    }
    if (!digits) {
        reason = "bad frequency '" + field + "'";
        return false;
    }
    if (negative || value == 0) {
        reason = "frequency must be positive, got '" + field + "'";
        return false;
    }
    if (value > WordListReader::kMaxFreq) {
        reason = "frequency '" + field + "' is too large";
        return false;
    }
    freq = value;
    return true;
}

bool checkWord(const std::string& word, std::string& reason) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(word.data());
    if (!EncodeConverter::isUTF8(bytes, word.size())) {
        reason = "invalid UTF-8 (or a character beyond U+FFFF)";
        return false;
    }
    // Every UTF-8 character of at most three bytes is one UTF-16 unit.
    unsigned long units = 0;
    for (unsigned char b : word) units += (b & 0xC0) != 0x80;
    if (units > WordListReader::kMaxWordUnits) {
        reason = "word longer than " + std::to_string(WordListReader::kMaxWordUnits) +
                 " UTF-16 units";
        return false;
    }
    return true;
}

}  // namespace

WordListReader::WordListReader(std::istream& in) : m_in(in) {}

WordListReader::Result WordListReader::parse(const std::string& line, WordEntry& entry,
                                             std::string& reason) {
    const std::vector<std::string> fields = splitFields(line);
    entry = WordEntry();
    if (fields.size() > 3) {
        reason = "too many fields (expected: word [frequency] [tag])";
        return kMalformed;
    }
    entry.word = fields[0];
    if (!checkWord(entry.word, reason)) return kMalformed;
    if (fields.size() == 2 && !looksNumeric(fields[1])) {
        entry.tag = fields[1];
    } else if (fields.size() >= 2) {
        if (!parseFreq(fields[1], entry.freq, reason)) return kMalformed;
        if (fields.size() == 3) entry.tag = fields[2];
    }
    if (!entry.tag.empty() &&
        !EncodeConverter::isUTF8(reinterpret_cast<const unsigned char*>(entry.tag.data()),
                                 entry.tag.size())) {
        reason = "invalid UTF-8 in the tag";
        return kMalformed;
    }
    return kEntry;
}

WordListReader::Result WordListReader::next(WordEntry& entry, std::string& reason) {
    std::string line;
    for (LineRead got; !m_tooLong && (got = getBoundedLine(m_in, line)) != LineRead::kEnd;) {
        ++m_line;
        if (got == LineRead::kTooLong) {
            m_tooLong = true;
            reason = tooLongReason();
            return kMalformed;
        }
        m_bytes += line.size() + 1;
        if (m_line == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.find_first_not_of(kBlanks) == std::string::npos) continue;
        return parse(line, entry, reason);
    }
    return kEnd;
}

}  // namespace zeg_tools
