#pragma once

#include "TintedSheetCache.h"
#include "UICanvasFonts.h"
#include "UICanvasItems.h"

#include <QPainter>
#include <QPolygonF>

#include <optional>
#include <unordered_map>
#include <vector>

// Draws the canvas items that meet an area of the widget with QPainter:
// the background, then polygons (sprite sheet or own texture, multiplied by
// their colour), lines and texts in draw order. Pieces too small to show
// their texels are filled with their average colour, texts too small to read
// are skipped; everything readable is drawn exactly.
class UICanvasPainter {
public:
    // On-screen sizes (pixels) below which items are simplified.
    static constexpr float kMinTextPixels = 4.0f;
    static constexpr float kMinTexturedPixels = 4.0f;
    // Joint lines are this many canvas units wide (at least one pixel).
    static constexpr float kLineWidth = 2.0f;

    struct Scene {
        const UICanvasItems& items;
        UICanvas::Transform canvas;
        UICanvas::Colour background;
        jString sheetPath;
    };

    UICanvasPainter(UICanvasItems& items, UICanvasFonts& fonts);

    void paint(QPainter& painter, const QRect& area, const Scene& scene, UICanvas::PaintStats& stats);
    // Drops the tinted copies (the sheet or textures changed).
    void resetTextures();

    // The composition mode for the engine's blend factors; none when the
    // pair leaves the destination as it is.
    static std::optional<QPainter::CompositionMode> compositionFor(int source, int destination);

private:
    void paintBackground(QPainter& painter, const QRect& area, const Scene& scene);
    void paintPolygon(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene, UICanvas::PaintStats& stats);
    void paintLine(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene, UICanvas::PaintStats& stats);
    void paintText(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene, UICanvas::PaintStats& stats);
    TintedSheetCache& texturesFor(const UICanvasItems::PolygonData& polygon, const Scene& scene);

    UICanvasItems& m_items;
    UICanvasFonts& m_fonts;
    TintedSheetCache m_sheet;
    jString m_sheetPath;
    bool m_sheetLoaded = false;
    std::unordered_map<uint32_t, TintedSheetCache> m_ownTextures;
    std::vector<UICanvas::ItemId> m_visible;
    QPolygonF m_polyline;
};
