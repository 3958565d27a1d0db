#pragma once

#include "ButtonSignal.h"
#include "MaskBitItem.h"
#include "UIEventKey.h"
#include "UIEventMouse.h"

#include <QElapsedTimer>
#include <QWidget>

#include <cstdint>
#include <vector>

class QGridLayout;

// The grid of the 24 selectable mask bits (cells 0 to 23, eight to a row).
// A left or right press toggles the cell under the pointer, the pointer
// lights the unselected cell under it, and `mask` always holds the bits of
// the selected cells.
class MaskBitContent : public QWidget {
public:
    using Colour = MaskBitItem::Colour;

    static constexpr int kCellCount = 24;
    static constexpr int kColumns = 8;
    static constexpr int kSpacing = 4;
    static constexpr uint32_t kCellBits = 0xFFFFFF;
    static constexpr float kKeyRepeatDelay = 0.05f;
    static constexpr Colour hoverColour{0.3f, 0.3f, 0.3f, 1.0f};
    static constexpr Colour selectedColour{0.6f, 0.6f, 0.3f, 1.0f};

    explicit MaskBitContent(QWidget* parent = nullptr);

    // Rebuilds the cells for the mask m; only its low 24 bits show.
    void construct(uint32_t m);
    // mask = the bits of the shown, enabled, selected cells.
    void recompute();
    void setAll() { construct(kCellBits); }
    void clearAll() { construct(0); }

    uint32_t getMask() const { return mask; }
    const std::vector<MaskBitItem*>& getItems() const { return items; }
    MaskBitItem* itemAt(int localX, int localY) const;

    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    virtual bool onMouseUp(UIEventMouse& event);
    // True when the key gets through: the grid (or a cell) has the focus and
    // the key is not a repeat of the last one within the repeat delay.
    virtual bool onKeyDown(const UIEventKey& event);
    // Runs the key repeat timer down.
    void update(float dt);
    using QWidget::update;

    int getLastKey() const { return lastKey; }
    float getKeyTimer() const { return keyTimer; }
    bool isFocused() const { return m_focused; }
    MaskBitItem* getFocusedItem() const { return m_focusedItem; }

    // Fired on a left release over the grid itself.
    ButtonSignal& getClicked() { return clicked; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool is_inside(const UIEventMouse& event) const;
    void remove_items();
    void take_focus(MaskBitItem* item);
    void toggle(MaskBitItem* item);
    void clear_hover();

    uint32_t mask = 0;
    std::vector<MaskBitItem*> items;
    int lastKey = -1;
    float keyTimer = 0.0f;
    ButtonSignal clicked;
    QGridLayout* m_grid = nullptr;
    bool m_focused = false;
    MaskBitItem* m_focusedItem = nullptr;
    QElapsedTimer m_sinceLastKey;
};
