#pragma once

#include "UICanvas.h"

#include <QColor>
#include <QImage>

#include <cstdint>
#include <functional>
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
    static constexpr size_t kMaxColours = 32;

    TintedSheetCache() = default;
    explicit TintedSheetCache(QImage source);

    bool isNull() const { return m_source.isNull(); }
    const QImage& source() const { return m_source; }
    // The texture multiplied by the colour (premultiplied alpha).
    const QImage& get(const UICanvas::Colour& colour);
    // The average of a texture rectangle multiplied by the colour.
    QColor average(const UICanvas::TexRect& tex, const UICanvas::Colour& colour);
    // Whether every texel of the rectangle has the same value: it can then be
    // filled with its average instead of sampled.
    bool isUniform(const UICanvas::TexRect& tex);
    // The texture rectangle multiplied by the colour and scaled to width x
    // height pixels, made once and kept, so that a piece drawn again at the
    // same size is a plain copy. Null when the rectangle does not lie on
    // whole texels or the piece would be larger than kMaxPiecePixels.
    const QImage* piece(const UICanvas::TexRect& tex, const UICanvas::Colour& colour, int width, int height);

    static constexpr int kMaxPiecePixels = 256 * 256;
    // The copies kept for one texture hold at most this many pixels (16 MB);
    // beyond it they start afresh.
    static constexpr size_t kMaxPiecesPixels = 4 * 1024 * 1024;

    static uint32_t colourKey(const UICanvas::Colour& colour);

private:
    struct Sum {
        float r, g, b, a;
        bool uniform;
    };
    Sum averageOf(const UICanvas::TexRect& tex) const;
    const Sum& region(const UICanvas::TexRect& tex);

    QImage m_source;
    std::vector<std::pair<uint32_t, QImage>> m_tinted;
    std::unordered_map<uint64_t, Sum> m_averages;
    struct PieceKey {
        UICanvas::TexRect tex;
        uint32_t colour;
        int width;
        int height;
        bool operator==(const PieceKey&) const = default;
    };
    struct PieceHash {
        size_t operator()(const PieceKey& k) const;
    };
    std::unordered_map<PieceKey, QImage, PieceHash> m_pieces;
    size_t m_piecesPixels = 0;
};
