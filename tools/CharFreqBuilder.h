#ifndef ZEG_TOOLS_CHARFREQBUILDER_H
#define ZEG_TOOLS_CHARFREQBUILDER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zeg_tools {

class ProgressLine;

// Derives the segmenter's character frequency file from a word list: for
// every UTF-16 code unit, how often the list uses it as a one-character
// word, and as the first, a middle or the final character of a longer word,
// each use weighted by the word's frequency.
//
// Word list (jieba's format): UTF-8, one entry a line, fields separated by
// blanks (space, tab; a carriage return ending the line is ignored): the
// word, then optionally its frequency (decimal digits; 1 when absent) and a
// tag. A second field that is not all digits is the tag. Blank lines are
// passed over. A line whose word the segmenter cannot hold (not UTF-8 of
// one- to three-byte characters, or holding U+0000 or U+FFFF) is skipped and
// counted.
//
// Output: the text format ws::CharFreqDict reads, one line per character
// with any use, in code order: "<char>\t<alone>\t<first>\t<middle>\t<final>".
// Counts stop at kMaxCount, so that the sums the dictionary forms from them
// stay within 32 bits.
// Thread safety: none; one builder per thread. Copying copies the counts.
class CharFreqBuilder {
public:
    static constexpr std::uint64_t kMaxCount = 0x7FFFFFFF / 4;

    struct Counts {
        std::uint64_t alone = 0;
        std::uint64_t first = 0;
        std::uint64_t middle = 0;
        std::uint64_t final = 0;
    };

    CharFreqBuilder();

    // Adds every entry of the word list at `path`. False, with `error` set,
    // when the file cannot be read.
    bool addFile(const std::string& path, std::string& error, ProgressLine* progress = nullptr);
    // Adds one line of a word list; false when it is skipped.
    bool addLine(const std::string& line);
    // Adds `freq` uses of the word (UTF-16 code units).
    void addWord(const std::vector<unsigned short>& word, std::uint64_t freq);

    const Counts& counts(unsigned short c) const { return m_counts[c]; }
    std::size_t wordsAdded() const { return m_words; }
    std::size_t linesSkipped() const { return m_skipped; }

    // The character frequency file's text.
    std::string text() const;
    // Writes text() to `path`. False, with `error` set, when that fails.
    bool writeFile(const std::string& path, std::string& error) const;

private:
    // The word of a line as code units; false when the segmenter cannot hold it.
    static bool _decodeWord(const std::string& utf8, std::vector<unsigned short>& word);
    // Sets `freq` from decimal digits, saturating at kMaxCount; false, `freq`
    // untouched, for anything else.
    static bool _parseFrequency(const std::string& field, std::uint64_t& freq);

    std::vector<Counts> m_counts;  // one per code unit
    std::size_t m_words = 0;
    std::size_t m_skipped = 0;
};

}  // namespace zeg_tools

#endif
