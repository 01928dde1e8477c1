// zeg-segment: segments UTF-8 lines from standard input with a segmenter
// configuration and prints the text output, one line per input line.
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "tools/WordTagger.h"
#include "ws/core/wsInterface.h"
#include "ws/core/wsWsConfig.h"

namespace {

const char kUsage[] =
    "usage: zeg-segment --config SEGMENTER.conf [--weights | --pos [--presegmented]]\n"
    "Reads UTF-8 lines from standard input and prints each segmented, words\n"
    "followed by a blank. --weights prints each word's types and weights.\n"
    "--pos prints word/tag, tagged by the part-of-speech tagger the configuration\n"
    "names (TRIGRAM_POS_DICT, TRIGRAM_POS_TYPEID2TAG, TRIGRAM_POS_PATCH_DICT).\n"
    "--presegmented keeps the input's own words (separated by blanks) and only\n"
    "tags them.\n"
    "A line that cannot be segmented is reported on standard error and printed\n"
    "empty; the exit status is then 1.\n";

struct Options {
    const char* config = nullptr;
    bool weights = false;
    bool pos = false;
    bool presegmented = false;
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
        } else if (std::strcmp(argv[i], "--pos") == 0) {
            options.pos = true;
        } else if (std::strcmp(argv[i], "--presegmented") == 0) {
            options.presegmented = true;
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
    if (options.presegmented && !options.pos) {
        std::fprintf(stderr, "zeg-segment: --presegmented needs --pos (try --help)\n");
        return 2;
    }
    if (options.pos && options.weights) {
        std::fprintf(stderr, "zeg-segment: --pos and --weights exclude each other (try --help)\n");
        return 2;
    }
    return 0;
}

// Tags the blank-separated words of each line; false when stdout fails.
bool tagLines(zeg_tools::WordTagger& tagger) {
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string& out = tagger.tagLine(line);
        std::fwrite(out.data(), 1, out.size(), stdout);
        std::fputc('\n', stdout);
    }
    return std::fflush(stdout) == 0;
}

// The segmenter, with the tagger switched on when `pos` asks for it.
bool initSegmenter(const Options& options, ws::WsSegmenter& segmenter) {
    if (!options.pos) return segmenter.init(options.config);
    ws::WsConfig config;
    if (!config.init(options.config)) return false;
    config.enablePosTagger = 1;
    return segmenter.init(&config);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    const int parsed = parseArguments(argc, argv, options);
    if (parsed != 0) return parsed == 1 ? 0 : 2;

    std::ios::sync_with_stdio(false);
    if (options.presegmented) {
        zeg_tools::WordTagger tagger;
        std::string error;
        if (!tagger.init(options.config, error)) {
            std::fprintf(stderr, "zeg-segment: %s\n", error.c_str());
            return 1;
        }
        return tagLines(tagger) ? 0 : 1;
    }
    ws::WsSegmenter segmenter;
    if (!initSegmenter(options, segmenter)) {
        std::fprintf(stderr, "zeg-segment: cannot initialise the segmenter from %s\n",
                     options.config);
        return 1;
    }
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
