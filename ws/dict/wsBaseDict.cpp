#include "ws/dict/wsBaseDict.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace ws {

namespace {

const char kBaseDictMagic[] = "BaseDict_v_1_0";

}  // namespace

BaseDict::BaseDict() : DATDict(kBaseDictMagic) {}

BaseDict::~BaseDict() = default;

int BaseDict::loadDict(const char* path) {
    if (isLoaded()) return 0;
    return DATDict::loadDict(path);
}

const char* BaseDict::operator[](unsigned id) const {
    if (id == 0 || id >= static_cast<uint32_t>(header().used) || id >= header().dataMax)
        return nullptr;
    return area() + static_cast<size_t>(id) * kEntryBytes;
}

int BaseDict::getValue(int, unsigned char** extra, float&) const {
    if (extra != nullptr) *extra = nullptr;
    return 0;
}

float BaseDict::valueAt(unsigned id) const {
    const char* entry = (*this)[id];
    return entry != nullptr ? recordWeight(entry) : 0.0f;
}

int BaseDict::findValue(float value) const {
    for (int i = 1; i < header().used; ++i) {
        const char* entry = (*this)[static_cast<unsigned>(i)];
        if (entry != nullptr && recordWeight(entry) == value) return i;
    }
    return 0;
}

int BaseDict::appendValue(float value) {
    const uint32_t index = static_cast<uint32_t>(header().used);
    growArea(index >= header().dataMax ? header().dataMax + kAreaStep : header().dataMax);
    std::memcpy(writableArea() + static_cast<size_t>(index) * kEntryBytes, &value, sizeof value);
    header().used += 1;
    return static_cast<int>(index);
}

int BaseDict::add(const char*, unsigned, float*, unsigned char*, unsigned) { return 0; }

int BaseDict::add(unsigned short*, unsigned, float*, unsigned char*, unsigned) { return 0; }

int BaseDict::add(const char* key, unsigned len, float& value) {
    if (isReadOnly()) return 0;
    if (len > INT_MAX) return 0;
    const auto* k = reinterpret_cast<const unsigned char*>(key);
    const int existing = trie().match(k, static_cast<int>(len));
    if (existing > 0 && (*this)[static_cast<unsigned>(existing)] != nullptr &&
        valueAt(static_cast<unsigned>(existing)) == value)
        return existing;
    int index = findValue(value);
    if (index == 0) {
        if (header().used >= INT32_MAX || header().dataMax > INT32_MAX - kAreaStep) return 0;
        index = appendValue(value);
    }
    trie().add(k, static_cast<int>(len), index);
    header().maxKeyLen = std::max(header().maxKeyLen, len);
    return index;
}

}  // namespace ws
