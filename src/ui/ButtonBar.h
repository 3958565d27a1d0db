#pragma once

#include "Button.h"
#include "ButtonSignal.h"
#include "TextureManager.h"
#include "UICanvas.h"
#include "jString.h"

#include <QImage>
#include <QWidget>

#include <vector>

class QHBoxLayout;

// The editor's toolbar: a row of Buttons. The bar handles the pointer for
// all of them (the buttons never see these events): under the pointer a
// button lights up in the hover colour, while pressed it shows the pressed
// colour and sits one pixel lower, and a release over it fires its click.
// The bar has click, press, move and release signals of its own.
class ButtonBar : public QWidget {
public:
    using Colour = UICanvas::Colour;

    static constexpr const char* kBackgroundTexture = "data/core/textures/common/white.dds";
    static constexpr Colour kHoverColour{0.3f, 0.3f, 0.3f, 1.0f};
    static constexpr Colour kPressedColour{1.0f, 1.0f, 0.0f, 0.8f};
    // The element id of the window's save button.
    static constexpr uint32_t kSaveButtonId = 0x111111;

    explicit ButtonBar(QWidget* parent = nullptr);
    ~ButtonBar() override;

    // Null (and an error logged) when a button of that name exists.
    Button* addButton(const jString& name, const jString& iconPath);
    bool hasButton(const jString& name) const;
    Button* findButton(const jString& name) const;
    // The first button whose element id is kSaveButtonId.
    Button* getSaveButton() const;
    const std::vector<Button*>& getButtons() const { return m_buttons; }

    const QImage& getBackgroundTexture() const { return m_backgroundTexture; }

    ButtonSignal& getClick() { return m_click; }
    ButtonSignal& getPress() { return m_press; }
    ButtonSignal& getMove() { return m_move; }
    ButtonSignal& getRelease() { return m_release; }

    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    virtual bool onMouseUp(UIEventMouse& event);
    // The bar's own shortcuts (click, press, move, release), then each
    // button's in the order added.
    virtual bool checkShortcut(const UIEventKey& key);

    bool isFocused() const { return m_focused; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool is_inside(const UIEventMouse& event) const;
    // The first shown, enabled button under the bar-local point (and not
    // pressed, when asked).
    Button* button_at(int localX, int localY, bool skipPressed) const;
    void take_focus();
    void drop_focus();
    void clear_press_look();
    void set_press_look(Button* button);
    void clear_hover_look();
    void set_hover_look(const UIEventMouse& event);
    bool any_pressed() const;

    TextureManager::ImagePtr m_backgroundImage;
    QImage m_backgroundTexture;
    QHBoxLayout* m_rowLayout = nullptr;
    QWidget* m_row = nullptr;
    std::vector<Button*> m_buttons;
    ButtonSignal m_click;
    ButtonSignal m_press;
    ButtonSignal m_move;
    ButtonSignal m_release;
    bool m_focused = false;
};
