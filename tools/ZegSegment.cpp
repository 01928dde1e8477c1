// zeg-segment: segments UTF-8 lines from standard input with a segmenter
// configuration and prints the text output, one line per input line.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "tools/ArgParser.h"
#include "tools/DataFingerprint.h"
#include "tools/LineReader.h"
#include "tools/ProgressLine.h"
#include "ws/core/wsInterface.h"

namespace {

const char kUsage[] =
    "usage: zeg-segment --config SEGMENTER.conf [--weights] [--progress]\n"
    "       zeg-segment --version [--config SEGMENTER.conf]\n"
    "\n"
    "Reads UTF-8 lines from standard input and prints each segmented, words\n"
    "followed by a blank.\n"
    "\n"
    "  --config FILE  the segmenter's configuration\n"
    "  --weights      print each word's types and weights\n"
    "  --progress     report lines done on standard error (the default when\n"
    "                 standard error is a terminal)\n"
    "  --version      the library's version and a fingerprint of the data files\n"
    "                 the configuration names\n"
    "\n"
    "A line that cannot be segmented is reported on standard error and printed\n"
    "empty. Exit status: 0 done, 1 the segmenter did not initialise, a line\n"
    "could not be segmented, or reading or writing failed, 2 bad arguments.\n";

// Longer lines are segmented in their first this many bytes, with a warning.
constexpr std::size_t kLineCap = 1 << 20;

int showVersion(const std::string& config) {
    std::vector<std::string> files;
    std::string settings, line, error;
    if ((!config.empty() && !zeg_tools::segmenterData(config, settings, files, error)) ||
        !zeg_tools::versionLine("zeg-segment", settings, files, line, error)) {
        std::fprintf(stderr, "zeg-segment: %s\n", error.c_str());
        return 1;
    }
    std::printf("%s\n", line.c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int segmentLines(ws::WsSegmenter& segmenter, bool weights, bool progress) {
    zeg_tools::ProgressLine shown(std::cerr, progress, "zeg-segment", 0);
    zeg_tools::LineReader reader(STDIN_FILENO, kLineCap);
    std::string line;
    bool cut = false;
    uint64_t lines = 0, bytes = 0;
    bool allSegmented = true;
    while (reader.next(line, cut)) {
        ++lines;
        bytes += line.size();
        if (cut)
            std::fprintf(stderr, "zeg-segment: line %llu: longer than %zu bytes, cut\n",
                         static_cast<unsigned long long>(lines), kLineCap);
        const char* out =
            segmenter.segment(line.data(), static_cast<unsigned int>(line.size()), weights ? 1 : 0);
        if (out == nullptr) {
            // One output line per input line all the same, so outputs stay aligned.
            std::fprintf(stderr,
                         "zeg-segment: line %llu: cannot segment it (not UTF-8 text "
                         "of the basic multilingual plane)\n",
                         static_cast<unsigned long long>(lines));
            allSegmented = false;
        }
        if ((out != nullptr && std::fputs(out, stdout) == EOF) || std::fputc('\n', stdout) == EOF)
            break;
        shown.update(bytes, lines);
    }
    shown.finish();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "zeg-segment: cannot write to standard output: %s\n",
                     std::strerror(errno));
        return 1;
    }
    if (reader.failed()) {
        std::fprintf(stderr, "zeg-segment: cannot read standard input: %s\n", std::strerror(errno));
        return 1;
    }
    return allSegmented ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    zeg_tools::ArgParser args("zeg-segment", "zeg-segment");
    args.value("config").flag("weights").flag("progress");
    std::string config;
    if (!args.parse(std::vector<std::string>(argv + 1, argv + argc))) {
        std::fprintf(stderr, "%s\n", args.error().c_str());
        return 2;
    }
    if (args.has("help")) {
        std::fputs(kUsage, stdout);
        return std::fflush(stdout) == 0 ? 0 : 1;
    }
    if (args.has("version")) return showVersion(args.get("config"));
    if (!args.require("config", config)) {
        std::fprintf(stderr, "%s\n", args.error().c_str());
        return 2;
    }
    ws::WsSegmenter segmenter;
    if (!segmenter.init(config.c_str())) {
        std::fprintf(stderr, "zeg-segment: cannot initialise the segmenter from %s\n",
                     config.c_str());
        return 1;
    }
    const bool progress = args.has("progress") || zeg_tools::ProgressLine::stderrIsTerminal();
    return segmentLines(segmenter, args.has("weights"), progress);
}
