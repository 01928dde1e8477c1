#include "normalize/CNormHashtable.h"

#include <array>

#include "ws/core/wsHot.h"

namespace normalize {

namespace {

using CryptTable = std::array<unsigned long long, CNormHashtable::kTableSize>;

constexpr unsigned long nextSeed(unsigned long seed) { return (seed * 125 + 3) % 0x2AAAAB; }

// Column by column: the five blocks of one index take consecutive seeds.
constexpr CryptTable makeCryptTable() {
    CryptTable table{};
    unsigned long seed = 0x00100001;
    for (unsigned int i = 0; i < 256; ++i) {
        for (unsigned int block = 0; block < 5; ++block) {
            seed = nextSeed(seed);
            const unsigned long high = (seed & 0xFFFF) << 16;
            seed = nextSeed(seed);
            const unsigned long low = seed & 0xFFFF;
            table[block * 256 + i] = high | low;
        }
    }
    return table;
}

constexpr CryptTable CRYPTTABLE = makeCryptTable();

// Only ASCII letters: the words are GBK, and a locale must not change a key.
constexpr unsigned int upperByte(unsigned char c) {
    return (c >= 'a' && c <= 'z') ? c - 'a' + 'A' : c;
}

}  // namespace

WS_HOT unsigned int CNormHashtable::hashString(const char* s, unsigned int hashType) {
    const unsigned int block = (hashType % 5) << 8;
    unsigned int hash = 0x7FED7FED;
    unsigned int key = 0xEEEEEEEE;
    if (s == nullptr) return hash;
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(s); *p != 0; ++p) {
        const unsigned int c = upperByte(*p);
        hash = static_cast<unsigned int>(CRYPTTABLE[block + c]) ^ (hash + key);
        key = c + hash + key + (key << 5) + 3;
    }
    return hash;
}

unsigned long long CNormHashtable::cryptTableEntry(unsigned int index) {
    return CRYPTTABLE[index % kTableSize];
}

}  // namespace normalize
