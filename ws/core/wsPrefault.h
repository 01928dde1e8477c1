#ifndef ZEG_WS_CORE_WSPREFAULT_H
#define ZEG_WS_CORE_WSPREFAULT_H

#include <cstddef>

namespace ws {

// Backs the pages of [begin, begin + bytes), memory this process allocated
// and will write, with memory now, in one call: a table filled at start-up
// otherwise takes a page fault every 4 KiB, and under virtualisation each
// costs several microseconds. Best effort: does nothing where the kernel
// lacks MADV_POPULATE_WRITE (before Linux 5.14).
void prefaultForWrite(void* begin, std::size_t bytes);

}  // namespace ws

#endif
