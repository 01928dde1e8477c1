// zeg-segment: segments UTF-8 lines from standard input with a segmenter
// configuration and prints the text output, one line per input line.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "tools/ArgParser.h"
#include "tools/DataFingerprint.h"
#include "tools/FdLineReader.h"
#include "tools/PieceSegmenter.h"
#include "tools/StandardStreams.h"
#include "tools/ProgressLine.h"
#include "tools/WordTagger.h"
#include "ws/core/wsInterface.h"
#include "ws/core/wsWsConfig.h"

namespace {

using zeg_tools::PieceSegmenter;

const char kUsage[] =
    "usage: zeg-segment --config SEGMENTER.conf [--weights | --pos [--presegmented]]\n"
    "                   [--progress]\n"
    "       zeg-segment --version [--config SEGMENTER.conf]\n"
    "\n"
    "Reads UTF-8 lines from standard input and prints each segmented, words\n"
    "followed by a blank.\n"
    "\n"
    "  --config FILE   the segmenter's configuration\n"
    "  --weights       print each word's types and weights\n"
    "  --pos           print word/tag, tagged by the part-of-speech tagger the\n"
    "                  configuration names (TRIGRAM_POS_DICT,\n"
    "                  TRIGRAM_POS_TYPEID2TAG, TRIGRAM_POS_PATCH_DICT)\n"
    "  --presegmented  keep the input's own words (separated by blanks) and only\n"
    "                  tag them (with --pos)\n"
    "  --progress      report lines done on standard error (the default when\n"
    "                  standard error is a terminal)\n"
    "  --version       the library's version and a fingerprint of the data files\n"
    "                  the configuration names\n"
    "\n"
    "A line that cannot be segmented is reported on standard error and printed\n"
    "empty. Exit status: 0 done, 1 the segmenter did not initialise, a line\n"
    "could not be segmented, or reading or writing failed, 2 bad arguments.\n";

// Lines longer than this are segmented and written in pieces (see
// PieceSegmenter); memory then stays near 110 times this, whatever the line.
constexpr std::size_t kWindow = 1 << 16;

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

// Reads every line, writes what `segment` makes of it (piece by piece for a
// long line; a piece it cannot segment is left out, and the exit status is
// 1) and reports read and write errors.
int eachLine(const std::string& config, bool progress, PieceSegmenter::Segment segment) {
    zeg_tools::ProgressLine shown(std::cerr, progress, "zeg-segment", 0);
    zeg_tools::FdLineReader reader(STDIN_FILENO, kWindow);
    PieceSegmenter pieces(std::move(segment), kWindow);
    ws::WsConfig settings;
    if (settings.init(config.c_str()))
        pieces.loadDelimiters(settings.getString("SPACE_DEFINE_FILE", ""));
    std::string piece;
    bool more = false, lineStart = true, lineFailed = false;
    uint64_t lines = 0, bytes = 0;
    bool allSegmented = true;
    while (reader.nextPiece(piece, more)) {
        if (lineStart) ++lines;
        bytes += piece.size();
        if (!pieces.add(piece, more, stdout)) {
            if (pieces.writeFailed()) break;
            if (!lineFailed)
                std::fprintf(stderr,
                             "zeg-segment: line %llu: cannot segment it (not UTF-8 text "
                             "of the basic multilingual plane)\n",
                             static_cast<unsigned long long>(lines));
            lineFailed = true;
            allSegmented = false;
        }
        lineStart = !more;
        if (lineStart) {
            lineFailed = false;
            // One output line per input line all the same, so outputs stay aligned.
            if (std::fputc('\n', stdout) == EOF) break;
            shown.update(bytes, lines);
        }
    }
    shown.finish();
    const int streams = zeg_tools::finishStandardStreams("zeg-segment", reader);
    return streams != 0 || !allSegmented ? 1 : 0;
}

// The segmenter, with the tagger switched on when `pos` asks for it.
bool initSegmenter(const std::string& path, bool pos, ws::WsSegmenter& segmenter) {
    if (!pos) return segmenter.init(path.c_str());
    ws::WsConfig config;
    if (!config.init(path.c_str())) return false;
    config.enablePosTagger = 1;
    return segmenter.init(&config);
}

int usageError(const zeg_tools::ArgParser& args, const std::string& message) {
    std::fprintf(stderr, "%s\n", args.usageError(message).c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("zeg-segment", true)) return 2;
    zeg_tools::ArgParser args("zeg-segment", "zeg-segment");
    args.value("config").flag("weights").flag("pos").flag("presegmented").flag("progress");
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
    const bool pos = args.has("pos"), weights = args.has("weights");
    if (args.has("presegmented") && !pos) return usageError(args, "--presegmented needs --pos");
    if (pos && weights) return usageError(args, "--pos and --weights exclude each other");
    const bool progress = args.has("progress") || zeg_tools::ProgressLine::stderrIsTerminal();

    if (args.has("presegmented")) {
        zeg_tools::WordTagger tagger;
        std::string error;
        if (!tagger.init(config.c_str(), error)) {
            std::fprintf(stderr, "zeg-segment: %s\n", error.c_str());
            return 1;
        }
        return eachLine(config, progress, [&](const char* text, std::size_t len) {
            return tagger.tagLine(std::string(text, len)).c_str();
        });
    }
    ws::WsSegmenter segmenter;
    if (!initSegmenter(config, pos, segmenter)) {
        std::fprintf(stderr, "zeg-segment: cannot initialise the segmenter from %s\n",
                     config.c_str());
        return 1;
    }
    return eachLine(config, progress, [&](const char* text, std::size_t len) {
        return segmenter.segment(text, static_cast<unsigned int>(len), weights ? 1 : 0);
    });
}
