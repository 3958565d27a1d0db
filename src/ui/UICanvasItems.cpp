#include "UICanvasItems.h"

#include "jLog.h"

#include <algorithm>
#include <cmath>

namespace {

// Items whose boxes span more cells than this live in one list that every
// query walks (long joint lines across the canvas, huge polygons).
constexpr int64_t kMaxCellsPerItem = 64;
// Keeps cell numbers of far-away or infinite coordinates representable.
constexpr float kMaxCell = float(1 << 24);

const char* kindName(UICanvasItems::Kind kind)
{
    switch (kind) {
    case UICanvasItems::Kind::Text:
        return "text";
    case UICanvasItems::Kind::Polygon:
        return "polygon";
    case UICanvasItems::Kind::Line:
        return "line";
    case UICanvasItems::Kind::Free:
        break;
    }
    return "item";
}

UICanvas::Point apply(const UICanvas::Transform& t, UICanvas::Point p)
{
    return t.apply(p);
}

void extend(UICanvasItems::Box& box, UICanvas::Point p, bool first)
{
    if (first) {
        box = {p.x, p.y, p.x, p.y};
        return;
    }
    box.x0 = std::min(box.x0, p.x);
    box.y0 = std::min(box.y0, p.y);
    box.x1 = std::max(box.x1, p.x);
    box.y1 = std::max(box.y1, p.y);
}

// Even-odd crossing test; a point on the left or top edge of a rectangle is
// inside, one on the right or bottom edge outside, so abutting quads never
// both contain a point.
bool isInsideQuad(const UICanvas::Point (&q)[4], UICanvas::Point p)
{
    bool inside = false;
    for (int i = 0, j = 3; i < 4; j = i++) {
        if ((q[i].y > p.y) != (q[j].y > p.y)) {
            float x = (q[j].x - q[i].x) * (p.y - q[i].y) / (q[j].y - q[i].y) + q[i].x;
            if (p.x < x)
                inside = !inside;
        }
    }
    return inside;
}

} // namespace

UICanvasItems::UICanvasItems()
{
    m_texturePaths.emplace_back(); // index 0: the sprite sheet
}

int32_t UICanvasItems::cellOf(float v)
{
    float c = std::floor(v / kCellSize);
    if (!(c > -kMaxCell))
        return -int32_t(kMaxCell);
    if (c > kMaxCell)
        return int32_t(kMaxCell);
    return int32_t(c);
}

uint32_t UICanvasItems::allocateData(Kind kind)
{
    auto take = [](auto& pool, std::vector<uint32_t>& free) {
        if (!free.empty()) {
            uint32_t index = free.back();
            free.pop_back();
            pool[index] = {};
            return index;
        }
        pool.emplace_back();
        return uint32_t(pool.size() - 1);
    };
    switch (kind) {
    case Kind::Text:
        return take(m_texts, m_freeTexts);
    case Kind::Polygon:
        return take(m_polygons, m_freePolygons);
    case Kind::Line:
        return take(m_lines, m_freeLines);
    case Kind::Free:
        break;
    }
    return 0;
}

void UICanvasItems::releaseData(Kind kind, uint32_t index)
{
    switch (kind) {
    case Kind::Text:
        m_texts[index] = {};
        m_freeTexts.push_back(index);
        break;
    case Kind::Polygon:
        m_freePolygons.push_back(index);
        break;
    case Kind::Line:
        m_lines[index].points = {};
        m_freeLines.push_back(index);
        break;
    case Kind::Free:
        break;
    }
}

UICanvasItems::ItemId UICanvasItems::create(Kind kind, const Colour& colour)
{
    ItemId id;
    if (m_freeItem != UICanvas::kNoItem) {
        id = m_freeItem;
        m_freeItem = ItemId(m_items[size_t(id)].data);
    } else {
        id = ItemId(m_items.size());
        m_items.emplace_back();
    }
    Item& item = m_items[size_t(id)];
    item = Item{};
    item.kind = kind;
    item.colour = colour;
    item.creation = ++m_creationCounter;
    item.data = allocateData(kind);
    ++m_liveCount;
    markMoved(id);
    item.orderPending = true;
    m_pendingOrders.push_back(id);
    return id;
}

