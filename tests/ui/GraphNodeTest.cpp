// Node layout, anchor placement, nine-slice numbers and on-canvas variables.
#include "GraphFixture.h"
#include "GraphVariable.h"

namespace {

using Point = UICanvas::Point;
using TexRect = UICanvas::TexRect;

// A node whose title is empty: no header.
class UntitledNode : public GraphNode {
public:
    using GraphNode::GraphNode;
    jString getDisplayName() const override { return {}; }
};

// Corner 0 is the top left, corner 2 the bottom right.
Point corner(const UICanvas& canvas, UICanvas::ItemId polygon, int i)
{
    Point corners[4];
    canvas.getPolygonCorners(polygon, corners);
    return corners[i];
}

class GraphNodeTest : public GraphTest {};

TEST_F(GraphNodeTest, TitledNodeLaysOutTitleColumnsAndFrame)
{
    GraphNode* node = add("Math.Add", 100, 50);
    const int titleWidth = graph->getTextWidth(node->getTitleId());
    const int header = graph->getTextHeight(node->getTitleId()) + 4;
    GraphAnchor* a = node->getAnchor("a");
    GraphAnchor* b = node->getAnchor("b");
    GraphAnchor* out = node->getAnchor("out");
    ASSERT_TRUE(a && b && out);
    EXPECT_EQ(graph->getText(node->getTitleId()), "Math.Add");

    const int width = std::max(titleWidth, std::max(a->getWidth(), b->getWidth()) + out->getWidth()) + 32;
    const int left = 8 + a->getHeight() + 8 + b->getHeight();
    const int height = header + std::max(left, 8 + out->getHeight()) + 8 + 11;
    EXPECT_EQ(node->getWidth(), width);
    EXPECT_EQ(node->getHeight(), height);
    EXPECT_EQ(a->getX(), 0);
    EXPECT_EQ(a->getY(), 11 + header);
    EXPECT_EQ(b->getY(), 11 + header + 8 + a->getHeight());
    EXPECT_EQ(out->getX(), width);
    EXPECT_EQ(out->getY(), 11 + header);
    EXPECT_EQ(graph->getTextPosition(node->getTitleId()), (Point{float((width - titleWidth) / 2), 4.0f}));

    // The frame spans the node through its translation; the sub-title panel
    // and the nineteenth polygon stay empty.
    EXPECT_EQ(corner(*graph, node->getPolygonId(0), 0), (Point{100.0f, 50.0f}));
    EXPECT_EQ(corner(*graph, node->getPolygonId(0), 2), (Point{116.0f, 66.0f}));
    EXPECT_EQ(corner(*graph, node->getPolygonId(3), 2), (Point{100.0f + width, 50.0f + height}));
    EXPECT_EQ(corner(*graph, node->getPolygonId(8), 0), (Point{116.0f, 66.0f}));
    for (size_t i = 9; i < GraphNode::kPolygonCount; ++i)
        EXPECT_TRUE(graph->isPolygonEmpty(node->getPolygonId(i))) << i;
}

TEST_F(GraphNodeTest, NineSliceTakesCornersAndStretchedBandsOfTheFrameTexture)
{
    GraphNode* node = add("Math.Add");
    const float u = 1.0f / 256.0f;
    const float v = 1.0f / 128.0f;
    const TexRect expected[9] = {
        {0.0f, 0.0f, 0.125f - u, 0.25f - v},
        {0.125f + u, 0.0f, 0.25f, 0.25f - v},
        {0.0f, 0.25f + v, 0.125f - u, 0.5f},
        {0.125f + u, 0.25f + v, 0.25f, 0.5f},
        {0.125f - u, 0.0f, 0.125f + u, 0.25f - v},
        {0.0f, 0.25f - v, 0.125f - u, 0.25f + v},
        {0.125f + u, 0.25f - v, 0.25f, 0.25f + v},
        {0.125f - u, 0.25f + v, 0.125f + u, 0.5f},
        {0.125f - u, 0.25f - v, 0.125f + u, 0.25f + v},
    };
    for (size_t i = 0; i < 9; ++i)
        EXPECT_EQ(graph->getPolygonTexRect(node->getPolygonId(i)), expected[i]) << i;
}

TEST_F(GraphNodeTest, UntitledNodeStartsItsColumnsAtTheTop)
{
    DataNode* data = doc->createNode("Math.Add");
    auto* node = new UntitledNode(data, Graph::kWhite);
    graph->addNode(node);
    GraphAnchor* a = node->getAnchor("a");
    GraphAnchor* b = node->getAnchor("b");
    GraphAnchor* out = node->getAnchor("out");
    EXPECT_EQ(a->getY(), 0);
    EXPECT_EQ(b->getY(), 8 + a->getHeight());
    EXPECT_EQ(out->getY(), 0);
    EXPECT_EQ(node->getHeight(), 8 + a->getHeight() + 8 + b->getHeight() + 8);
    EXPECT_EQ(node->getWidth(), std::max(a->getWidth(), b->getWidth()) + out->getWidth() + 32);
}

TEST_F(GraphNodeTest, ThreeBottomAnchorsSitAtQuartersOfTheWidth)
{
    DataNode* source = doc->createNode("Math.Add");
    auto* node = new GraphNode(doc->createNode("Empty"), Graph::kWhite);
    for (const char* name : {"a", "b", "out"}) {
        node->addAnchor(std::make_unique<GraphAnchor>(node, source->findAnchor(name), GraphAnchor::kBottom,
            GraphAnchor::kInput));
    }
    graph->addNode(node);
    const int header = graph->getTextHeight(node->getTitleId()) + 4;
    const int width = graph->getTextWidth(node->getTitleId()) + 32;
    ASSERT_EQ(node->getWidth(), width);
    EXPECT_EQ(node->getHeight(), header + 11 + 8 + 11);
    for (int k = 1; k <= 3; ++k) {
        const GraphAnchor* anchor = node->getAnchorAt(size_t(k - 1));
        EXPECT_EQ(anchor->getX(), k * width / 4) << k;
        EXPECT_EQ(anchor->getY(), node->getHeight()) << k;
        // Bottom row sprites; the label sits centred above the anchor.
        EXPECT_EQ(graph->getPolygonTexRect(anchor->getSquareId()), (TexRect{0.625f, 0.75f, 0.75f, 1.0f}));
        EXPECT_EQ(graph->getTextPosition(anchor->getTextId()),
            (Point{float(anchor->getX() - anchor->getWidth() / 2), float(anchor->getY() - 22)}));
    }
}

TEST_F(GraphNodeTest, AnchorSquaresLabelsAndSpriteRowsBySideAndLookupsOfWhatIsMissing)
{
    GraphNode* node = add("Math.Add", 10, 20);
    const GraphAnchor* a = node->getAnchor("a");
    const GraphAnchor* out = node->getAnchor("out");
    EXPECT_EQ(a->getKind(), GraphAnchor::kInput);
    EXPECT_EQ(out->getKind(), GraphAnchor::kOutput);
    EXPECT_EQ(graph->getPolygonTexRect(a->getSquareId()), (TexRect{0.625f, 0.0f, 0.75f, 0.25f}));
    EXPECT_EQ(graph->getPolygonTexRect(out->getSquareId()), (TexRect{0.75f, 0.25f, 0.875f, 0.5f}));
    const float ax = 10.0f + a->getX();
    const float ay = 20.0f + a->getY();
    EXPECT_EQ(corner(*graph, a->getSquareId(), 0), (Point{ax - 8, ay - 8}));
    EXPECT_EQ(corner(*graph, a->getHighlightId(), 2), (Point{ax + 11, ay + 11}));
    EXPECT_EQ(graph->getPolygonColour(a->getHighlightId()), Graph::kNoHighlight);
    EXPECT_EQ(graph->getTextPosition(a->getTextId()), (Point{float(a->getX() + 4), float(a->getY() - 7)}));
    EXPECT_EQ(graph->getTextPosition(out->getTextId()),
        (Point{float(out->getX() - out->getWidth() - 4), float(out->getY() - 7)}));
    EXPECT_EQ(GraphAnchor::spriteRect(7, 0), TexRect{});

    // Lookups log what is missing or repeated.
    jLog::Capture log;
    EXPECT_EQ(node->getAnchor("c"), nullptr);
    EXPECT_EQ(node->getVar("nothing"), nullptr);
    node->addAnchor(std::make_unique<GraphAnchor>(node, node->getData()->findAnchor("a"), 1, 1));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: GraphNode::getAnchor(): can't find \"c\" anchor",
                               "error: GraphNode::getVar(): can't find \"nothing\" variable",
                               "error: GraphNode::addAnchor(): \"a\" anchor is already defined"}));
}

