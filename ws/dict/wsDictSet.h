#ifndef ZEG_WS_DICT_WSDICTSET_H
#define ZEG_WS_DICT_WSDICTSET_H

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ws/dict/wsAlnumDict.h"
#include "ws/dict/wsCoreDict.h"
#include "ws/dict/wsSegmentDict.h"

namespace ws {

// The word dictionaries the segmenter looks words up in: one base
// dictionary, one dictionary of letter and digit words, and any number of
// user dictionaries, all mapped from files.
//
// Every word has one global id: its dictionary's offset plus its local id
// (record offset). Offsets run base, alnum, user 1, user 2, ..., each the
// sum of the dataMax of the dictionaries before it, with one end entry.
//
// Lookups take a mask of dictionary kinds: kBase (1), kAlnum (2), kUser (4).
// Keys are UTF-16 text as little-endian bytes; `len` counts bytes in match
// and matchAll, UTF-16 units in getWordId.
//
// Not copyable (owns its dictionaries). Thread safety: loadDict and
// clearData need exclusive use; once loaded, every lookup only reads and
// may run from several threads at once.
class WsDictSet {
public:
    static constexpr unsigned char kBase = 1;
    static constexpr unsigned char kAlnum = 2;
    static constexpr unsigned char kUser = 4;
    // matchAll works on the stack; it reports at most this many matches.
    static constexpr unsigned kMaxMatches = 256;

    WsDictSet();
    ~WsDictSet();
    WsDictSet(const WsDictSet&) = delete;
    WsDictSet& operator=(const WsDictSet&) = delete;

    // Loads (maps) the base, alnum and user dictionaries, in that order,
    // clearing whatever was loaded. 0, or the code of the first dictionary
    // that fails (the set is then empty and the failure is logged).
    int loadDict(const std::string& basePath, const std::string& alnumPath,
                 const std::vector<std::string>& userPaths);
    void clearData();

    // The dictionary of global `id` and the local id there; null for a
    // negative id or one at or past the end entry.
    WsCoreDict* whichDict(int id, int& localId) const;

    // The record of global `id`, as DATDict::getValue; 0 when unknown.
    int getValue(int id, unsigned char** value, float& weight) const;
    // The user value of global `id`, as WsCoreDict::getUsrValue.
    int getUsrValue(int id, unsigned char** usr) const;

    // The record of the key: among user dictionaries the one of greatest
    // weight (the earlier on a tie), else the base's, else the alnum's; null.
    const char* match(const char* key, unsigned len, unsigned char mask) const;
    // Every word of the masked dictionaries that is a prefix of the key,
    // one per `pos` (rising), global ids as values, at most
    // min(max, kMaxMatches) of them. On equal `pos`: between user
    // dictionaries the greater weight wins and the later one on a tie; a
    // user word wins over a base word, which wins over an alnum word.
    int matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out, unsigned max,
                 unsigned char mask) const;
    // The same, with each match's record in `records` (never null; read it
    // with DATDict::recordWeight and recordValue, as getValue would).
    int matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out, const char** records,
                 unsigned max, unsigned char mask) const;
    // The global id of the word (`len` UTF-16 units), chosen as in match;
    // -1 when it is in none of the masked dictionaries.
    int getWordId(const unsigned short* word, unsigned len, unsigned char mask) const;

    // The readers of WsCoreDict, through the base dictionary; -1 without one.
    int getProp(const unsigned char* value, std::vector<short>& props) const;
    int getPropWght(const unsigned char* value, std::vector<short>& props,
                    std::vector<float>& weights) const;
    int getPropWght(const unsigned char* value, std::vector<WordType>& types) const;
    int getGran(const unsigned char* value, std::vector<int>& gran) const;
    int getSemItems(const unsigned char* value, std::vector<SemItem>& sems) const;

    bool isLoaded() const { return m_loaded; }
    double getTotalFreq() const { return m_totalFreq; }
    const std::vector<int>& offsets() const { return m_offsets; }
    const WsSegmentDict* baseDict() const { return m_base.get(); }
    const WsAlnumDict* alnumDict() const { return m_alnum.get(); }
    size_t userDictCount() const { return m_users.size(); }

private:
    // One dictionary's matches with global ids and their records.
    struct Matches {
        TrieBase::MatchInfo* info;
        const char** record;
        int count;
    };

    bool buildOffsets();
    void buildFirstUnits();
    // The dictionaries of `mask` as bits in merge order (users, base, alnum).
    unsigned dictBits(unsigned char mask) const;
    // matchAll over the dictionaries of `dicts` (bits in merge order) when
    // the set has its first-character table, else over those of `mask`.
    // Kept apart: its lists take 8 KB of stack that the one-dictionary case
    // does without.
    int mergeAll(const char* key, unsigned len, TrieBase::MatchInfo* out, const char** records,
                 unsigned max, unsigned char mask, unsigned dicts) const;
    // The k-th dictionary in offset order (base, alnum, users).
    WsCoreDict* dictAt(size_t k) const;
    // The dictionary at `at` in merge order (users, base, alnum), and its offset.
    const WsCoreDict& mergeDict(size_t at) const;
    int mergeOffset(size_t at) const;
    // The matches of one dictionary, with global ids and records.
    static void collect(const WsCoreDict& dict, int offset, const char* key, unsigned len,
                        unsigned max, Matches& out);
    // The same, when the dictionary's filter has already let the key through.
    static void collectPassed(const WsCoreDict& dict, int offset, const char* key, unsigned len,
                              unsigned max, Matches& out);
    // Merges `list` (the earlier dictionaries) and `next` into `out` by
    // rising pos, one entry per pos. On equal pos, with `userRule` the
    // greater weight wins and `next` on a tie; without it `list` wins.
    static void merge(const Matches& list, const Matches& next, bool userRule, unsigned max,
                      Matches& out);

    bool m_loaded = false;
    std::unique_ptr<WsSegmentDict> m_base;
    std::unique_ptr<WsAlnumDict> m_alnum;
    std::vector<std::unique_ptr<WsCoreDict>> m_users;
    std::vector<int> m_offsets;
    double m_totalFreq = 0.0;
    // By a key's first UTF-16 unit, the dictionaries (bits in merge order)
    // whose filters let it through: one look-up instead of one per
    // dictionary. Built when the set has at most kFirstUnitDicts.
    static constexpr size_t kFirstUnitDicts = 8;
    static constexpr size_t kFirstUnits = 65536;
    std::vector<uint8_t> m_firstUnitDicts;
    // Sharper, for keys of two units or more, where the first unit leaves
    // several: each small dictionary's bit is set in m_shortDicts[unit] when
    // a word of less than two units may start such a key, and in
    // m_pairDicts[pairSlot(key)] for its words' first two units. The other
    // dictionaries' bits are in m_wholeDicts.
    static constexpr size_t kPairSlots = 65536;
    static size_t pairSlot(const unsigned char* key) {
        uint32_t v;
        std::memcpy(&v, key, sizeof v);
        return (v * 0x9E3779B1u) >> 16;
    }
    void buildPairs();
    std::vector<uint8_t> m_shortDicts;
    std::vector<uint8_t> m_pairDicts;
    unsigned m_wholeDicts = ~0u;
    static constexpr unsigned kMasks = 8;
    unsigned m_maskDicts[kMasks] = {};  // dictBits by mask
};

}  // namespace ws

#endif
