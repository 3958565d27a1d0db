// The graph's edits and notifications: drops, links, keys, drags,
// highlight, cursor, context menu and centring.
#include "GraphFixture.h"
#include "GraphVariable.h"
#include "tr.h"

#include <QAction>
#include <QMenu>

namespace {

using Point = UICanvas::Point;

UIEventDrop blockDrop(const char* type, int x, int y)
{
    UIEventDrop drop;
    drop.x = drop.localX = x;
    drop.y = drop.localY = y;
    drop.dragType = UIEventDrop::kDragTreeItem;
    drop.sourceType = UIEventDrop::kSourceTreeBox;
    drop.text = type;
    return drop;
}

// A point on the node's frame away from its anchors.
Point frameOf(const GraphNode* node)
{
    return {float(node->getX() + node->getWidth() / 2), float(node->getY() + 3)};
}

class GraphEditTest : public GraphTest {
protected:
    bool drop(const char* type, int x = 100, int y = 100)
    {
        UIEventDrop event = blockDrop(type, x, y);
        return graph->onDropFinish(event);
    }
    bool key(int code, uint32_t modifiers = 0)
    {
        UIEventKey event(code, modifiers);
        return graph->onKeyPress(event);
    }
};

TEST_F(GraphEditTest, DropCreatesNodeAtTheUnscaledPointerButNotForAFolderAButtonOrInInstanceMode)
{
    doc->setScale(0.5f);
    ASSERT_TRUE(drop("Math.Add", 100, 60));
    ASSERT_EQ(graph->getNodes().size(), 1u);
    GraphNode* node = graph->getNodes()[0];
    EXPECT_EQ(node->getX(), 200);
    EXPECT_EQ(node->getY(), 120);
    EXPECT_EQ(graph->getSelectedNode(), node);
    EXPECT_TRUE(graph->isFocused());
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{8, node, ""}, {10, node, ""}, {7, node->getData(), ""}}));

    // A folder, a drop from a button or one in instance mode creates nothing.
    jLog::Capture log;
    EXPECT_FALSE(drop(""));
    UIEventDrop fromButton = blockDrop("Math.Add", 10, 10);
    fromButton.sourceIsButton = true;
    EXPECT_TRUE(graph->onDropFinish(fromButton));
    doc->setInstance(true);
    EXPECT_FALSE(drop("Math.Add"));
    EXPECT_FALSE(drop("No.Such.Block"));
    EXPECT_EQ(doc->getNodeCount(), 1u);
    EXPECT_EQ(log.lines(), std::vector<jString>{"warning: Graph::onDropFinish:can not create node in instance mode"});
}

TEST_F(GraphEditTest, DropRefusesSecondStageNodesAndIncompatibleBinds)
{
    jLog::Capture log;
    EXPECT_TRUE(drop("PixelOutput"));
    EXPECT_FALSE(drop("PixelOutput"));
    EXPECT_TRUE(drop("PixelInput"));
    EXPECT_FALSE(drop("PixelInput"));
    EXPECT_TRUE(drop("VertexInput"));
    EXPECT_FALSE(drop("VertexInput"));
    EXPECT_TRUE(drop("VertexOutput"));
    EXPECT_FALSE(drop("VertexOutput"));
    EXPECT_TRUE(drop("Scene.Terrain"));
    EXPECT_TRUE(drop("Scene.Terrain2"));
    EXPECT_FALSE(drop("Scene.Water"));
    EXPECT_EQ(doc->getNodeCount(), 6u);
    const jString ps = "warning: Graph::onDropFinish:can not create multi ps output/input nodes";
    const jString vs = "warning: Graph::onDropFinish:can not create multi vs output/input nodes";
    EXPECT_EQ(log.lines(), (std::vector<jString>{ps, ps, vs, vs,
                               "warning: Graph::onDropFinish:this node can not be created ,because its bind "
                               "\"water\" not compatible with the current scene"}));

    // A number limit is a notice, not a log line.
    log.clear();
    EXPECT_TRUE(drop("Unique"));
    sent();
    EXPECT_FALSE(drop("Unique"));
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{31, nullptr, "\"Unique\" is num limited to 1"}}));
    EXPECT_TRUE(log.empty());
}

