#include "fuzz/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

namespace zeg_fuzz {

MemoryFile::MemoryFile(const uint8_t* data, size_t size) {
    m_fd = memfd_create("zeg-fuzz", MFD_CLOEXEC);
    if (m_fd < 0) return;
    size_t done = 0;
    while (done < size) {
        const ssize_t n = write(m_fd, data + done, size - done);
        if (n <= 0) return;
        done += static_cast<size_t>(n);
    }
    m_path = "/proc/self/fd/" + std::to_string(m_fd);
}

MemoryFile::~MemoryFile() {
    if (m_fd >= 0) close(m_fd);
}

}  // namespace zeg_fuzz
