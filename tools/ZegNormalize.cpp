// zeg-normalize: normalises UTF-8 lines from standard input, one output line
// per input line, byte for byte as the Java method normalize returns them.
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "jni/NormalizerBridge.h"
#include "norm_utility/YException.h"
#include "normalize/NormalizeIntf.h"
#include "normalize/nmConfig.h"
#include "tools/ArgParser.h"
#include "tools/ChunkWorkers.h"
#include "tools/DataFingerprint.h"
#include "tools/FdLineReader.h"
#include "tools/JavaText.h"
#include "tools/StandardStreams.h"

namespace {

const char kUsage[] =
    "usage: zeg-normalize --config FILE [--mode N] [--threads N] [--progress]\n"
    "       zeg-normalize --version [--config FILE]\n"
    "\n"
    "Reads UTF-8 lines from standard input and writes each one normalised to\n"
    "standard output, exactly as the Java method Normalizer.normalize(line, N)\n"
    "returns it: a line of 512 bytes or more, counted as Java counts them\n"
    "(six for a character outside the basic plane), gives an empty line.\n"
    "\n"
    "  --config FILE  the normaliser's configuration (section [SERVER])\n"
    "  --mode N       sum of the mode bits (default 252); 0 or less gives an\n"
    "                 empty line per input line, as the library does:\n"
    "                   2 upper case, 4 lower case, 8 full-width to half-width,\n"
    "                   16 traditional to simplified, 32 stop characters to spaces,\n"
    "                   64 synonyms, 128 segment and put the words in canonical order\n"
    "  --threads N    normalise on N threads (1-64, default 1); the output is\n"
    "                 the same, in the same order\n"
    "  --progress     report lines per second on standard error (the default\n"
    "                 when standard error is a terminal)\n"
    "  --version      the library's version and a fingerprint of the data files\n"
    "                 the configuration names (keys depend on both)\n"
    "  --help         this text\n"
    "\n"
    "Exit status: 0 done, 1 the configuration did not load or reading or\n"
    "writing failed, 2 bad arguments.\n";

struct Options {
    std::string config;
    int mode = 252;
    unsigned threads = 1;
    bool progress = false;
};

// Lines a thread takes at a time: enough to make waiting on the others rare.
const std::size_t kLinesPerThread = 2048;

// Any int: the library judges the mode (0 and below give an empty line
// and its message, as through Java).
bool parseMode(const std::string& text, int& mode) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || end == text.c_str() || *end != '\0' || value < INT_MIN || value > INT_MAX)
        return false;
    mode = static_cast<int>(value);
    return true;
}

// Lines per second on standard error, at most once a second and only after
// the first second, so that short inputs stay quiet.
class Progress {
public:
    Progress(bool enabled, bool terminal) : m_enabled(enabled), m_terminal(terminal) {}

    void count() {
        if (++m_lines % 256 != 0 || !m_enabled) return;
        const double now = elapsed();
        if (now < m_nextReport) return;
        m_nextReport = now + 1.0;
        report(now, false);
    }

    void finish() {
        if (m_enabled && (m_shown || !m_terminal)) report(elapsed(), true);
    }

private:
    double elapsed() const {
        return std::chrono::duration<double>(Clock::now() - m_start).count();
    }

    void report(double seconds, bool last) {
        const double rate = seconds > 0 ? static_cast<double>(m_lines) / seconds : 0.0;
        std::fprintf(stderr, "%szeg-normalize: %llu lines%s%.1f s, %.0f lines/s%s",
                     m_terminal ? "\r" : "", static_cast<unsigned long long>(m_lines),
                     last ? " in " : ", ", seconds, rate,
                     (m_terminal && !last) ? "   " : "\n");
        std::fflush(stderr);
        m_shown = true;
    }

    using Clock = std::chrono::steady_clock;
    const bool m_enabled;
    const bool m_terminal;
    const Clock::time_point m_start = Clock::now();
    unsigned long long m_lines = 0;
    double m_nextReport = 1.0;
    bool m_shown = false;
};

// The line as Java code would hand it to normalize (a String decoded from
// UTF-8) and the result as Java code would write it (encoded to UTF-8),
// into `out`. `result` is work space kept from line to line.
void normalizeLine(normalize::NormalizeIntf* norm, const std::string& line, bool cut, int mode,
                   std::string& result, std::string& out) {
    out.clear();
    // Decoding never makes text shorter, so a line that is too long in
    // bytes is too long as modified UTF-8 as well.
    if (cut || line.size() >= normalize::kQueryLimitBytes) return;
    // Most lines and results are plain UTF-8, which Java's conversions
    // leave as they are.
    if (zeg_tools::isJavaNeutralUtf8(line))
        normalize::normalizeForJava(norm, line, mode, result);
    else
        normalize::normalizeForJava(
            norm, zeg_tools::toModifiedUtf8(zeg_tools::decodeUtf8AsJava(line)), mode, result);
    if (zeg_tools::isJavaNeutralUtf8(result))
        out = result;
    else
        out = zeg_tools::encodeUtf8AsJava(zeg_tools::fromModifiedUtf8(result));
}

// Line by line on this thread.
bool normalizeStream(normalize::NormalizeIntf* norm, int mode, zeg_tools::FdLineReader& reader,
                     Progress& progress) {
    std::string line, result, out;
    bool cut = false;
    while (reader.next(line, cut)) {
        normalizeLine(norm, line, cut, mode, result, out);
        out.push_back('\n');
        if (std::fwrite(out.data(), 1, out.size(), stdout) != out.size()) return false;
        progress.count();
    }
    return true;
}