TEST_F(GraphEditTest, LinksGoFromAnOutputToAnInputOfTheSameType)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* b = add("Math.Add", 400, 0);
    GraphNode* colour = add("Math.Color", 400, 300);
    sent();
    drag(b->getAnchor("a"), a->getAnchor("out"));
    drag(a->getAnchor("out"), colour->getAnchor("rgb"));
    drag(a->getAnchor("out"), a->getAnchor("a"));
    drag(a->getAnchor("a"), b->getAnchor("b"));
    EXPECT_TRUE(graph->getJoints().empty());
    EXPECT_EQ(doc->getJointCount(), 0u);

    drag(a->getAnchor("out"), b->getAnchor("a"));
    ASSERT_EQ(graph->getJoints().size(), 1u);
    GraphJoint* joint = graph->getJoints()[0];
    EXPECT_EQ(joint->getFrom(), a->getAnchor("out"));
    EXPECT_EQ(joint->getTo(), b->getAnchor("a"));
    EXPECT_EQ(joint->getLink()->anchor0, a->getData()->findAnchor("out"));
    EXPECT_EQ(joint->getLink()->anchor1, b->getData()->findAnchor("a"));
    EXPECT_EQ(graph->getLinePointCount(graph->getLinkLine()), 0u);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{19, joint, ""}}));
}

TEST_F(GraphEditTest, ASecondLinkReplacesTheFirstAndTheSameGestureUnlinks)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* c = add("Constant.Float", 0, 300);
    GraphNode* b = add("Math.Add", 400, 0);
    drag(a->getAnchor("out"), b->getAnchor("a"));
    GraphJoint* first = graph->getJoints().at(0);
    sent();

    drag(c->getAnchor("out"), b->getAnchor("a"));
    ASSERT_EQ(graph->getJoints().size(), 1u);
    GraphJoint* second = graph->getJoints()[0];
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{20, first, ""}, {19, second, ""}}));
    EXPECT_EQ(doc->getJointCount(), 1u);

    drag(b->getAnchor("a"), c->getAnchor("out"));
    EXPECT_TRUE(graph->getJoints().empty());
    EXPECT_EQ(doc->getJointCount(), 0u);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{20, second, ""}}));

    // Replacement skips the second of two adjacent links into the input.
    GraphNode* d = add("Constant.Float", 0, 600);
    first = link(a, "out", b, "a");
    second = link(c, "out", b, "a");
    sent();
    drag(d->getAnchor("out"), b->getAnchor("a"));
    ASSERT_EQ(graph->getJoints().size(), 2u);
    EXPECT_EQ(graph->getJoints()[0], second);
    GraphJoint* made = graph->getJoints()[1];
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{20, first, ""}, {19, made, ""}}));
}

TEST_F(GraphEditTest, PressesAndReleasesSignalFocusAndClicks)
{
    std::vector<jString> emitted;
    const auto record = [&emitted](const char* name) {
        return [&emitted, name](UIEventMouse*, Graph*) { emitted.push_back(name); };
    };
    QObject::connect(graph.get(), &Graph::pressedUnfocused, record("pressed-unfocused"));
    QObject::connect(graph.get(), &Graph::pressedFocused, record("pressed-focused"));
    QObject::connect(graph.get(), &Graph::released, record("released"));
    QObject::connect(graph.get(), &Graph::clicked, record("clicked"));
    press({10, 10});
    EXPECT_TRUE(graph->isFocused());
    release({10, 10});
    press({20, 20});
    release({-5, 20});
    EXPECT_FALSE(graph->isFocused());
    release({-5, 20});
    press({-5, 20});
    EXPECT_EQ(emitted, (std::vector<jString>{"pressed-unfocused", "released", "clicked", "pressed-focused",
                           "released"}));
}

TEST_F(GraphEditTest, DeleteRemovesTheSelectionOncePerRepeatPeriod)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* b = add("Math.Add", 400, 0);
    link(a, "out", b, "a");
    press(frameOf(a));
    release(frameOf(a));
    sent();
    EXPECT_TRUE(key(UIEventKey::kDelete));
    EXPECT_EQ(graph->getNodes(), std::vector<GraphNode*>{b});
    EXPECT_TRUE(graph->getJoints().empty());
    EXPECT_EQ(doc->getNodeCount(), 1u);
    EXPECT_EQ(doc->getJointCount(), 0u);
    // 13 is delivered at once, the others with the next drain.
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{13, nullptr, ""}, {20, nullptr, ""}, {10, nullptr, ""}}));

    press(frameOf(b));
    EXPECT_FALSE(key(UIEventKey::kDelete));
    graph->update(0.03f);
    EXPECT_FALSE(key(UIEventKey::kDelete));
    EXPECT_EQ(graph->getNodes().size(), 1u);
    graph->update(0.03f);
    EXPECT_EQ(graph->getLastKey(), -1);
    EXPECT_TRUE(key(UIEventKey::kDelete));
    EXPECT_TRUE(graph->getNodes().empty());
}

