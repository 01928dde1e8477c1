#include "normalize/SynonymFilter.h"

#include <cstdint>

#include "normalize/WordLists.h"
#include "ws/core/wsHot.h"

namespace normalize {

void SynonymFilter::refresh(const std::map<std::string, std::string>& keys) {
    const unsigned generation = wordListsGeneration();
    if (m_keyCount == keys.size() && m_generation == generation) return;
    m_bits.reset();
    for (const auto& entry : keys) m_bits[slot(entry.first)] = true;
    m_keyCount = keys.size();
    m_generation = generation;
}

// FNV-1a over the bytes with ASCII letters upper-cased, folded to 16 bits.
WS_HOT std::size_t SynonymFilter::slot(const std::string& word) {
    uint32_t h = 2166136261u;
    for (const char c : word) {
        auto b = static_cast<unsigned char>(c);
        if (b >= 'a' && b <= 'z') b = static_cast<unsigned char>(b - 32);
        h = (h ^ b) * 16777619u;
    }
    return (h ^ h >> 16) & (kBits - 1);
}

}  // namespace normalize
