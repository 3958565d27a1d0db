// Zoom about the pointer, its steps and clamps, and panning.
#include "GraphFixture.h"
#include "GraphScrollBox.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QScrollBar>

namespace {

class GraphScrollBoxTest : public GraphTest {
protected:
    void SetUp() override
    {
        GraphTest::SetUp();
        graph.reset();
        makeBox(2000, 1500);
    }
    // An 800 by 600 box around a graph of that size.
    void makeBox(int width, int height)
    {
        box.reset();
        view = new Graph(nullptr, width, height);
        box = std::make_unique<GraphScrollBox>(nullptr, view);
        box->resize(800, 600);
        box->show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        box.reset();
        GraphTest::TearDown();
    }

    // A wheel turn at box pixels (x, y); the box is its own window.
    bool wheel(int x, int y, uint32_t flags)
    {
        UIEventWheel event(x, y, x, y, flags);
        return box->onMouseWheel(event);
    }

    std::unique_ptr<GraphScrollBox> box;
    Graph* view = nullptr;
};

TEST_F(GraphScrollBoxTest, ZoomStepsByTenthsAboutThePointerAndStopsAtTheLimits)
{
    EXPECT_TRUE(wheel(100, 100, UIEventWheel::kWheelUp));
    EXPECT_EQ(doc->getScale(), 1.0f);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{23, nullptr, ""}}));

    // The point under the pointer stays fixed.
    DataNode* data = doc->createNode("Math.Add");
    data->setPosX(100);
    data->setPosY(100);
    auto* node = new GraphNode(data, Graph::kWhite);
    view->addNode(node);
    const QPoint pointer = box->mapFrom(box->window(), view->mapTo(box->window(), QPoint(200, 100)));
    sent();
    EXPECT_TRUE(wheel(pointer.x(), pointer.y(), UIEventWheel::kWheelDown));
    // trunc(200 / 0.9) - 200 and trunc(100 / 0.9) - 100.
    EXPECT_EQ(node->getX(), 122);
    EXPECT_EQ(node->getY(), 111);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{23, nullptr, ""}}));
    EXPECT_EQ(doc->getScale(), 0.9f);
    EXPECT_EQ(view->getCanvasTransform(), UICanvas::Transform::scale(0.9f));
    EXPECT_TRUE(wheel(100, 100, UIEventWheel::kWheelDown));
    EXPECT_EQ(doc->getScale(), static_cast<float>(static_cast<double>(0.9f) * 0.9));
    for (int i = 0; i < 20; ++i)
        wheel(100, 100, UIEventWheel::kWheelDown);
    EXPECT_EQ(doc->getScale(), 0.2f);
    EXPECT_TRUE(wheel(100, 100, UIEventWheel::kWheelUp));
    EXPECT_EQ(doc->getScale(), static_cast<float>(static_cast<double>(0.2f) * 1.1));
    // A move without a wheel flag is not a zoom.
    EXPECT_FALSE(wheel(100, 100, 0));
}

TEST_F(GraphScrollBoxTest, WheelOutsideTheGraphIsConsumedWithoutZoom)
{
    makeBox(300, 200);
    sent();
    EXPECT_TRUE(wheel(600, 500, UIEventWheel::kWheelDown));
    EXPECT_EQ(doc->getScale(), 1.0f);
    EXPECT_TRUE(sent().empty());
}

TEST_F(GraphScrollBoxTest, PanningMovesTheScrollBarsAndStoresTheirFractions)
{
    QScrollBar* horizontal = box->horizontalScrollBar();
    QScrollBar* vertical = box->verticalScrollBar();
    ASSERT_GT(horizontal->maximum(), 100);
    UIEventMouse down(300, 300, 300, 300, UIEventMouse::kRight);
    EXPECT_FALSE(box->onMouseDown(down));
    EXPECT_EQ(box->getPanX(), 300);
    UIEventMouse drag(250, 280, 250, 280, UIEventMouse::kRight);
    EXPECT_TRUE(box->onMouseMove(drag));
    EXPECT_EQ(horizontal->value(), 50);
    EXPECT_EQ(vertical->value(), 20);
    EXPECT_FLOAT_EQ(doc->getHScroll(), 50.0f / float(horizontal->maximum()));
    EXPECT_FLOAT_EQ(doc->getVScroll(), 20.0f / float(vertical->maximum()));
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{22, nullptr, ""}}));

    UIEventMouse plain(200, 200, 200, 200, UIEventMouse::kLeft);
    EXPECT_FALSE(box->onMouseMove(plain));
    EXPECT_EQ(horizontal->value(), 50);

    // When the bar cannot move its fraction is a half.
    box->resize(2500, 2000);
    QApplication::processEvents();
    EXPECT_EQ(horizontal->maximum(), 0);
    EXPECT_EQ(box->getHScrollPercent(), 0.5f);
}

TEST_F(GraphScrollBoxTest, QtWheelAndRightDragOverTheGraphZoomAndPan)
{
    const QPointF at(150, 120);
    QWheelEvent turn(at, view->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &turn);
    EXPECT_EQ(doc->getScale(), 0.9f);

    QMouseEvent down(QEvent::MouseButtonPress, at, view->mapToGlobal(at), Qt::RightButton, Qt::RightButton,
        Qt::NoModifier);
    QApplication::sendEvent(view, &down);
    const QPointF to(110, 100);
    QMouseEvent drag(QEvent::MouseMove, to, view->mapToGlobal(to), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(view, &drag);
    EXPECT_EQ(box->horizontalScrollBar()->value(), 40);
    EXPECT_EQ(box->verticalScrollBar()->value(), 20);
    EXPECT_EQ(sent(), (std::vector<SentMsg>{{23, nullptr, ""}, {22, nullptr, ""}}));
}

} // namespace
