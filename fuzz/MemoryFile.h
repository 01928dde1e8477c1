#ifndef ZEG_FUZZ_MEMORYFILE_H
#define ZEG_FUZZ_MEMORYFILE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace zeg_fuzz {

// Bytes as a file with a path, for loaders that open one: an anonymous
// memory file, closed with the object. Its path names nothing once the
// object is gone. Not copyable. Thread safety: none needed; one per input.
class MemoryFile {
public:
    MemoryFile(const uint8_t* data, size_t size);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    // "/proc/self/fd/N"; empty when the file could not be made.
    const std::string& path() const { return m_path; }

private:
    int m_fd = -1;
    std::string m_path;
};

}  // namespace zeg_fuzz

#endif
