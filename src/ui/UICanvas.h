#pragma once

#include "UIEventDrop.h"
#include "UIEventKey.h"
#include "UIEventMouse.h"
#include "UIEventWheel.h"
#include "jString.h"

#include <QWidget>

#include <cstdint>
#include <memory>

class QPainter;
class UICanvasFonts;
class UICanvasItems;
class UICanvasPainter;

// A retained drawing surface: texts, textured polygons and polylines, each
// held by an integer id and drawn in draw order (lower first; equal orders in
// creation order). Item geometry is in item units; an item's own transform
// places it (nodes translate their items), and the canvas transform (the
// zoom) maps the result to widget pixels. Polygons sample the sprite sheet
// "data/core/editor/gui/widget_graph.png", or a texture of their own, and are
// multiplied by their colour.
//
// The canvas decides nothing about what it shows: its owners (the graph
// classes) give it geometry, colours and orders, and ask it hit tests. Input
// arrives as Qt events, is translated once (UIEventTranslator) and handed to
// the virtual handlers below, which subclasses override.
class UICanvas : public QWidget {
public:
    using ItemId = int;
    static constexpr ItemId kNoItem = -1;
    static constexpr const char* kSpriteSheet = "data/core/editor/gui/widget_graph.png";

    struct Colour {
        float r = 1.0f;
        float g = 1.0f;
        float b = 1.0f;
        float a = 1.0f;
        bool operator==(const Colour&) const = default;
    };
    struct Point {
        float x = 0.0f;
        float y = 0.0f;
        bool operator==(const Point&) const = default;
    };
    // Texture coordinates of a polygon: (u0, v0) at the first corner,
    // (u1, v1) at the third.
    struct TexRect {
        float u0 = 0.0f;
        float v0 = 0.0f;
        float u1 = 0.0f;
        float v1 = 0.0f;
        bool operator==(const TexRect&) const = default;
    };
    // Scale then translation: p' = (p.x * scaleX + x, p.y * scaleY + y).
    struct Transform {
        float scaleX = 1.0f;
        float scaleY = 1.0f;
        float x = 0.0f;
        float y = 0.0f;
        static Transform translation(float x, float y) { return {1.0f, 1.0f, x, y}; }
        static Transform scale(float s) { return {s, s, 0.0f, 0.0f}; }
        Point apply(Point p) const { return {p.x * scaleX + x, p.y * scaleY + y}; }
        bool operator==(const Transform&) const = default;
    };

    // What the last paint drew: items drawn exactly, and items simplified
    // because they were too small on screen (tiny quads filled with their
    // average colour, texts too small to read skipped).
    struct PaintStats {
        size_t texts = 0;
        size_t polygons = 0;
        size_t lines = 0;
        size_t simplified = 0;
    };

    explicit UICanvas(QWidget* parent = nullptr);
    ~UICanvas() override;

    // The zoom: maps item coordinates (after each item's own transform) to
    // widget pixels.
    void setCanvasTransform(const Transform& transform);
    const Transform& getCanvasTransform() const;
    void setBackgroundColour(const Colour& colour);
    const Colour& getBackgroundColour() const;
    // The texture polygons without one of their own sample: the sprite
    // sheet by default. The background itself is its colour with a faint
    // grid; tiling a sprite atlas behind the graph would only add noise.
    void setBackgroundTexture(const jString& path);
    const jString& getBackgroundTexture() const;

    // Texts: drawn with the widget's font at the given pixel size, the text's
    // top-left corner at its position.
    ItemId addText(const jString& text, int size, const Colour& colour);
    void setText(ItemId id, const jString& text);
    const jString& getText(ItemId id) const;
    void setTextPosition(ItemId id, Point position);
    Point getTextPosition(ItemId id) const;
    void setTextColour(ItemId id, const Colour& colour);
    int getTextSize(ItemId id) const;
    // Measured size in item units (the canvas transform does not apply).
    int getTextWidth(ItemId id) const;
    int getTextHeight(ItemId id) const;
    void removeText(ItemId id);

