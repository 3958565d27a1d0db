// Undo and redo in the editor window, driven through the real canvas
// handlers and the window's keys, on a sample opened from the bundled root.
#include "Block.h"
#include "Button.h"
#include "ButtonBar.h"
#include "DataNode.h"
#include "EditorWindowFixture.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "UIEventKey.h"
#include "UIEventMouse.h"

namespace {

constexpr const char* kPlain = "data/materials/metal_gold.mat";
constexpr int kKeyY = 121;
constexpr int kKeyZ = 122;

class MaterialEditorWindowHistoryTest : public EditorWindowTest {
protected:
    void SetUp() override
    {
        EditorWindowTest::SetUp();
        open(kPlain);
    }

    bool key(int code, uint32_t modifiers)
    {
        const bool used = window->checkShortcut(UIEventKey(code, modifiers));
        dispatch();
        return used;
    }

    // Canvas pixels of a point inside the node's frame, below its title.
    UICanvas::Point inside(const GraphNode* node) const
    {
        const float scale = AppData::get()->getScale();
        return {(static_cast<float>(node->getX()) + 20.0f) * scale, (static_cast<float>(node->getY()) + 6.0f) * scale};
    }

    void mouse(bool (Graph::*handler)(UIEventMouse&), UICanvas::Point p)
    {
        UIEventMouse event(int(p.x), int(p.y), int(p.x), int(p.y), UIEventMouse::kLeft);
        (graph->*handler)(event);
        dispatch();
    }

    // Presses on the node and moves the pointer by (dx, dy) in steps of 5.
    void dragNode(GraphNode* node, int dx, int dy)
    {
        UICanvas::Point p = inside(node);
        mouse(&Graph::onMouseDown, p);
        for (int i = 0; i < 4; ++i) {
            p = {p.x + static_cast<float>(dx) / 4, p.y + static_cast<float>(dy) / 4};
            mouse(&Graph::onMouseMove, p);
        }
        mouse(&Graph::onMouseUp, p);
    }

    bool enabled(const char* name)
    {
        window->update(0.0f);
        Button* button = window->getToolbar()->findButton(name);
        EXPECT_NE(button, nullptr) << name;
        return button && button->isButtonEnabled();
    }

};

TEST_F(MaterialEditorWindowHistoryTest, ADragIsOneStepTheCanvasFollowsAndTheButtonsGreyWithNothingToDo)
{
    std::vector<jString> names;
    for (const Button* button : window->getToolbar()->getButtons())
        names.push_back(button->getName());
    EXPECT_EQ(names, (std::vector<jString>{"Save", "Apply", "Center", "Undo", "Redo", "Live"}));
    EXPECT_FALSE(enabled("Undo"));
    EXPECT_FALSE(enabled("Redo"));

    GraphNode* node = graph->getNodes().front();
    const DataNode* data = node->getData();
    const int x = data->getPosX();
    const int y = data->getPosY();
    dragNode(node, 40, 20);
    const int movedX = data->getPosX();
    const int movedY = data->getPosY();
    ASSERT_NE(movedX, x);
    EXPECT_EQ(AppData::get()->getHistory().getStepCount(), 1u);
    EXPECT_TRUE(enabled("Undo"));
    EXPECT_FALSE(enabled("Redo"));

    EXPECT_TRUE(key(kKeyZ, UIEventKey::kCtrl));
    EXPECT_EQ(data->getPosX(), x);
    EXPECT_EQ(data->getPosY(), y);
    EXPECT_EQ(node->getX(), x);
    EXPECT_FALSE(enabled("Undo"));
    EXPECT_TRUE(enabled("Redo"));
    EXPECT_FALSE(window->undo());

    EXPECT_TRUE(key(kKeyY, UIEventKey::kCtrl));
    EXPECT_EQ(node->getX(), movedX);
    EXPECT_EQ(node->getY(), movedY);
    EXPECT_TRUE(log.empty()) << log.text();
}

TEST_F(MaterialEditorWindowHistoryTest, UndoAfterSaveMarksModifiedAndRedoBackClearsIt)
{
    dragNode(graph->getNodes().front(), 30, 0);
    EXPECT_TRUE(window->isModified());
    window->save();
    EXPECT_FALSE(window->isModified());
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor");

    EXPECT_TRUE(key(kKeyZ, UIEventKey::kCtrl));
    EXPECT_TRUE(window->isModified());
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor*");
    EXPECT_TRUE(key(kKeyZ, UIEventKey::kCtrl | UIEventKey::kShift));
    EXPECT_FALSE(window->isModified());
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor");
}

TEST_F(MaterialEditorWindowHistoryTest, DeletingASelectedNodeIsUndoneWithItsLinksAndRedoClearsTheSelection)
{
    AppData& document = *AppData::get();
    // The node with the most links.
    GraphNode* node = graph->getNodes().front();
    for (GraphNode* other : graph->getNodes()) {
        if (other->getJoints().size() > node->getJoints().size())
            node = other;
    }
    const size_t links = node->getJoints().size();
    ASSERT_GT(links, 0u);
    const int32_t id = node->getData()->getId();
    const size_t nodes = graph->getNodes().size();
    const size_t joints = graph->getJoints().size();

    mouse(&Graph::onMouseDown, inside(node));
    mouse(&Graph::onMouseUp, inside(node));
    ASSERT_EQ(graph->getSelectedNode(), node);
    UIEventKey del(UIEventKey::kDelete, 0);
    ASSERT_TRUE(graph->onKeyPress(del));
    dispatch();
    ASSERT_EQ(graph->getJoints().size(), joints - links);
    EXPECT_EQ(document.getHistory().getStepCount(), 1u);

    EXPECT_TRUE(window->undo());
    EXPECT_EQ(graph->getNodes().size(), nodes);
    EXPECT_EQ(graph->getJoints().size(), joints);
    GraphNode* back = graph->findNode(id);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->getJoints().size(), links);
    EXPECT_EQ(document.getJointCount(), joints);

