// The editor window's live preview over tests/data/problems (copied to a
// project root): edits show in the preview after the quiet period, with no
// file written; a program that does not build keeps the last image and puts
// the driver's messages on the node; the toggle is kept in the layout.
#include "Button.h"
#include "DataNode.h"
#include "GraphJoint.h"
#include "MatViewport.h"
#include "Package.h"
#include "EditorWindowFixture.h"

namespace {

class LivePreviewTest : public ProblemsWindowTest {
protected:
    // Opens and applies red.mat and waits for its first frame; false
    // (failing where Mesa is installed) without GL.
    bool openRed()
    {
        EXPECT_TRUE(window->load(window->getDataPath() + "data/red.mat"));
        dispatch();
        EXPECT_TRUE(window->compile());
        dispatch();
        frames(3, 0.0f);
        if (window->getPreview()->getRender())
            return true;
        if (MATERIAL_REQUIRE_GL)
            ADD_FAILURE() << "no OpenGL context although Mesa is installed";
        return false;
    }

    void frames(int count, float dt)
    {
        for (int i = 0; i < count; ++i) {
            window->update(dt);
            dispatch();
        }
    }

    QRgb centre() const { return window->getPreview()->getImage().pixel(128, 128); }

    // The colour node's value, changed the way its panel changes it.
    void setColour(const char* value)
    {
        node(2)->getData()->setVariableValueOnly(0, value);
        MsgMngr::instance().postPtr(11, node(2));
        dispatch();
    }
};

TEST_F(LivePreviewTest, AnEditShowsAfterTheQuietPeriodWithoutWritingTheFile)
{
    if (!openRed())
        GTEST_SKIP();
    const std::string written = root.read("data/red.mat");
    const auto writtenAt = std::filesystem::last_write_time(root / "data/red.mat");
    EXPECT_GT(qRed(centre()), qGreen(centre()) + 60);
    const size_t renders = window->getPreview()->getRenderCount();

    setColour("0,1,0,1");
    frames(1, 0.05f);
    EXPECT_TRUE(window->getLive().isPending());
    EXPECT_EQ(window->getPreview()->getRenderCount(), renders);
    frames(1, 0.06f);
    frames(1, 0.0f);
    EXPECT_FALSE(window->getLive().isPending());
    EXPECT_GT(qGreen(centre()), qRed(centre()) + 60);
    EXPECT_EQ(root.read("data/red.mat"), written);
    EXPECT_EQ(std::filesystem::last_write_time(root / "data/red.mat"), writtenAt);
    EXPECT_TRUE(window->isModified());
    EXPECT_TRUE(window->getProblems().isEmpty());
}

TEST_F(LivePreviewTest, ABrokenEditKeepsTheLastImageAndMarksTheNode)
{
    if (!openRed())
        GTEST_SKIP();
    const QRgb before = centre();
    AppData& document = *AppData::get();
    GraphNode* broken = graph->create_node("Broken.Swizzle", 300, 200);
    ASSERT_NE(broken, nullptr);
    const int32_t id = broken->getData()->getId();
    for (GraphJoint* joint : std::vector<GraphJoint*>(graph->getJoints()))
        graph->removeJoint(joint);
    graph->createGrahpJoint(document.createJoint(document.findAnchor(2, "rgba"), document.findAnchor(id, "a")));
    graph->createGrahpJoint(document.createJoint(document.findAnchor(id, "out"), document.findAnchor(1, "color")));
    MsgMngr::instance().post(Graph::kMsgLinkMade);
    dispatch();
    frames(4, 0.06f);

    EXPECT_EQ(centre(), before);
    ASSERT_FALSE(window->getProblems().isEmpty());
    const DocumentProblems::Entry& problem = window->getProblems().getEntries().front();
    EXPECT_EQ(problem.nodeId, id);
    EXPECT_EQ(problem.nodeType, "Broken.Swizzle");
    EXPECT_EQ(problem.message.rfind("pixel program: ", 0), 0u) << problem.message;
    EXPECT_NE(problem.message.find("xyzq"), jString::npos) << problem.message;
    EXPECT_TRUE(broken->hasBadge());

    // Linking the colour straight to the output again builds, and clears it.
    graph->removeNode(broken);
    graph->createGrahpJoint(document.createJoint(document.findAnchor(2, "rgba"), document.findAnchor(1, "color")));
    MsgMngr::instance().post(Graph::kMsgLinkMade);
    dispatch();
    frames(4, 0.06f);
    EXPECT_TRUE(window->getProblems().isEmpty());
}

TEST_F(LivePreviewTest, TheToggleStopsFollowingAndIsKeptInTheLayout)
{
    EXPECT_TRUE(window->isLivePreview());
    ASSERT_NE(window->getLiveButton(), nullptr);
    EXPECT_FALSE(window->getLiveButton()->isGreyMode());
    window->cb_menu_live(nullptr, window.get());
    EXPECT_FALSE(window->isLivePreview());
    EXPECT_TRUE(window->getLiveButton()->isGreyMode());

    open("data/red.mat");
    MsgMngr::instance().postPtr(11, node(2));
    dispatch();
    EXPECT_FALSE(window->getLive().isPending());

    Package layout;
    window->saveLayout(&layout);
    EXPECT_EQ(layout.findPackage(MaterialEditorWindow::kLayoutPackage)->getString("live"), "false");
    MaterialEditorWindow other(&host);
    EXPECT_TRUE(other.isLivePreview());
    other.readLayout(&layout);
    EXPECT_FALSE(other.isLivePreview());
}

} // namespace
