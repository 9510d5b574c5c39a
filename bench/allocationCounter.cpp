#include "allocationCounter.h"

#include <atomic>
#include <cstddef>
#include <new>

// Counts every allocation of the process: the global operator new is replaced, and so are
// malloc, calloc and realloc, since text buffers and RapidJSON allocate with those. Both
// hand the work to glibc's own allocator.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);
}

namespace {

std::atomic<uint64_t> allocations{0};

void count() { allocations.fetch_add(1, std::memory_order_relaxed); }

void* allocate(std::size_t size) {
    count();
    if (void* memory = __libc_malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

} // namespace

uint64_t allocationCount() { return allocations.load(std::memory_order_relaxed); }

extern "C" {
void* malloc(std::size_t size) {
    count();
    return __libc_malloc(size);
}
void* calloc(std::size_t count_, std::size_t size) {
    count();
    return __libc_calloc(count_, size);
}
void* realloc(void* memory, std::size_t size) {
    count();
    return __libc_realloc(memory, size);
}
void free(void* memory) { __libc_free(memory); }
}

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    count();
    return __libc_malloc(size ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    count();
    return __libc_malloc(size ? size : 1);
}
void operator delete(void* memory) noexcept { __libc_free(memory); }
void operator delete[](void* memory) noexcept { __libc_free(memory); }
void operator delete(void* memory, std::size_t) noexcept { __libc_free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { __libc_free(memory); }
