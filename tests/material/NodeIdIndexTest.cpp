#include "NodeIdIndex.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>

namespace {

// Stand-ins for nodes: the index only keeps the pointers.
std::array<int, 4> nodes;
DataNode* node(size_t index) { return reinterpret_cast<DataNode*>(&nodes[index]); }

// Ids far above the node count are put aside; they stay reachable, and can be
// erased, once the table has grown over them.
TEST(NodeIdIndexTest, SmallAndFarIdsAreFoundUntilErased)
{
    NodeIdIndex index;
    index.insert(INT_MAX, node(0));
    index.insert(3000, node(1));
    for (int32_t id = 0; id < 2000; ++id)
        index.insert(id, node(2));
    index.insert(2999, node(3)); // the table now reaches past 3000
    ASSERT_EQ(index.size(), 2003u);
    EXPECT_EQ(index.find(INT_MAX), node(0));
    EXPECT_EQ(index.find(3000), node(1));
    EXPECT_EQ(index.find(2999), node(3));
    EXPECT_EQ(index.find(2000), nullptr);
    EXPECT_EQ(index.find(-1), nullptr);
    EXPECT_EQ(index.find(INT_MIN), nullptr);

    index.erase(3000);
    index.erase(INT_MAX);
    index.erase(0);
    index.erase(2500); // not held: nothing changes
    EXPECT_EQ(index.size(), 2000u);
    EXPECT_FALSE(index.contains(3000));
    EXPECT_FALSE(index.contains(INT_MAX));
    EXPECT_FALSE(index.contains(0));
    EXPECT_EQ(index.find(1), node(2));

    index.clear();
    EXPECT_EQ(index.size(), 0u);
    EXPECT_FALSE(index.contains(1));
}

} // namespace
