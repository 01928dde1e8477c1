#ifndef ZEG_WS_POS_WSPOSTEXTREADER_H
#define ZEG_WS_POS_WSPOSTEXTREADER_H

#include <string>
#include <vector>

#include "ws/core/wsLineReader.h"

namespace ws {

// Reads the tagger's text files one line at a time as fields. Lines longer
// than kMaxLine bytes are reported as "FILE:LINE: line too long" on the
// error stream and skipped whole; blank lines are skipped silently.
// Owns its file; not copyable. Thread safety: one object per thread.
class PosTextReader {
public:
    static const unsigned kMaxLine = 4096;

    PosTextReader();
    PosTextReader(const PosTextReader&) = delete;
    PosTextReader& operator=(const PosTextReader&) = delete;

    // Opens `path`; false when it cannot be opened (errno set).
    bool open(const char* path);

    // The next non-blank line split on the bytes of `delims` into `fields`.
    // False at the end of the file or on a read error (then failed()).
    bool next(const std::string& delims, std::vector<std::string>& fields);

    bool failed() const { return m_reader.failed(); }
    int lineNumber() const { return m_line; }
    // Reports "FILE:LINE: reason" for the line last returned.
    void report(const std::string& reason) const;

private:
    LineReader m_reader;
    std::string m_path;
    std::string m_piece;
    int m_line = 0;
};

}  // namespace ws

#endif
