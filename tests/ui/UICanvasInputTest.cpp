// Qt input reaching the canvas's handlers as the editor's event records:
// buttons, wheel directions, key codes, modifiers and drops.
#include "BlockDrag.h"
#include "UICanvas.h"
#include "UIEventTranslator.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

struct Record {
    const char* handler;
    int x, y, localX, localY;
    uint32_t flags;
    int key = 0;
    bool down = true;
};

class RecordingCanvas : public UICanvas {
public:
    using UICanvas::UICanvas;

    bool onMouseDown(UIEventMouse& e) override { return record("down", e); }
    bool onMouseMove(UIEventMouse& e) override { return record("move", e); }
    bool onMouseUp(UIEventMouse& e) override { return record("up", e); }
    bool onMouseWheel(UIEventWheel& e) override { return record("wheel", e); }
    bool onKeyPress(UIEventKey& e) override
    {
        records.push_back({"key", 0, 0, 0, 0, e.modifiers, e.key, e.down});
        return consume;
    }
    bool onDropFinish(UIEventDrop& e) override
    {
        drops.push_back(e);
        return consume;
    }

    std::vector<Record> records;
    std::vector<UIEventDrop> drops;
    bool consume = true;

private:
    bool record(const char* handler, const UIEventMouse& e)
    {
        records.push_back({handler, e.x, e.y, e.localX, e.localY, e.buttons});
        return consume;
    }
};

class UICanvasInputTest : public testing::Test {
protected:
    UICanvasInputTest()
    {
        window.resize(400, 300);
        canvas = new RecordingCanvas(&window);
        canvas->setGeometry(5, 7, 300, 200);
    }

    void mouse(QEvent::Type type, QPoint local, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, local, canvas->mapToGlobal(local), button, held, Qt::NoModifier);
        QApplication::sendEvent(canvas, &event);
    }
    bool wheel(QPoint local, int angle, Qt::MouseButtons held = Qt::NoButton)
    {
        QWheelEvent event(local, canvas->mapToGlobal(local), QPoint(), QPoint(0, angle), held, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas, &event);
        return event.isAccepted();
    }
    bool key(QEvent::Type type, int qtKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool repeat = false)
    {
        QKeyEvent event(type, qtKey, modifiers, QString(), repeat);
        QApplication::sendEvent(canvas, &event);
        return event.isAccepted();
    }

    QWidget window;
    RecordingCanvas* canvas;
};

TEST_F(UICanvasInputTest, ButtonsBecomeFlagsOneAndFourWithLocalAndWindowPositions)
{
    mouse(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, {12, 22}, Qt::NoButton, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, {12, 22}, Qt::LeftButton, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, {1, 2}, Qt::RightButton, Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, {1, 2}, Qt::RightButton, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, {3, 4}, Qt::MiddleButton, Qt::MiddleButton);
    mouse(QEvent::MouseMove, {3, 5}, Qt::NoButton, Qt::NoButton);

    const std::vector<std::tuple<jString, int, int, int, int, uint32_t>> expected = {
        {"down", 15, 27, 10, 20, 1}, {"move", 17, 29, 12, 22, 1}, {"up", 17, 29, 12, 22, 1}, {"down", 6, 9, 1, 2, 4},
        {"up", 6, 9, 1, 2, 4},       {"down", 8, 11, 3, 4, 4},    {"move", 8, 12, 3, 5, 0},
    };
    ASSERT_EQ(canvas->records.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const Record& r = canvas->records[i];
        EXPECT_EQ(std::make_tuple(jString(r.handler), r.x, r.y, r.localX, r.localY, r.flags), expected[i]) << i;
    }
}