void UICanvasItems::remove(ItemId id)
{
    Item& item = m_items[size_t(id)];
    unfile(id);
    if (!item.orderPending)
        ++m_drawListHoles;
    releaseData(item.kind, item.data);
    item.kind = Kind::Free;
    item.indexDirty = false;
    item.orderPending = false;
    item.data = uint32_t(m_freeItem);
    m_freeItem = id;
    --m_liveCount;
}

void UICanvasItems::clear()
{
    m_items.clear();
    m_freeItem = UICanvas::kNoItem;
    m_liveCount = 0;
    m_texts.clear();
    m_polygons.clear();
    m_lines.clear();
    m_freeTexts.clear();
    m_freePolygons.clear();
    m_freeLines.clear();
    m_cells.clear();
    m_bigItems.clear();
    m_moved.clear();
    m_drawList.clear();
    m_pendingOrders.clear();
    m_drawListHoles = 0;
    m_drawListSorted = true;
}

UICanvasItems::Item* UICanvasItems::get(ItemId id, Kind kind, const char* routine)
{
    return const_cast<Item*>(std::as_const(*this).get(id, kind, routine));
}

const UICanvasItems::Item* UICanvasItems::get(ItemId id, Kind kind, const char* routine) const
{
    if (id >= 0 && size_t(id) < m_items.size() && m_items[size_t(id)].kind == kind)
        return &m_items[size_t(id)];
    jLog::error("%s: %d is not a %s of the canvas", routine, id, kindName(kind));
    return nullptr;
}

UICanvasItems::Item* UICanvasItems::getAny(ItemId id, const char* routine)
{
    return const_cast<Item*>(std::as_const(*this).getAny(id, routine));
}

const UICanvasItems::Item* UICanvasItems::getAny(ItemId id, const char* routine) const
{
    if (id >= 0 && size_t(id) < m_items.size() && m_items[size_t(id)].kind != Kind::Free)
        return &m_items[size_t(id)];
    jLog::error("%s: %d is not an item of the canvas", routine, id);
    return nullptr;
}

void UICanvasItems::markMoved(ItemId id)
{
    Item& item = m_items[size_t(id)];
    if (item.indexDirty)
        return;
    item.indexDirty = true;
    m_moved.push_back(id);
}

void UICanvasItems::setOrder(ItemId id, uint32_t order)
{
    Item& item = m_items[size_t(id)];
    if (item.order == order)
        return;
    item.order = order;
    if (item.orderPending)
        return;
    item.orderPending = true;
    ++m_drawListHoles;
    m_pendingOrders.push_back(id);
}

void UICanvasItems::ensureMeasured(TextData& text) const
{
    if (text.measured)
        return;
    if (m_measurer)
        m_measurer(text);
    text.measured = true;
}

void UICanvasItems::remeasureTexts()
{
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].kind != Kind::Text)
            continue;
        TextData& data = m_texts[m_items[i].data];
        data.measured = false;
        data.drawnSize = -1;
        markMoved(ItemId(i));
    }
}

uint32_t UICanvasItems::internTexture(const jString& path)
{
    if (path.empty())
        return 0;
    auto [it, added] = m_textureIndex.try_emplace(path, uint32_t(m_texturePaths.size()));
    if (added)
        m_texturePaths.push_back(path);
    return it->second;
}

void UICanvasItems::transformedCorners(const Item& item, Point (&out)[4]) const
{
    const PolygonData& p = polygon(item);
    for (int i = 0; i < 4; ++i)
        out[i] = apply(item.transform, p.corners[i]);
}

UICanvasItems::Box UICanvasItems::computeBox(const Item& item) const
{
    Box box;
    switch (item.kind) {
    case Kind::Text: {
        TextData& t = m_texts[item.data];
        ensureMeasured(t);
        extend(box, apply(item.transform, t.position), true);
        extend(box, apply(item.transform, {t.position.x + t.width, t.position.y + t.height}), false);
        break;
    }
    case Kind::Polygon: {
        if (polygon(item).empty)
            break;
        Point corners[4];
        transformedCorners(item, corners);
        for (int i = 0; i < 4; ++i)
            extend(box, corners[i], i == 0);
        break;
    }
    case Kind::Line: {
        const std::vector<Point>& points = line(item).points;
        for (size_t i = 0; i < points.size(); ++i)
            extend(box, apply(item.transform, points[i]), i == 0);
        break;
    }
    case Kind::Free:
        break;
    }
    return box;
}

