#include "tools/FdLineReader.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zeg_tools {

FdLineReader::FdLineReader(int fd, std::size_t cap) : m_fd(fd), m_cap(cap), m_buffer(65536) {}

bool FdLineReader::fill() {
    m_begin = m_end = 0;
    while (!m_eof) {
        const ssize_t n = ::read(m_fd, m_buffer.data(), m_buffer.size());
        if (n > 0) {
            m_end = static_cast<std::size_t>(n);
            return true;
        }
        if (n < 0 && errno == EINTR) continue;
        m_eof = true;
        m_failed = n < 0;
    }
    return false;
}

// Keeps one byte past the cap: a line of exactly `cap` bytes may still end
// in the carriage return of a CR LF pair, which is not part of it.
void FdLineReader::append(std::string& line, bool& cut, const char* bytes, std::size_t n) {
    const std::size_t keep = m_cap + 1;
    const std::size_t room = line.size() < keep ? keep - line.size() : 0;
    line.append(bytes, n < room ? n : room);
    if (n > room) cut = true;
}

// The rest of a line that next() cut, read only when the caller asks for the
// following line: a caller that stops at a cut line must not wait for the end
// of an endless one.
bool FdLineReader::skipRest() {
    while (m_skipRest && (m_begin < m_end || fill())) {
        const char* start = m_buffer.data() + m_begin;
        const void* feed = std::memchr(start, '\n', m_end - m_begin);
        m_begin = feed ? static_cast<const char*>(feed) - m_buffer.data() + 1 : m_end;
        m_skipRest = feed == nullptr;
    }
    return !m_skipRest;
}

bool FdLineReader::next(std::string& line, bool& cut) {
    line.clear();
    cut = false;
    bool any = false;
    if (!skipRest()) return false;
    for (;;) {
        if (m_begin == m_end && !fill()) break;
        any = true;
        const char* start = m_buffer.data() + m_begin;
        const std::size_t n = m_end - m_begin;
        const void* feed = std::memchr(start, '\n', n);
        const std::size_t length = feed ? static_cast<const char*>(feed) - start : n;
        append(line, cut, start, length);
        m_begin += feed ? length + 1 : length;
        if (feed) break;
        if (cut) {
            m_skipRest = true;
            break;
        }
    }
    if (!cut && !line.empty() && line.back() == '\r') line.pop_back();
    if (line.size() > m_cap) {
        line.resize(m_cap);
        cut = true;
    }
    return any;
}

bool FdLineReader::nextPiece(std::string& piece, bool& more) {
    piece.clear();
    more = false;
    bool any = false;
    if (!skipRest()) return false;
    while (m_begin < m_end || fill()) {
        any = true;
        const char* start = m_buffer.data() + m_begin;
        const std::size_t room = m_cap - piece.size();
        const std::size_t n = m_end - m_begin < room ? m_end - m_begin : room;
        const void* feed = std::memchr(start, '\n', n);
        const std::size_t length = feed ? static_cast<const char*>(feed) - start : n;
        piece.append(start, length);
        m_begin += feed ? length + 1 : length;
        if (feed) break;
        if (piece.size() == m_cap) {
            more = true;
            return true;
        }
    }
    if (!piece.empty() && piece.back() == '\r') piece.pop_back();
    return any;
}

}  // namespace zeg_tools
