// zeg-segment: segments UTF-8 lines from standard input with a segmenter
// configuration and prints the text output, one line per input line.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tools/ArgParser.h"
#include "tools/ChunkWorkers.h"
#include "tools/DataFingerprint.h"
#include "tools/FdLineReader.h"
#include "tools/PieceSegmenter.h"
#include "tools/ProgressLine.h"
#include "tools/StandardStreams.h"
#include "tools/WordTagger.h"
#include "ws/core/wsInterface.h"
#include "ws/core/wsWsConfig.h"

namespace {

using zeg_tools::PieceSegmenter;

const char kUsage[] =
    "usage: zeg-segment --config SEGMENTER.conf [--weights | --pos [--presegmented]]\n"
    "                   [--threads N] [--progress]\n"
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
    "  --threads N     segment on N threads (1-64, default 1); the output is the\n"
    "                  same, in the same order\n"
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

// What a batch holds per thread: enough lines to make waiting on the others
// rare, few enough bytes to keep memory bounded whatever the lines.
const std::size_t kLinesPerThread = 2048;
const std::size_t kBytesPerThread = 1 << 19;
// Lines a thread takes at a time.
const std::size_t kBlock = 64;

// Each thread's segmenter front end (0: this thread's).
using Lanes = std::vector<std::unique_ptr<PieceSegmenter>>;

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

void reportLine(uint64_t line) {
    std::fprintf(stderr,
                 "zeg-segment: line %llu: cannot segment it (not UTF-8 text of the basic "
                 "multilingual plane)\n",
                 static_cast<unsigned long long>(line));
}

// Segments one line, the rest of whose pieces `reader` holds, as it comes,
// straight to standard output (with its line feed). False when writing
// failed; `segmented` false when a piece could not be segmented.
bool streamLine(zeg_tools::FdLineReader& reader, PieceSegmenter& pieces, std::string& piece,
                bool more, uint64_t line, uint64_t& bytes, bool& segmented) {
    bool reported = false;
    for (;;) {
        bytes += piece.size();
        if (!pieces.add(piece, more, stdout)) {
            if (pieces.writeFailed()) return false;
            if (!reported) reportLine(line);
            reported = true;
            segmented = false;
        }
        if (!more) break;
        if (!reader.nextPiece(piece, more)) return true;  // a read error: reported at the end
    }
    // One output line per input line all the same, so outputs stay aligned.
    return std::fputc('\n', stdout) != EOF;
}

// Counts of what was read, and whether everything went out.
struct Totals {
    uint64_t lines = 0, bytes = 0;
    bool allSegmented = true;
};

// Line by line, piece by piece, on this thread.
void streamAll(zeg_tools::FdLineReader& reader, PieceSegmenter& pieces,
               zeg_tools::ProgressLine& shown, Totals& totals) {
    std::string piece;
    bool more = false;
    while (reader.nextPiece(piece, more)) {
        ++totals.lines;
        if (!streamLine(reader, pieces, piece, more, totals.lines, totals.bytes,
                        totals.allSegmented))
            return;
        shown.update(totals.bytes, totals.lines);
    }
}

// Lines read together, what they became, and the first piece of a line
// too long for a batch that comes right after them.
struct Batch {
    explicit Batch(std::size_t size) : lines(size), outs(size), failed(size) {}
    std::vector<std::string> lines, outs;
    std::vector<char> failed;  // could not be segmented
    std::size_t n = 0;
    std::size_t bytes = 0;
    bool longLine = false;
    std::string piece;
};

// Fills `batch` up to its size in lines or bytes, or up to a long line.
void readBatch(zeg_tools::FdLineReader& reader, Batch& batch, std::size_t byteLimit, bool& ended) {
    batch.n = 0;
    batch.bytes = 0;
    batch.longLine = false;
    bool more = false;
    while (!ended && batch.n < batch.lines.size() && batch.bytes < byteLimit) {
        if (!reader.nextPiece(batch.piece, more)) {
            ended = true;
        } else if (more) {
            batch.longLine = true;
            return;
        } else {
            batch.bytes += batch.piece.size();
            batch.lines[batch.n++].swap(batch.piece);
        }
    }
}

// A batch's slot keeps the memory of an ordinary line and its output, but
// not of a longer one: what the batches hold then stays bounded by their
// byte limit, not by the longest line each slot ever saw.
const std::size_t kKeptPerSlot = 1024;

void trimSlot(std::string& s) {
    if (s.capacity() > kKeptPerSlot) std::string().swap(s);
}

// Writes the batch's outputs (the lines before its long line) and reports
// the lines it could not segment. False when writing failed.
bool writeBatch(Batch& batch, Totals& totals) {
    for (std::size_t i = 0; i < batch.n; ++i) {
        trimSlot(batch.lines[i]);
        if (batch.failed[i]) {
            reportLine(totals.lines + i + 1);
            totals.allSegmented = false;
        }
        if (std::fwrite(batch.outs[i].data(), 1, batch.outs[i].size(), stdout) !=
            batch.outs[i].size())
            return false;
        trimSlot(batch.outs[i]);
    }
    totals.lines += batch.n;
    totals.bytes += batch.bytes;
    batch.n = 0;
    batch.bytes = 0;
    return true;
}

// Two batches in turn: while the threads segment one, this thread first
// writes the one before and reads the next into it, then helps. Lines go to
// the threads in small blocks, so that a thread slowed by a busy core leaves
// its share to the others. A line longer than the window ends a batch; once
// the batch is out it streams through this thread's lane alone.
void chunkAll(zeg_tools::FdLineReader& reader, Lanes& lanes, zeg_tools::ProgressLine& shown,
              Totals& totals) {
    const auto threads = static_cast<unsigned>(lanes.size());
    const std::size_t byteLimit = kBytesPerThread * threads;
    zeg_tools::ChunkWorkers workers(threads);
    Batch first(kLinesPerThread * threads), second(kLinesPerThread * threads);
    Batch* now = &first;     // being segmented
    Batch* other = &second;  // segmented before: written, then refilled
    bool ended = false, written = true;
    readBatch(reader, *now, byteLimit, ended);
    while (now->n > 0 || now->longLine) {
        Batch& batch = *now;
        workers.runShared(
            batch.n, kBlock,
            [&] {
                written = writeBatch(*other, totals);
                shown.update(totals.bytes, totals.lines);
                // Past a long line the reader must wait until it streams.
                if (written && !batch.longLine) readBatch(reader, *other, byteLimit, ended);
            },
            [&](unsigned thread, std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) {
                    batch.outs[i].clear();
                    batch.failed[i] = !lanes[thread]->segmentLine(batch.lines[i], batch.outs[i]);
                    batch.outs[i].push_back('\n');
                }
            });
        if (!written) return;
        if (batch.longLine) {
            if (!writeBatch(batch, totals) ||
                !streamLine(reader, *lanes[0], batch.piece, true, ++totals.lines, totals.bytes,
                            totals.allSegmented))
                return;
            readBatch(reader, *other, byteLimit, ended);
        }
        std::swap(now, other);
    }
    writeBatch(*other, totals);
}

