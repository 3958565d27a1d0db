#pragma once

#include "UIRoot.h"
#include "jString.h"

#include <vector>

// The host of an editor window in tests and benchmarks: no top-level window
// (dialogs go through DialogAnswerer), the title and the window's place and
// size kept as the module sets them, each set recorded in calls.
class WindowlessRoot : public UIRoot {
public:
    explicit WindowlessRoot(int w = 800, int h = 600) : width(w), height(h) {}

    QWidget* getWindow() const override { return nullptr; }
    void setTitle(const jString& value) override { title = value; }
    const jString& getTitle() const override { return title; }
    void getWindowPos(int& px, int& py) const override { px = x, py = y; }
    void setWindowPos(int px, int py) override { x = px, y = py, calls.push_back("pos"); }
    void getWindowSize(int& w, int& h) const override { w = width, h = height; }
    void setWindowSize(int w, int h) override { width = w, height = h, calls.push_back("size"); }

    jString title;
    int x = 0, y = 0, width, height;
    std::vector<jString> calls;
};
