// Loading the default dictionaries (build/data/, made by the zeg_data
// target) and the dictionary set's prefix lookups over Chinese text, as the
// segmenter does them: one matchAll per text position, mask 5.
// The text is python3-jieba's words drawn by their frequencies.
#include <benchmark/benchmark.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsDictSet.h"

namespace {

const std::string kData = ZEG_DATA_DIR;
const char kJiebaDict[] = "/usr/lib/python3/dist-packages/jieba/dict.txt";

// About a million UTF-16 units of words drawn by frequency (seed fixed).
const EncodeConverter::Utf16String& text() {
    static const EncodeConverter::Utf16String units = [] {
        std::ifstream in(kJiebaDict);
        std::vector<std::string> words;
        std::vector<double> freqs;
        std::string word, tag;
        double freq = 0;
        while (in >> word >> freq >> tag) {
            words.push_back(word);
            freqs.push_back(freq);
        }
        EncodeConverter::Utf16String out;
        if (words.empty()) return out;
        std::mt19937 rng(1);
        std::discrete_distribution<size_t> pick(freqs.begin(), freqs.end());
        while (out.size() < (1u << 20)) {
            const std::string& w = words[pick(rng)];
            out += EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(w.begin(), w.end()));
        }
        return out;
    }();
    return units;
}

bool loadSet(ws::WsDictSet& set, benchmark::State& state) {
    if (set.loadDict(kData + "/base.dict", kData + "/alnum.dict", {}) == 0) return true;
    state.SkipWithError("no default dictionaries (build the zeg_data target)");
    return false;
}

// Each round maps the file afresh: the mapping is undone with its last user.
void BM_LoadBaseDictMapped(benchmark::State& state) {
    const std::string path = kData + "/base.dict";
    for (auto _ : state) {
        ws::WsSegmentDict dict;
        if (dict.loadDict(path.c_str()) != 0) {
            state.SkipWithError("no base.dict (build the zeg_data target)");
            return;
        }
        benchmark::DoNotOptimize(dict.getDataMax());
    }
}
BENCHMARK(BM_LoadBaseDictMapped)->Unit(benchmark::kMicrosecond);

void BM_LoadDictSet(benchmark::State& state) {
    for (auto _ : state) {
        ws::WsDictSet set;
        if (!loadSet(set, state)) return;
    }
}
BENCHMARK(BM_LoadDictSet)->Unit(benchmark::kMicrosecond);

void BM_DictSetMatchAll(benchmark::State& state) {
    ws::WsDictSet set;
    if (!loadSet(set, state)) return;
    const EncodeConverter::Utf16String& units = text();
    const char* bytes = reinterpret_cast<const char*>(units.data());
    const size_t n = units.size();
    ws::TrieBase::MatchInfo out[32];
    int64_t calls = 0;
    for (auto _ : state) {
        for (size_t p = 0; p < n; ++p) {
            benchmark::DoNotOptimize(
                set.matchAll(bytes + 2 * p, static_cast<unsigned>(2 * (n - p)), out, 32, 5));
        }
        calls += static_cast<int64_t>(n);
    }
    state.SetItemsProcessed(calls);
}
BENCHMARK(BM_DictSetMatchAll)->Unit(benchmark::kMillisecond);

}  // namespace
