#include "tools/CoreDictCompiler.h"

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>

#include "tools/AtomicFile.h"
#include "tools/ProgressLine.h"
#include "ws/core/wsWsLogger.h"

namespace zeg_tools {

namespace {

const char kCommand[] = "zeg-dict core: ";

// 0 for a pipe or a terminal: seeking one to measure it would put the
// stream in a failed state and read nothing.
uint64_t fileSize(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) ? static_cast<uint64_t>(st.st_size)
                                                               : 0;
}

std::string addFailure(int code) {
    switch (code) {
    case ws::WS_ERR_KEY_EXISTS: return "duplicate word";
    case ws::WS_ERR_WORD_TOO_LONG: return "word too long";
    case ws::WS_ERR_KEY_TO_UTF16: return "word does not convert to UTF-16";
    default: return "dictionary refused the word (code " + std::to_string(code) + ")";
    }
}

}  // namespace

CoreDictCompiler::CoreDictCompiler(const CoreDictOptions& options, std::ostream& err)
    : m_options(options), m_err(err) {}

int CoreDictCompiler::fail(const std::string& message) {
    m_err << kCommand << message << '\n';
    return 1;
}

int CoreDictCompiler::run() {
    std::string error;
    if (!m_properties.load(m_options.properties, error)) return fail(error);
    errno = 0;
    std::ifstream in(m_options.input, std::ios::binary);
    if (!in) return fail("cannot read " + m_options.input + ": " + std::strerror(errno));
    if (!compile(in, fileSize(m_options.input))) return 1;
    if (!writeOutputs()) return 1;
    m_err << kCommand << m_options.input << ": " << m_words << " words";
    if (m_skipped > 0) m_err << ", " << m_skipped << " malformed lines skipped";
    m_err << '\n';
    return 0;
}

bool CoreDictCompiler::compile(std::istream& in, uint64_t inputBytes) {
    WordListReader reader(in);
    ProgressLine progress(m_err, m_options.progress, "zeg-dict core", inputBytes);
    WordEntry entry;
    std::string reason;
    for (WordListReader::Result r; (r = reader.next(entry, reason)) != WordListReader::kEnd;) {
        progress.update(reader.bytesRead(), static_cast<uint64_t>(reader.lineNumber()));
        const bool ok = r == WordListReader::kEntry && addEntry(entry, reason);
        if (m_fatal) return false;
        if (!ok && !reportMalformed(reader.lineNumber(), reason)) return false;
    }
    progress.finish();
    if (reader.failed()) {
        fail("error while reading " + m_options.input);
        return false;
    }
    m_dict.setTotalFreq(m_totalFreq);
    return true;
}

bool CoreDictCompiler::addEntry(const WordEntry& entry, std::string& reason) {
    std::vector<ws::WordType> props;
    if (!entry.tag.empty()) {
        const int id = m_properties.idOf(entry.tag);
        if (id < 0) {
            fail("more than " + std::to_string(PropertyTable::kMaxId) + " properties");
            m_fatal = true;
            return false;
        }
        props.push_back(ws::WordType{static_cast<short>(id), static_cast<float>(entry.freq)});
    }
    std::vector<unsigned char> value = ws::WsCoreDict::encodeValue({}, props, {}, nullptr, 0);
    float weight = static_cast<float>(std::log(static_cast<double>(entry.freq)));
    const int id = m_dict.add(entry.word.data(), static_cast<unsigned>(entry.word.size()),
                              &weight, value.data(), static_cast<unsigned>(value.size()));
    if (id <= 0) {
        reason = addFailure(id);
        return false;
    }
    ++m_words;
    m_totalFreq += static_cast<double>(entry.freq);
    return true;
}

bool CoreDictCompiler::reportMalformed(long line, const std::string& reason) {
    m_err << m_options.input << ':' << line << ": " << reason << '\n';
    ++m_skipped;
    if (!m_options.strict) return true;
    fail("stopped at the first malformed line (--strict)");
    return false;
}

bool CoreDictCompiler::writeOutputs() {
    AtomicFile output(m_options.output);
    errno = 0;
    const int rc = m_dict.writeDict(output.tempPath().c_str());
    std::string error;
    if (rc != 0) {
        const std::string why = errno != 0 ? std::strerror(errno) : "write error";
        fail("cannot write " + m_options.output + ": " + why);
        return false;
    }
    if (m_properties.changed() && !m_properties.write(m_options.properties, error)) {
        fail("cannot write " + error);
        return false;
    }
    if (!output.commit(error)) {
        fail("cannot write " + m_options.output + ": " + error);
        return false;
    }
    return true;
}

}  // namespace zeg_tools
