#ifndef ZEG_WS_DICT_WSCHARFREQDICT_H
#define ZEG_WS_DICT_WSCHARFREQDICT_H

#include <string>
#include <vector>

namespace ws {

// What the dictionary knows of one UTF-16 code unit. `character` is 0 when
// no line of the file named it; the counts are then 0 and the
// probabilities unused. Each probability is its count over the total
// alone + first + middle + final (NaN for a total of 0).
struct CharFreqEntry {
    unsigned short character = 0;
    int aloneCount = 0;
    int firstCount = 0;
    int middleCount = 0;
    int finalCount = 0;
    int inWordCount = 0;  // first + middle + final
    float aloneProb = 0;
    float firstProb = 0;
    float middleProb = 0;
    float finalProb = 0;
    float inWordProb = 0;
    std::string text;  // unused; always empty
};

// How likely each character (one UTF-16 code unit) is to stand alone as a
// one-character word, and to occur inside a longer word as its first, a
// middle or its final character. Loaded from a text file of counts, one
// line per character:
//   <character> <alone> <first> <middle> <final>
// fields separated by spaces or tabs (a trailing carriage return is
// tolerated), read in pieces of at most 1023 bytes. A table entry per code
// unit 0 .. 0xFFFE makes every lookup two array accesses (an index per
// unit, then the entries of the characters the file names); 0xFFFF has none.
// Not copyable (a 65535-entry index). Thread safety: lookups only read and
// may run concurrently once loading is over; loadText and setThreshold need
// exclusive use.
class CharFreqDict {
public:
    static constexpr unsigned int kTableSize = 65535;
    // The fields a line needs: character, alone, first, middle, final.
    static constexpr size_t kFields = 5;
    // One field of a line, [begin, end).
    struct Field {
        const char* begin;
        const char* end;
    };

    // Allocates the empty table; when memory runs out, logs "Out of Memory"
    // and stays without a table (every lookup then gives the defaults and
    // every load fails).
    CharFreqDict();
    CharFreqDict(const CharFreqDict&) = delete;
    CharFreqDict& operator=(const CharFreqDict&) = delete;

    // Reads the counts at `path` into the table; a later line for a
    // character overwrites an earlier one. False, with an error logged, when
    // the file cannot be opened, a line has fewer than five fields, or its
    // first field is not a character with an entry. A failed load keeps the
    // entries of the lines read before the faulty one.
    bool loadText(const char* path);

    // charInWord's bound; 0.8 until set.
    void setThreshold(float threshold) { m_threshold = threshold; }
    float getThreshold() const { return m_threshold; }

    // The entry of `code`; an empty entry for 0xFFFF and beyond.
    const CharFreqEntry& operator[](unsigned int code) const {
        return code < m_index.size() ? m_entries[m_index[code]] : kNoEntry;
    }

    // Probabilities of `c` standing alone, occurring in a word, and being a
    // word's first, a middle or its final character. A character without a
    // line gives 0.5 (alone, in a word) and 1/6 (first, middle, final).
    float getAloneCharProb(unsigned short c) const;
    float getCharInWordProb(unsigned short c) const;
    float getFirstCharProb(unsigned short c) const;
    float getMiddleCharProb(unsigned short c) const;
    float getFinalCharProb(unsigned short c) const;

    // The same for the first character of the UTF-8 text `s`; an empty or
    // undecodable text asks about code unit 0, which has no line.
    float getAloneCharProb(const std::string& s) const;
    float getCharInWordProb(const std::string& s) const;
    float getFirstCharProb(const std::string& s) const;
    float getMiddleCharProb(const std::string& s) const;
    float getFinalCharProb(const std::string& s) const;

    // True when getCharInWordProb(c) is strictly above the threshold.
    bool charInWord(unsigned short c) const { return getCharInWordProb(c) > m_threshold; }

    // Logs every known entry at info level, in code order: the character in
    // UTF-8, the alone and in-word counts and probabilities.
    void print() const;

private:
    static const CharFreqEntry kNoEntry;

    // Sets the entry of the line's character field and four counts; false,
    // logged, when the character has no entry.
    bool _setEntry(const Field& character, const int* counts, const char* path);
    // Reserves entries for the lines the file at `path` can hold.
    void _reserveFor(const char* path);
    // The probability `field` of c's entry, or `def` when c has no line.
    float _prob(unsigned short c, float CharFreqEntry::*field, float def) const;
    // The first character of `s` as one code unit; 0 when there is none.
    static unsigned short _firstUnit(const std::string& s);
    static unsigned short _firstUnit(const char* begin, const char* end);

    float m_threshold = 0.8f;
    // Entry 0 is the empty one every unnamed unit points at; a full table
    // of entries would cost megabytes and their zeroing at every start.
    std::vector<unsigned short> m_index;
    std::vector<CharFreqEntry> m_entries;
};

}  // namespace ws

#endif
