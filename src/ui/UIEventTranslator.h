#pragma once

#include "UIEventDrop.h"
#include "UIEventKey.h"
#include "UIEventMouse.h"
#include "UIEventWheel.h"

#include <Qt>

#include <cstdint>

class QDropEvent;
class QKeyEvent;
class QMimeData;
class QMouseEvent;
class QObject;
class QWheelEvent;
class QWidget;

// The one translation from Qt's input events to the editor's event records
// (docs/editor-input.md has the whole table). Positions: local in the
// receiving widget, absolute in its top-level window.
class UIEventTranslator {
public:
    // Left button 1; right and middle button 4 (context menu and pan).
    static uint32_t buttonFlags(Qt::MouseButtons buttons);
    // Ctrl 1, Shift 2, Alt 4.
    static uint32_t modifierFlags(Qt::KeyboardModifiers modifiers);
    // Lower-case ASCII for printable keys, 260 Delete, 275-286 F1-F12,
    // 8 Backspace, 9 Tab, 13 Return, 27 Escape; 0 for keys without a code.
    static int keyCode(int qtKey);

    // A press carries the pressed button, a release the released one, a move
    // the buttons held.
    static UIEventMouse mouse(const QMouseEvent& event, const QWidget& receiver);
    // Wheel turned away from the user: 8; towards the user: 16; with the held
    // buttons.
    static UIEventWheel wheel(const QWheelEvent& event, const QWidget& receiver);
    // False when the key has no engine code.
    static bool key(const QKeyEvent& event, UIEventKey& out);
    // A drop of a block (our MIME format) from a tree box is drag type 2,
    // source type 21; sourceIsButton when a button started the drag.
    static UIEventDrop drop(const QDropEvent& event, const QWidget& receiver);
    // The same with the drag's source given (Qt knows it only while a drag
    // of this application runs).
    static UIEventDrop drop(const QDropEvent& event, const QWidget& receiver, const QObject* source);
    // Drags the canvas accepts: ours, or plain text.
    static bool isAcceptableDrag(const QMimeData* mime);
    // Whether the topmost widget at the record's window position (the
    // window itself where it has no child) is widget or one of its children.
    static bool isUnderPointer(const QWidget& widget, const UIEventMouse& event);
};
