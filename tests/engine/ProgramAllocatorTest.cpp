#include <gtest/gtest.h>

#include <memory>
#include <vector>

// Every test program is linked like the tools: with the program allocator,
// which sets 1 GiB aside for the heap at start-up. Allocations must go on
// past it, from the kernel, rather than fail once it is used up.
TEST(ProgramAllocatorTest, AllocationsGoOnBeyondTheReservedHeap)
{
    constexpr size_t kBlock = size_t(300) << 20;
    std::vector<std::unique_ptr<char[]>> blocks;
    for (int i = 0; i < 5; ++i) {
        // Not written to, so only address space is used.
        blocks.push_back(std::make_unique_for_overwrite<char[]>(kBlock));
        ASSERT_NE(blocks.back(), nullptr);
    }
}
