// Joint curves: end points, the straight end piece and the arrow head.
#include "GraphFixture.h"

namespace {

using Point = UICanvas::Point;
using TexRect = UICanvas::TexRect;

class GraphJointTest : public GraphTest {
protected:
    void expectArrow(const GraphJoint* joint, Point from, Point to, const TexRect& tex)
    {
        Point corners[4];
        graph->getPolygonCorners(joint->getArrowId(), corners);
        EXPECT_EQ(corners[0], from);
        EXPECT_EQ(corners[2], to);
        EXPECT_EQ(graph->getPolygonTexRect(joint->getArrowId()), tex);
    }
};

TEST_F(GraphJointTest, CurveRunsFromTheOutputIntoTheInputWithArrowHead)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* b = add("Math.Add", 300, 200);
    GraphJoint* joint = link(a, "out", b, "a");
    ASSERT_NE(joint, nullptr);
    const Point s = a->getAnchor("out")->getCentre();
    const Point t = b->getAnchor("a")->getCentre();
    EXPECT_EQ(s, (Point{float(a->getWidth()), float(a->getAnchor("out")->getY())}));
    ASSERT_EQ(graph->getLinePointCount(joint->getLineId()), 25u);
    EXPECT_EQ(graph->getLinePoint(joint->getLineId(), 0), s);
    EXPECT_EQ(graph->getLinePoint(joint->getLineId(), 24), t);
    // The curve approaches the end of the straight piece from the left.
    const Point last = graph->getLinePoint(joint->getLineId(), 23);
    EXPECT_LT(last.x, t.x - 16.0f);
    expectArrow(joint, {t.x - 16, t.y - 8}, {t.x, t.y + 8}, {0.875f, 0.25f, 1.0f, 0.5f});
    EXPECT_EQ(graph->getLineColour(joint->getLineId()), Graph::kWhite);

    // Moving a node recomputes the joints touching it.
    press({float(b->getX() + b->getWidth() / 2), float(b->getY() + 3)});
    move({float(b->getX() + b->getWidth() / 2 + 40), float(b->getY() + 3)});
    EXPECT_EQ(graph->getLinePoint(joint->getLineId(), 24), (Point{t.x + 40, t.y}));

    // Between nodes at the same place it still ends in the straight piece.
    GraphNode* c = add("Math.Add", 100, 100);
    GraphNode* d = add("Math.Add", 100, 100);
    joint = link(c, "out", d, "a");
    const Point u = d->getAnchor("a")->getCentre();
    EXPECT_EQ(graph->getLinePointCount(joint->getLineId()), 25u);
    EXPECT_EQ(graph->getLinePoint(joint->getLineId(), 24), u);
    expectArrow(joint, {u.x - 16, u.y - 8}, {u.x, u.y + 8}, {0.875f, 0.25f, 1.0f, 0.5f});
}

TEST_F(GraphJointTest, ArrowsOfRightAndBottomTargets)
{
    GraphNode* a = add("Math.Add", 0, 0);
    GraphNode* target = add("Empty", 300, 200);
    DataNode* inputs = doc->createNode("Math.Add");
    auto right = std::make_unique<GraphAnchor>(target, inputs->findAnchor("a"), GraphAnchor::kRight, GraphAnchor::kInput);
    auto bottom = std::make_unique<GraphAnchor>(target, inputs->findAnchor("b"), GraphAnchor::kBottom, GraphAnchor::kInput);
    GraphAnchor* rightAnchor = right.get();
    GraphAnchor* bottomAnchor = bottom.get();
    target->addAnchor(std::move(right));
    target->addAnchor(std::move(bottom));
    target->genUI();

    auto* intoRight = new GraphJoint(a->getAnchor("out"), rightAnchor, nullptr);
    auto* intoBottom = new GraphJoint(a->getAnchor("out"), bottomAnchor, nullptr);
    graph->addJoint(intoRight);
    graph->addJoint(intoBottom);
    const Point r = rightAnchor->getCentre();
    expectArrow(intoRight, {r.x, r.y - 8}, {r.x + 16, r.y + 8}, {0.875f, 0.0f, 1.0f, 0.25f});
    const Point b = bottomAnchor->getCentre();
    expectArrow(intoBottom, {b.x - 8, b.y}, {b.x + 8, b.y + 16}, {0.875f, 0.5f, 1.0f, 0.75f});
    EXPECT_EQ(graph->getLinePoint(intoBottom->getLineId(), 24), b);
}

TEST_F(GraphJointTest, LinksNamingMissingAnchorsAreSkipped)
{
    GraphNode* a = add("Math.Add");
    GraphNode* b = add("Math.Add");
    DataJoint broken{a->getData(), b->getData(), a->getData()->findAnchor("out"), nullptr};
    jLog::Capture log;
    EXPECT_EQ(graph->createGrahpJoint(&broken), nullptr);
    EXPECT_EQ(graph->createGrahpJoint(nullptr), nullptr);
    EXPECT_TRUE(graph->getJoints().empty());
    EXPECT_EQ(log.lines(), std::vector<jString>{"error: Graph::createGrahpJoint:p0&&p1"});
}

} // namespace
