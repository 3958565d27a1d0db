#pragma once

#include "UIEvent.h"

#include <cstdint>

// A key press or release. Printable keys carry their lower-case ASCII code;
// the named keys below carry the engine's codes.
class UIEventKey : public UIEvent {
public:
    static constexpr int kDelete = 260;
    static constexpr int kF7 = 281;

    // Modifier flags.
    static constexpr uint32_t kCtrl = 1;
    static constexpr uint32_t kShift = 2;
    static constexpr uint32_t kAlt = 4;

    UIEventKey() : UIEvent(UI_EVENT_KEY) {}
    UIEventKey(int key, uint32_t modifiers, bool down = true)
        : UIEvent(UI_EVENT_KEY), key(key), modifiers(modifiers), down(down)
    {
    }

    bool hasCtrl() const { return (modifiers & kCtrl) != 0; }
    bool hasShift() const { return (modifiers & kShift) != 0; }
    bool hasAlt() const { return (modifiers & kAlt) != 0; }

    int key = 0;
    uint32_t modifiers = 0;
    bool down = true;
};
