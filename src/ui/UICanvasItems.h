#pragma once

#include "UICanvas.h"

#include <QStaticText>

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

// The storage behind UICanvas: every item by id, a uniform grid of buckets
// over the items' bounding boxes (in canvas units, after each item's own
// transform) and a draw list sorted by (order, creation), both kept up to
// date lazily so that a frame or a hit test costs what it touches, not what
// exists.
class UICanvasItems {
public:
    using ItemId = UICanvas::ItemId;
    using Point = UICanvas::Point;
    using Colour = UICanvas::Colour;
    using TexRect = UICanvas::TexRect;
    using Transform = UICanvas::Transform;

    enum class Kind : uint8_t { Free, Text, Polygon, Line };

    // Canvas units, after the item's own transform.
    struct Box {
        float x0 = 0.0f;
        float y0 = 0.0f;
        float x1 = -1.0f;
        float y1 = -1.0f;
        bool isEmpty() const { return !(x1 >= x0 && y1 >= y0); }
        bool intersects(const Box& o) const { return x0 <= o.x1 && o.x0 <= x1 && y0 <= o.y1 && o.y0 <= y1; }
    };

    struct TextData {
        jString text;
        int size = 14;
        Point position;
        float width = 0.0f;
        float height = 0.0f;
        bool measured = false;
        // Layout for painting at drawnSize pixels; rebuilt when either changes.
        QStaticText drawn;
        int drawnSize = -1;
    };
    struct PolygonData {
        Point corners[4];
        TexRect tex;
        bool empty = true;
        int blendSource = 5;
        int blendDestination = 6;
        // Index into the texture path table; 0 is the sprite sheet.
        uint32_t texture = 0;
    };
    struct LineData {
        std::vector<Point> points;
    };

    struct Item {
        Kind kind = Kind::Free;
        bool indexDirty = false;
        bool orderPending = false;
        uint32_t order = 0;
        uint32_t creation = 0;
        // Index into the kind's data pool; the next free id for free items.
        uint32_t data = 0;
        Transform transform;
        Colour colour;
        Box box;
        // Filed in the list of items too large for the grid.
        bool big = false;
        // Grid cells the item is filed under (inclusive); none when cx1 < cx0.
        int32_t cx0 = 0;
        int32_t cy0 = 0;
        int32_t cx1 = -1;
        int32_t cy1 = -1;
        uint32_t stamp = 0;
        uint32_t rank = 0;

        uint64_t key() const { return (uint64_t(order) << 32) | creation; }
    };

    static constexpr float kCellSize = 256.0f;

    UICanvasItems();

    ItemId create(Kind kind, const Colour& colour);
    void remove(ItemId id);
    void clear();
    size_t count() const { return m_liveCount; }

    // The item when id names a live item of that kind, else null (and an
    // error naming the routine is logged).
    Item* get(ItemId id, Kind kind, const char* routine);
    const Item* get(ItemId id, Kind kind, const char* routine) const;
    // Any live item.
    Item* getAny(ItemId id, const char* routine);
    const Item* getAny(ItemId id, const char* routine) const;

    TextData& text(const Item& item) { return m_texts[item.data]; }
    const TextData& text(const Item& item) const { return m_texts[item.data]; }
    PolygonData& polygon(const Item& item) { return m_polygons[item.data]; }
    const PolygonData& polygon(const Item& item) const { return m_polygons[item.data]; }
    LineData& line(const Item& item) { return m_lines[item.data]; }
    const LineData& line(const Item& item) const { return m_lines[item.data]; }
    const Item& at(ItemId id) const { return m_items[size_t(id)]; }

    // Geometry or transform changed: re-file the item before the next query.
    void markMoved(ItemId id);
    void setOrder(ItemId id, uint32_t order);

    // Text sizes: measured lazily, through the measurer the canvas installs.
    using Measurer = std::function<void(TextData&)>;
    void setMeasurer(Measurer measurer) { m_measurer = std::move(measurer); }
    void ensureMeasured(TextData& text) const;
    // The font changed: every text is measured and laid out again.
    void remeasureTexts();

    uint32_t internTexture(const jString& path);
    const jString& texturePath(uint32_t index) const { return m_texturePaths[index]; }

    // Live items whose boxes meet the area, in draw order.
    void query(const Box& area, std::vector<ItemId>& out) const;
    // The topmost polygon containing the point (canvas units), tested in
    // widget pixels through the canvas transform.
    ItemId hitPolygon(Point widget, const Transform& canvas) const;
    // Corners of a polygon after its own transform.
    void transformedCorners(const Item& item, Point (&out)[4]) const;

private:
    using CellKey = uint64_t;
    static CellKey cellKey(int32_t cx, int32_t cy) { return (uint64_t(uint32_t(cx)) << 32) | uint32_t(cy); }
    static int32_t cellOf(float v);

    void refresh() const;
    void refile(ItemId id) const;
    void unfile(ItemId id) const;
    void file(ItemId id) const;
    Box computeBox(const Item& item) const;
    void placePendingOrders() const;
    void sortDrawList() const;
    uint32_t allocateData(Kind kind);
    void releaseData(Kind kind, uint32_t index);

    std::vector<Item> m_items;
    ItemId m_freeItem = UICanvas::kNoItem;
    size_t m_liveCount = 0;
    uint32_t m_creationCounter = 0;

    mutable std::vector<TextData> m_texts;
    std::vector<PolygonData> m_polygons;
    std::vector<LineData> m_lines;
    std::vector<uint32_t> m_freeTexts;
    std::vector<uint32_t> m_freePolygons;
    std::vector<uint32_t> m_freeLines;

    std::vector<jString> m_texturePaths;
    std::unordered_map<jString, uint32_t> m_textureIndex;
    Measurer m_measurer;

    // Lazily maintained state (const queries bring it up to date).
    mutable std::unordered_map<CellKey, std::vector<ItemId>> m_cells;
    mutable std::vector<ItemId> m_bigItems;
    mutable std::vector<ItemId> m_moved;
    mutable std::vector<ItemId> m_drawList;
    mutable std::vector<ItemId> m_pendingOrders;
    mutable std::vector<uint64_t> m_sortKeys;
    mutable size_t m_drawListHoles = 0;
    mutable bool m_drawListSorted = true;
    mutable uint32_t m_stamp = 0;
};
