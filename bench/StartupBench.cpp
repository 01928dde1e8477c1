// Start-up as a caller sees it: milliseconds from the first call into the
// library (initialise) to the first result, in a fresh process: cold in the
// process (mappings, tables), though the files sit in the page cache.
//
//   bench_startup segment SEGMENTER.conf     one run, prints the milliseconds
//   bench_startup normalize NORMALIZER.ini   the same for the normaliser
//   bench_startup                            21 runs of each with the default
//                                            data, prints min, median and max
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "normalize/NormalizeIntf.h"
#include "ws/core/wsInterface.h"

namespace {

// A short query: a traditional form, a full-width letter, digits.
const char kQuery[] = "\xE9\x82\x81\xE5\x90\x91\xE6\x96\xB0\xE4\xB8\x96\xE7\xB4\x80 "
                      "\xEF\xBC\xA1 2024";

bool firstSegmentation(const char* config) {
    static ws::WsSegmenter segmenter;  // outlives the timing: no teardown in the figure
    return segmenter.init(config) &&
           segmenter.segment(kQuery, static_cast<unsigned>(std::strlen(kQuery)), 0) != nullptr;
}

bool firstNormalization(const char* config) {
    normalize::NormalizeIntf* norm = normalize::NormalizeIntf::getInstance();
    std::string out;
    return norm->init(config) && norm->doNormalize(kQuery, 252, out, false, false) == 0;
}

// Runs `self` on `kind` and `config` `runs` times in fresh processes and
// prints the spread; false when a run fails.
bool summarise(const char* self, const char* kind, const char* config, int runs) {
    const std::string command = std::string("'") + self + "' " + kind + " '" + config + "'";
    std::vector<double> ms;
    for (int i = 0; i < runs; ++i) {
        std::FILE* child = popen(command.c_str(), "r");
        double value = 0;
        const bool read = child != nullptr && std::fscanf(child, "%lf", &value) == 1;
        if (child == nullptr || pclose(child) != 0 || !read) return false;
        ms.push_back(value);
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%-9s initialise + first result: median %.2f ms (min %.2f, max %.2f, %d runs)\n",
                kind, ms[ms.size() / 2], ms.front(), ms.back(), runs);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 1) {
        const bool ok = summarise(argv[0], "segment", ZEG_DATA_DIR "/segmenter.conf", 21) &&
                        summarise(argv[0], "normalize", ZEG_DEFAULT_CONFIG, 21);
        return ok ? 0 : 1;
    }
    const bool segment = argc == 3 && std::strcmp(argv[1], "segment") == 0;
    const bool normalize = argc == 3 && std::strcmp(argv[1], "normalize") == 0;
    if (!segment && !normalize) {
        std::fprintf(stderr, "usage: bench_startup [segment|normalize CONFIG]\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const bool ok = segment ? firstSegmentation(argv[2]) : firstNormalization(argv[2]);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    if (!ok) {
        std::fprintf(stderr, "bench_startup: %s did not initialise or give a result\n", argv[2]);
        return 1;
    }
    std::printf("%.3f\n", took.count());
    return 0;
}
