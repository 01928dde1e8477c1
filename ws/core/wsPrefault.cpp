#include "ws/core/wsPrefault.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23
#endif

namespace ws {

void prefaultForWrite(void* begin, std::size_t bytes) {
    if (begin == nullptr || bytes == 0) return;
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    // madvise wants a page-aligned start; the page holding `begin` belongs to
    // the same mapping.
    const uintptr_t start = reinterpret_cast<uintptr_t>(begin) & ~(page - 1);
    const uintptr_t end = reinterpret_cast<uintptr_t>(begin) + bytes;
    madvise(reinterpret_cast<void*>(start), end - start, MADV_POPULATE_WRITE);
}

}  // namespace ws
