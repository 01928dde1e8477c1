#include "tools/GBKListCompiler.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "norm_utility/StdioFile.h"
#include "tools/AtomicFile.h"

namespace zeg_tools {

namespace {

const char kBlanks[] = " \t\r";

std::string trim(const std::string& text) {
    const size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string::npos) return std::string();
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// Decodes one UTF-8 character at `at`; 0 for a malformed sequence.
size_t decodeOne(const std::string& s, size_t at, char32_t& cp) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = byte(at);
    const size_t n = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (n == 0 || at + n > s.size() || lead > 0xF4) return 0;
    cp = n == 1 ? lead : lead & (0x7F >> n);
    for (size_t i = 1; i < n; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (byte(at + i) & 0x3F);
    }
    static const char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kLeast[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return n;
}

}  // namespace

GBKListCompiler::GBKListCompiler(std::ostream& err) : m_err(err) {}

bool GBKListCompiler::read(const std::string& path, const LineHandler& handle) {
    norm_utility::StdioFile file;
    errno = 0;
    if (!file.open(path.c_str())) {
        m_err << "zeg-dict: cannot read " << path << ": " << std::strerror(errno) << '\n';
        return false;
    }
    char buffer[kMaxLineBytes + 2];
    std::string reason;
    bool tooLong = false;  // inside the rest of an over-long line
    for (unsigned number = 1; file.readLine(buffer, sizeof buffer);) {
        const size_t n = std::strlen(buffer);
        const bool whole = n > 0 && buffer[n - 1] == '\n';
        if (!whole && n == kMaxLineBytes + 1) {
            if (!tooLong) {
                m_err << path << ':' << number << ": longer than " << kMaxLineBytes << " bytes\n";
                ++m_errors;
            }
            tooLong = true;
            continue;
        }
        const bool skip = tooLong;
        tooLong = false;
        const std::string line = trim(std::string(buffer, whole ? n - 1 : n));
        if (!skip && !line.empty() && line[0] != '#') {
            ++m_lines;
            if (!handle(line, number, reason)) {
                m_err << path << ':' << number << ": " << reason << '\n';
                ++m_errors;
            }
        }
        ++number;
    }
    if (file.failed()) {
        m_err << "zeg-dict: cannot read " << path << ": " << std::strerror(errno) << '\n';
        return false;
    }
    return true;
}

bool GBKListCompiler::toGBK(const std::string& utf8, std::string& gbk, std::string& reason) {
    if (!m_open && !(m_open = m_codePage.open())) {
        reason = "iconv has no GBK converter";
        return false;
    }
    gbk.clear();
    for (size_t at = 0; at < utf8.size();) {
        char32_t cp = 0;
        const size_t n = decodeOne(utf8, at, cp);
        if (n == 0) {
            reason = "invalid UTF-8";
            return false;
        }
        unsigned code = 0;
        char32_t back = 0;
        if (cp < 0x80) {
            gbk.push_back(static_cast<char>(cp));
        } else if (m_codePage.encode(cp, code) && m_codePage.decode(code >> 8, code & 0xFF, back) &&
                   back == cp) {
            gbk.push_back(static_cast<char>(code >> 8));
            gbk.push_back(static_cast<char>(code & 0xFF));
        } else {
            char hex[16];
            std::snprintf(hex, sizeof hex, "U+%04X", static_cast<unsigned>(cp));
            reason = "'" + utf8.substr(at, n) + "' (" + hex + ") has no GBK form";
            return false;
        }
        at += n;
    }
    return true;
}

bool GBKListCompiler::write(const std::string& path, const std::string& contents) {
    if (m_errors > 0) {
        m_err << "zeg-dict: " << m_errors << " bad lines; " << path << " not written\n";
        return false;
    }
    AtomicFile out(path);
    errno = 0;
    std::ofstream file(out.tempPath(), std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    std::string error = std::strerror(errno != 0 ? errno : EIO);
    if (file && out.commit(error)) return true;
    m_err << "zeg-dict: cannot write " << path << ": " << error << '\n';
    return false;
}

}  // namespace zeg_tools
