#include "DocumentFileFixture.h"
#include "HistoryObserver.h"

#include <string>
#include <vector>

// The document's edit history: steps and groups, what undo restores, the
// saved point, fresh histories, and what a view hears.
namespace {

// Records what the history tells a view, as "added 3", "joint removing 0-1".
class ObserverLog : public HistoryObserver {
public:
    void nodeAdded(DataNode* node) override { add("added", node); }
    void nodeRemoving(DataNode* node) override { add("removing", node); }
    void jointAdded(DataJoint* joint) override { add("joint added", joint); }
    void jointRemoving(DataJoint* joint) override { add("joint removing", joint); }
    void nodeMoved(DataNode* node) override { add("moved", node); }
    void nodeChanged(DataNode* node) override { add("changed", node); }
    void documentChanged() override { events.push_back("document"); }

    std::vector<std::string> events;

private:
    void add(const char* what, const DataNode* node) { events.push_back(what + (" " + std::to_string(node->getId()))); }
    void add(const char* what, const DataJoint* joint)
    {
        events.push_back(what + (" " + std::to_string(joint->node0->getId()) + "-" + std::to_string(joint->node1->getId())));
    }
};

class EditHistoryTest : public DocumentFileTest {
protected:
    // Input, constant and output, the constant linked to the output: the
    // history starts here.
    void SetUp() override
    {
        DocumentFileTest::SetUp();
        input = create("PixelInput");
        constant = create("Constant.Float");
        output = create("PixelOutput");
        doc->createJoint(constant->getOutputPath(0), output->getInputPath(0));
        doc->getHistory().clear();
    }

    jString blueprint()
    {
        Package root;
        doc->write_blueprint(root);
        return mjl::toText(root);
    }

    EditHistory& history() { return doc->getHistory(); }

    // The test template's broken states are logged at every rebuild.
    jLog::Capture quiet;

