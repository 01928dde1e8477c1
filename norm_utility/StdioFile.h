#ifndef ZEG_NORM_UTILITY_STDIOFILE_H
#define ZEG_NORM_UTILITY_STDIOFILE_H

#include <cstddef>
#include <cstdio>

#include "ws/core/wsFile.h"

namespace norm_utility {

// Owns one FILE* opened for reading; closes it on destruction. Not copyable.
// Only regular files are opened (errno EISDIR or EINVAL otherwise): on Linux
// fopen accepts a directory, which would read as an empty file, and a device
// such as /dev/zero would never end.
// Thread safety: one object per thread.
class StdioFile {
public:
    StdioFile() = default;
    StdioFile(const StdioFile&) = delete;
    StdioFile& operator=(const StdioFile&) = delete;

    // Opens `path` for reading in text mode. False (errno set) on failure.
    bool open(const char* path);
    void close();
    bool isOpen() const { return m_file.isOpen(); }

    // fgets semantics: reads at most size - 1 bytes up to and including a
    // line feed, NUL-terminates. Returns false at end of file or on error.
    bool readLine(char* buf, int size);

    // Reads up to `size` bytes; returns the count (0 at end or on error).
    std::size_t read(char* buf, std::size_t size);

    // True when the stream met a read error (not end of file).
    bool failed() const;

private:
    ws::File m_file;
};

}  // namespace norm_utility

#endif
