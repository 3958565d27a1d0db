// The mask bit selector: what it shows for an incoming mask, what OK and
// Cancel write, toggling and hover through the event records, and the key
// repeat filter.
#include "DialogRecorder.h"
#include "MaskBitContent.h"
#include "MaterialMaskBitSelect.h"
#include "UIBool.h"
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

class MaskBitSelectTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        trReload();
    }

    void open(uint32_t mask)
    {
        value = mask;
        accepted = 7;
        dialog = std::make_unique<MaterialMaskBitSelect>(nullptr, &accepted, &value);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
        content = dialog->getContent();
    }

    // The record of a pointer event at local point p of the grid.
    UIEventMouse at(QPoint p, uint32_t buttons) const
    {
        const QPoint w = content->mapTo(dialog.get(), p);
        return UIEventMouse(w.x(), w.y(), p.x(), p.y(), buttons);
    }
    QPoint centre(int bit) const { return content->getItems()[size_t(bit)]->geometry().center(); }
    bool press(QPoint p, uint32_t buttons)
    {
        UIEventMouse e = at(p, buttons);
        return content->onMouseDown(e);
    }
    bool move(int bit)
    {
        UIEventMouse e = at(centre(bit), 0);
        return content->onMouseMove(e);
    }

    uint32_t selectedCells() const
    {
        uint32_t bits = 0;
        for (const MaskBitItem* item : content->getItems()) {
            if (!item->isSelected())
                continue;
            EXPECT_TRUE(item->isHighlighted()) << item->getBit();
            EXPECT_EQ(item->getColour(), MaskBitContent::selectedColour) << item->getBit();
            bits |= 1u << item->getBit();
        }
        return bits;
    }

    uint32_t value = 0;
    uint8_t accepted = 7;
    std::unique_ptr<MaterialMaskBitSelect> dialog;
    MaskBitContent* content = nullptr;
    jLog::Capture log;
};

