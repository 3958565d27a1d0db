#include "FixedArray.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// Counts the live objects; cannot be copied or moved, like a node's parts.
class Part {
public:
    explicit Part(int value)
    {
        if (value == kRefused)
            throw std::runtime_error("refused");
        ++live;
    }
    Part(const Part&) = delete;
    ~Part() { --live; }

    static constexpr int kRefused = -1;
    static inline int live = 0;
};

TEST(FixedArrayTest, AThrowingConstructorUndoesTheElementsMadeBefore)
{
    const int values[] = { 1, 2, Part::kRefused, 4 };
    const auto make = [&values](Part* where, size_t index) { std::construct_at(where, values[index]); };
    EXPECT_THROW(FixedArray<Part>(std::size(values), make), std::runtime_error);
    EXPECT_EQ(Part::live, 0);
}

} // namespace