    // Polygons: four corners in order top-left, top-right, bottom-right,
    // bottom-left. A polygon without corners (new or cleared) draws nothing
    // and is never hit.
    ItemId addPolygon(const Colour& colour);
    void setPolygonRect(ItemId id, Point topLeft, Point bottomRight, const TexRect& tex);
    void setPolygonCorners(ItemId id, const Point (&corners)[4], const TexRect& tex);
    void clearPolygon(ItemId id);
    bool isPolygonEmpty(ItemId id) const;
    void setPolygonColour(ItemId id, const Colour& colour);
    const Colour& getPolygonColour(ItemId id) const;
    // The engine's blend factors; 5 and 6 (source alpha, one minus source
    // alpha) is ordinary alpha blending, the default.
    void setPolygonBlend(ItemId id, int source, int destination);
    int getPolygonBlendSource(ItemId id) const;
    int getPolygonBlendDestination(ItemId id) const;
    // A texture of the polygon's own (a thumbnail) instead of the sprite
    // sheet; empty returns to the sheet. Loaded through the TextureManager;
    // one that does not load shows "data/core/textures/common/black.dds".
    void setPolygonTexture(ItemId id, const jString& path);
    const jString& getPolygonTexture(ItemId id) const;
    // Corners after the polygon's own transform, in item units.
    void getPolygonCorners(ItemId id, Point (&corners)[4]) const;
    const TexRect& getPolygonTexRect(ItemId id) const;
    // The centre of the polygon's corners through its transform.
    Point getPolygonCentre(ItemId id) const;
    void removePolygon(ItemId id);

    // Lines: anti-aliased polylines of one colour.
    ItemId addLine(const Colour& colour);
    void clearLinePoints(ItemId id);
    void addLinePoint(ItemId id, Point point);
    size_t getLinePointCount(ItemId id) const;
    Point getLinePoint(ItemId id, size_t index) const;
    void setLineColour(ItemId id, const Colour& colour);
    const Colour& getLineColour(ItemId id) const;
    void removeLine(ItemId id);

    // For any item kind.
    void setItemTransform(ItemId id, const Transform& transform);
    const Transform& getItemTransform(ItemId id) const;
    void setItemOrder(ItemId id, uint32_t order);
    uint32_t getItemOrder(ItemId id) const;
    const Colour& getTextColour(ItemId id) const;

    // Hit tests at a point in widget pixels. The topmost polygon (highest
    // draw order) containing the point, or kNoItem.
    ItemId hitPolygon(Point local) const;
    // Whether the line passes within distance (item units) of the point.
    bool isLineHit(ItemId id, Point local, float distance) const;

    size_t getItemCount() const;
    // Drops every item.
    void clearItems();

    // Paints an area (widget pixels) of the canvas as a paint event does;
    // tests and benchmarks paint into images with it.
    void paintArea(QPainter& painter, const QRect& area);
    const PaintStats& getLastPaintStats() const;

    // Input, translated from Qt events. Each returns whether it consumed
    // the event.
    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    virtual bool onMouseUp(UIEventMouse& event);
    virtual bool onMouseWheel(UIEventWheel& event);
    virtual bool onKeyPress(UIEventKey& event);
    virtual bool onDropFinish(UIEventDrop& event);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Every change asks for one repaint; Qt merges what comes before it.
    void changed();

    std::unique_ptr<UICanvasItems> m_items;
    std::unique_ptr<UICanvasFonts> m_fonts;
    std::unique_ptr<UICanvasPainter> m_painter;
    Transform m_canvasTransform;
    Colour m_background{0.15f, 0.15f, 0.15f, 1.0f};
    jString m_backgroundTexture = kSpriteSheet;
    PaintStats m_paintStats;
    bool m_updatePending = false;
};
