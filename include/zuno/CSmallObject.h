#pragma once

#include <cstddef>
#include <new>

namespace zuno {

// Memory for the many small objects a parse makes at once (variants, their element
// storage, texts). Each thread carves them out of chunks of its own, one after the other,
// instead of asking the heap for each: a document of 100,000 values costs a few hundred
// heap allocations instead of 100,000, and freeing an object is one atomic decrement. A
// chunk goes back to the heap once every object carved from it is freed, on whatever
// thread; until then it stays whole, so a few long-lived objects can hold a chunk
// (ChunkBytes) each. Large requests go to the heap directly.
//
// A class takes its memory from here by deriving from CSmallObject; a standard container
// by using CSmallObject::Allocator.
class CSmallObject {
public:
    static constexpr std::size_t ChunkBytes = 64 * 1024;
    static constexpr std::size_t MaxSmallBytes = 2048;

    static void* allocate(std::size_t bytes);
    static void free(void* memory) noexcept;

    static void* operator new(std::size_t bytes) { return allocate(bytes); }
    static void operator delete(void* memory) noexcept { free(memory); }

    template <class T>
    struct Allocator {
        using value_type = T;
        Allocator() noexcept = default;
        template <class U>
        Allocator(const Allocator<U>&) noexcept {}
        T* allocate(std::size_t count) {
            if (count > std::size_t(-1) / 2 / sizeof(T)) throw std::bad_array_new_length();
            return static_cast<T*>(CSmallObject::allocate(count * sizeof(T)));
        }
        void deallocate(T* memory, std::size_t) noexcept { CSmallObject::free(memory); }
        template <class U>
        bool operator==(const Allocator<U>&) const noexcept { return true; }
        template <class U>
        bool operator!=(const Allocator<U>&) const noexcept { return false; }
    };
};

} // namespace zuno
