#ifndef ZEG_WS_CORE_WSHOT_H
#define ZEG_WS_CORE_WSHOT_H

// Marks a function on the path of every segmented text or normalised query.
// GCC puts such functions in .text.hot, which the linker lays out as one
// block: the per-query code then shares the instruction cache instead of
// colliding in it wherever the rest of the library happens to land (a
// change elsewhere had doubled the instruction cache misses per query).
#if defined(__GNUC__)
#define WS_HOT __attribute__((hot))
#else
#define WS_HOT
#endif

#endif