void UICanvasItems::unfile(ItemId id) const
{
    Item& item = const_cast<Item&>(m_items[size_t(id)]);
    auto erase = [id](std::vector<ItemId>& list) {
        auto it = std::find(list.begin(), list.end(), id);
        if (it != list.end()) {
            *it = list.back();
            list.pop_back();
        }
    };
    if (item.big) {
        erase(m_bigItems);
        item.big = false;
    }
    for (int32_t cy = item.cy0; cy <= item.cy1; ++cy) {
        for (int32_t cx = item.cx0; cx <= item.cx1; ++cx) {
            auto it = m_cells.find(cellKey(cx, cy));
            if (it != m_cells.end())
                erase(it->second);
        }
    }
    item.cx0 = item.cy0 = 0;
    item.cx1 = item.cy1 = -1;
}

void UICanvasItems::file(ItemId id) const
{
    Item& item = const_cast<Item&>(m_items[size_t(id)]);
    if (item.box.isEmpty())
        return;
    int32_t cx0 = cellOf(item.box.x0), cy0 = cellOf(item.box.y0);
    int32_t cx1 = cellOf(item.box.x1), cy1 = cellOf(item.box.y1);
    if ((int64_t(cx1) - cx0 + 1) * (int64_t(cy1) - cy0 + 1) > kMaxCellsPerItem) {
        item.big = true;
        m_bigItems.push_back(id);
        return;
    }
    item.cx0 = cx0;
    item.cy0 = cy0;
    item.cx1 = cx1;
    item.cy1 = cy1;
    for (int32_t cy = cy0; cy <= cy1; ++cy)
        for (int32_t cx = cx0; cx <= cx1; ++cx)
            m_cells[cellKey(cx, cy)].push_back(id);
}

void UICanvasItems::refile(ItemId id) const
{
    Item& item = const_cast<Item&>(m_items[size_t(id)]);
    item.indexDirty = false;
    Box box = computeBox(item);
    bool same = !item.big && !box.isEmpty() && item.cx1 >= item.cx0 && cellOf(box.x0) == item.cx0 &&
                cellOf(box.y0) == item.cy0 && cellOf(box.x1) == item.cx1 && cellOf(box.y1) == item.cy1;
    item.box = box;
    if (same)
        return;
    unfile(id);
    file(id);
}

void UICanvasItems::refresh() const
{
    for (ItemId id : m_moved)
        if (m_items[size_t(id)].kind != Kind::Free && m_items[size_t(id)].indexDirty)
            refile(id);
    m_moved.clear();
    placePendingOrders();
}

void UICanvasItems::sortDrawList() const
{
    m_drawList.clear();
    m_drawList.reserve(m_liveCount);
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].kind != Kind::Free)
            m_drawList.push_back(ItemId(i));
    std::sort(m_drawList.begin(), m_drawList.end(),
              [this](ItemId a, ItemId b) { return m_items[size_t(a)].key() < m_items[size_t(b)].key(); });
    for (size_t i = 0; i < m_drawList.size(); ++i) {
        Item& item = const_cast<Item&>(m_items[size_t(m_drawList[i])]);
        item.rank = uint32_t(i);
        item.orderPending = false;
    }
    m_pendingOrders.clear();
    m_drawListHoles = 0;
    m_drawListSorted = true;
}

// Orders handed out by a growing counter (raising a node) land above
// everything, so the usual change is an append; anything else re-sorts.
void UICanvasItems::placePendingOrders() const
{
    if (m_pendingOrders.empty())
        return;
    std::vector<ItemId> pending;
    pending.reserve(m_pendingOrders.size());
    for (ItemId id : m_pendingOrders) {
        Item& item = const_cast<Item&>(m_items[size_t(id)]);
        if (item.kind != Kind::Free && item.orderPending) {
            item.orderPending = false;
            pending.push_back(id);
        }
    }
    m_pendingOrders.clear();
    auto byKey = [this](ItemId a, ItemId b) { return m_items[size_t(a)].key() < m_items[size_t(b)].key(); };
    std::sort(pending.begin(), pending.end(), byKey);

    auto isValid = [this](size_t position) {
        const Item& item = m_items[size_t(m_drawList[position])];
        return item.kind != Kind::Free && !item.orderPending && item.rank == position;
    };
    // Entries that left the list are holes until the list is compacted.
    for (ItemId id : pending)
        const_cast<Item&>(m_items[size_t(id)]).orderPending = true;
    size_t last = m_drawList.size();
    while (last > 0 && !isValid(last - 1))
        --last;
    for (ItemId id : pending)
        const_cast<Item&>(m_items[size_t(id)]).orderPending = false;

    if (!pending.empty() && last > 0 && m_items[size_t(m_drawList[last - 1])].key() > m_items[size_t(pending.front())].key()) {
        sortDrawList();
        return;
    }
    for (ItemId id : pending) {
        const_cast<Item&>(m_items[size_t(id)]).rank = uint32_t(m_drawList.size());
        m_drawList.push_back(id);
    }
    if (m_drawListHoles > m_drawList.size() / 2)
        sortDrawList();
}

