// The toolbar: looks under the pointer, clicks, shortcuts and the bar's
// refusals, driven through the event records and, once, through Qt events.
#include "Button.h"
#include "ButtonBar.h"
#include "jLog.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

struct Fired {
    const char* what;
    bool withEvent;
    QWidget* sender;
    bool operator==(const Fired&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Fired& f)
{
    return out << "{" << f.what << ", " << f.withEvent << ", " << f.sender << "}";
}

class ButtonBarTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        window = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(window.get());
        bar = new ButtonBar(window.get());
        layout->addWidget(bar);
        layout->addStretch();
        save = bar->addButton("save", "data/core/editor/gui/save.dds");
        apply = bar->addButton("apply", "data/core/editor/gui/apply.dds");
        centre = bar->addButton("centered", "data/core/editor/gui/center.dds");
        window->resize(400, 200);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        record(bar->getClick(), "bar click");
        record(bar->getRelease(), "bar release");
        for (Button* button : bar->getButtons())
            record(button->getClick(), button->getName() == "save" ? "save click" : "other click");
    }

    void record(ButtonSignal& signal, const char* what)
    {
        // One recorder object per signal: the signal knows a callback by
        // its object and member function.
        recorders.push_back(std::make_unique<Recorder>(Recorder{this, what}));
        signal.add(recorders.back().get(), &Recorder::fired);
    }

    struct Recorder {
        ButtonBarTest* test;
        const char* what;
        void fired(const UIEvent* event, QWidget* sender) { test->fired.push_back({what, event != nullptr, sender}); }
    };

    // A pointer record at a bar-local point.
    UIEventMouse at(QPoint local, uint32_t buttons = UIEventMouse::kLeft) const
    {
        const QPoint absolute = bar->mapTo(window.get(), local);
        return UIEventMouse(absolute.x(), absolute.y(), local.x(), local.y(), buttons);
    }
    QPoint centreOf(const Button* button) const { return button->mapTo(bar, button->rect().center()); }

    void press(QPoint p) { auto e = at(p); bar->onMouseDown(e); }
    void move(QPoint p, uint32_t buttons = 0) { auto e = at(p, buttons); bar->onMouseMove(e); }
    void release(QPoint p) { auto e = at(p); bar->onMouseUp(e); }

    static void expectNoLook(const Button* button)
    {
        EXPECT_FALSE(button->hasBackground()) << button->getName();
        EXPECT_FALSE(button->isPressed()) << button->getName();
    }

    std::unique_ptr<QWidget> window;
    ButtonBar* bar = nullptr;
    Button* save = nullptr;
    Button* apply = nullptr;
    Button* centre = nullptr;
    std::vector<std::unique_ptr<Recorder>> recorders;
    std::vector<Fired> fired;
};

TEST_F(ButtonBarTest, SecondButtonOfTheSameNameIsRefusedWithOneError)
{
    jLog::Capture log;
    EXPECT_EQ(bar->addButton("apply", "data/core/editor/gui/save.dds"), nullptr);
    EXPECT_EQ(log.lines(), std::vector<jString>{"error: ButtonBar::addButton:re-add button with same name \"apply\""});
    EXPECT_EQ(bar->getButtons(), (std::vector<Button*>{save, apply, centre}));
    EXPECT_TRUE(bar->hasButton("centered"));
    EXPECT_FALSE(bar->hasButton("Apply"));
    // The save button is found by its id.
    EXPECT_EQ(bar->getSaveButton(), nullptr);
    apply->setElementId(ButtonBar::kSaveButtonId);
    EXPECT_EQ(bar->getSaveButton(), apply);
}

TEST_F(ButtonBarTest, HoverThenPressThenReleaseOverTheButtonClicksIt)
{
    move(centreOf(apply));
    EXPECT_TRUE(apply->hasBackground());
    EXPECT_EQ(apply->getBackgroundColour(), ButtonBar::kHoverColour);
    EXPECT_EQ(apply->getBackgroundTexture().cacheKey(), bar->getBackgroundTexture().cacheKey());
    EXPECT_FALSE(bar->getBackgroundTexture().isNull());
    expectNoLook(save);

    // Moving on takes the hover look along.
    move(centreOf(save));
    expectNoLook(apply);
    EXPECT_TRUE(save->hasBackground());

    const QPoint labelBefore = apply->getLabel()->parentWidget()->pos();
    press(centreOf(apply));
    EXPECT_TRUE(apply->isPressed());
    EXPECT_EQ(apply->getBackgroundColour(), ButtonBar::kPressedColour);
    EXPECT_TRUE(bar->isFocused());
    // The pressed look: the children one pixel lower once laid out.
    QApplication::sendPostedEvents();
    apply->layout()->activate();
    EXPECT_EQ(apply->getLabel()->parentWidget()->pos(), labelBefore + QPoint(0, 1));

    release(centreOf(apply));
    expectNoLook(apply);
    EXPECT_FALSE(bar->isFocused());
    EXPECT_EQ(fired, (std::vector<Fired>{{"bar release", true, bar}, {"bar click", true, bar}, {"other click", true, apply}}));
}