// Lines read together, and what they became.
struct Batch {
    explicit Batch(std::size_t size) : lines(size), outs(size), cuts(size) {}
    std::vector<std::string> lines, outs;
    std::vector<char> cuts;
    std::size_t n = 0;
};

// Fills `batch` with up to its size in lines; `ended` once the input is.
void readBatch(zeg_tools::FdLineReader& reader, Batch& batch, bool& ended) {
    batch.n = 0;
    bool cut = false;
    while (!ended && batch.n < batch.lines.size()) {
        if (!reader.next(batch.lines[batch.n], cut)) {
            ended = true;
            break;
        }
        batch.cuts[batch.n++] = cut;
    }
}

bool writeBatch(Batch& batch, Progress& progress) {
    for (std::size_t i = 0; i < batch.n; ++i) {
        if (std::fwrite(batch.outs[i].data(), 1, batch.outs[i].size(), stdout) !=
            batch.outs[i].size())
            return false;
        progress.count();
    }
    batch.n = 0;
    return true;
}

// Two batches in turn: while the threads normalise one, this thread first
// writes the one before and reads the next into it, then helps. Lines go to
// the threads in small blocks, so a thread slowed by a busy core (or by
// reading) leaves its share to the others.
bool normalizeChunks(normalize::NormalizeIntf* norm, int mode, unsigned threads,
                     zeg_tools::FdLineReader& reader, Progress& progress) {
    const std::size_t kBlock = 64;
    zeg_tools::ChunkWorkers workers(threads);
    Batch first(kLinesPerThread * threads), second(kLinesPerThread * threads);
    Batch* now = &first;     // being normalised
    Batch* other = &second;  // normalised before: written, then refilled
    std::vector<std::string> results(threads);
    bool ended = false, written = true;
    readBatch(reader, *now, ended);
    while (now->n > 0) {
        Batch& batch = *now;
        workers.runShared(
            batch.n, kBlock,
            [&] {
                written = writeBatch(*other, progress);
                if (written) readBatch(reader, *other, ended);
            },
            [&](unsigned thread, std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) {
                    normalizeLine(norm, batch.lines[i], batch.cuts[i] != 0, mode, results[thread],
                                  batch.outs[i]);
                    batch.outs[i].push_back('\n');
                }
            });
        if (!written) return false;
        std::swap(now, other);
    }
    return writeBatch(*other, progress);
}

int run(const Options& options) {
    normalize::NormalizeIntf* norm = normalize::NormalizeIntf::getInstance();
    if (!norm->init(options.config)) return 1;

    const bool terminal = isatty(STDERR_FILENO) != 0;
    Progress progress(options.progress || terminal, terminal);
    zeg_tools::FdLineReader reader(STDIN_FILENO, normalize::kQueryLimitBytes);
    if (options.threads > 1)
        normalizeChunks(norm, options.mode, options.threads, reader, progress);
    else
        normalizeStream(norm, options.mode, reader, progress);
    progress.finish();
    return zeg_tools::finishStandardStreams("zeg-normalize", reader);
}

}  // namespace

// The configuration, the lists, the segmenter's settings and data files.
bool versionLine(const std::string& config, std::string& line, std::string& error) {
    std::vector<std::string> files;
    std::string settings;
    if (!config.empty()) {
        normalize::nmConfig* options = normalize::nmConfig::getInstance();
        options->init(config);
        files = {config, options->getStopFile(), options->getSynonymsFile()};
        if (!zeg_tools::segmenterData(options->getwsConfig(), settings, files, error)) return false;
    }
    return zeg_tools::versionLine("zeg-normalize", settings, files, line, error);
}

int showVersion(const std::string& config) {
    std::string line, error;
    if (!versionLine(config, line, error)) {
        std::fprintf(stderr, "zeg-normalize: %s\n", error.c_str());
        return 1;
    }
    std::printf("%s\n", line.c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("zeg-normalize", true)) return 2;
    zeg_tools::ArgParser args("zeg-normalize", "zeg-normalize");
    args.value("config").value("mode").value("threads").flag("progress");
    Options options;
    if (!args.parse(std::vector<std::string>(argv + 1, argv + argc))) {
        std::fprintf(stderr, "%s\n", args.error().c_str());
        return 2;
    }
    if (args.has("help")) {
        std::fputs(kUsage, stdout);
        return std::fflush(stdout) == 0 ? 0 : 1;
    }
    options.config = args.get("config");
    options.progress = args.has("progress");
    if (args.has("mode") && !parseMode(args.get("mode"), options.mode)) {
        std::fprintf(stderr, "%s\n", args.usageError("bad mode '" + args.get("mode") + "'").c_str());
        return 2;
    }
    if (args.has("threads") &&
        !zeg_tools::ChunkWorkers::parseThreads(args.get("threads"), options.threads)) {
        std::fprintf(stderr, "%s\n",
                     args.usageError("bad thread count '" + args.get("threads") + "'").c_str());
        return 2;
    }
    try {
        if (args.has("version")) return showVersion(options.config);
        if (!args.require("config", options.config)) {
            std::fprintf(stderr, "%s\n", args.error().c_str());
            return 2;
        }
        return run(options);
    } catch (const norm_utility::YException& e) {
        std::fprintf(stderr, "zeg-normalize: %s\n", e.GetMsg());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "zeg-normalize: %s\n", e.what());
    } catch (...) {
        std::fprintf(stderr, "zeg-normalize: unexpected failure\n");
    }
    return 1;
}
