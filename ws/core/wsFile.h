#ifndef ZEG_WS_CORE_WSFILE_H
#define ZEG_WS_CORE_WSFILE_H

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace ws {

// The one owner of a C stream: every fopen and fclose of the library goes
// through it. Header-only so that the normaliser's utilities can use it
// without linking the segmenter. Movable, not copyable; closes on
// destruction. Thread safety: one object per thread.
class File {
public:
    File() = default;
    // Takes over a stream opened elsewhere (tmpfile, fmemopen); null holds
    // nothing.
    explicit File(std::FILE* adopted) : m_file(adopted) {}
    ~File() { close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept : m_file(other.m_file) { other.m_file = nullptr; }
    File& operator=(File&& other) noexcept {
        if (this != &other) {
            close();
            m_file = other.m_file;
            other.m_file = nullptr;
        }
        return *this;
    }

    // fopen(path, mode), closing any stream held before. False, with errno
    // set (ENOENT for a null path), when it cannot be opened; nothing is
    // held then.
    bool open(const char* path, const char* mode) {
        close();
        if (path == nullptr) {
            errno = ENOENT;
            return false;
        }
        m_file = std::fopen(path, mode);
        return m_file != nullptr;
    }

    // open(path, mode) for a regular file only: a directory would read as an
    // empty file and a device or pipe (/dev/zero) might never end. False,
    // errno EISDIR or EINVAL, for anything else; nothing is held then.
    bool openRegular(const char* path, const char* mode) {
        if (!open(path, mode)) return false;
        const unsigned kind = type();
        if (kind == S_IFREG) return true;
        close();
        errno = kind == S_IFDIR ? EISDIR : EINVAL;
        return false;
    }

    // Closes the stream; 0, or EOF when buffered bytes could not be written
    // (a failed write). 0 when nothing is held.
    int close() {
        if (m_file == nullptr) return 0;
        const int rc = std::fclose(m_file);
        m_file = nullptr;
        return rc;
    }

    // The stream's file type (S_IFREG, S_IFDIR, ...), or 0 when unknown.
    // On Linux fopen accepts a directory and only the first read fails.
    unsigned type() const {
        struct stat st = {};
        if (m_file == nullptr || fstat(fileno(m_file), &st) != 0) return 0;
        return st.st_mode & S_IFMT;
    }

    bool isOpen() const { return m_file != nullptr; }
    explicit operator bool() const { return m_file != nullptr; }
    // The stream, still owned by this object; null when none is held.
    std::FILE* get() const { return m_file; }

private:
    std::FILE* m_file = nullptr;
};

}  // namespace ws

#endif
