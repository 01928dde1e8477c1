// Queries per second of NormalizeIntf::doNormalize over the sample queries,
// with the default data, in the usual mode and without segmentation.
#include <benchmark/benchmark.h>

#include <fstream>
#include <string>
#include <vector>

#include "normalize/NormalizeIntf.h"

namespace {

std::vector<std::string> sampleQueries() {
    std::ifstream in(ZEG_DATA_DIR "/sample-queries.txt");
    std::vector<std::string> queries;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty()) queries.push_back(line);
    }
    return queries;
}

normalize::NormalizeIntf* initialised() {
    static normalize::NormalizeIntf* norm = [] {
        normalize::NormalizeIntf* n = normalize::NormalizeIntf::getInstance();
        return n->init(ZEG_DEFAULT_CONFIG) ? n : nullptr;
    }();
    return norm;
}

// Argument: the mode. One iteration is one query; the queries take turns.
void BM_NormalizeSampleQueries(benchmark::State& state) {
    normalize::NormalizeIntf* norm = initialised();
    const std::vector<std::string> queries = sampleQueries();
    if (norm == nullptr || queries.empty())
        return state.SkipWithError("the default data in " ZEG_DATA_DIR " did not load");
    const int mode = static_cast<int>(state.range(0));
    std::string out;
    std::size_t next = 0;
    for (auto _ : state) {
        norm->doNormalize(queries[next], mode, out, false, false);
        benchmark::DoNotOptimize(out.data());
        if (++next == queries.size()) next = 0;
    }
    state.counters["queries/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// 252: the usual mode; 28: folding only (split at spaces, no segmentation).
BENCHMARK(BM_NormalizeSampleQueries)->Arg(252)->Arg(28);

}  // namespace
