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

#include <cstdlib>
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

    // The records a pointer event at local point p of the grid makes.
    UIEventMouse at(QPoint p, uint32_t buttons) const
    {
        const QPoint w = content->mapTo(dialog.get(), p);
        return UIEventMouse(w.x(), w.y(), p.x(), p.y(), buttons);
    }
    UIEventMouse atCell(int bit, uint32_t buttons) const
    {
        return at(content->getItems()[size_t(bit)]->geometry().center(), buttons);
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

TEST_F(MaskBitSelectTest, ShowsCellsAndFlagOfTheIncomingMaskAndOkWritesItBack)
{
    open(0x40000005);
    ASSERT_EQ(content->getItems().size(), 24u);
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(content->getItems()[size_t(i)]->getLabel()->text(), QString::number(i));
    EXPECT_EQ(selectedCells(), 0x5u);
    EXPECT_TRUE(dialog->getFlag30Box()->isChecked());
    EXPECT_EQ(dialog->getFlag30Box()->text(), "Bit 30");
    EXPECT_EQ(dialog->getSetAllButton()->text(), "Set all");
    EXPECT_EQ(dialog->getClearAllButton()->text(), "Clear all");
    EXPECT_EQ(dialog->getOkButton()->text(), "OK");
    EXPECT_EQ(dialog->getCancelButton()->text(), "Cancel");

    QTest::mouseClick(dialog->getOkButton(), Qt::LeftButton);
    EXPECT_EQ(value, 0x40000005u);
    EXPECT_EQ(accepted, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(log.empty()) << log.text();
}

TEST_F(MaskBitSelectTest, BitsOutsideTheCellsAndTheFlagAreDroppedOnOk)
{
    open(0xBF000000);
    EXPECT_EQ(selectedCells(), 0u);
    EXPECT_FALSE(dialog->getFlag30Box()->isChecked());
    dialog->accept();
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(accepted, 1);
}

TEST_F(MaskBitSelectTest, SetAllAndClearAllRebuildTheGrid)
{
    open(0x10);
    QTest::mouseClick(dialog->getSetAllButton(), Qt::LeftButton);
    EXPECT_EQ(selectedCells(), 0xFFFFFFu);
    dialog->accept();
    EXPECT_EQ(value, 0xFFFFFFu);

    open(0);
    QTest::mouseClick(dialog->getSetAllButton(), Qt::LeftButton);
    dialog->getFlag30Box()->click();
    EXPECT_TRUE(dialog->getFlag30());
    dialog->accept();
    EXPECT_EQ(value, 0x40FFFFFFu);

    open(0x40F0F0F0);
    QTest::mouseClick(dialog->getClearAllButton(), Qt::LeftButton);
    EXPECT_EQ(selectedCells(), 0u);
    dialog->accept();
    EXPECT_EQ(value, 0x40000000u);
}

TEST_F(MaskBitSelectTest, CancelKeepsTheMaskAndWritesNotAccepted)
{
    open(0x40000005);
    UIEventMouse press = atCell(7, UIEventMouse::kLeft);
    content->onMouseDown(press);
    QTest::mouseClick(dialog->getCancelButton(), Qt::LeftButton);
    EXPECT_EQ(value, 0x40000005u);
    EXPECT_EQ(accepted, 0);

    // Run the way the options panel runs it: the answerer works the dialog.
    DialogRecorder recorder;
    recorder.dialogHandler = [](QDialog& d) {
        auto& select = static_cast<MaterialMaskBitSelect&>(d);
        select.getContent()->clearAll();
        QTest::keyClick(&select, Qt::Key_Escape);
        return select.result();
    };
    value = 0x123;
    accepted = 7;
    EXPECT_EQ(MaterialMaskBitSelect::select(nullptr, &accepted, &value), QDialog::Rejected);
    EXPECT_EQ(recorder.dialogs, 1);
    EXPECT_EQ(value, 0x123u);
    EXPECT_EQ(accepted, 0);
}

TEST_F(MaskBitSelectTest, LeftOrRightPressTogglesTheCellUnderThePointer)
{
    open(0x1);
    UIEventMouse left = atCell(5, UIEventMouse::kLeft);
    EXPECT_TRUE(content->onMouseDown(left));
    EXPECT_EQ(content->getMask(), 0x21u);
    EXPECT_EQ(selectedCells(), 0x21u);
    EXPECT_TRUE(content->isFocused());
    EXPECT_EQ(content->getFocusedItem(), content->getItems()[5]);

    UIEventMouse right = atCell(0, UIEventMouse::kRight);
    EXPECT_TRUE(content->onMouseDown(right));
    EXPECT_EQ(content->getMask(), 0x20u);
    EXPECT_FALSE(content->getItems()[0]->isHighlighted());
    EXPECT_EQ(content->getItems()[0]->getColour(), MaskBitItem::kNoColour);

    // No button, a press between cells or outside the grid toggles nothing.
    UIEventMouse none = atCell(9, 0);
    EXPECT_FALSE(content->onMouseDown(none));
    const QRect c8 = content->getItems()[8]->geometry();
    UIEventMouse gap = at(QPoint(c8.right() + 2, c8.center().y()), UIEventMouse::kLeft);
    EXPECT_TRUE(content->onMouseDown(gap));
    UIEventMouse outside = at(QPoint(-5, -5), UIEventMouse::kLeft);
    EXPECT_FALSE(content->onMouseDown(outside));
    EXPECT_EQ(content->getMask(), 0x20u);

    // Hidden or disabled cells do not count.
    content->getItems()[5]->setEnabled(false);
    content->recompute();
    EXPECT_EQ(content->getMask(), 0u);

    dialog->accept();
    EXPECT_EQ(value, 0u);
}

TEST_F(MaskBitSelectTest, HoverLightsOnlyTheUnselectedCellUnderThePointer)
{
    open(0x2);
    UIEventMouse over3 = atCell(3, 0);
    EXPECT_TRUE(content->onMouseMove(over3));
    EXPECT_EQ(content->getItems()[3]->getColour(), MaskBitContent::hoverColour);
    UIEventMouse over1 = atCell(1, 0);
    content->onMouseMove(over1);
    EXPECT_FALSE(content->getItems()[3]->isHighlighted());
    EXPECT_EQ(content->getItems()[3]->getColour(), MaskBitItem::kNoColour);
    EXPECT_EQ(selectedCells(), 0x2u);

    struct Counter {
        int clicks = 0;
        void hit(const UIEvent*, QWidget*) { ++clicks; }
    } counter;
    content->getClicked().add(&counter, &Counter::hit);
    UIEventMouse release = atCell(4, UIEventMouse::kLeft);
    content->onMouseUp(release);
    UIEventMouse rightRelease = atCell(4, UIEventMouse::kRight);
    content->onMouseUp(rightRelease);
    EXPECT_EQ(counter.clicks, 1);
}

TEST_F(MaskBitSelectTest, KeyRepeatFilter)
{
    open(0);
    EXPECT_FALSE(content->onKeyDown(UIEventKey('a', 0))) << "no focus yet";
    UIEventMouse press = atCell(0, UIEventMouse::kLeft);
    content->onMouseDown(press);

    EXPECT_TRUE(content->onKeyDown(UIEventKey('a', 0)));
    EXPECT_EQ(content->getLastKey(), 'a');
    EXPECT_FALSE(content->onKeyDown(UIEventKey('a', 0)));
    EXPECT_TRUE(content->onKeyDown(UIEventKey('b', 0)));
    content->update(0.03f);
    EXPECT_FALSE(content->onKeyDown(UIEventKey('b', 0)));
    content->update(0.03f);
    EXPECT_EQ(content->getLastKey(), -1);
    EXPECT_FLOAT_EQ(content->getKeyTimer(), 0.0f);
    EXPECT_TRUE(content->onKeyDown(UIEventKey('b', 0)));
}

TEST_F(MaskBitSelectTest, PaintsSelectedAndHoveredCellsInTheirColours)
{
    open(0x1);
    UIEventMouse over = atCell(1, 0);
    content->onMouseMove(over);
    const QImage image = dialog->grab().toImage();
    if (const char* path = std::getenv("MASK_BIT_GRAB"))
        image.save(path);
    auto colourOfCell = [&](int bit) {
        const QRect cell = content->getItems()[size_t(bit)]->geometry();
        // A corner inside the frame, clear of the number.
        return image.pixel(content->mapTo(dialog.get(), cell.topLeft() + QPoint(3, 3)));
    };
    EXPECT_EQ(colourOfCell(0), qRgb(153, 153, 77));
    EXPECT_EQ(colourOfCell(1), qRgb(77, 77, 77));
    EXPECT_EQ(colourOfCell(2), qRgb(255, 255, 255));
}

} // namespace
