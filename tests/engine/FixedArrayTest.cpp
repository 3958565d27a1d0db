#include "FixedArray.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

// Counts the live objects; cannot be copied or moved, like a node's parts.
class Part {
public:
    explicit Part(int value)
        : m_value(value)
    {
        if (value == kRefused)
            throw std::runtime_error("refused");
        ++live;
    }
    Part(const Part&) = delete;
    ~Part() { --live; }

    static constexpr int kRefused = -1;
    static inline int live = 0;
    int m_value;
};

FixedArray<Part> makeParts(std::initializer_list<int> values)
{
    return FixedArray<Part>(values.size(), [&values](Part* where, size_t index) {
        std::construct_at(where, values.begin()[index]);
    });
}

TEST(FixedArrayTest, ElementsStayInPlaceUntilCleared)
{
    FixedArray<Part> parts = makeParts({ 4, 5, 6 });
    ASSERT_EQ(parts.size(), 3u);
    const Part* second = parts.at(1);
    FixedArray<Part> moved = std::move(parts);
    EXPECT_EQ(moved.at(1), second) << "moving the array keeps the elements where they are";
    EXPECT_TRUE(parts.empty());
    EXPECT_EQ(moved.at(3), nullptr);
    EXPECT_EQ(moved[2].m_value, 6);
    EXPECT_EQ(Part::live, 3);
    moved.clear();
    EXPECT_EQ(Part::live, 0);
}

TEST(FixedArrayTest, AThrowingConstructorUndoesTheElementsMadeBefore)
{
    EXPECT_THROW(makeParts({ 1, 2, Part::kRefused, 4 }), std::runtime_error);
    EXPECT_EQ(Part::live, 0);
}

} // namespace
