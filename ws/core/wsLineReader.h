#ifndef ZEG_WS_CORE_WSLINEREADER_H
#define ZEG_WS_CORE_WSLINEREADER_H

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "ws/core/wsFile.h"

namespace ws {

// Reads a text file in the pieces the segmenter's text loaders expect: what
// fgets with a buffer of `bufferSize` bytes would return, that is at most
// bufferSize - 1 bytes ending at the first line feed, so a longer line comes
// in several pieces. Unlike fgets, a NUL byte does not cut a piece short.
// Only regular files are opened: a directory would read as an empty file and
// a device or pipe might never end. Owns its stream; not copyable.
// Thread safety: one object per thread.
class LineReader {
public:
    // REQUIRES: bufferSize >= 2.
    explicit LineReader(std::size_t bufferSize);
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    // Opens `path` for reading, closing any file opened before. False, with
    // errno set (EISDIR or EINVAL for what is not a regular file), when it
    // cannot be opened.
    bool open(const char* path);

    // Replaces `piece` with the next piece, its line feed included. False at
    // the end of the file or on a read error (then failed() is true).
    bool next(std::string& piece);
    // The same piece without a copy where it lies whole in the read-ahead
    // block: [data, data + size), valid until the next call; `spill` holds
    // it otherwise.
    bool next(const char*& data, std::size_t& size, std::string& spill);

    // True when `piece`, as next() returned it, is only the start of a line
    // longer than the buffer. Loaders that take whole lines report such a
    // line and stop: skipping the rest of an endless one would never end.
    bool cut(const std::string& piece) const;

    // True when a read error, not the end of the file, stopped reading.
    bool failed() const;

private:
    // Refills m_block from the stream; false at the end or on an error.
    bool _fill();

    File m_file;
    std::size_t m_maxBytes;
    // Read ahead in blocks: a byte at a time through the stream made this
    // the larger part of loading a text dictionary.
    std::vector<char> m_block;
    std::size_t m_at = 0;
    std::size_t m_held = 0;
};

}  // namespace ws

#endif