    DataNode* input = nullptr;
    DataNode* constant = nullptr;
    DataNode* output = nullptr;
};

TEST_F(EditHistoryTest, RemovingANodeWithItsJointsIsOneStepThatUndoPutsBackInPlace)
{
    const jString before = blueprint();
    const int32_t id = constant->getId();
    ASSERT_TRUE(doc->destroyNode(constant));
    EXPECT_EQ(history().getStepCount(), 1u);
    EXPECT_EQ(doc->getJointCount(), 0u);

    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(blueprint(), before); // id, place in the list and joint as before

    ASSERT_TRUE(doc->redo());
    EXPECT_EQ(doc->findNode(id), nullptr);
    EXPECT_FALSE(doc->redo());
}

TEST_F(EditHistoryTest, GroupsNestAndADragOfManyMovesIsOneMove)
{
    history().beginGroup();
    history().beginGroup();
    for (int i = 1; i <= 50; ++i)
        constant->setPosition(10 * i, 5 * i);
    history().endGroup();
    doc->setMask(7);
    history().endGroup();
    history().endGroup(); // unmatched: ignored
    EXPECT_EQ(history().getStepCount(), 1u);

    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(constant->getPosX(), 0);
    EXPECT_EQ(constant->getPosY(), 0);
    EXPECT_EQ(doc->getMask(), 0);
    ASSERT_TRUE(doc->redo());
    EXPECT_EQ(constant->getPosX(), 500);
    EXPECT_EQ(constant->getPosY(), 250);
}

TEST_F(EditHistoryTest, AnUndoInsideAGroupEndsItsStepAndTheRestIsAStepOfItsOwn)
{
    history().beginGroup();
    doc->setMask(1);
    ASSERT_TRUE(doc->undo());
    doc->setMask(2);
    doc->setMask(3);
    history().endGroup();
    EXPECT_EQ(history().getStepCount(), 1u);
    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(doc->getMask(), 0);
}

TEST_F(EditHistoryTest, AMoveIsUndoneAsAnOffsetSoAViewMoveInBetweenStays)
{
    constant->setPosition(40, 30);
    {
        EditHistory::Pause view(history());
        constant->setPosition(140, 80);
    }
    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(constant->getPosX(), 100);
    EXPECT_EQ(constant->getPosY(), 50);
}

TEST_F(EditHistoryTest, AValueSetWithANewSamplerTakesTheSamplerBackOnUndo)
{
    DataNode* texture = create("Texture.Sample2D");
    history().clear();
    ASSERT_TRUE(texture->setVariableValue(0, "data/a.dds", "srgb", "clamp", "point", 4, true));
    ASSERT_TRUE(texture->setSubValue(0, 0, "villain"));
    EXPECT_EQ(doc->getSamplerCount(), 2u);
    EXPECT_EQ(history().getStepCount(), 2u);

    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(texture->getVariable(0)->getSubValue(0)->getValue(), "hero");
    ASSERT_TRUE(doc->undo());
    EXPECT_EQ(texture->getVariable(0)->getSampler(), doc->getDefaultSampler());
    EXPECT_EQ(doc->getSamplerCount(), 1u);

    ASSERT_TRUE(doc->redo());
    EXPECT_EQ(doc->getSamplerAt(1)->getName(), "sampler_9");
    EXPECT_EQ(texture->getVariable(0)->getSampler(), doc->getSamplerAt(1));
}

TEST_F(EditHistoryTest, SettersThatChangeNothingRecordNothing)
{
    doc->setBufferMask(doc->getBufferMask());
    doc->setDepthOffset(-3); // stored as 0, which it already is
    constant->setPosition(0, 0);
    constant->setName("");
    jLog::Capture log;
    doc->setStateValue(99, 1);
    EXPECT_EQ(log.text(), "error: AppData::setStateValue:index < m_states.size()\n");
    EXPECT_FALSE(history().canUndo());
}

TEST_F(EditHistoryTest, ANewEditDropsWhatWasUndoneAndTheSavedPointFollowsTheFile)
{
    EXPECT_TRUE(history().isAtSavedPoint());
    doc->setRenderOrder(3);
    ASSERT_TRUE(doc->save("a.mat"));
    EXPECT_TRUE(history().isAtSavedPoint());
    doc->setRenderOrder(4);
    EXPECT_FALSE(history().isAtSavedPoint());
    ASSERT_TRUE(doc->undo());
    EXPECT_TRUE(history().isAtSavedPoint());
    ASSERT_TRUE(doc->undo());
    EXPECT_FALSE(history().isAtSavedPoint());

    doc->setTwoSided(true);
    EXPECT_FALSE(history().canRedo());
    EXPECT_EQ(history().getStepCount(), 1u);
    // The saved state can no longer be reached.
    while (doc->undo()) {
    }
    EXPECT_FALSE(history().isAtSavedPoint());
}

TEST_F(EditHistoryTest, LoadingNewAndClearStartAFreshHistory)
{
    doc->setPostFog(true);
    ASSERT_TRUE(doc->save("a.mat"));
    doc->setPostTaa(true);
    ASSERT_TRUE(doc->load("a.mat"));
    EXPECT_EQ(history().getStepCount(), 0u);
    EXPECT_TRUE(history().isAtSavedPoint());
    doc->setPostTaa(true);
    ASSERT_TRUE(doc->init());
    EXPECT_FALSE(history().canUndo());
}

TEST_F(EditHistoryTest, AViewHearsRemovalsBeforeAndAdditionsAfterInOrder)
{
    ObserverLog view;
    history().setObserver(&view);
    doc->destroyNode(constant);
    doc->setInstance(true);
    EXPECT_TRUE(view.events.empty()); // ordinary edits are the editor's own business

    while (doc->undo()) {
    }
    EXPECT_EQ(view.events, (std::vector<std::string>{"document", "added 1", "joint added 1-2"}));
    view.events.clear();
    ASSERT_TRUE(doc->redo());
    EXPECT_EQ(view.events, (std::vector<std::string>{"joint removing 1-2", "removing 1"}));
    history().setObserver(nullptr);
}

} // namespace