TEST_F(ButtonBarTest, DisabledButtonGetsNoLookAndNoClick)
{
    save->setButtonEnabled(false);
    EXPECT_EQ(save->getIconColour(), Button::kDisabledIconColour);
    EXPECT_TRUE(save->isGreyMode());
    const QRgb texel = save->getIconImage().pixel(24, 24);
    EXPECT_EQ(qRed(texel), qGreen(texel));
    EXPECT_EQ(qGreen(texel), qBlue(texel));

    move(centreOf(save));
    expectNoLook(save);
    press(centreOf(save));
    expectNoLook(save);
    release(centreOf(save));
    EXPECT_EQ(fired, (std::vector<Fired>{{"bar release", true, bar}, {"bar click", true, bar}}));

    save->setButtonEnabled(true);
    EXPECT_EQ(save->getIconColour(), Button::kIconColour);
    EXPECT_FALSE(save->isGreyMode());
}

TEST_F(ButtonBarTest, ReleaseOutsideTheBarFiresReleaseButNoClick)
{
    press(centreOf(centre));
    EXPECT_TRUE(centre->isPressed());
    const QPoint outside(centreOf(centre).x(), bar->height() + 40);
    // A move outside changes nothing.
    move(outside, UIEventMouse::kLeft);
    EXPECT_TRUE(centre->isPressed());
    release(outside);
    expectNoLook(centre);
    EXPECT_EQ(fired, (std::vector<Fired>{{"bar release", true, bar}}));
    // The bar keeps the focus until a release over it.
    EXPECT_TRUE(bar->isFocused());
}

TEST_F(ButtonBarTest, ShortcutFiresClickWithoutEventWherever)
{
    save->getClick().setShortcut('s', true);
    // The press shortcut is the same key: click comes first and wins.
    save->getPress().setShortcut('s', true);
    move(centreOf(apply));

    EXPECT_FALSE(bar->checkShortcut(UIEventKey('s', 0)));
    EXPECT_FALSE(bar->checkShortcut(UIEventKey('s', UIEventKey::kCtrl | UIEventKey::kShift)));
    EXPECT_TRUE(bar->checkShortcut(UIEventKey('s', UIEventKey::kCtrl)));
    EXPECT_EQ(fired, (std::vector<Fired>{{"save click", false, save}}));
}

TEST_F(ButtonBarTest, QtPointerEventsReachTheBarNotTheButtons)
{
    const QPoint p = centreOf(centre);
    QTest::mouseMove(bar, p);
    QTest::mousePress(bar, Qt::LeftButton, Qt::NoModifier, p);
    EXPECT_TRUE(centre->isPressed());
    QTest::mouseRelease(bar, Qt::LeftButton, Qt::NoModifier, p);
    EXPECT_EQ(fired, (std::vector<Fired>{{"bar release", true, bar}, {"bar click", true, bar}, {"other click", true, centre}}));
}

TEST(ButtonSignal, SameCallbackIsAddedOnce)
{
    static int calls;
    calls = 0;
    ButtonSignal signal;
    ButtonSignal::Function count = [](const UIEvent*, QWidget*) { ++calls; };
    EXPECT_TRUE(signal.add(count));
    EXPECT_FALSE(signal.add(count));
    signal.fire(nullptr, nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(signal.remove(count));
    EXPECT_EQ(signal.size(), 0u);
}

TEST(Button, OnItsOwnAReleaseAwayFromItFiresReleaseOnly)
{
    QWidget window;
    window.resize(200, 200);
    auto* button = new Button(&window, "apply", "");
    button->move(10, 10);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    std::vector<jString> fired;
    static std::vector<jString>* sink;
    sink = &fired;
    button->getClick().add([](const UIEvent*, QWidget*) { sink->push_back("click"); });
    button->getRelease().add([](const UIEvent*, QWidget*) { sink->push_back("release"); });
    button->getPress().add([](const UIEvent*, QWidget*) { sink->push_back("press"); });

    UIEventMouse down(20, 20, 10, 10, UIEventMouse::kLeft);
    EXPECT_TRUE(button->onMouseDown(down));
    UIEventMouse away(150, 150, 140, 140, UIEventMouse::kLeft);
    EXPECT_TRUE(button->onMouseUp(away));
    EXPECT_EQ(fired, (std::vector<jString>{"press", "release"}));
    // Still focused: the next release over it clicks.
    EXPECT_TRUE(button->onMouseUp(down));
    EXPECT_EQ(fired, (std::vector<jString>{"press", "release", "release", "click"}));
}

} // namespace
