#ifndef ZEG_TOOLS_GBKLISTCOMPILER_H
#define ZEG_TOOLS_GBKLISTCOMPILER_H

#include <functional>
#include <ostream>
#include <string>

#include "tools/GBKCodePage.h"

namespace zeg_tools {

// What zeg-dict stopwords and zeg-dict synonyms share: reading one of our
// UTF-8 list files and writing the GBK file the normaliser loads.
//
// A source line is trimmed of blanks (space, tab, CR); empty lines and
// lines starting with '#' are skipped. Every problem is written to the
// error stream as "FILE:LINE: reason" and counted; a compiler that counted
// any writes nothing, so the normaliser never loads a list that silently
// lost a word. Not copyable (owns iconv converters). Not thread-safe.
class GBKListCompiler {
public:
    // Lines longer than this are refused rather than read in pieces.
    static constexpr std::size_t kMaxLineBytes = 1023;

    explicit GBKListCompiler(std::ostream& err);

    // Called with each content line and its number; returns false with
    // `reason` set to refuse the line.
    using LineHandler =
        std::function<bool(const std::string& line, unsigned number, std::string& reason)>;

    // Reads `path`, passing every content line to `handle`. False when the
    // file cannot be read (reported as "zeg-dict: cannot read ...").
    bool read(const std::string& path, const LineHandler& handle);

    // `utf8` in GBK (ASCII as single bytes, everything else as the
    // double-byte character of the GBK code page). False with `reason`
    // ("invalid UTF-8", "'X' (U+XXXX) has no GBK form") otherwise.
    bool toGBK(const std::string& utf8, std::string& gbk, std::string& reason);

    // Writes `contents` to `path` whole or not at all; false (reported)
    // when that fails or when any line was refused.
    bool write(const std::string& path, const std::string& contents);

    // Lines refused so far.
    unsigned errors() const { return m_errors; }
    // Content lines read so far.
    unsigned lines() const { return m_lines; }

private:
    std::ostream& m_err;
    GBKCodePage m_codePage;
    bool m_open = false;
    unsigned m_errors = 0;
    unsigned m_lines = 0;
};


}  // namespace zeg_tools

#endif
