#ifndef ZEG_WS_CORE_WSPREFAULT_H
#define ZEG_WS_CORE_WSPREFAULT_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23
#endif

namespace ws {

// Backs the pages of [begin, begin + bytes), memory this process allocated
// and will write, with memory now, in one call: a table filled at start-up
// otherwise takes a page fault every 4 KiB, and under virtualisation each
// costs several microseconds. Best effort: does nothing where the kernel
// lacks MADV_POPULATE_WRITE (before Linux 5.14). Header-only, so that the
// normaliser's utilities can use it too.
inline void prefaultForWrite(void* begin, std::size_t bytes) {
    if (begin == nullptr || bytes == 0) return;
    static const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    // madvise wants a page-aligned start; the page holding `begin` belongs to
    // the same mapping.
    const uintptr_t start = reinterpret_cast<uintptr_t>(begin) & ~(page - 1);
    const uintptr_t end = reinterpret_cast<uintptr_t>(begin) + bytes;
    madvise(reinterpret_cast<void*>(start), end - start, MADV_POPULATE_WRITE);
}

// A vector of `n` copies of `value` whose pages are backed before it is filled.
template <typename Vector, typename T>
void assignPrefaulted(Vector& v, std::size_t n, const T& value) {
    v.clear();
    v.reserve(n);
    prefaultForWrite(v.data(), n * sizeof(*v.data()));
    v.assign(n, value);
}

}  // namespace ws

#endif
