#ifndef ZEG_WS_CORE_WSBUFFERGROWTH_H
#define ZEG_WS_CORE_WSBUFFERGROWTH_H

#include <cstddef>
#include <new>
#include <stdexcept>
#include <vector>

namespace ws {

// The one set of helpers for grow-only buffers, the segmenter's working
// arrays and the normaliser's conversion buffers alike. Header-only but for
// logAllocationFailure, which only the logging variant needs.

// Logs "allocate memory fail in wsTextSegmentation.cpp:<line>!" at error level
// through the segmenter logger. Defined in wsTextSegmentation.cpp, the source
// the message names.
void logAllocationFailure();

// Runs `allocate`; if it runs out of memory, calls `onFailure` and returns
// false instead of letting the exception escape.
template <typename Allocate, typename OnFailure>
bool allocateOr(Allocate&& allocate, OnFailure&& onFailure) {
    try {
        allocate();
        return true;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    onFailure();
    return false;
}

// allocateOr with the segmentation's own failure message.
template <typename Allocate>
bool allocateOrLog(Allocate&& allocate) {
    return allocateOr(allocate, logAllocationFailure);
}

// Frees `array`, then gives it exactly `n` value-initialised entries. On an
// exception the array is left empty.
template <typename T>
void renewArray(std::vector<T>& array, std::size_t n) {
    std::vector<T>().swap(array);
    std::vector<T>(n).swap(array);
}

// The grow-only rule for one array: keeps `array` when it holds at least `n`
// entries; otherwise renews it with exactly `n` and sets `capacity` to n.
// Sizes, not `capacity`, decide, because a failed growth leaves the array
// empty and `capacity` unchanged (and returns false, logged).
template <typename T>
__attribute__((noinline)) bool renewArrayOrLog(std::vector<T>& array, unsigned int& capacity,
                                               unsigned int n) {
    if (!allocateOrLog([&] { renewArray(array, n); })) return false;
    capacity = n;
    return true;
}

// The check inline, the growth (and its exception handling) out of line:
// callers on the hot path then pay for the check alone.
template <typename T>
bool growArray(std::vector<T>& array, unsigned int& capacity, unsigned int n) {
    return array.size() >= n || renewArrayOrLog(array, capacity, n);
}

// Grows `array` to at least `n` entries, keeping what it holds; new entries
// are value-initialised. Never shrinks, so a buffer reused call after call
// stops allocating once it has met its largest input. Throws as resize does.
template <typename T>
void growTo(std::vector<T>& array, std::size_t n) {
    if (array.size() < n) array.resize(n);
}

// Frees `array` for good (clear() would keep the memory).
template <typename T>
void releaseArray(std::vector<T>& array) {
    std::vector<T>().swap(array);
}

}  // namespace ws

#endif