    mouse(&Graph::onMouseDown, inside(back));
    mouse(&Graph::onMouseUp, inside(back));
    ASSERT_EQ(graph->getSelectedNode(), back);
    EXPECT_TRUE(window->redo());
    EXPECT_EQ(graph->getSelectedNode(), nullptr);
    EXPECT_EQ(graph->findNode(id), nullptr);
    EXPECT_EQ(graph->getJoints().size(), joints - links);
}

TEST_F(MaterialEditorWindowHistoryTest, LinkingOntoATakenInputIsOneStepThatUndoTakesBack)
{
    // An input that holds a link, and another output of the same type.
    GraphJoint* taken = graph->getJoints().front();
    GraphAnchor* input = taken->getTo();
    GraphAnchor* source = nullptr;
    for (GraphNode* node : graph->getNodes()) {
        for (size_t i = 0; i < node->getAnchorCount() && !source; ++i) {
            GraphAnchor* anchor = node->getAnchorAt(i);
            if (anchor != taken->getFrom() && node != input->getNode() && anchor->getData()->getDirection() == 2
                && anchor->getType() == input->getType())
                source = anchor;
        }
    }
    ASSERT_NE(source, nullptr);
    const DataNode* oldSource = taken->getFrom()->getNode()->getData();
    const float scale = AppData::get()->getScale();
    const auto at = [scale](const GraphAnchor* anchor) {
        return UICanvas::Point{anchor->getCentre().x * scale, anchor->getCentre().y * scale};
    };
    mouse(&Graph::onMouseDown, at(source));
    mouse(&Graph::onMouseMove, at(input));
    mouse(&Graph::onMouseUp, at(input));
    const DataJoint* now = AppData::get()->findJointTo(input->getData());
    ASSERT_NE(now, nullptr);
    ASSERT_EQ(now->node0, source->getNode()->getData());
    EXPECT_EQ(AppData::get()->getHistory().getStepCount(), 1u);

    EXPECT_TRUE(window->undo());
    now = AppData::get()->findJointTo(input->getData());
    ASSERT_NE(now, nullptr);
    EXPECT_EQ(now->node0, oldSource);
    ASSERT_NE(graph->findJointByLink(now), nullptr);
    EXPECT_EQ(graph->findJointByLink(now)->getFrom()->getNode()->getData(), oldSource);
}

TEST_F(MaterialEditorWindowHistoryTest, APastedNodeGoesOnUndoAndComesBackWithItsIdOnRedo)
{
    GraphNode* copied = graph->getNodes().back();
    mouse(&Graph::onMouseDown, inside(copied));
    mouse(&Graph::onMouseUp, inside(copied));
    UIEventKey copy(Graph::kKeyC, UIEventKey::kCtrl);
    UIEventKey paste(Graph::kKeyV, UIEventKey::kCtrl);
    graph->onKeyPress(copy);
    graph->update(1.0f);
    ASSERT_TRUE(graph->onKeyPress(paste));
    dispatch();
    GraphNode* pasted = graph->getSelectedNode();
    ASSERT_NE(pasted, copied);
    const int32_t id = pasted->getData()->getId();
    const size_t nodes = graph->getNodes().size();
    const size_t steps = AppData::get()->getHistory().getStepCount();

    EXPECT_TRUE(window->undo());
    EXPECT_EQ(graph->getNodes().size(), nodes - 1);
    EXPECT_EQ(AppData::get()->findNode(id), nullptr);
    EXPECT_EQ(graph->getSelectedNode(), nullptr);
    EXPECT_TRUE(window->redo());
    ASSERT_NE(graph->findNode(id), nullptr);
    EXPECT_EQ(graph->findNode(id)->getData()->getBlock()->getType(), copied->getData()->getBlock()->getType());
    EXPECT_EQ(AppData::get()->getHistory().getStepCount(), steps);
}

TEST_F(MaterialEditorWindowHistoryTest, TheInstanceCommandIsUndoneAsOneStep)
{
    ASSERT_TRUE(window->instance());
    dispatch();
    EXPECT_EQ(host.title, "MaterialEditor[Instance]*");
    EXPECT_TRUE(key(kKeyZ, UIEventKey::kCtrl));
    AppData& document = *AppData::get();
    EXPECT_FALSE(document.isInstance());
    EXPECT_EQ(document.getPath(), kPlain);
    EXPECT_EQ(document.getParentPath(), "");
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor");
}

} // namespace