void UICanvasItems::query(const Box& area, std::vector<ItemId>& out) const
{
    out.clear();
    refresh();
    if (++m_stamp == 0)
        m_stamp = 1;
    auto consider = [&](ItemId id) {
        Item& item = const_cast<Item&>(m_items[size_t(id)]);
        if (item.stamp != m_stamp && item.box.intersects(area)) {
            item.stamp = m_stamp;
            out.push_back(id);
        }
    };
    int32_t cx0 = cellOf(area.x0), cy0 = cellOf(area.y0);
    int32_t cx1 = cellOf(area.x1), cy1 = cellOf(area.y1);
    if ((int64_t(cx1) - cx0 + 1) * (int64_t(cy1) - cy0 + 1) > int64_t(m_cells.size())) {
        for (const auto& [key, ids] : m_cells) {
            int32_t cx = int32_t(uint32_t(key >> 32)), cy = int32_t(uint32_t(key));
            if (cx >= cx0 && cx <= cx1 && cy >= cy0 && cy <= cy1)
                for (ItemId id : ids)
                    consider(id);
        }
    } else {
        for (int32_t cy = cy0; cy <= cy1; ++cy) {
            for (int32_t cx = cx0; cx <= cx1; ++cx) {
                auto it = m_cells.find(cellKey(cx, cy));
                if (it != m_cells.end())
                    for (ItemId id : it->second)
                        consider(id);
            }
        }
    }
    for (ItemId id : m_bigItems)
        consider(id);

    // Many visible items: walking the sorted list beats sorting them.
    if (out.size() * 16 > m_drawList.size()) {
        out.clear();
        for (size_t i = 0; i < m_drawList.size(); ++i) {
            const Item& item = m_items[size_t(m_drawList[i])];
            if (item.stamp == m_stamp && item.kind != Kind::Free && item.rank == i)
                out.push_back(m_drawList[i]);
        }
        return;
    }
    // Sorting plain numbers (rank above id) keeps the comparisons local.
    m_sortKeys.clear();
    for (ItemId id : out)
        m_sortKeys.push_back(uint64_t(m_items[size_t(id)].rank) << 32 | uint32_t(id));
    std::sort(m_sortKeys.begin(), m_sortKeys.end());
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = ItemId(uint32_t(m_sortKeys[i]));
}

UICanvasItems::ItemId UICanvasItems::hitPolygon(Point widget, const Transform& canvas) const
{
    if (canvas.scaleX == 0.0f || canvas.scaleY == 0.0f)
        return UICanvas::kNoItem;
    refresh();
    Point at{(widget.x - canvas.x) / canvas.scaleX, (widget.y - canvas.y) / canvas.scaleY};
    ItemId best = UICanvas::kNoItem;
    uint64_t bestKey = 0;
    auto consider = [&](ItemId id) {
        const Item& item = m_items[size_t(id)];
        if (item.kind != Kind::Polygon || polygon(item).empty)
            return;
        // A pixel's margin: the exact test below decides.
        const float mx = 1.0f / std::fabs(canvas.scaleX), my = 1.0f / std::fabs(canvas.scaleY);
        if (at.x < item.box.x0 - mx || at.x > item.box.x1 + mx || at.y < item.box.y0 - my || at.y > item.box.y1 + my)
            return;
        if (best != UICanvas::kNoItem && item.key() < bestKey)
            return;
        Point corners[4];
        transformedCorners(item, corners);
        for (Point& c : corners)
            c = canvas.apply(c);
        if (isInsideQuad(corners, widget)) {
            best = id;
            bestKey = item.key();
        }
    };
    auto it = m_cells.find(cellKey(cellOf(at.x), cellOf(at.y)));
    if (it != m_cells.end())
        for (ItemId id : it->second)
            consider(id);
    for (ItemId id : m_bigItems)
        consider(id);
    return best;
}
