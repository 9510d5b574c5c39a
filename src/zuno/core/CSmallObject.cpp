#include <zuno/CSmallObject.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace zuno {

namespace {

// Every block starts with a header that names its chunk (null for a block of its own), so
// that freeing needs nothing but the pointer. The header keeps the alignment of max_align_t.
struct alignas(alignof(std::max_align_t)) Header {
    struct Chunk* chunk;
};

// A chunk's count starts at Unretired: frees count it down, and the thread that carves the
// chunk takes away the rest of the head start (less the blocks it carved) when it moves on
// to the next chunk, so the count reaches zero exactly when the last block is freed after
// that.
constexpr int64_t Unretired = int64_t(1) << 62;

struct Chunk {
    std::atomic<int64_t> live{Unretired};
};

constexpr std::size_t roundUp(std::size_t bytes) {
    return (bytes + alignof(std::max_align_t) - 1) & ~(alignof(std::max_align_t) - 1);
}

constexpr std::size_t ChunkHead = roundUp(sizeof(Chunk));

void release(Chunk* chunk, int64_t count) {
    if (chunk->live.fetch_sub(count, std::memory_order_acq_rel) == count) std::free(chunk);
}

// The chunk a thread carves from.
struct Carver {
    Chunk* chunk = nullptr;
    char* next = nullptr;
    char* end = nullptr;
    int64_t carved = 0;

    void retire() {
        if (chunk) release(chunk, Unretired - carved);
        chunk = nullptr;
        next = end = nullptr;
        carved = 0;
    }
    bool renew() {
        retire();
        void* memory = std::malloc(CSmallObject::ChunkBytes);
        if (!memory) return false;
        chunk = new (memory) Chunk;
        next = static_cast<char*>(memory) + ChunkHead;
        end = static_cast<char*>(memory) + CSmallObject::ChunkBytes;
        return true;
    }
    ~Carver() { retire(); }
};

// False once the thread's carver is destroyed (objects made while the thread or the
// process shuts down come from the heap).
thread_local bool carverAlive = true;

struct CarverHolder {
    Carver carver;
    ~CarverHolder() { carverAlive = false; }
};

Carver* threadCarver() {
    if (!carverAlive) return nullptr;
    thread_local CarverHolder holder;
    return &holder.carver;
}

void* fromHeap(std::size_t total) {
    void* memory = std::malloc(total);
    if (!memory) throw std::bad_alloc();
    static_cast<Header*>(memory)->chunk = nullptr;
    return static_cast<char*>(memory) + sizeof(Header);
}

} // namespace

void* CSmallObject::allocate(std::size_t bytes) {
    if (bytes > MaxSmallBytes) {
        if (bytes > std::size_t(-1) - sizeof(Header)) throw std::bad_alloc();
        return fromHeap(sizeof(Header) + bytes);
    }
    const std::size_t total = sizeof(Header) + roundUp(bytes ? bytes : 1);
    Carver* carver = threadCarver();
    if (!carver) return fromHeap(total);
    if (std::size_t(carver->end - carver->next) < total && !carver->renew()) throw std::bad_alloc();
    Header* header = reinterpret_cast<Header*>(carver->next);
    carver->next += total;
    ++carver->carved;
    header->chunk = carver->chunk;
    return header + 1;
}

void CSmallObject::free(void* memory) noexcept {
    if (!memory) return;
    Header* header = static_cast<Header*>(memory) - 1;
    if (header->chunk) {
        release(header->chunk, 1);
    } else {
        std::free(header);
    }
}

} // namespace zuno