TEST_F(GraphEditTest, OneCopyGivesOnePasteOfTheTypeAtThePointer)
{
    GraphNode* c = add("Constant.Float", 0, 0);
    c->getData()->setVariableValueOnly(0, "7");
    press(frameOf(c));
    release(frameOf(c));
    EXPECT_FALSE(key(Graph::kKeyC, UIEventKey::kCtrl));
    EXPECT_EQ(graph->getCopiedNodeId(), uint32_t(c->getData()->getId()));
    move({300, 200}, 0);
    EXPECT_TRUE(key(Graph::kKeyV, UIEventKey::kCtrl));
    graph->update(1.0f);
    EXPECT_FALSE(key(Graph::kKeyV, UIEventKey::kCtrl));
    ASSERT_EQ(graph->getNodes().size(), 2u);
    const GraphNode* pasted = graph->getNodes()[1];
    EXPECT_EQ(pasted->getX(), 300);
    EXPECT_EQ(pasted->getY(), 200);
    EXPECT_EQ(pasted->getData()->getVariableValue("value"), "0.5");

    // Ctrl+C without a selection forgets the copy.
    press({1500, 900});
    graph->update(1.0f);
    EXPECT_TRUE(key(Graph::kKeyC, UIEventKey::kCtrl));
    EXPECT_EQ(graph->getCopiedNodeId(), Graph::kNoCopy);
}

TEST_F(GraphEditTest, DraggedNodesStayInsideTheCanvasAtTheCurrentScale)
{
    GraphNode* node = add("Math.Add", 10, 10);
    press({20, 13});
    ASSERT_EQ(graph->getSelectedNode(), node);
    sent();
    move({0, 0});
    EXPECT_EQ(node->getX(), 0);
    EXPECT_EQ(node->getY(), 0);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{12, node, ""}}));
    move({0, 0});
    EXPECT_TRUE(sent().empty());
    move({kWidth - 1, kHeight - 1});
    EXPECT_EQ(node->getX(), kWidth - node->getWidth());
    EXPECT_EQ(node->getY(), kHeight - node->getHeight());
    move({kWidth / 2, kHeight / 2});
    EXPECT_EQ(node->getX(), kWidth - node->getWidth() - (kWidth / 2 - 1));

    // At half scale the same pointer travel moves twice as far, and the
    // node may go as far as the canvas's unscaled size.
    doc->setScale(0.5f);
    graph->setScale(0.5f);
    const int startX = node->getX();
    move({kWidth / 2 + 10, kHeight / 2});
    EXPECT_EQ(node->getX(), startX + 20);
    UIEventMouse far(10 * kWidth, 10 * kHeight, kWidth / 2, kHeight / 2, UIEventMouse::kLeft);
    graph->onMouseMove(far);
    EXPECT_EQ(node->getX(), 2 * kWidth - node->getWidth());
    EXPECT_EQ(node->getY(), 2 * kHeight - node->getHeight());
}

TEST_F(GraphEditTest, RegistryInconsistenciesAreLoggedAndTolerated)
{
    GraphNode* a = add("Math.Add");
    DataNode* outside = doc->createNode("Math.Add");
    jLog::Capture log;
    graph->addNode(a);
    EXPECT_EQ(graph->createGrahpJoint(doc->createJoint(outside->findAnchor("out"), a->getData()->findAnchor("a"))),
        nullptr);
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Graph::addNode(): node is already defined",
                               "error: Graph::createGrahpJoint:p0&&p1"}));
    EXPECT_EQ(graph->getNodes().size(), 2u);
    graph->removeNode(a);
    EXPECT_EQ(graph->getNodes().size(), 1u);
}

