#pragma once

#include "UICanvasItems.h"

#include <QFont>
#include <QFontMetricsF>

#include <map>
#include <unordered_map>

// The canvas's font at every pixel size it uses, and text measurement with
// a cache per size (node titles and anchor names repeat across a graph).
class UICanvasFonts {
public:
    // The family every canvas uses, so text measures the same on every
    // machine (fonts-dejavu-core).
    static constexpr const char* kFamily = "DejaVu Sans";
    static constexpr int kDefaultSize = 14;

    UICanvasFonts();

    // The base font every size derives from.
    void setBase(const QFont& font);
    static QFont makeBase();

    const QFont& font(int pixelSize);
    // Width and height in pixels at the text's size, rounded up.
    void measure(UICanvasItems::TextData& text);

private:
    struct Size {
        QFont font;
        QFontMetricsF metrics;
        float height = 0.0f;
        std::unordered_map<jString, float> widths;
    };
    Size& size(int pixelSize);

    QFont m_base;
    std::map<int, Size> m_sizes;
};
