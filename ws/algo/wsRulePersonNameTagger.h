#ifndef ZEG_WS_ALGO_WSRULEPERSONNAMETAGGER_H
#define ZEG_WS_ALGO_WSRULEPERSONNAMETAGGER_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ws {

class CharFreqDict;
class WsConfig;
struct TextSegmentation;

// Finds person names by rules over the dictionary-only segmentation
// (SegmentResultByDict, which must be valid) and writes them as candidates
// into one new-word buffer.
//
// Rules, tried at each word start s of the dictionary segmentation:
// 1. Chinese name: a family name F (one or two characters) listed with a
//    count of at least the family threshold, followed by a given name of
//    two characters, else one. Each given-name character must be listed as
//    one, and the character frequencies must not make it a word of its own
//    (its in-word probability at least the in-word threshold). The name is
//    taken when
//      - a context word touches it: a title or similar word listed as a
//        left context ends right before s, or a title or verb of speech
//        listed as a right context starts right after the name; or
//      - F is a common family name (count at least the high threshold)
//        and the dictionary segmentation has no word at s longer than F
//        (so the name is no dictionary word either).
//    A two-character given name whose second character starts a right
//    context word is cut back to one.
// 2. Transliterated name: a run of 3 .. 10 characters that are all listed
//    transliteration characters (the middle dot included), starting at s
//    and ending at a word end of the dictionary segmentation.
// A name starts no later rule inside it; the scan goes on after it.
//
// Configuration keys (lists are UTF-8, "<entry>[<tab><count>]" a line, read
// in pieces of at most 1023 bytes):
//   CHN_FAMILY_NAME_DICT                  family names with counts
//   CHN_FAMILY_NAME_PROB_THRESHOLD        least count of a usable family name (1)
//   CHN_FAMILY_NAME_PROB_HIGH_THRESHOLD   least count of a common one (100)
//   CHN_GIVEN_NAME_DICT                   given-name characters
//   CHAR_IN_WORD_PROB_THRESHOLD           least in-word probability of one (0.5)
//   FULL_CONTEXT_DICT                     words that may come right before a name
//   RIGHT_CONTEXT_DICT                    words that may come right after one
//   FOREIGN_NAME_CHAR_DICT                transliteration characters
// Context words have one to three characters; longer entries are skipped.
//
// Not copyable. Thread safety: once initialised only read; tag writes only
// into the segmentation it is given, so threads may share one tagger.
class RulePersonNameTagger {
public:
    static constexpr unsigned kMaxForeignLength = 10;
    static constexpr unsigned kMaxContextLength = 3;

    // `charFreq` (not owned, may be null: then every character counts as
    // an in-word one) must outlive the tagger.
    explicit RulePersonNameTagger(const CharFreqDict* charFreq);
    RulePersonNameTagger(const RulePersonNameTagger&) = delete;
    RulePersonNameTagger& operator=(const RulePersonNameTagger&) = delete;

    // Reads the lists and thresholds and keeps the buffer index. False,
    // logged, when a named list cannot be read or the family list is
    // missing. Lists not named stay empty (their rules never fire).
    bool init(const WsConfig& config, int bufferIndex);

    // Writes the names found in seg.text into the buffer; returns how many.
    // Nothing when the dictionary segmentation is not valid. Allocates
    // nothing.
    int tag(TextSegmentation& seg) const;

private:
    // Length of the name that starts at s (0: none).
    unsigned _chineseName(const TextSegmentation& seg, unsigned s) const;
    unsigned _foreignName(const TextSegmentation& seg, unsigned s) const;
    unsigned _givenLength(const unsigned short* text, unsigned n, unsigned at) const;
    bool _givenChar(unsigned short c) const;
    bool _leftContext(const unsigned short* text, unsigned s) const;
    bool _rightContext(const unsigned short* text, unsigned n, unsigned e) const;

    static uint64_t _pack(const unsigned short* units, unsigned len);

    const CharFreqDict* m_charFreq;
    int m_bufferIndex = -1;
    long m_familyMin = 1;
    long m_familyHigh = 100;
    float m_inWordMin = 0.5f;
    std::unordered_map<uint64_t, long> m_family;  // packed 1-2 characters -> count
    std::vector<unsigned char> m_given;           // one flag per code unit
    std::vector<unsigned char> m_foreign;         // one flag per code unit
    std::unordered_set<uint64_t> m_left;          // packed context words
    std::unordered_set<uint64_t> m_right;
};

}  // namespace ws

#endif
