#include "UIEventTranslator.h"

#include "BlockDrag.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QTreeWidget>
#include <QWheelEvent>
#include <QWidget>

namespace {

constexpr int kBackspace = 8;
constexpr int kTab = 9;
constexpr int kReturn = 13;
constexpr int kEscape = 27;
constexpr int kF1 = UIEventKey::kF7 - 6;

void setPositions(UIEventMouse& out, QPoint local, const QWidget& receiver)
{
    QPoint absolute = receiver.mapTo(receiver.window(), local);
    out.x = absolute.x();
    out.y = absolute.y();
    out.localX = local.x();
    out.localY = local.y();
}

} // namespace

uint32_t UIEventTranslator::buttonFlags(Qt::MouseButtons buttons)
{
    uint32_t flags = 0;
    if (buttons & Qt::LeftButton)
        flags |= UIEventMouse::kLeft;
    if (buttons & (Qt::RightButton | Qt::MiddleButton))
        flags |= UIEventMouse::kRight;
    return flags;
}

uint32_t UIEventTranslator::modifierFlags(Qt::KeyboardModifiers modifiers)
{
    uint32_t flags = 0;
    if (modifiers & Qt::ControlModifier)
        flags |= UIEventKey::kCtrl;
    if (modifiers & Qt::ShiftModifier)
        flags |= UIEventKey::kShift;
    if (modifiers & Qt::AltModifier)
        flags |= UIEventKey::kAlt;
    return flags;
}

int UIEventTranslator::keyCode(int qtKey)
{
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return 'a' + (qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_Space && qtKey <= Qt::Key_AsciiTilde)
        return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return kF1 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Delete:
        return UIEventKey::kDelete;
    case Qt::Key_Backspace:
        return kBackspace;
    case Qt::Key_Tab:
        return kTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return kReturn;
    case Qt::Key_Escape:
        return kEscape;
    default:
        return 0;
    }
}

UIEventMouse UIEventTranslator::mouse(const QMouseEvent& event, const QWidget& receiver)
{
    UIEventMouse out;
    setPositions(out, event.position().toPoint(), receiver);
    out.buttons = buttonFlags(event.buttons() | event.button());
    return out;
}

UIEventWheel UIEventTranslator::wheel(const QWheelEvent& event, const QWidget& receiver)
{
    UIEventWheel out;
    setPositions(out, event.position().toPoint(), receiver);
    // Alt turns a vertical wheel into a horizontal one in Qt; the turn is the
    // same gesture.
    const int turn = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
    out.buttons = buttonFlags(event.buttons());
    if (turn > 0)
        out.buttons |= UIEventWheel::kWheelUp;
    else if (turn < 0)
        out.buttons |= UIEventWheel::kWheelDown;
    return out;
}

bool UIEventTranslator::key(const QKeyEvent& event, UIEventKey& out)
{
    out.key = keyCode(event.key());
    out.modifiers = modifierFlags(event.modifiers());
    out.down = event.type() != QEvent::KeyRelease;
    return out.key != 0;
}

UIEventDrop UIEventTranslator::drop(const QDropEvent& event, const QWidget& receiver)
{
    return drop(event, receiver, event.source());
}

UIEventDrop UIEventTranslator::drop(const QDropEvent& event, const QWidget& receiver, const QObject* source)
{
    UIEventDrop out;
    QPoint local = event.position().toPoint();
    QPoint absolute = receiver.mapTo(receiver.window(), local);
    out.x = absolute.x();
    out.y = absolute.y();
    out.localX = local.x();
    out.localY = local.y();
    const QMimeData* mime = event.mimeData();
    const bool ours = BlockDrag::isBlockDrag(mime);
    if (ours)
        out.dragType = UIEventDrop::kDragTreeItem;
    if (ours && qobject_cast<const QTreeWidget*>(source))
        out.sourceType = UIEventDrop::kSourceTreeBox;
    out.sourceIsButton = qobject_cast<const QAbstractButton*>(source) != nullptr;
    out.text = ours ? BlockDrag::typeName(mime) : (mime ? mime->text().toStdString() : jString());
    return out;
}

bool UIEventTranslator::isAcceptableDrag(const QMimeData* mime)
{
    return mime && (BlockDrag::isBlockDrag(mime) || mime->hasText());
}

bool UIEventTranslator::isUnderPointer(const QWidget& widget, const UIEventMouse& event)
{
    QWidget* top = widget.window();
    QWidget* hit = top->childAt(event.x, event.y);
    if (!hit && top->rect().contains(event.x, event.y))
        hit = top;
    return hit == &widget || widget.isAncestorOf(hit);
}
