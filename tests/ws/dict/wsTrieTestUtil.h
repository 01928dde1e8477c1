#ifndef ZEG_TESTS_WS_DICT_WSTRIETESTUTIL_H
#define ZEG_TESTS_WS_DICT_WSTRIETESTUTIL_H

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsTrieBase.h"

namespace zeg_test {

// The little-endian UTF-16 bytes of a UTF-8 text: the dictionaries' keys.
inline std::string u16(const std::string& utf8) {
    const EncodeConverter::Utf16String units = EncodeConverter::utf8ToUtf16(
        EncodeConverter::Utf8String(utf8.begin(), utf8.end()));
    std::string bytes;
    for (unsigned short u : units) {
        bytes.push_back(static_cast<char>(u & 0xFF));
        bytes.push_back(static_cast<char>(u >> 8));
    }
    return bytes;
}

inline const unsigned char* bytesOf(const std::string& s) {
    return reinterpret_cast<const unsigned char*>(s.data());
}

inline int match(const ws::TrieBase& t, const std::string& key) {
    return t.match(bytesOf(key), static_cast<int>(key.size()));
}

inline int add(ws::TrieBase& t, const std::string& key, int value) {
    return t.add(bytesOf(key), static_cast<int>(key.size()), value);
}

// (pos, value) pairs of matchAll.
inline std::vector<std::pair<int, int>> matchAll(const ws::TrieBase& t, const std::string& key,
                                                 int max = 64) {
    std::vector<ws::TrieBase::MatchInfo> out(static_cast<size_t>(max));
    const int n = t.matchAll(bytesOf(key), static_cast<int>(key.size()), out.data(), max);
    std::vector<std::pair<int, int>> result;
    for (int i = 0; i < n; ++i) result.emplace_back(out[i].pos, out[i].value);
    return result;
}

// The bytes write(FILE*) produces.
inline std::string serialize(ws::TrieBase& t) {
    return TempDir::written([&](std::FILE* f) { t.write(f); });
}

// Loads `bytes` through a stream; returns the load result.
inline bool loadFromStream(ws::TrieBase& t, const std::string& bytes) {
    return t.load(TempDir::stream(bytes).get());
}

// An 8-byte aligned copy of some bytes, as a mapped file would be.
class AlignedBuffer {
public:
    explicit AlignedBuffer(const std::string& bytes) : m_words((bytes.size() + 7) / 8 + 1) {
        if (!bytes.empty()) std::memcpy(m_words.data(), bytes.data(), bytes.size());
        m_size = bytes.size();
    }
    char* data() { return reinterpret_cast<char*>(m_words.data()); }
    unsigned long size() const { return m_size; }

private:
    std::vector<unsigned long long> m_words;
    unsigned long m_size = 0;
};

}  // namespace zeg_test

#endif
