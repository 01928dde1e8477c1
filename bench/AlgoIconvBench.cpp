// Throughput of the converters the normaliser keeps open for its whole life.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "norm_utility/AlgoIconv.h"

namespace {

// A typical query: Chinese with some ASCII, 30 bytes of UTF-8.
const std::string kQuery = "\xE5\x8C\x97\xE4\xBA\xAC\xE5\xA4\xA7\xE5\xAD\xA6 mp3 "
                           "\xE4\xB8\x8B\xE8\xBD\xBD\xE5\x85\x8D\xE8\xB4\xB9";

void convertRepeatedly(benchmark::State& state, const char* from, const char* to,
                       const std::string& input) {
    norm_utility::AlgoIconv cd;
    if (cd.open(from, to) != 0) {
        state.SkipWithError("iconv_open failed");
        return;
    }
    std::vector<char> out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cd.conv(input.data(), static_cast<int>(input.size()), out));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * input.size()));
}

void BM_Utf8ToGbkQuery(benchmark::State& state) { convertRepeatedly(state, "utf-8", "gbk", kQuery); }

void BM_Utf8ToGbkLongText(benchmark::State& state) {
    std::string text;
    while (text.size() < (1u << 20)) text += kQuery;
    convertRepeatedly(state, "utf-8", "gbk", text);
}

void BM_GbkToUtf8Query(benchmark::State& state) {
    std::vector<char> gbk;
    norm_utility::AlgoIconv cd;
    cd.open("utf-8", "gbk");
    const int n = cd.conv(kQuery.data(), static_cast<int>(kQuery.size()), gbk);
    convertRepeatedly(state, "gbk", "utf-8", std::string(gbk.data(), static_cast<std::size_t>(n)));
}

BENCHMARK(BM_Utf8ToGbkQuery);
BENCHMARK(BM_Utf8ToGbkLongText);
BENCHMARK(BM_GbkToUtf8Query);

}  // namespace
