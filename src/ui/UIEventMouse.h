#pragma once

#include "UIEvent.h"

#include <cstdint>

// A pointer event: press, move or release. x, y are absolute (the top-level
// window's coordinates), localX, localY the receiving widget's.
class UIEventMouse : public UIEvent {
public:
    // Button flags.
    static constexpr uint32_t kLeft = 1;
    // The context / pan button (right button; the middle button maps here too).
    static constexpr uint32_t kRight = 4;

    UIEventMouse() : UIEvent(UI_EVENT_MOUSE) {}
    UIEventMouse(int x, int y, int localX, int localY, uint32_t buttons)
        : UIEvent(UI_EVENT_MOUSE), x(x), y(y), localX(localX), localY(localY), buttons(buttons)
    {
    }

    int x = 0;
    int y = 0;
    int localX = 0;
    int localY = 0;
    uint32_t buttons = 0;
};
