#ifndef ZEG_TESTS_SUPPORT_ALLOCATIONCOUNTER_H
#define ZEG_TESTS_SUPPORT_ALLOCATIONCOUNTER_H

#include <cstddef>

namespace zeg_test {

// A test binary that links the zeg_test_allocations target has its global
// operator new and delete replaced (on top of malloc and free), so that tests
// can count heap allocations and make them fail. Not thread-aware beyond
// atomic counting; tests using it run single-threaded.

// Calls of any form of operator new so far in this process.
std::size_t allocationCount();

// While one lives, every operator new throws std::bad_alloc (the nothrow
// forms return null), so that tests can reach out-of-memory paths.
class FailingAllocations {
public:
    FailingAllocations();
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};

}  // namespace zeg_test

#endif
