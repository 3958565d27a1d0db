#include "ButtonBar.h"

#include "UICanvasTextures.h"
#include "UIEventTranslator.h"
#include "jLog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

ButtonBar::ButtonBar(QWidget* parent)
    : QWidget(parent),
      m_backgroundImage(TextureManager::get().load(kBackgroundTexture)),
      m_backgroundTexture(UICanvasTextures::load(kBackgroundTexture))
{
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_row = new QWidget(this);
    // The row and the buttons let the pointer through: the bar handles it.
    m_row->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_rowLayout = new QHBoxLayout(m_row);
    m_rowLayout->setContentsMargins(0, 0, 0, 0);
    m_rowLayout->setSpacing(2);
    layout->addWidget(m_row, 0, Qt::AlignLeft | Qt::AlignTop);
}

ButtonBar::~ButtonBar() = default;

Button* ButtonBar::addButton(const jString& name, const jString& iconPath)
{
    if (hasButton(name)) {
        jLog::error("%s:re-add button with same name \"%s\"", "ButtonBar::addButton", name.c_str());
        return nullptr;
    }
    auto* button = new Button(m_row, name, iconPath);
    button->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_rowLayout->addWidget(button);
    m_buttons.push_back(button);
    return button;
}

bool ButtonBar::hasButton(const jString& name) const
{
    return findButton(name) != nullptr;
}

Button* ButtonBar::findButton(const jString& name) const
{
    for (Button* button : m_buttons)
        if (button->getName() == name)
            return button;
    return nullptr;
}

Button* ButtonBar::getSaveButton() const
{
    for (Button* button : m_buttons)
        if (button->getElementId() == kSaveButtonId)
            return button;
    return nullptr;
}

// ------------------------------------------------------------------ looks

Button* ButtonBar::button_at(int localX, int localY, bool skipPressed) const
{
    for (Button* button : m_buttons) {
        if (button->isHidden() || !button->isButtonEnabled() || (skipPressed && button->isPressed()))
            continue;
        if (button->rect().contains(button->mapFrom(this, QPoint(localX, localY))))
            return button;
    }
    return nullptr;
}

bool ButtonBar::any_pressed() const
{
    for (Button* button : m_buttons)
        if (button->isPressed())
            return true;
    return false;
}

void ButtonBar::clear_press_look()
{
    for (Button* button : m_buttons) {
        if (button->isHidden())
            continue;
        button->setBackground(false);
        button->setPressed(false);
    }
}

void ButtonBar::set_press_look(Button* button)
{
    button->setBackground(true);
    button->setPressed(true);
    button->setBackgroundColour(kPressedColour);
    button->setBackgroundTexture(m_backgroundTexture);
}

void ButtonBar::clear_hover_look()
{
    for (Button* button : m_buttons) {
        if (button->isHidden() || button->isPressed())
            continue;
        button->setBackground(false);
        button->setBackgroundColour(Button::kNoBackgroundColour);
        button->setBackgroundTexture(QImage());
    }
}

void ButtonBar::set_hover_look(const UIEventMouse& event)
{
    // While a drag that began outside every button goes on, nothing lights.
    if ((event.buttons & UIEventMouse::kLeft) && !any_pressed())
        return;
    clear_hover_look();
    if (Button* button = button_at(event.localX, event.localY, true)) {
        button->setBackground(true);
        button->setBackgroundColour(kHoverColour);
        button->setBackgroundTexture(m_backgroundTexture);
    }
}

// ------------------------------------------------------------------ input

bool ButtonBar::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

void ButtonBar::take_focus()
{
    m_focused = true;
    setFocus(Qt::MouseFocusReason);
}

void ButtonBar::drop_focus()
{
    m_focused = false;
    if (hasFocus())
        clearFocus();
}

void ButtonBar::focusOutEvent(QFocusEvent* event)
{
    m_focused = false;
    QWidget::focusOutEvent(event);
}

bool ButtonBar::onMouseDown(UIEventMouse& event)
{
    if ((!is_inside(event) && !m_focused) || !(event.buttons & UIEventMouse::kLeft))
        return false;
    if (!m_focused) {
        take_focus();
        m_press.fire(&event, this);
    } else {
        m_move.fire(&event, this);
    }
    clear_press_look();
    if (Button* button = button_at(event.localX, event.localY, false))
        set_press_look(button);
    return true;
}

bool ButtonBar::onMouseMove(UIEventMouse& event)
{
    if (!is_inside(event))
        return false;
    set_hover_look(event);
    m_move.fire(&event, this);
    return true;
}

bool ButtonBar::onMouseUp(UIEventMouse& event)
{
    if (!is_inside(event) && !m_focused)
        return false;
    m_release.fire(&event, this);
    clear_press_look();
    if (!UIEventTranslator::isUnderPointer(*this, event))
        return true;
    drop_focus();
    m_click.fire(&event, this);
    if (Button* button = button_at(event.localX, event.localY, false))
        button->getClick().fire(&event, button);
    return true;
}

bool ButtonBar::checkShortcut(const UIEventKey& key)
{
    for (ButtonSignal* signal : {&m_click, &m_press, &m_move, &m_release}) {
        if (signal->matches(key)) {
            signal->fire(nullptr, this);
            return true;
        }
    }
    for (Button* button : m_buttons)
        if (button->checkShortcut(key))
            return true;
    return false;
}

void ButtonBar::mousePressEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    onMouseDown(e);
    // Kept either way, so the release comes back to the bar even when it
    // happens outside.
    event->accept();
}

void ButtonBar::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseMove(e));
}

void ButtonBar::mouseReleaseEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseUp(e));
}

void ButtonBar::keyPressEvent(QKeyEvent* event)
{
    UIEventKey e;
    if (UIEventTranslator::key(*event, e) && checkShortcut(e))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

// Qt sends no move once the pointer has left, so the hover look would stay
// lit; leaving takes it off (a pressed button keeps its look).
void ButtonBar::leaveEvent(QEvent* event)
{
    clear_hover_look();
    QWidget::leaveEvent(event);
}
