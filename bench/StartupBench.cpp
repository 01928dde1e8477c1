// Start-up as a caller sees it: milliseconds from the first call into the
// library (initialise) to the first result, in a fresh process. Run it a
// number of times and take the median; each run is cold in the process
// (mappings, tables) though the files sit in the page cache.
//
//   bench_startup segment SEGMENTER.conf
//   bench_startup normalize NORMALIZER.ini
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

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

}  // namespace

int main(int argc, char** argv) {
    const bool segment = argc == 3 && std::strcmp(argv[1], "segment") == 0;
    const bool normalize = argc == 3 && std::strcmp(argv[1], "normalize") == 0;
    if (!segment && !normalize) {
        std::fprintf(stderr, "usage: bench_startup segment|normalize CONFIG\n");
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
