// The size classes of recycled blocks, and the lists that keep them: a block
// handed out must hold what was asked for and cost the heap no more than
// asking for it would; a freed block is handed out again; a list keeps no
// more than its share, and what it keeps is counted.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "value/RecyclingAllocator.h"

namespace Lists = Mero::SizedBlockLists;
using Mero::SizedBlocks;

namespace {

// The heap's chunk for a request: the request and an 8-byte header, in
// 16-byte steps, 32 at least.
std::size_t chunkOf(std::size_t request)
{
    return request + 8 <= 32 ? 32 : (request + 8 + 15) / 16 * 16;
}

}  // namespace

// Every size up to the largest gets the smallest class that holds it, and
// that class's block takes the heap chunk the size itself would take in the
// small classes (in the larger ones at most 16 bytes more).
TEST(SizedBlockClasses, EachSizeGetsTheSmallestClassThatHoldsIt)
{
    for (std::size_t size = 1; size <= Lists::kLargest; ++size) {
        const std::size_t sizeClass = Lists::classOf(size);
        ASSERT_LT(sizeClass, Lists::kClasses) << size;
        const std::size_t block = Lists::blockSize(sizeClass);
        ASSERT_GE(block, size) << size;
        ASSERT_EQ((block + 8) % 16, 0U) << size;
        if (sizeClass > 0) {
            ASSERT_LT(Lists::blockSize(sizeClass - 1), size) << size;
        }
        ASSERT_LE(chunkOf(block), chunkOf(size) + (size <= Lists::kLargestSmall ? 0 : 16)) << size;
    }
}

TEST(SizedBlocks, AFreedBlockIsHandedOutAgainAndCountedWhileKept)
{
    if (!MERO_RECYCLE_BLOCKS) {
        GTEST_SKIP() << "sanitizer builds recycle nothing";
    }
    void* block = SizedBlocks::allocate(130);
    const std::size_t keptBefore = Mero::keptBlockBytes;
    SizedBlocks::deallocate(block, 130);
    EXPECT_EQ(Mero::keptBlockBytes, keptBefore + chunkOf(136));
    // Any size of the same class takes it back.
    void* again = SizedBlocks::allocate(136);
    EXPECT_EQ(again, block);
    EXPECT_EQ(Mero::keptBlockBytes, keptBefore);
    SizedBlocks::deallocate(again, 136);
}

// The largest class keeps 8 KB of blocks: four. Past that, freed blocks go
// back to the heap and the count stops.
TEST(SizedBlocks, AListKeepsNoMoreThanItsShare)
{
    if (!MERO_RECYCLE_BLOCKS) {
        GTEST_SKIP() << "sanitizer builds recycle nothing";
    }
    std::vector<void*> blocks;
    for (int i = 0; i < 6; ++i) {
        blocks.push_back(SizedBlocks::allocate(Lists::kLargest));
    }
    const std::size_t keptBefore = Mero::keptBlockBytes;  // this class's list is empty now
    for (void* block : blocks) {
        SizedBlocks::deallocate(block, Lists::kLargest);
    }
    EXPECT_EQ(Mero::keptBlockBytes - keptBefore, 4 * chunkOf(Lists::kLargest));
    // Larger sizes never touch the lists.
    void* large = SizedBlocks::allocate(Lists::kLargest + 1);
    SizedBlocks::deallocate(large, Lists::kLargest + 1);
    EXPECT_EQ(Mero::keptBlockBytes - keptBefore, 4 * chunkOf(Lists::kLargest));
}
