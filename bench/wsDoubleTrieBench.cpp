// Building a two-trie from a full-size word list and prefix lookups over
// Chinese text. The word list is python3-jieba's dictionary (Debian
// package); set ZEG_JIEBA_DICT to use another file of the same format.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsDoubleTrie.h"

namespace {

const char kDefaultDict[] = "/usr/lib/python3/dist-packages/jieba/dict.txt";

// The first field of every line, as UTF-16LE bytes.
const std::vector<std::string>& words() {
    static const std::vector<std::string> list = [] {
        const char* path = std::getenv("ZEG_JIEBA_DICT");
        std::ifstream in(path != nullptr ? path : kDefaultDict);
        std::vector<std::string> out;
        std::string line;
        while (std::getline(in, line)) {
            const std::string word = line.substr(0, line.find(' '));
            const auto units = EncodeConverter::utf8ToUtf16(
                EncodeConverter::Utf8String(word.begin(), word.end()));
            out.emplace_back(reinterpret_cast<const char*>(units.data()), units.size() * 2);
        }
        return out;
    }();
    return list;
}

void build(ws::DoubleTrie& trie) {
    trie.init();
    int value = 1;
    for (const std::string& w : words())
        trie.add(reinterpret_cast<const unsigned char*>(w.data()), static_cast<int>(w.size()),
                 value++);
}

void BM_BuildDoubleTrieFromJieba(benchmark::State& state) {
    if (words().empty()) {
        state.SkipWithError("no word list (install python3-jieba or set ZEG_JIEBA_DICT)");
        return;
    }
    for (auto _ : state) {
        ws::DoubleTrie trie;
        build(trie);
        benchmark::DoNotOptimize(trie.entryCount());
    }
    state.counters["keys"] = static_cast<double>(words().size());
}
BENCHMARK(BM_BuildDoubleTrieFromJieba)->Iterations(1)->Unit(benchmark::kMillisecond);

// matchAll at every character of a text made of dictionary words, as the
// segmenter does.
void BM_MatchAllOverChineseText(benchmark::State& state) {
    if (words().empty()) {
        state.SkipWithError("no word list");
        return;
    }
    static ws::DoubleTrie trie;
    static bool built = false;
    if (!built) {
        build(trie);
        built = true;
    }
    std::mt19937 rng(1);
    std::string text;
    while (text.size() < (1u << 20)) text += words()[rng() % words().size()];
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const int len = static_cast<int>(text.size());
    ws::TrieBase::MatchInfo out[32];
    int64_t lookups = 0;
    for (auto _ : state) {
        for (int i = 0; i + 1 < len; i += 2) {
            benchmark::DoNotOptimize(trie.matchAll(bytes + i, std::min(64, len - i), out, 32));
            ++lookups;
        }
    }
    state.SetItemsProcessed(lookups);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * len);
}
BENCHMARK(BM_MatchAllOverChineseText)->Unit(benchmark::kMillisecond);

}  // namespace
