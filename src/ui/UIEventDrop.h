#pragma once

#include "UIEvent.h"
#include "jString.h"

// The end of a drag over a widget: where it was released and what it
// carries. dragType 2 is a drag of a tree item; sourceType names the kind of
// element it started from (21, a tree box), sourceIsButton tells the toolbar
// buttons' drags apart.
class UIEventDrop : public UIEvent {
public:
    static constexpr int kDragTreeItem = 2;
    static constexpr int kSourceTreeBox = 21;

    UIEventDrop() : UIEvent(UI_EVENT_DROP) {}

    int x = 0;
    int y = 0;
    int localX = 0;
    int localY = 0;
    int dragType = 0;
    int sourceType = 0;
    bool sourceIsButton = false;
    jString text;
};
