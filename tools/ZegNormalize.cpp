// zeg-normalize: normalises UTF-8 lines from standard input, one output line
// per input line, byte for byte as the Java method normalize returns them.
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

#include "jni/NormalizerBridge.h"
#include "normalize/NormalizeIntf.h"
#include "tools/JavaText.h"
#include "tools/FdLineReader.h"

namespace {

const char kUsage[] =
    "usage: zeg-normalize --config FILE [--mode N] [--progress]\n"
    "\n"
    "Reads UTF-8 lines from standard input and writes each one normalised to\n"
    "standard output, exactly as the Java method Normalizer.normalize(line, N)\n"
    "returns it: a line of 512 bytes or more gives an empty line.\n"
    "\n"
    "  --config FILE  the normaliser's configuration (section [SERVER])\n"
    "  --mode N       sum of the mode bits, N > 0 (default 252):\n"
    "                   2 upper case, 4 lower case, 8 full-width to half-width,\n"
    "                   16 traditional to simplified, 32 stop characters to spaces,\n"
    "                   64 synonyms, 128 segment and put the words in canonical order\n"
    "  --progress     report lines per second on standard error (the default\n"
    "                 when standard error is a terminal)\n"
    "  --help         this text\n"
    "\n"
    "Exit status: 0 done, 1 the configuration did not load or reading or\n"
    "writing failed, 2 bad arguments.\n";

struct Options {
    std::string config;
    int mode = 252;
    bool progress = false;
    bool help = false;
};

bool parseMode(const char* text, int& mode) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text, &end, 10);
    if (errno != 0 || end == text || *end != '\0' || value <= 0 || value > 0x7FFFFFFF) return false;
    mode = static_cast<int>(value);
    return true;
}

// The value of option `name` at argv[i], as "--name VALUE" or "--name=VALUE".
const char* optionValue(const char* name, int argc, char** argv, int& i) {
    const std::size_t n = std::strlen(name);
    if (std::strncmp(argv[i], name, n) != 0) return nullptr;
    if (argv[i][n] == '=') return argv[i] + n + 1;
    if (argv[i][n] == '\0' && i + 1 < argc) return argv[++i];
    return nullptr;
}

// Empty when the arguments are fine, else what is wrong with them.
std::string parseArguments(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const char* value = nullptr;
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            options.help = true;
        } else if (std::strcmp(argv[i], "--progress") == 0) {
            options.progress = true;
        } else if ((value = optionValue("--config", argc, argv, i)) != nullptr) {
            options.config = value;
        } else if ((value = optionValue("--mode", argc, argv, i)) != nullptr) {
            if (!parseMode(value, options.mode)) return std::string("bad mode: ") + value;
        } else {
            return std::string("unknown or incomplete argument: ") + argv[i];
        }
    }
    if (!options.help && options.config.empty()) return "--config FILE is required";
    return std::string();
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
// UTF-8) and the result as Java code would write it (encoded to UTF-8).
std::string normalizeLine(normalize::NormalizeIntf* norm, const std::string& line, bool cut,
                          int mode) {
    // Decoding never makes text shorter, so a line that is too long in
    // bytes is too long as modified UTF-8 as well.
    if (cut || line.size() >= normalize::kQueryLimitBytes) return std::string();
    const std::string query = zeg_tools::toModifiedUtf8(zeg_tools::decodeUtf8AsJava(line));
    const std::string result = normalize::normalizeForJava(norm, query.c_str(), mode);
    return zeg_tools::encodeUtf8AsJava(zeg_tools::fromModifiedUtf8(result));
}

int run(const Options& options) {
    normalize::NormalizeIntf* norm = normalize::NormalizeIntf::getInstance();
    if (!norm->init(options.config)) return 1;

    const bool terminal = isatty(STDERR_FILENO) != 0;
    Progress progress(options.progress || terminal, terminal);
    zeg_tools::FdLineReader reader(STDIN_FILENO, normalize::kQueryLimitBytes);
    std::string line, out;
    bool cut = false;
    while (reader.next(line, cut)) {
        out = normalizeLine(norm, line, cut, options.mode);
        out.push_back('\n');
        if (std::fwrite(out.data(), 1, out.size(), stdout) != out.size()) break;
        progress.count();
    }
    progress.finish();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "zeg-normalize: cannot write to standard output: %s\n",
                     std::strerror(errno));
        return 1;
    }
    if (reader.failed()) {
        std::fprintf(stderr, "zeg-normalize: cannot read standard input: %s\n",
                     std::strerror(errno));
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    const std::string error = parseArguments(argc, argv, options);
    if (!error.empty()) {
        std::fprintf(stderr, "zeg-normalize: %s\n\n%s", error.c_str(), kUsage);
        return 2;
    }
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    try {
        return run(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "zeg-normalize: %s\n", e.what());
    } catch (...) {
        std::fprintf(stderr, "zeg-normalize: unexpected failure\n");
    }
    return 1;
}
