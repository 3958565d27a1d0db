// A small graph painted into an image: the node frame where the node is,
// the joint line between the anchors, the background colour elsewhere.
#include "GraphFixture.h"

#include <QImage>
#include <QPainter>

namespace {

int brightestAround(const QImage& image, UICanvas::Point p)
{
    int best = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx)
            best = std::max(best, qGray(image.pixel(int(p.x) + dx, int(p.y) + dy)));
    }
    return best;
}

class GraphRenderTest : public GraphTest {};

TEST_F(GraphRenderTest, NodeFrameJointAndBackgroundAreWhereTheyBelong)
{
    graph = std::make_unique<Graph>(nullptr, 500, 320);
    GraphNode* a = add("Math.Add", 40, 40);
    GraphNode* b = add("Math.Add", 300, 180);
    GraphJoint* joint = link(a, "out", b, "a");
    ASSERT_NE(joint, nullptr);
    graph->refreshHighlight(-1, -1);

    QImage image(graph->size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    graph->render(&image);

    // The background: the canvas colour (0.15 grey), give or take its grid.
    const QColor background = image.pixelColor(470, 20);
    EXPECT_NEAR(background.red(), 38, 12);
    EXPECT_EQ(background.red(), background.green());
    EXPECT_EQ(background.green(), background.blue());

    // Inside the frame, below the title: the grey body, lighter than the
    // background and not the magenta the image started with.
    const QColor body = image.pixelColor(a->getX() + a->getWidth() / 2, a->getY() + a->getHeight() - 12);
    EXPECT_GT(body.red(), background.red() + 8);
    EXPECT_EQ(body.red(), body.blue());
    // The frame's border is lighter still.
    const int border = brightestAround(image, {float(b->getX() + b->getWidth() / 2), float(b->getY() + 1)});
    EXPECT_GT(border, 120);

    // The middle of the curve is drawn in white.
    const UICanvas::Point middle = graph->getLinePoint(joint->getLineId(), 12);
    EXPECT_GT(brightestAround(image, middle), 180);
    // Half-way between the nodes but off the curve: background.
    EXPECT_NEAR(qGray(image.pixel(int(middle.x), int(middle.y) + 40)), 38, 12);
}

} // namespace