TEST_F(UICanvasInputTest, WheelAwayFromTheUserIsEightTowardsIsSixteenAndUnconsumedEventsGoOn)
{
    wheel({50, 60}, 120);
    wheel({50, 60}, -120);
    wheel({50, 60}, 15, Qt::RightButton);
    ASSERT_EQ(canvas->records.size(), 3u);
    EXPECT_EQ(canvas->records[0].flags, UIEventWheel::kWheelUp);
    EXPECT_EQ(canvas->records[0].localX, 50);
    EXPECT_EQ(canvas->records[1].flags, UIEventWheel::kWheelDown);
    EXPECT_EQ(canvas->records[2].flags, UIEventWheel::kWheelUp | UIEventMouse::kRight);

    // Unconsumed events go on to the parent.
    canvas->consume = false;
    EXPECT_FALSE(key(QEvent::KeyPress, Qt::Key_C));
    EXPECT_FALSE(wheel({5, 5}, 120));
    canvas->consume = true;
    EXPECT_TRUE(key(QEvent::KeyPress, Qt::Key_C));
    EXPECT_EQ(canvas->focusPolicy(), Qt::ClickFocus);
    EXPECT_TRUE(canvas->acceptDrops());
}

TEST_F(UICanvasInputTest, KeysCarryEngineCodesAndModifierFlags)
{
    key(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    key(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    key(QEvent::KeyPress, Qt::Key_S, Qt::AltModifier);
    key(QEvent::KeyPress, Qt::Key_N);
    key(QEvent::KeyPress, Qt::Key_Delete);
    key(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, true);
    key(QEvent::KeyRelease, Qt::Key_Delete, Qt::NoModifier, true);
    key(QEvent::KeyRelease, Qt::Key_Delete);
    key(QEvent::KeyPress, Qt::Key_F7);
    key(QEvent::KeyPress, Qt::Key_5);
    EXPECT_FALSE(key(QEvent::KeyPress, Qt::Key_Home));

    const std::vector<std::tuple<int, uint32_t, bool>> expected = {
        {99, 1, true},   {118, 3, true},  {115, 4, true},  {110, 0, true}, {260, 0, true},
        {260, 0, true},  {260, 0, false}, {281, 0, true},  {53, 0, true},
    };
    ASSERT_EQ(canvas->records.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const Record& r = canvas->records[i];
        EXPECT_EQ(std::make_tuple(r.key, r.flags, r.down), expected[i]) << i;
    }
}

TEST_F(UICanvasInputTest, ABlockDraggedFromATreeIsDragTypeTwoFromSourceTwentyOne)
{
    std::unique_ptr<QMimeData> mime(BlockDrag::makeMimeData("Math.Add"));
    EXPECT_EQ(mime->text(), "Math.Add");
    QDropEvent drop(QPointF(30, 40), Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QTreeWidget tree;
    QPushButton button;

    UIEventDrop fromTree = UIEventTranslator::drop(drop, *canvas, &tree);
    EXPECT_EQ(fromTree.dragType, UIEventDrop::kDragTreeItem);
    EXPECT_EQ(fromTree.sourceType, UIEventDrop::kSourceTreeBox);
    EXPECT_FALSE(fromTree.sourceIsButton);
    EXPECT_EQ(fromTree.text, "Math.Add");
    EXPECT_EQ(std::make_tuple(fromTree.x, fromTree.y, fromTree.localX, fromTree.localY), std::make_tuple(35, 47, 30, 40));

    UIEventDrop fromButton = UIEventTranslator::drop(drop, *canvas, &button);
    EXPECT_EQ(fromButton.dragType, UIEventDrop::kDragTreeItem);
    EXPECT_EQ(fromButton.sourceType, 0);
    EXPECT_TRUE(fromButton.sourceIsButton);

    // Plain text from elsewhere is no block drag.
    QMimeData text;
    text.setText("Math.Add");
    QDropEvent textDrop(QPointF(1, 2), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    UIEventDrop other = UIEventTranslator::drop(textDrop, *canvas, &tree);
    EXPECT_EQ(std::make_tuple(other.dragType, other.sourceType, other.text), std::make_tuple(0, 0, jString("Math.Add")));

    // Through the widget, which accepts the drag on entering (no drag runs,
    // so Qt knows no source).
    QDragEnterEvent enter(QPoint(30, 40), Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QApplication::sendEvent(canvas, &drop);
    ASSERT_EQ(canvas->drops.size(), 1u);
    EXPECT_EQ(canvas->drops[0].dragType, UIEventDrop::kDragTreeItem);
    EXPECT_EQ(canvas->drops[0].text, "Math.Add");
    EXPECT_TRUE(drop.isAccepted());
}

} // namespace