// Reads every line and writes what the lanes' segmenters make of it (a
// piece that cannot be segmented is left out, and the exit status is 1);
// reports read and write errors.
int eachLine(const std::string& config, bool progress, Lanes& lanes) {
    zeg_tools::ProgressLine shown(std::cerr, progress, "zeg-segment", 0);
    zeg_tools::FdLineReader reader(STDIN_FILENO, kWindow);
    ws::WsConfig settings;
    if (settings.init(config.c_str())) {
        const std::string delimiters = settings.getString("SPACE_DEFINE_FILE", "");
        for (auto& lane : lanes) lane->loadDelimiters(delimiters);
    }
    Totals totals;
    if (lanes.size() == 1) {
        streamAll(reader, *lanes[0], shown, totals);
    } else {
        try {
            chunkAll(reader, lanes, shown, totals);
        } catch (const std::bad_alloc&) {
            // Stop rather than lose lines silently.
            std::fprintf(stderr, "zeg-segment: out of memory after line %llu\n",
                         static_cast<unsigned long long>(totals.lines));
            totals.allSegmented = false;
        }
    }
    shown.finish();
    const int streams = zeg_tools::finishStandardStreams("zeg-segment", reader);
    return streams != 0 || !totals.allSegmented ? 1 : 0;
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

// One lane a thread, each over a tagger of its own (--presegmented).
int tagLines(const std::string& config, bool progress, unsigned threads) {
    std::vector<std::unique_ptr<zeg_tools::WordTagger>> taggers;
    Lanes lanes;
    for (unsigned k = 0; k < threads; ++k) {
        taggers.push_back(std::make_unique<zeg_tools::WordTagger>());
        std::string error;
        if (!taggers.back()->init(config.c_str(), error)) {
            std::fprintf(stderr, "zeg-segment: %s\n", error.c_str());
            return 1;
        }
        zeg_tools::WordTagger& tagger = *taggers.back();
        lanes.push_back(std::make_unique<PieceSegmenter>(
            [&tagger](const char* text, std::size_t len) {
                return tagger.tagLine(std::string(text, len)).c_str();
            },
            kWindow));
    }
    return eachLine(config, progress, lanes);
}

// One lane a thread, each over a segmenter of its own.
int segmentLines(const std::string& config, bool progress, unsigned threads, bool pos,
                 bool weights) {
    std::vector<std::unique_ptr<ws::WsSegmenter>> segmenters;
    Lanes lanes;
    for (unsigned k = 0; k < threads; ++k) {
        segmenters.push_back(std::make_unique<ws::WsSegmenter>());
        ws::WsSegmenter& segmenter = *segmenters.back();
        if (!initSegmenter(config, pos, segmenter)) {
            std::fprintf(stderr, "zeg-segment: cannot initialise the segmenter from %s\n",
                         config.c_str());
            return 1;
        }
        lanes.push_back(std::make_unique<PieceSegmenter>(
            [&segmenter, weights](const char* text, std::size_t len) {
                return segmenter.segment(text, static_cast<unsigned int>(len), weights ? 1 : 0);
            },
            kWindow));
    }
    return eachLine(config, progress, lanes);
}

}  // namespace

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("zeg-segment", true)) return 2;
    zeg_tools::ArgParser args("zeg-segment", "zeg-segment");
    args.value("config").value("threads").flag("weights").flag("pos").flag("presegmented").flag(
        "progress");
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
    unsigned threads = 1;
    if (args.has("threads") &&
        !zeg_tools::ChunkWorkers::parseThreads(args.get("threads"), threads))
        return usageError(args, "bad thread count '" + args.get("threads") + "'");
    const bool progress = args.has("progress") || zeg_tools::ProgressLine::stderrIsTerminal();
    if (args.has("presegmented")) return tagLines(config, progress, threads);
    return segmentLines(config, progress, threads, pos, weights);
}
