#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> gAllocations{0};
std::atomic<bool> gFailing{false};

void* allocate(std::size_t size) noexcept {
    ++gAllocations;
    if (gFailing) return nullptr;
    return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size) {
    void* p = allocate(size);
    if (p == nullptr) throw std::bad_alloc();
    return p;
}

}  // namespace

namespace zeg_test {

std::size_t allocationCount() { return gAllocations; }

FailingAllocations::FailingAllocations() { gFailing = true; }
FailingAllocations::~FailingAllocations() { gFailing = false; }

}  // namespace zeg_test

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
