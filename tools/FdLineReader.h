#ifndef ZEG_TOOLS_FDLINEREADER_H
#define ZEG_TOOLS_FDLINEREADER_H

#include <cstddef>
#include <string>
#include <vector>

namespace zeg_tools {

// Reads a byte stream line by line, whatever the bytes: a line ends at a
// line feed (a carriage return right before it is dropped too), or at the
// end of the stream if it is not empty there. Zero bytes and invalid UTF-8
// stay in the line. A line longer than the cap given to the constructor
// keeps only its first `cap` bytes in memory and says that it was cut, so
// that any line length costs bounded memory; the rest of it is skipped only
// when the next line is asked for, so a caller can stop at a cut line even
// if it never ends (/dev/zero). Does not own the stream.
// Thread safety: one object per thread.
class FdLineReader {
public:
    FdLineReader(int fd, std::size_t cap);
    FdLineReader(const FdLineReader&) = delete;
    FdLineReader& operator=(const FdLineReader&) = delete;

    // The next line into `line` (at most `cap` bytes); `cut` tells whether
    // bytes were left out. False at the end of the stream or on a read error.
    bool next(std::string& line, bool& cut);

    // The next piece of a line into `piece`: at most `cap` bytes; `more`
    // tells that the line goes on in the next piece. A line's last piece
    // drops the line feed (and a carriage return right before it); a line
    // of any length thus streams through in bounded memory. False at the end
    // of the stream or on a read error.
    bool nextPiece(std::string& piece, bool& more);

    // True when reading failed (not merely ended).
    bool failed() const { return m_failed; }

private:
    bool fill();
    bool skipRest();
    void append(std::string& line, bool& cut, const char* bytes, std::size_t n);

    int m_fd;
    std::size_t m_cap;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_eof = false;
    bool m_failed = false;
    bool m_skipRest = false;
};

}  // namespace zeg_tools

#endif