TEST_F(GraphEditTest, HighlightTintsHoverAndSelectionAndResetsTheRest)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* b = add("Math.Add", 400, 0);
    GraphJoint* joint = link(a, "out", b, "a");
    const auto frame = [this](const GraphNode* n) { return graph->getPolygonColour(n->getPolygonId(0)); };

    move(frameOf(a), 0);
    EXPECT_EQ(frame(a), Graph::kHovered);
    EXPECT_EQ(graph->getPolygonColour(a->getPolygonId(9)), Graph::kWhite);
    EXPECT_EQ(graph->cursor().shape(), Qt::PointingHandCursor);
    move(b->getAnchor("b")->getCentre(), 0);
    EXPECT_EQ(frame(a), Graph::kWhite);
    EXPECT_EQ(graph->getPolygonColour(b->getAnchor("b")->getHighlightId()), Graph::kCyan);
    EXPECT_EQ(graph->cursor().shape(), Qt::ArrowCursor);
    const Point onLine = graph->getLinePoint(joint->getLineId(), 12);
    move(onLine, 0);
    EXPECT_EQ(graph->getPolygonColour(b->getAnchor("b")->getHighlightId()), Graph::kNoHighlight);
    EXPECT_EQ(graph->getLineColour(joint->getLineId()), Graph::kCyan);

    press(onLine);
    EXPECT_EQ(graph->getSelectedJoint(), joint);
    EXPECT_EQ(graph->getLineColour(joint->getLineId()), Graph::kYellow);
    press(frameOf(b));
    EXPECT_EQ(graph->getSelectedJoint(), nullptr);
    EXPECT_EQ(frame(b), Graph::kYellow);
    EXPECT_EQ(graph->getLineColour(joint->getLineId()), Graph::kWhite);
}

TEST_F(GraphEditTest, InstanceModeDimsWhatCannotBeEditedAndSelectsOnlyConstantsAndTextures)
{
    GraphNode* add1 = add("Math.Add", 0, 0);
    GraphNode* constant = add("Constant.Float", 0, 300);
    GraphJoint* joint = link(constant, "out", add1, "a");
    doc->setInstance(true);
    graph->refreshHighlight(-1, -1);
    EXPECT_EQ(graph->getPolygonColour(add1->getPolygonId(12)), Graph::kDimmed);
    EXPECT_EQ(graph->getTextColour(add1->getTitleId()), Graph::kDimmed);
    EXPECT_EQ(graph->getPolygonColour(constant->getPolygonId(12)), Graph::kWhite);
    EXPECT_EQ(graph->getLineColour(joint->getLineId()), Graph::kDimmed);

    press(frameOf(add1));
    EXPECT_EQ(graph->getSelectedNode(), nullptr);
    press(frameOf(constant));
    EXPECT_EQ(graph->getSelectedNode(), constant);
    move({frameOf(constant).x + 50, frameOf(constant).y + 50});
    EXPECT_EQ(constant->getX(), 0);
    // Delete is consumed and removes nothing.
    EXPECT_TRUE(key(UIEventKey::kDelete));
    EXPECT_EQ(graph->getNodes().size(), 2u);
}

TEST_F(GraphEditTest, ContextMenuOverATextureNodeLocatesItsFolder)
{
    GraphNode* texture = add("Texture.Sample2D", 100, 100);
    GraphNode* maths = add("Math.Add", 500, 100);
    UIEventMouse overMaths = at(frameOf(maths), UIEventMouse::kRight);
    EXPECT_EQ(graph->make_context_menu(overMaths), nullptr);
    UIEventMouse left = at(frameOf(texture));
    EXPECT_EQ(graph->make_context_menu(left), nullptr);

    UIEventMouse right = at(frameOf(texture), UIEventMouse::kRight);
    QMenu* menu = graph->make_context_menu(right);
    ASSERT_NE(menu, nullptr);
    const jString path = "data/core/textures/common/black.dds";
    EXPECT_EQ(menu->title().toStdString(), jDir::resolveRead(path));
    const QList<QAction*> actions = menu->actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[0]->text().toStdString(), tr("locate_in_assets_browser"));
    EXPECT_EQ(actions[1]->text().toStdString(), tr("show_in_explorer"));
    EXPECT_EQ(actions[2]->text().toStdString(), tr("help"));
    sent();
    actions[0]->trigger();
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{2, graph->window(), "data/core/textures/common/"}}));

    jLog::Capture log;
    UIEventKey notMouse(99, 0);
    EXPECT_EQ(graph->make_context_menu(notMouse), nullptr);
    EXPECT_EQ(log.lines(), std::vector<jString>{"error: Graph::make_context_menu:e->getType() == UI_EVENT_MOUSE"});
}

TEST_F(GraphEditTest, CentringMovesTheMeanToTheVisibleCentreOnce)
{
    graph->centerGraph();
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* b = add("Math.Add", 101, 101);
    link(a, "out", b, "a");
    sent();
    graph->centerGraph();
    EXPECT_EQ(a->getX(), 750);
    EXPECT_EQ(a->getY(), 450);
    EXPECT_EQ(b->getX(), 851);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{24, nullptr, ""}}));
    EXPECT_EQ(graph->getLinePoint(graph->getJoints()[0]->getLineId(), 0), a->getAnchor("out")->getCentre());
    graph->centerGraph();
    EXPECT_TRUE(sent().empty());
}

} // namespace