TEST_F(MaskBitSelectTest, ShowsTheIncomingMaskAndOkWritesItsCellsAndFlag30)
{
    open(0x40000005);
    ASSERT_EQ(content->getItems().size(), 24u);
    EXPECT_EQ(content->getItems()[23]->getLabel()->text(), "23");
    EXPECT_EQ(selectedCells(), 0x5u);
    EXPECT_TRUE(dialog->getFlag30Box()->isChecked());
    EXPECT_EQ(dialog->getFlag30Box()->text(), "Bit 30");

    QTest::mouseClick(dialog->getOkButton(), Qt::LeftButton);
    EXPECT_EQ(value, 0x40000005u);
    EXPECT_EQ(accepted, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(log.empty()) << log.text();

    // Bits 24 to 29 and 31 have no cell and are dropped.
    open(0xBF000000);
    EXPECT_EQ(selectedCells(), 0u);
    EXPECT_FALSE(dialog->getFlag30Box()->isChecked());
    dialog->accept();
    EXPECT_EQ(value, 0u);
}

TEST_F(MaskBitSelectTest, SetAllAndClearAllRebuildTheGrid)
{
    for (bool flag30 : {false, true}) {
        open(0x10);
        QTest::mouseClick(dialog->getSetAllButton(), Qt::LeftButton);
        EXPECT_EQ(selectedCells(), 0xFFFFFFu);
        if (flag30)
            dialog->getFlag30Box()->click();
        dialog->accept();
        EXPECT_EQ(value, flag30 ? 0x40FFFFFFu : 0xFFFFFFu);
    }
    open(0x40F0F0F0);
    QTest::mouseClick(dialog->getClearAllButton(), Qt::LeftButton);
    EXPECT_EQ(selectedCells(), 0u);
    dialog->accept();
    EXPECT_EQ(value, 0x40000000u);
}

TEST_F(MaskBitSelectTest, CancelKeepsTheMaskAndWritesNotAccepted)
{
    // Run the way the options panel runs it: the answerer works the dialog.
    DialogRecorder recorder;
    recorder.dialogHandler = [](QDialog& d) {
        auto& select = static_cast<MaterialMaskBitSelect&>(d);
        select.getContent()->clearAll();
        QTest::mouseClick(select.getCancelButton(), Qt::LeftButton);
        return select.result();
    };
    value = 0x123;
    EXPECT_EQ(MaterialMaskBitSelect::select(nullptr, &accepted, &value), QDialog::Rejected);
    EXPECT_EQ(recorder.dialogs, 1);
    EXPECT_EQ(value, 0x123u);
    EXPECT_EQ(accepted, 0);
}

TEST_F(MaskBitSelectTest, LeftOrRightPressTogglesTheCellUnderThePointerAndFocusesTheKeyRepeatFilter)
{
    open(0x1);
    EXPECT_FALSE(content->onKeyDown(UIEventKey('a', 0))) << "no focus yet";
    EXPECT_TRUE(press(centre(5), UIEventMouse::kLeft));
    EXPECT_EQ(content->getMask(), 0x21u);
    EXPECT_EQ(selectedCells(), 0x21u);
    EXPECT_TRUE(content->isFocused());
    EXPECT_EQ(content->getFocusedItem(), content->getItems()[5]);

    EXPECT_TRUE(content->onKeyDown(UIEventKey('a', 0)));
    EXPECT_EQ(content->getLastKey(), 'a');
    EXPECT_FALSE(content->onKeyDown(UIEventKey('a', 0)));
    EXPECT_TRUE(content->onKeyDown(UIEventKey('b', 0)));
    content->update(0.03f);
    EXPECT_FALSE(content->onKeyDown(UIEventKey('b', 0)));
    content->update(0.03f);
    EXPECT_EQ(content->getLastKey(), -1);
    EXPECT_TRUE(content->onKeyDown(UIEventKey('b', 0)));

    EXPECT_TRUE(press(centre(0), UIEventMouse::kRight));
    EXPECT_EQ(content->getMask(), 0x20u);
    EXPECT_FALSE(content->getItems()[0]->isHighlighted());
    EXPECT_EQ(content->getItems()[0]->getColour(), MaskBitItem::kNoColour);

    // No button, a press between cells or outside the grid toggles nothing.
    EXPECT_FALSE(press(centre(9), 0));
    EXPECT_TRUE(press(QPoint(content->getItems()[8]->geometry().right() + 2, centre(8).y()), UIEventMouse::kLeft));
    EXPECT_FALSE(press(QPoint(-5, -5), UIEventMouse::kLeft));
    EXPECT_EQ(content->getMask(), 0x20u);

    // Hidden or disabled cells do not count.
    content->getItems()[5]->setEnabled(false);
    content->recompute();
    EXPECT_EQ(content->getMask(), 0u);

    // The same through Qt's events.
    QTest::mouseClick(content, Qt::RightButton, {}, centre(3));
    EXPECT_EQ(content->getMask(), 0x8u);

    dialog->accept();
    EXPECT_EQ(value, 0x8u);
}

TEST_F(MaskBitSelectTest, HoverLightsTheUnselectedCellUnderThePointerAndLeftReleaseClicks)
{
    open(0x3);
    EXPECT_TRUE(move(3));
    EXPECT_TRUE(move(1));
    EXPECT_EQ(selectedCells(), 0x3u);
    move(2);
    const QImage image = dialog->grab().toImage();
    auto backgroundOf = [&](int bit) {
        // A corner inside the frame, clear of the number.
        const QRect cell = content->getItems()[size_t(bit)]->geometry();
        return image.pixel(content->mapTo(dialog.get(), cell.topLeft() + QPoint(3, 3)));
    };
    EXPECT_EQ(backgroundOf(0), qRgb(153, 153, 77));
    EXPECT_EQ(backgroundOf(2), qRgb(77, 77, 77));
    EXPECT_EQ(backgroundOf(3), qRgb(255, 255, 255));
    EXPECT_EQ(content->getItems()[2]->getLabel()->palette().color(QPalette::WindowText), QColor(Qt::white));

    struct Counter {
        int clicks = 0;
        void hit(const UIEvent*, QWidget*) { ++clicks; }
    } counter;
    content->getClicked().add(&counter, &Counter::hit);
    for (uint32_t buttons : {UIEventMouse::kLeft, UIEventMouse::kRight}) {
        UIEventMouse release = at(centre(4), buttons);
        content->onMouseUp(release);
    }
    EXPECT_EQ(counter.clicks, 1);
}

} // namespace
