#ifndef ZEG_NORMALIZE_SYNONYMFILTER_H
#define ZEG_NORMALIZE_SYNONYMFILTER_H

#include <bitset>
#include <cstddef>
#include <map>
#include <string>

namespace normalize {

// A one-hash Bloom filter over the synonym map's keys, so that a word that
// is no key (nearly every word) costs one pass over its bytes instead of a
// copy, a case fold and a tree walk. It hashes the word as the keys were
// folded (ASCII letters upper-cased), so a "no" is exact and a "maybe" is
// settled by the map.
// Not thread-safe: one per worker.
class SynonymFilter {
public:
    // Rebuilds from `keys` unless it was built from a map of this size at
    // this wordListsGeneration().
    void refresh(const std::map<std::string, std::string>& keys);
    // False when `word`, folded, is certainly no key of the map.
    bool mayContain(const std::string& word) const { return m_bits[slot(word)]; }

private:
    static constexpr std::size_t kBits = 1 << 16;
    static constexpr std::size_t kNotBuilt = static_cast<std::size_t>(-1);

    static std::size_t slot(const std::string& word);

    std::bitset<kBits> m_bits;
    std::size_t m_keyCount = kNotBuilt;
    unsigned m_generation = 0;
};

}  // namespace normalize

#endif
