#include "Block.h"
#include "DocumentFixture.h"
#include "jLog.h"

namespace {

jVector<int32_t> ids_of(const AppData& doc)
{
    jVector<int32_t> ids;
    for (const auto& node : doc.getNodes())
        ids.push_back(node->getId());
    return ids;
}

} // namespace

TEST(AppDataSettings, ConstructionAndClearDisagreeOnTheBlendFactors)
{
    AppData doc;
    EXPECT_EQ(doc.getBlendSrc(), "one");
    EXPECT_EQ(doc.getBlendDst(), "zero");

    doc.setBlendOp("max");
    doc.setDepthFunc("DEPTH_ALWAYS");
    doc.clear();
    EXPECT_EQ(doc.getBlendSrc(), "none");
    EXPECT_EQ(doc.getBlendDst(), "none");
    EXPECT_EQ(doc.getBlendOp(), "add");
    EXPECT_EQ(doc.getDepthFunc(), "DEPTH_LEQUAL");
}

TEST(AppDataSamplers, DefaultSamplerIsFoundFirstAndNewOnesCountFromNine)
{
    AppData doc;
    ASSERT_EQ(doc.getSamplerCount(), 1u);
    const DataSampler* standard = doc.getSamplerAt(0);
    EXPECT_EQ(standard, doc.getDefaultSampler());
    EXPECT_EQ(standard->getIndex(), 8u);
    EXPECT_EQ(doc.getSampler("repeat", "bilinear", 1), standard);
    EXPECT_EQ(doc.getSamplerCount(), 1u);

    DataSampler* clamp = doc.getSampler("clamp", "bilinear", 1);
    DataSampler* aniso = doc.getSampler("repeat", "bilinear", 8);
    EXPECT_EQ(clamp->getIndex(), 9u);
    EXPECT_EQ(aniso->getIndex(), 10u);
    EXPECT_EQ(doc.getSampler("clamp", "bilinear", 1), clamp);
    EXPECT_EQ(doc.getSamplerAt(2), aniso);
    EXPECT_EQ(doc.getSamplerAt(3), nullptr);

    doc.clear();
    EXPECT_EQ(doc.getSamplerCount(), 1u);
    EXPECT_EQ(doc.getSamplerAt(0), standard);
    EXPECT_EQ(doc.getSampler("mirror", "point", 2)->getIndex(), 9u);
}

using AppDataNodes = DocumentTest;

TEST_F(AppDataNodes, FreshIdsNeverCollideWithLoadedIds)
{
    DataNode* a = create("Math.Add");
    DataNode* b = create("Math.Add");
    ASSERT_TRUE(doc->setNodeId(a, 41));

    jLog::Capture log;
    EXPECT_FALSE(doc->setNodeId(b, 41));
    EXPECT_FALSE(doc->setNodeId(b, -1));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: AppData::setNodeId: node id 41 is already in use",
                               "error: AppData::setNodeId: invalid node id -1",
                           }));
    EXPECT_EQ(doc->findNode(41), a);

    // Fresh ids continue above the largest id ever given.
    doc->clear();
    DataNode* first = create("Math.Add");
    ASSERT_TRUE(doc->setNodeId(first, 1));
    DataNode* second = create("Math.Add");
    EXPECT_EQ(second->getId(), 2);
    ASSERT_TRUE(doc->setNodeId(second, 0));
    EXPECT_EQ(create("Math.Add")->getId(), 3);
    EXPECT_EQ(ids_of(*doc), (jVector<int32_t>{1, 0, 3}));

    // The largest id does not overflow the counter.
    ASSERT_TRUE(doc->setNodeId(second, 2147483647));
    EXPECT_EQ(create("Math.Add")->getId(), 0);
    EXPECT_EQ(create("Math.Add")->getId(), 2);
}

using AppDataJoints = DocumentTest;

