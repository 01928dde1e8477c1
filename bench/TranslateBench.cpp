// Cost of the per-query character translation, every mode bit set.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "norm_utility/AlgoIconv.h"
#include "normalize/Translate.h"
#include "normalize/WordLists.h"

namespace {

constexpr int kAllBits = 2 | 4 | 8 | 16 | 32;

// Traditional and simplified characters, full-width letters and digits, an
// ideographic space, ASCII and stop characters: 30 bytes of GBK.
const char kQueryUtf8[] = "臺北ＭＰ３下載　免費的歌 mp3和";

// A typical stop list: single characters and a few words.
const char* const kStopWordsUtf8[] = {
    "的", "了", "和", "是", "在", "就", "都", "而", "及", "与",
    "着", "或", "也", "很", "把", "被", "让", "从", "向", "对",
    "于", "吗", "呢", "吧", "啊", "之", "其", "这", "那", "一个",
    "没有", "我们", "你们", "他们", "什么", "怎么", "为什么", "a", "the",
};

std::string toGBK(const std::string& utf8) {
    norm_utility::AlgoIconv cd;
    std::vector<char> out;
    if (cd.open("utf-8", "gbk") != 0) return std::string();
    const int n = cd.conv(utf8.data(), static_cast<int>(utf8.size()), out);
    return std::string(out.data(), static_cast<std::size_t>(n));
}

// The stop list above plus `extra` two-character words, as a long list of
// real stop words is mostly words rather than characters.
void loadStopWords(int extra) {
    normalize::gStopWords.clear();
    for (const char* word : kStopWordsUtf8) normalize::gStopWords.insert(toGBK(word));
    for (int k = 0; k < extra; ++k) {
        const char word[] = {'\xD0', static_cast<char>(0xA1 + k / 94), '\xB0',
                             static_cast<char>(0xA1 + k % 94)};
        normalize::gStopWords.insert(std::string(word, 4));
    }
    normalize::wordListsChanged();
}

// Arguments: the mode and the number of extra stop words.
void translateRepeatedly(benchmark::State& state, const std::string& input) {
    const int mode = static_cast<int>(state.range(0));
    loadStopWords(static_cast<int>(state.range(1)));
    for (auto _ : state) benchmark::DoNotOptimize(normalize::Translate(input, mode));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * input.size()));
    state.counters["ns/byte"] = benchmark::Counter(
        static_cast<double>(state.iterations() * input.size()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

std::string longText() {
    const std::string query = toGBK(kQueryUtf8);
    std::string text;
    while (text.size() < (1u << 20)) text += query;
    return text;
}

void BM_TranslateQuery(benchmark::State& state) {
    const std::string query = toGBK(kQueryUtf8);
    if (query.size() != 30) return state.SkipWithError("the query is not 30 bytes of GBK");
    translateRepeatedly(state, query);
}

void BM_TranslateLongText(benchmark::State& state) {
    translateRepeatedly(state, longText());
}

// All bits with a short and a long stop list, then all but the stop bit.
BENCHMARK(BM_TranslateQuery)
    ->Args({kAllBits, 0})
    ->Args({kAllBits, 1000})
    ->Args({kAllBits & ~32, 0});
BENCHMARK(BM_TranslateLongText)
    ->Args({kAllBits, 0})
    ->Args({kAllBits, 1000})
    ->Args({kAllBits & ~32, 0});

}  // namespace
