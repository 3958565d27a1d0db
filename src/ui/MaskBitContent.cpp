#include "MaskBitContent.h"

#include "UIEventTranslator.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QMouseEvent>

MaskBitContent::MaskBitContent(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    m_grid = new QGridLayout(this);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(kSpacing);
    m_grid->setVerticalSpacing(kSpacing);
    m_grid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void MaskBitContent::remove_items()
{
    m_focusedItem = nullptr;
    for (MaskBitItem* item : items) {
        m_grid->removeWidget(item);
        delete item;
    }
    items.clear();
}

void MaskBitContent::construct(uint32_t m)
{
    mask = m;
    remove_items();
    items.reserve(kCellCount);
    for (int i = 0; i < kCellCount; ++i) {
        auto* item = new MaskBitItem(this, i);
        if (m & (1u << i)) {
            item->setSelected(true);
            item->setHighlight(true);
            item->setColour(selectedColour);
        }
        m_grid->addWidget(item, i / kColumns, i % kColumns);
        items.push_back(item);
    }
}

void MaskBitContent::recompute()
{
    uint32_t bits = 0;
    for (const MaskBitItem* item : items)
        if (!item->isHidden() && item->isEnabled() && item->isSelected())
            bits |= 1u << (item->getBit() & 31);
    mask = bits;
}

MaskBitItem* MaskBitContent::itemAt(int localX, int localY) const
{
    for (MaskBitItem* item : items)
        if (!item->isHidden() && item->geometry().contains(localX, localY))
            return item;
    return nullptr;
}

// ------------------------------------------------------------------ pointer

bool MaskBitContent::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

void MaskBitContent::take_focus(MaskBitItem* item)
{
    m_focused = true;
    m_focusedItem = item;
    setFocus(Qt::MouseFocusReason);
}

void MaskBitContent::focusOutEvent(QFocusEvent* event)
{
    m_focused = false;
    m_focusedItem = nullptr;
    QWidget::focusOutEvent(event);
}

void MaskBitContent::toggle(MaskBitItem* item)
{
    if (item->isSelected()) {
        item->setSelected(false);
        item->setHighlight(false);
        item->setColour(MaskBitItem::kNoColour);
        return;
    }
    item->setSelected(true);
    item->setHighlight(true);
    item->setColour(selectedColour);
    take_focus(item);
}

bool MaskBitContent::onMouseDown(UIEventMouse& event)
{
    if (!is_inside(event) || !(event.buttons & (UIEventMouse::kLeft | UIEventMouse::kRight)))
        return false;
    take_focus(m_focusedItem);
    if (MaskBitItem* item = itemAt(event.localX, event.localY))
        toggle(item);
    recompute();
    return true;
}

void MaskBitContent::clear_hover()
{
    for (MaskBitItem* item : items) {
        if (item->isSelected())
            continue;
        item->setHighlight(false);
        item->setColour(MaskBitItem::kNoColour);
    }
}

bool MaskBitContent::onMouseMove(UIEventMouse& event)
{
    if (!is_inside(event))
        return false;
    clear_hover();
    MaskBitItem* item = itemAt(event.localX, event.localY);
    if (item && !item->isSelected()) {
        item->setHighlight(true);
        item->setColour(hoverColour);
    }
    return true;
}

bool MaskBitContent::onMouseUp(UIEventMouse& event)
{
    if (!is_inside(event))
        return false;
    if ((event.buttons & UIEventMouse::kLeft) && UIEventTranslator::isUnderPointer(*this, event))
        clicked.fire(&event, this);
    return true;
}

// ------------------------------------------------------------------ keys

bool MaskBitContent::onKeyDown(const UIEventKey& event)
{
    if (!event.down || !m_focused)
        return false;
    if (event.key == lastKey && keyTimer > 0.0f)
        return false;
    keyTimer = kKeyRepeatDelay;
    lastKey = event.key;
    return true;
}

void MaskBitContent::update(float dt)
{
    if (keyTimer <= 0.0f)
        return;
    keyTimer -= dt;
    if (keyTimer <= 0.0f) {
        keyTimer = 0.0f;
        lastKey = -1;
    }
}

// ------------------------------------------------------------------ Qt events

void MaskBitContent::mousePressEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseDown(e));
}

void MaskBitContent::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseMove(e));
}

void MaskBitContent::mouseReleaseEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseUp(e));
}

// A modal dialog has no frame driver, so the time since the previous key
// runs the repeat timer down before the next key is judged.
void MaskBitContent::keyPressEvent(QKeyEvent* event)
{
    if (m_sinceLastKey.isValid())
        update(float(m_sinceLastKey.restart()) / 1000.0f);
    else
        m_sinceLastKey.start();
    UIEventKey e;
    if (UIEventTranslator::key(*event, e) && !onKeyDown(e)) {
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

// Qt sends no move once the pointer has left, so the hover light goes off here.
void MaskBitContent::leaveEvent(QEvent* event)
{
    clear_hover();
    QWidget::leaveEvent(event);
}
