#pragma once

#include "UICanvas.h"

#include <QColor>
#include <QImage>

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

// One texture multiplied by the few colours the canvas uses (white, greys,
// cyan, yellow, ...): each tinted copy is made once and kept, and the
// average colour of a texture rectangle is kept for drawing pieces too small
// to show their texels.
class TintedSheetCache {
public:
    // At most this many tinted copies are kept; more colours start afresh.
    static constexpr size_t kMaxColours = 16;

    TintedSheetCache() = default;
    explicit TintedSheetCache(QImage source);

    bool isNull() const { return m_source.isNull(); }
    const QImage& source() const { return m_source; }
    // The texture multiplied by the colour (premultiplied alpha).
    const QImage& get(const UICanvas::Colour& colour);
    // The average of a texture rectangle multiplied by the colour.
    QColor average(const UICanvas::TexRect& tex, const UICanvas::Colour& colour);

    static uint32_t colourKey(const UICanvas::Colour& colour);

private:
    struct Sum {
        float r, g, b, a;
    };
    Sum averageOf(const UICanvas::TexRect& tex) const;

    QImage m_source;
    std::vector<std::pair<uint32_t, QImage>> m_tinted;
    std::unordered_map<uint64_t, Sum> m_averages;
};