TEST_F(GraphNodeTest, VariablesShowNameAndValueInGreenAndTexturesA90By90ThumbnailDefaultingToBlack)
{
    GraphVariable* value = add("Constant.Float")->getVar("value");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(graph->getText(value->getTextId()), "value(0.5)");
    EXPECT_EQ(graph->getTextColour(value->getTextId()), (UICanvas::Colour{0.0f, 1.0f, 0.0f, 1.0f}));
    EXPECT_EQ(value->getWidth(), graph->getTextWidth(value->getTextId()));
    EXPECT_EQ(value->getX(), 8);
    EXPECT_EQ(graph->getTextPosition(value->getTextId()), (Point{12.0f, float(value->getY() - 7)}));

    GraphNode* node = add("Texture.Sample2D", 30, 40);
    GraphVariable* tex = node->getVar("tex");
    ASSERT_TRUE(tex && tex->isTexture());
    EXPECT_EQ(tex->getVariable()->getValue(), "data/core/textures/common/black.dds");
    EXPECT_EQ(tex->getTextId(), UICanvas::kNoItem);
    const UICanvas::ItemId thumbnail = tex->getPolygonId();
    EXPECT_EQ(graph->getPolygonTexture(thumbnail), "data/core/textures/common/black.dds");
    EXPECT_EQ(graph->getPolygonBlendSource(thumbnail), 5);
    EXPECT_EQ(graph->getPolygonBlendDestination(thumbnail), 6);
    EXPECT_EQ(graph->getPolygonTexRect(thumbnail), (TexRect{0.0f, 0.0f, 1.0f, 1.0f}));
    EXPECT_EQ(corner(*graph, thumbnail, 0), (Point{38.0f, 40.0f + tex->getY()}));
    EXPECT_EQ(corner(*graph, thumbnail, 2), (Point{128.0f, 130.0f + tex->getY()}));
    EXPECT_EQ(graph->findNodeByPolygon(thumbnail), node);

    // A label changes nothing on a thumbnail; attaching again adds nothing.
    const size_t items = graph->getItemCount();
    tex->setLabel("a long label that would measure far more than ninety units");
    tex->attach(graph.get());
    EXPECT_EQ(graph->getItemCount(), items);
    EXPECT_EQ(tex->getWidth(), 90);
    EXPECT_EQ(tex->getHeight(), 90);

    tex->setTexture("data/textures/rock.png");
    EXPECT_EQ(tex->getVariable()->getValue(), "data/textures/rock.png");
    EXPECT_EQ(graph->getPolygonTexture(thumbnail), "data/textures/rock.png");
}

} // namespace
