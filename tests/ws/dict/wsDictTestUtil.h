#ifndef ZEG_TESTS_WS_DICT_WSDICTTESTUTIL_H
#define ZEG_TESTS_WS_DICT_WSDICTTESTUTIL_H

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "ws/dict/wsCoreDict.h"
#include "wsTrieTestUtil.h"

namespace zeg_test {

// A word of a test dictionary: UTF-8 text, record weight, extra bytes.
struct TestWord {
    std::string text;
    float weight;
    std::string extra;
};

// Adds a word given in UTF-8; returns add's result.
inline int addWord(ws::DATDict& d, const std::string& utf8, float weight,
                   const std::string& extra = "") {
    std::vector<unsigned char> bytes(extra.begin(), extra.end());
    return d.add(utf8.data(), static_cast<unsigned>(utf8.size()), &weight,
                 bytes.empty() ? nullptr : bytes.data(), static_cast<unsigned>(bytes.size()));
}

// The bytes writeDict(FILE*) produces.
inline std::string serializeDict(ws::DATDict& d) {
    return TempDir::written([&](std::FILE* f) { d.writeDict(f); });
}

// Loads `bytes` through a stream; returns loadDict's code.
inline int loadDictFromStream(ws::DATDict& d, const std::string& bytes) {
    return d.loadDict(TempDir::stream(bytes).get());
}

// The id of a UTF-8 word through the UTF-16 lookup.
inline int wordId(const ws::DATDict& d, const std::string& utf8) {
    const std::string key = u16(utf8);
    std::vector<unsigned short> units(key.size() / 2);
    if (!units.empty()) std::memcpy(units.data(), key.data(), key.size());
    return d.getWordId(units.data(), static_cast<unsigned>(units.size()));
}

// The record weight of a UTF-8 word, or -1000 when absent.
inline float weightOf(const ws::DATDict& d, const std::string& utf8) {
    const std::string key = u16(utf8);
    const char* r = d.match(key.data(), static_cast<unsigned>(key.size()));
    return r != nullptr ? ws::DATDict::recordWeight(r) : -1000.0f;
}

// (pos, id) pairs of matchAll over a UTF-8 text.
template <typename Dict, typename... Mask>
std::vector<std::pair<int, int>> dictMatchAll(const Dict& d, const std::string& utf8,
                                              Mask... mask) {
    const std::string key = u16(utf8);
    ws::TrieBase::MatchInfo out[64];
    const int n = d.matchAll(key.data(), static_cast<unsigned>(key.size()), out, 64, mask...);
    std::vector<std::pair<int, int>> result;
    for (int i = 0; i < n; ++i) result.emplace_back(out[i].pos, out[i].value);
    return result;
}

// Builds a core dictionary of `words` and writes it as `name` in `dir`;
// returns its path.
inline std::string writeCoreDict(const TempDir& dir, const std::string& name,
                                 const std::vector<TestWord>& words, double totalFreq = 0) {
    ws::WsCoreDict d;
    for (const TestWord& w : words) addWord(d, w.text, w.weight, w.extra);
    d.setTotalFreq(totalFreq);
    const std::string path = dir.file(name);
    d.writeDict(path.c_str());
    return path;
}

}  // namespace zeg_test

#endif
