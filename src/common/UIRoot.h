#pragma once

#include "jString.h"

class QWidget;

// What an editor module asks of the program that hosts it: the top-level
// window its widgets, dialogs and drags belong to, that window's title, and
// its position and size (the module stores them in the layout package).
// Message boxes and file dialogs go through msgBox and DialogFileEx with
// getWindow() as their parent, so tests answer them through DialogAnswerer.
class UIRoot {
public:
    virtual ~UIRoot() = default;

    // The host's top-level window; null when the module runs without one.
    virtual QWidget* getWindow() const = 0;

    virtual void setTitle(const jString& title) = 0;
    virtual const jString& getTitle() const = 0;

    // The window's frame position and its size, in screen pixels.
    virtual void getWindowPos(int& x, int& y) const = 0;
    virtual void setWindowPos(int x, int y) = 0;
    virtual void getWindowSize(int& width, int& height) const = 0;
    virtual void setWindowSize(int width, int height) = 0;
};
