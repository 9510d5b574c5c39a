#include <zuno/CSmallObject.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <thread>
#include <vector>

using namespace zuno;

namespace {

// Fills a block with a pattern of its own and checks it later: blocks never overlap.
struct Block {
    unsigned char* memory;
    size_t size;
    unsigned char pattern;
};

std::vector<Block> allocateMany(size_t count, unsigned seed) {
    std::vector<Block> blocks;
    for (size_t i = 0; i < count; ++i) {
        // Sizes across small, chunk-filling and heap-sized requests.
        const size_t size = (i * 37 + seed) % 97 == 0 ? CSmallObject::MaxSmallBytes + 1 + i % 5000 : 1 + (i * 131 + seed) % 300;
        Block block{static_cast<unsigned char*>(CSmallObject::allocate(size)), size, static_cast<unsigned char>(i + seed)};
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block.memory) % alignof(std::max_align_t), 0u);
        std::memset(block.memory, block.pattern, size);
        blocks.push_back(block);
    }
    return blocks;
}

void checkAndFree(const std::vector<Block>& blocks) {
    for (const Block& block : blocks) {
        for (size_t i = 0; i < block.size; ++i) ASSERT_EQ(block.memory[i], block.pattern);
        CSmallObject::free(block.memory);
    }
}

} // namespace

// Blocks made on one thread and freed on another, in any order, while both keep carving:
// the sanitizer build sees every chunk go back to the heap exactly once.
TEST(SmallObject, BlocksAreDistinctAlignedAndFreedOnAnyThread) {
    std::vector<Block> early = allocateMany(20000, 1);
    std::vector<Block> fromThread;
    std::thread maker([&] { fromThread = allocateMany(20000, 2); });
    maker.join();  // the thread's last chunk is retired with blocks still in use

    std::thread freer([&] { checkAndFree(early); });
    std::vector<Block> late = allocateMany(20000, 3);
    freer.join();
    checkAndFree(fromThread);
    checkAndFree(late);
    CSmallObject::free(nullptr);
    EXPECT_THROW(CSmallObject::allocate(size_t(-1) - 4), std::bad_alloc);
}
