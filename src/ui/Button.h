#pragma once

#include "ButtonSignal.h"
#include "UICanvas.h"
#include "UIEventKey.h"
#include "UIEventMouse.h"
#include "jString.h"

#include <QImage>
#include <QWidget>

#include <cstdint>

class QLabel;
class QVBoxLayout;

// A toolbar button: a 48 by 48 icon above its name. It fires click, press,
// move and release (each a ButtonSignal with callbacks and a shortcut).
// The look (background, pressed shift, grey icon) is set by its owner, the
// ButtonBar, which also drives the button's mouse handling inside a bar;
// a button on its own handles its mouse input itself.
class Button : public QWidget {
public:
    using Colour = UICanvas::Colour;

    static constexpr int kIconSize = 48;
    static constexpr Colour kIconColour{1.0f, 1.0f, 1.0f, 1.0f};
    static constexpr Colour kDisabledIconColour{0.61f, 0.61f, 0.61f, 1.0f};
    static constexpr Colour kNoBackgroundColour{1.0f, 1.0f, 1.0f, 1.0f};

    // iconPath is a root-relative image (DDS included); empty for no icon.
    Button(QWidget* parent, const jString& name, const jString& iconPath);
    ~Button() override;

    const jString& getName() const { return m_name; }
    void setName(const jString& name);
    // The name's label (tests read its text).
    const QLabel* getLabel() const { return m_label; }
    const QLabel* getIcon() const { return m_icon; }

    // Disabled: a grey, desaturated icon; the bar gives it no look and no
    // click.
    bool isButtonEnabled() const { return m_enabled; }
    void setButtonEnabled(bool enabled);

    // An id the owner gives the button to find it again.
    uint32_t getElementId() const { return m_elementId; }
    void setElementId(uint32_t id) { m_elementId = id; }

    // The icon drawn multiplied by a colour, and desaturated in grey mode.
    const Colour& getIconColour() const { return m_iconColour; }
    void setIconColour(const Colour& colour);
    bool isGreyMode() const { return m_greyMode; }
    void setGreyMode(bool grey);
    // The icon as drawn (colour and grey mode applied).
    const QImage& getIconImage() const { return m_iconShown; }

    // Pressed: the children sit one pixel lower.
    bool isPressed() const { return m_pressed; }
    void setPressed(bool pressed);

    // The background: a texture multiplied by a colour, drawn behind the
    // children while it is on.
    bool hasBackground() const { return m_background; }
    void setBackground(bool on);
    const Colour& getBackgroundColour() const { return m_backgroundColour; }
    void setBackgroundColour(const Colour& colour);
    const QImage& getBackgroundTexture() const { return m_backgroundTexture; }
    void setBackgroundTexture(const QImage& texture);

    ButtonSignal& getClick() { return m_click; }
    ButtonSignal& getPress() { return m_press; }
    ButtonSignal& getMove() { return m_move; }
    ButtonSignal& getRelease() { return m_release; }

    // Mouse handling of a button on its own. Each returns whether it
    // handled the event.
    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    virtual bool onMouseUp(UIEventMouse& event);
    // Fires the first signal (click, press, move, release) whose shortcut
    // matches the key, without an event.
    virtual bool checkShortcut(const UIEventKey& key);

    // Keyboard focus as the handlers see it.
    bool isFocused() const { return m_focused; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool is_inside(const UIEventMouse& event) const;
    void take_focus();
    void drop_focus();
    void reposition_childs();
    void update_icon();
    void update_background();
    void update_label_colour();

    bool m_pressed = false;
    bool m_enabled = true;
    QLabel* m_icon = nullptr;
    QLabel* m_label = nullptr;
    QVBoxLayout* m_layout = nullptr;
    ButtonSignal m_click;
    ButtonSignal m_press;
    ButtonSignal m_move;
    ButtonSignal m_release;

    jString m_name;
    uint32_t m_elementId = 0;
    bool m_focused = false;

    QImage m_iconSource;
    QImage m_iconShown;
    Colour m_iconColour = kIconColour;
    bool m_greyMode = false;

    bool m_background = false;
    Colour m_backgroundColour = kNoBackgroundColour;
    QImage m_backgroundTexture;
    QImage m_backgroundShown;
};
