#ifndef ZEG_TOOLS_WORDLISTREADER_H
#define ZEG_TOOLS_WORDLISTREADER_H

#include <cstdint>
#include <istream>
#include <string>

namespace zeg_tools {

// One entry of a word list.
struct WordEntry {
    std::string word;   // UTF-8
    uint64_t freq = 1;  // positive
    std::string tag;    // empty when none
};

// Reads a word list: UTF-8 text, one entry a line, fields separated by
// blanks (spaces and tabs): the word, an optional frequency (a positive
// decimal integer, 1 when absent) and an optional tag. With two fields the
// second is the frequency when it starts like a number (a digit or a sign),
// else the tag. Blank lines are skipped; a UTF-8 byte order mark at the
// start and a carriage return at a line's end are ignored.
// Not thread-safe; the stream must outlive the reader.
class WordListReader {
public:
    enum Result { kEntry, kMalformed, kEnd };

    // Longest word, in UTF-16 code units.
    static constexpr unsigned kMaxWordUnits = 64;
    // Largest frequency; the sum of a whole list must stay exact in a double.
    static constexpr uint64_t kMaxFreq = 1000000000000ULL;

    explicit WordListReader(std::istream& in);

    // The next entry (kEntry), a malformed line (kMalformed, with `reason`),
    // or the end of the input (kEnd).
    Result next(WordEntry& entry, std::string& reason);

    // The number of the line last read (from 1).
    long lineNumber() const { return m_line; }
    // Bytes of input consumed so far.
    uint64_t bytesRead() const { return m_bytes; }
    // True when reading stopped on an I/O error rather than at the end.
    // A line longer than kMaxTextLine is malformed and ends the reading too.
    bool failed() const { return m_in.bad() || m_tooLong; }

    // Checks one line's text; kEntry or kMalformed.
    static Result parse(const std::string& line, WordEntry& entry, std::string& reason);

private:
    std::istream& m_in;
    long m_line = 0;
    bool m_tooLong = false;
    uint64_t m_bytes = 0;
};

}  // namespace zeg_tools

#endif
