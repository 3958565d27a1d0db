#include "NodeIdIndex.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>

namespace {

// Stand-ins for nodes: the index only keeps the pointers.
std::array<int, 8> nodes;
DataNode* node(size_t index) { return reinterpret_cast<DataNode*>(&nodes[index]); }

TEST(NodeIdIndexTest, SmallAndFarIdsAreFoundUntilErased)
{
    NodeIdIndex index;
    index.insert(0, node(0));
    index.insert(INT_MAX, node(1));
    index.insert(5000, node(2)); // beyond the table while the index is small
    index.insert(3, node(3));
    EXPECT_EQ(index.size(), 4u);
    EXPECT_EQ(index.find(0), node(0));
    EXPECT_EQ(index.find(INT_MAX), node(1));
    EXPECT_EQ(index.find(5000), node(2));
    EXPECT_EQ(index.find(3), node(3));
    EXPECT_EQ(index.find(1), nullptr);
    EXPECT_EQ(index.find(-1), nullptr);
    EXPECT_EQ(index.find(INT_MIN), nullptr);

    index.erase(INT_MAX);
    index.erase(0);
    index.erase(7); // not held: nothing changes
    EXPECT_EQ(index.size(), 2u);
    EXPECT_FALSE(index.contains(INT_MAX));
    EXPECT_FALSE(index.contains(0));
    EXPECT_EQ(index.find(3), node(3));
}

// An id put aside while it was beyond the table stays reachable, and can be
// erased, once the table has grown over it.
TEST(NodeIdIndexTest, TableGrowsOverIdsPutAside)
{
    NodeIdIndex index;
    index.insert(3000, node(0));
    for (int32_t id = 0; id < 2000; ++id)
        index.insert(id, node(1));
    ASSERT_EQ(index.size(), 2001u);
    EXPECT_EQ(index.find(3000), node(0));
    index.insert(2999, node(2));
    EXPECT_EQ(index.find(2999), node(2));
    index.erase(3000);
    EXPECT_FALSE(index.contains(3000));
    EXPECT_EQ(index.size(), 2001u);

    index.clear();
    EXPECT_EQ(index.size(), 0u);
    EXPECT_FALSE(index.contains(5));
    EXPECT_FALSE(index.contains(2999));
}

} // namespace
