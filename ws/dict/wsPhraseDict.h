#ifndef ZEG_WS_DICT_WSPHRASEDICT_H
#define ZEG_WS_DICT_WSPHRASEDICT_H

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "ws/core/wsSegmentResult.h"
#include "ws/dict/wsDADLTrie.h"

namespace ws {

// Phrases (UTF-16 text) with the division of each into words that the
// segmenter should produce for it.
//
// The phrase table is one byte string: the logo "PHRASE_TABLE", then the
// records. A record is one byte k (number of words, 1..kMaxWords) and k
// bytes, each word's length in characters. A DADLTrie maps each phrase's
// UTF-16LE bytes to the offset of its record in the table.
//
// File (little-endian):
//   0    4   L, length of the phrase table in bytes
//   4    L   the phrase table
//   4+L      the phrase trie (a DADLTrie section)
//
// Text form, read by loadText (UTF-8, one phrase a line, at most
// kMaxLineBytes bytes):
//   PHRASE WORD WORD ...   [# comment]
// Fields are separated by runs of spaces, tabs or ideographic spaces
// (U+3000). The words, joined, must spell the phrase. A field beginning
// with '#' ends the line; so does a line beginning with it. A later line
// for the same phrase replaces the earlier one, so a user's lines
// appended to a shipped table override it.
//
// Loaded bytes are not trusted: a record is used only when it lies inside
// the table and its lengths spell out the phrase that led to it.
//
// Not copyable (owns its trie). Thread safety: lookups only read and may
// run concurrently once loading is over; loading needs exclusive use.
class PhraseDict {
public:
    static const char PHRASE_TABLE_LOGO[];                // "PHRASE_TABLE"
    static constexpr unsigned kLogoSize = 12;
    static constexpr unsigned kMaxPhraseLen = 64;         // characters
    static constexpr unsigned kMaxWords = kMaxPhraseLen;  // words in one cut
    static constexpr int kMaxMatches = 64;                // phrases tried at one place
    static constexpr unsigned kMaxLineBytes = 1023;

    PhraseDict();
    virtual ~PhraseDict();
    PhraseDict(const PhraseDict&) = delete;
    PhraseDict& operator=(const PhraseDict&) = delete;

    // Loads (copies) the dictionary file at `path` / at the stream's
    // position. 0, or -1 when the file cannot be opened, is short, its table
    // does not begin with the logo or its trie section is damaged; the
    // dictionary is then empty.
    int loadDict(const char* path);
    int loadDict(std::FILE* fp);
    // Writes the dictionary file. 0, or -7 when the file cannot be opened
    // or written.
    int writeDict(const char* path) const;
    // The magic text of the trie section in the file at `path` (owned by
    // this object, valid until the next call), or null with "load %s fail!"
    // logged when the file cannot be opened or has no room for it.
    const char* dictVersion(const char* path);

    // Builds the dictionary from the text form at `path`, replacing what
    // was loaded. Lines it cannot use are logged as FILE:LINE: reason,
    // counted in skippedLines() and left out. 0; -1 (the dictionary
    // unchanged) when the file cannot be opened or read; -6 when memory
    // runs out.
    int loadText(const char* path);
    // Phrases the last loadText took in and lines it left out (both 0
    // after loadDict: the file does not record them).
    unsigned phraseCount() const { return m_phraseCount; }
    unsigned skippedLines() const { return m_skipped; }

    // The record offset of the phrase equal to text[0, n), 0 when absent.
    int match(const unsigned short* text, unsigned n) const;

    // The record offset of the longest phrase that is a prefix of text[0, n)
    // and ends on a boundary of the current cut, or -1. The cut starts at
    // text[0]; wordLens[i] (or cells[i].len) is the length of the word that
    // starts at character i, read only at word starts before n. A length of
    // 0 counts as 1. phraseLen receives the phrase's length in characters
    // (0 with -1).
    int matchPosition(const unsigned short* text, unsigned n, const char* wordLens) const;
    int matchPosition(const unsigned short* text, unsigned n, const char* wordLens,
                      unsigned& phraseLen) const;
    int matchPosition(const unsigned short* text, unsigned n,
                      const SegmentResult::Cell* cells) const;
    int matchPosition(const unsigned short* text, unsigned n, const SegmentResult::Cell* cells,
                      unsigned& phraseLen) const;

    // The phrase table; a record offset from the lookups indexes it.
    const char* getBuffer() const { return m_table.data(); }
    unsigned getBufferSize() const { return static_cast<unsigned>(m_table.size()); }
    const char* getTrieErr() const { return m_trie->get_err(); }

protected:
    // True when `phrase` is set and the record at `offset` lies inside the
    // table with 1..kMaxWords positive lengths that sum to `len`.
    bool _checkSafe(const unsigned short* phrase, int len, unsigned offset) const;
    // 1 + the first position p with text[p, p + m) == word[0, m), or -1
    // (also for null arguments, m > n or n <= 0).
    static int _getWordOffset(const unsigned short* text, int n, const unsigned short* word,
                              int m);

private:
    // One usable line of the text form.
    struct Entry {
        std::vector<unsigned short> phrase;
        std::vector<char> lens;
    };

    template <typename LenAt>
    int _matchPosition(const unsigned short* text, unsigned n, LenAt lenAt,
                       unsigned& phraseLen) const;
    // Splits a UTF-16 line into its blank-separated fields, up to the first
    // field that begins with '#'.
    static void _splitLine(const std::vector<unsigned short>& line,
                           std::vector<std::vector<unsigned short>>& fields);
    // ASCII blanks, and the ideographic space.
    static bool _isBlankspace1(unsigned short c) { return c == ' ' || c == '\t' || c == '\r'; }
    static bool _isBlankspace2(unsigned short c) { return c == 0x3000; }
    // Fills e.lens from the word fields after the phrase; the reason a line
    // is unusable, or null.
    static const char* _getPhraseArray(const std::vector<std::vector<unsigned short>>& fields,
                                       Entry& e);
    // The entry of one line of text; null when it is usable (or empty),
    // else the reason.
    static const char* _parseLine(const std::string& line, Entry& e);
    // Empty: no phrases, a table holding the logo only.
    void _clear();
    // Fills m_firstUnits from the trie.
    void _markFirstUnits();

    std::unique_ptr<DADLTrie> m_trie;
    // By code unit, whether some phrase starts with it: most text positions
    // start none, and are answered without a walk. Empty: not known.
    std::vector<uint64_t> m_firstUnits;
    std::string m_table;
    unsigned m_phraseCount = 0;
    unsigned m_skipped = 0;
    char m_version[DoubleArrayTrie::kMagicSize + 1] = {};
};

}  // namespace ws

#endif
