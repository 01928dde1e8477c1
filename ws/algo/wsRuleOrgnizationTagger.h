#ifndef ZEG_WS_ALGO_WSRULEORGNIZATIONTAGGER_H
#define ZEG_WS_ALGO_WSRULEORGNIZATIONTAGGER_H

#include <string>
#include <unordered_map>
#include <vector>

namespace ws {

class WsConfig;
struct TextSegmentation;

// Finds organisation names over the dictionary-only cut of a text
// (`seg.resultByDict`, which must be valid) and writes them as candidates
// into one new-word buffer. Its knowledge is four word lists, derived from
// tagged corpora (data/README.md says how):
//   ORGNIZATION_SUFFIX_DICT     "word TAB suffix-share [TAB whole-share]":
//                               words that end names (公司, 委员会, 大学);
//                               whole-share is how often the word alone is a
//                               name (国务院, 新华社)
//   ORGNIZATION_ZONE_DICT       place words that begin names (北京, 中国)
//   ORGNIZATION_TEZHI_DICT      distinctive words that begin names (人民, 科技)
//   ORGNIZATION_INNERWORD_DICT  other words seen inside names
// Rules, for each suffix word whose suffix-share reaches the minimum:
// walk back over the words before it while each is in one of the lists, at
// most kMaxWords words and kMaxLength code units in all; the candidate runs
// from the furthest word that may begin a name (zone or tezhi) to the end of
// the suffix. A suffix with no such word before it is no name; a word whose
// whole-share reaches kMinWholeShare is a name by itself. Where two
// candidates start at one position the longer stays. How a candidate fares
// against the dictionary's cut is the lattice's business (the buffer's
// threshold is its log-frequency).
// Thread safety: read-only after init, except a key buffer reused per
// lookup: one text at a time.
class RuleOrgnizationTagger {
public:
    // Defaults of ORGNIZATION_MIN_SUFFIX_SHARE and ORGNIZATION_MIN_WHOLE_SHARE.
    static constexpr float kMinSuffixShare = 0.1f;
    static constexpr float kMinWholeShare = 0.3f;
    static constexpr unsigned int kMaxWords = 6;
    static constexpr unsigned int kMaxLength = 20;

    // Loads the four lists named by the options and remembers the buffer.
    // False, with each problem logged as FILE:LINE: reason, when a list
    // cannot be read, a line cannot be used, the suffix list names no word,
    // or bufferIndex is negative.
    bool init(const WsConfig& config, int bufferIndex);

    // Writes the candidates of `seg` into its buffer. Returns the number found.
    int tag(TextSegmentation& seg);

private:
    enum Kind : unsigned char { kSuffix = 1, kZone = 2, kTezhi = 4, kInner = 8 };
    struct Entry {
        unsigned char kinds = 0;
        float suffixShare = 0;
        float wholeShare = 0;
    };
    using Key = std::basic_string<unsigned short>;
    struct KeyHash {
        size_t operator()(const Key& k) const;
    };
    using Words = std::unordered_map<Key, Entry, KeyHash>;

    static bool _loadList(const std::string& path, Kind kind, Words& words);
    static bool _parseLine(const std::string& line, Kind kind, Words& words, std::string& why);
    const Entry* _find(const unsigned short* word, unsigned int len);
    void _add(TextSegmentation& seg, unsigned int start, unsigned int len, int& found) const;

    Words m_words;
    int m_buffer = -1;
    float m_minSuffixShare = kMinSuffixShare;
    float m_minWholeShare = kMinWholeShare;
    Key m_key;                        // reused lookup key
    std::vector<unsigned int> m_starts;  // word starts of the current text, then its length
};

}  // namespace ws

#endif
