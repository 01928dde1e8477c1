// zeg-segment: segments UTF-8 lines from standard input with a segmenter
// configuration and prints the text output, one line per input line.
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

#include "ws/core/wsInterface.h"

namespace {

const char kUsage[] =
    "usage: zeg-segment --config SEGMENTER.conf [--weights]\n"
    "Reads UTF-8 lines from standard input and prints each segmented, words\n"
    "followed by a blank. --weights prints each word's types and weights.\n"
    "A line that cannot be segmented is reported on standard error and printed\n"
    "empty; the exit status is then 1.\n";

struct Options {
    const char* config = nullptr;
    bool weights = false;
};

// 0: run; 1: help shown; 2: bad arguments (message printed).
int parseArguments(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(kUsage, stdout);
            return 1;
        }
        if (std::strcmp(argv[i], "--weights") == 0) {
            options.weights = true;
        } else if (std::strcmp(argv[i], "--config") == 0 && i + 1 < argc) {
            options.config = argv[++i];
        } else {
            std::fprintf(stderr, "zeg-segment: unexpected argument '%s' (try --help)\n", argv[i]);
            return 2;
        }
    }
    if (options.config == nullptr) {
        std::fprintf(stderr, "zeg-segment: --config SEGMENTER.conf is required (try --help)\n");
        return 2;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    const int parsed = parseArguments(argc, argv, options);
    if (parsed != 0) return parsed == 1 ? 0 : 2;

    ws::WsSegmenter segmenter;
    if (!segmenter.init(options.config)) {
        std::fprintf(stderr, "zeg-segment: cannot initialise the segmenter from %s\n",
                     options.config);
        return 1;
    }
    std::ios::sync_with_stdio(false);
    std::string line;
    unsigned long lineNo = 0;
    bool allSegmented = true;
    while (std::getline(std::cin, line)) {
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const char* out = segmenter.segment(line.data(), static_cast<unsigned int>(line.size()),
                                            options.weights ? 1 : 0);
        if (out != nullptr) {
            std::fwrite(out, 1, std::strlen(out), stdout);
        } else {
            // One output line per input line all the same, so outputs stay aligned.
            std::fprintf(stderr, "zeg-segment: line %lu: cannot segment it (not UTF-8 text "
                                 "of the basic multilingual plane)\n", lineNo);
            allSegmented = false;
        }
        std::fputc('\n', stdout);
    }
    if (std::fflush(stdout) != 0) return 1;
    return allSegmented ? 0 : 1;
}
