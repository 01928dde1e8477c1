#ifndef ZEG_NORMALIZE_CNORMHASHTABLE_H
#define ZEG_NORMALIZE_CNORMHASHTABLE_H

namespace normalize {

// The one-way string hash that puts the words of a query into canonical
// order. Five independent hash functions (hashType 0-4) share one crypt
// table of 1280 entries, five blocks of 256, built at compile time by the
// published rule (seed 0x00100001, seed := (seed * 125 + 3) mod 0x2AAAAB).
// Bytes are taken through ASCII upper-casing, so words that differ only in
// ASCII case hash alike. Stateless and read-only: safe from any thread.
class CNormHashtable {
public:
    static constexpr unsigned int kTableSize = 1280;

    // The hash of the zero-terminated bytes `s` under function `hashType`.
    // The empty string hashes to 0x7FED7FED. A null `s` counts as empty.
    // REQUIRES: hashType <= 4 (a larger one is taken modulo 5, so the table
    // is never read out of bounds).
    static unsigned int hashString(const char* s, unsigned int hashType);

    // Entry `index` of the crypt table; only the low 32 bits are used.
    // REQUIRES: index < kTableSize.
    static unsigned long long cryptTableEntry(unsigned int index);
};

}  // namespace normalize

#endif