TEST_F(AppDataJoints, JointsTakeTheirNodesFromTheAnchorsAndLookupFindsTheFirstInDocumentOrder)
{
    DataNode* a = create("Math.Add");
    DataNode* b = create("Math.Add");
    DataNode* c = create("Math.Add");
    DataAnchor* input = c->getInputPath(0);
    DataJoint* first = doc->createJoint(a->getOutputPath(0), input);
    DataJoint* second = doc->createJoint(b->getOutputPath(0), input);
    DataJoint* third = doc->createJoint(input, a->getInputPath(0)); // the anchor as first anchor
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->node0, a);
    EXPECT_EQ(first->node1, c);
    EXPECT_EQ(doc->findJoint(input), first);
    EXPECT_EQ(doc->findJointTo(input), first);

    EXPECT_TRUE(doc->destroyJoint(first));
    EXPECT_EQ(doc->findJoint(input), second);
    EXPECT_TRUE(doc->destroyJoint(second));
    EXPECT_EQ(doc->findJoint(input), third);
    EXPECT_EQ(doc->findJointTo(input), nullptr) << "only joints ending at the anchor";

    EXPECT_FALSE(doc->destroyJoint(first)) << "already removed";

    jLog::Capture log;
    EXPECT_EQ(doc->createJoint(nullptr, input), nullptr);
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: AppData::createJoint:anchor0&&anchor1"}));
}

TEST_F(AppDataJoints, DestroyingANodeRemovesItsJoints)
{
    DataNode* a = create("Math.Add");
    DataNode* b = create("Math.Add");
    DataNode* out = create("PixelOutput");
    doc->createJoint(a->getOutputPath(0), b->getInputPath(0));
    DataJoint* kept = doc->createJoint(a->getOutputPath(0), out->getInputPath(1));
    doc->createJoint(b->getOutputPath(0), out->getInputPath(0));
    doc->createJoint(b->getOutputPath(0), b->getInputPath(1));
    ASSERT_TRUE(doc->destroyNode(b));
    ASSERT_EQ(doc->getJointCount(), 1u);
    EXPECT_EQ(doc->getJoints().front().get(), kept);
    EXPECT_EQ(doc->findJoint(a->getOutputPath(0)), kept);
    EXPECT_EQ(doc->findJoint(out->getInputPath(0)), nullptr);

    doc->clear();
    EXPECT_EQ(doc->getNodeCount() + doc->getJointCount(), 0u);
    EXPECT_EQ(create("Math.Add")->getId(), 0) << "clear restarts the ids";
}

using AppDataLifecycle = DocumentTest;

TEST_F(AppDataLifecycle, ReloadReplacesAndPublishesTheBlockManager)
{
    create("Math.Add");
    const BlockManager* before = doc->getBlockManager();
    EXPECT_EQ(BlockManager::get(), before);
    ASSERT_TRUE(doc->reloadBlocks());
    EXPECT_EQ(doc->getNodeCount(), 0u) << "no node may keep a block of the old manager";
    EXPECT_EQ(BlockManager::get(), doc->getBlockManager());
    ASSERT_NE(doc->createNode("Math.Add"), nullptr);
    EXPECT_EQ(doc->getNodes().front()->getBlock(), doc->getBlockManager()->getBlock("Math.Add"));
}

TEST_F(AppDataLifecycle, InitLoadsBlocksOnlyWhenThereIsNoManagerAndFailuresKeepTheDocument)
{
    {
        AppData local;
        ASSERT_TRUE(local.init());
        EXPECT_EQ(BlockManager::get(), local.getBlockManager());
        const BlockManager* manager = local.getBlockManager();
        ASSERT_NE(local.createNode("Shared"), nullptr);
        ASSERT_TRUE(local.init());
        EXPECT_EQ(local.getBlockManager(), manager);
        EXPECT_EQ(local.getNodeCount(), 0u) << "init clears the document";
        EXPECT_EQ(local.getBlendSrc(), "none");
    }
    EXPECT_EQ(BlockManager::get(), nullptr) << "a destroyed document's manager is unpublished";

    jDir::setProjectRoot(MATERIAL_TEST_DATA "/material/broken-root");
    jLog::Capture log;
    EXPECT_FALSE(doc->reloadBlocks());
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: BlockManager::init: can't load blocks"}));
    EXPECT_EQ(BlockManager::get(), doc->getBlockManager());
    EXPECT_EQ(doc->createNode("Math.Add"), nullptr);
    AppData broken;
    broken.setBlendSrc("src_alpha");
    EXPECT_FALSE(broken.init());
    EXPECT_EQ(broken.getBlendSrc(), "src_alpha") << "no clear after a failed load";
}
