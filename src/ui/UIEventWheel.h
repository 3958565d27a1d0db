#pragma once

#include "UIEventMouse.h"

// A wheel turn at a pointer position. Like the engine's, it is a pointer
// event (type UI_EVENT_MOUSE) whose flags carry the wheel direction beside
// the held buttons.
class UIEventWheel : public UIEventMouse {
public:
    // Wheel turned away from the user (zoom in).
    static constexpr uint32_t kWheelUp = 8;
    // Wheel turned towards the user (zoom out).
    static constexpr uint32_t kWheelDown = 16;

    UIEventWheel() = default;
    UIEventWheel(int x, int y, int localX, int localY, uint32_t flags) : UIEventMouse(x, y, localX, localY, flags) {}
};
