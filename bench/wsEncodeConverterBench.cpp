// Throughput of the segmenter's own UTF-8 <-> UTF-16 conversion, which runs
// on every query twice (in and out) and on every dictionary key.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "ws/core/wsEncodeConverter.h"

namespace {

// A paragraph of ordinary news-style Chinese with full-width punctuation and
// a few ASCII digits and letters, as queries and documents mix them.
const char* const kParagraph =
    "\xE5\x8C\x97\xE4\xBA\xAC\xE5\xA4\xA7\xE5\xAD\xA6\xE5\x9B\xBE\xE4\xB9\xA6\xE9\xA6\x86"
    "\xE4\xBB\x8A\xE5\xB9\xB4\xE6\x96\xB0\xE5\xA2\x9E\xE4\xBA\x86 2024 "
    "\xE5\x86\x8C\xE4\xB8\xAD\xE6\x96\x87\xE5\x9B\xBE\xE4\xB9\xA6\xEF\xBC\x8C"
    "\xE8\xAF\xBB\xE8\x80\x85\xE5\x8F\xAF\xE4\xBB\xA5\xE9\x80\x9A\xE8\xBF\x87"
    " App \xE5\x9C\xA8\xE7\xBA\xBF\xE9\xA2\x84\xE7\xBA\xA6\xE5\x80\x9F\xE9\x98\x85"
    "\xE3\x80\x82\xE5\xA4\xA9\xE6\xB0\x94\xE9\xA2\x84\xE6\x8A\xA5\xE6\x98\xBE\xE7\xA4\xBA"
    "\xEF\xBC\x8C\xE6\x98\x8E\xE5\xA4\xA9\xE4\xB8\x8A\xE6\xB5\xB7\xE6\x9C\x89\xE5\xB0\x8F"
    "\xE9\x9B\xA8\xEF\xBC\x8C\xE6\xB0\x94\xE6\xB8\xA9 18 \xE5\x88\xB0 24 "
    "\xE5\xBA\xA6\xE3\x80\x82";

// About 1 MB of UTF-8.
std::string longText() {
    std::string text;
    while (text.size() < (1u << 20)) text += kParagraph;
    return text;
}

// Both directions report the bytes of the UTF-8 side, so the figures compare.
void BM_Utf8ToUtf16(benchmark::State& state) {
    const std::string text = longText();
    const unsigned char* in = reinterpret_cast<const unsigned char*>(text.data());
    std::vector<unsigned short> out(text.size() + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            EncodeConverter::utf8ToUtf16(in, text.size(), out.data(), out.size()));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_Utf16ToUtf8(benchmark::State& state) {
    const std::string text = longText();
    std::vector<unsigned short> wide(text.size() + 1);
    const int units = EncodeConverter::utf8ToUtf16(
        reinterpret_cast<const unsigned char*>(text.data()), text.size(), wide.data(), wide.size());
    std::vector<unsigned char> out(3 * static_cast<std::size_t>(units) + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(EncodeConverter::utf16ToUtf8(
            wide.data(), static_cast<unsigned long>(units), out.data(), out.size()));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

BENCHMARK(BM_Utf8ToUtf16);
BENCHMARK(BM_Utf16ToUtf8);

}  // namespace
