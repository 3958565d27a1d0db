#include "UICanvas.h"

#include "UICanvasFonts.h"
#include "UICanvasItems.h"
#include "UICanvasPainter.h"
#include "UIEventTranslator.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

using Kind = UICanvasItems::Kind;

namespace {

const UICanvas::Colour kNoColour{0.0f, 0.0f, 0.0f, 0.0f};
const UICanvas::Transform kIdentity{};
const UICanvas::TexRect kNoTexRect{};
const jString kNoText;

float segmentDistance(UICanvas::Point p, UICanvas::Point a, UICanvas::Point b)
{
    const float dx = b.x - a.x, dy = b.y - a.y;
    const float length2 = dx * dx + dy * dy;
    float t = length2 > 0.0f ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / length2 : 0.0f;
    t = std::clamp(t, 0.0f, 1.0f);
    return std::hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

} // namespace

UICanvas::UICanvas(QWidget* parent)
    : QWidget(parent)
    , m_items(std::make_unique<UICanvasItems>())
    , m_fonts(std::make_unique<UICanvasFonts>())
    , m_painter(std::make_unique<UICanvasPainter>(*m_items, *m_fonts))
{
    setFont(UICanvasFonts::makeBase());
    m_fonts->setBase(font());
    m_items->setMeasurer([fonts = m_fonts.get()](UICanvasItems::TextData& text) { fonts->measure(text); });
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(true);
    setMouseTracking(true);
}

UICanvas::~UICanvas() = default;

void UICanvas::changed()
{
    if (m_updatePending)
        return;
    m_updatePending = true;
    update();
}

// ---- view

void UICanvas::setCanvasTransform(const Transform& transform)
{
    if (transform == m_canvasTransform)
        return;
    m_canvasTransform = transform;
    changed();
}

const UICanvas::Transform& UICanvas::getCanvasTransform() const
{
    return m_canvasTransform;
}

void UICanvas::setBackgroundColour(const Colour& colour)
{
    m_background = colour;
    changed();
}

const UICanvas::Colour& UICanvas::getBackgroundColour() const
{
    return m_background;
}

void UICanvas::setBackgroundTexture(const jString& path)
{
    m_backgroundTexture = path;
    changed();
}

const jString& UICanvas::getBackgroundTexture() const
{
    return m_backgroundTexture;
}

// ---- texts

UICanvas::ItemId UICanvas::addText(const jString& text, int size, const Colour& colour)
{
    ItemId id = m_items->create(Kind::Text, colour);
    UICanvasItems::TextData& data = m_items->text(m_items->at(id));
    data.text = text;
    data.size = size;
    changed();
    return id;
}

void UICanvas::setText(ItemId id, const jString& text)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::setText")) {
        UICanvasItems::TextData& data = m_items->text(*item);
        if (data.text == text)
            return;
        data.text = text;
        data.measured = false;
        data.drawnSize = -1;
        m_items->markMoved(id);
        changed();
    }
}

const jString& UICanvas::getText(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getText");
    return item ? m_items->text(*item).text : kNoText;
}

void UICanvas::setTextPosition(ItemId id, Point position)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::setTextPosition")) {
        UICanvasItems::TextData& data = m_items->text(*item);
        if (data.position == position)
            return;
        data.position = position;
        m_items->markMoved(id);
        changed();
    }
}

UICanvas::Point UICanvas::getTextPosition(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getTextPosition");
    return item ? m_items->text(*item).position : Point{};
}

void UICanvas::setTextColour(ItemId id, const Colour& colour)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::setTextColour")) {
        if (item->colour == colour)
            return;
        item->colour = colour;
        changed();
    }
}

const UICanvas::Colour& UICanvas::getTextColour(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getTextColour");
    return item ? item->colour : kNoColour;
}

int UICanvas::getTextSize(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getTextSize");
    return item ? m_items->text(*item).size : 0;
}

int UICanvas::getTextWidth(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getTextWidth");
    if (!item)
        return 0;
    UICanvasItems::TextData& data = const_cast<UICanvasItems::TextData&>(m_items->text(*item));
    m_items->ensureMeasured(data);
    return int(data.width);
}

int UICanvas::getTextHeight(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Text, "UICanvas::getTextHeight");
    if (!item)
        return 0;
    UICanvasItems::TextData& data = const_cast<UICanvasItems::TextData&>(m_items->text(*item));
    m_items->ensureMeasured(data);
    return int(data.height);
}

void UICanvas::removeText(ItemId id)
{
    if (m_items->get(id, Kind::Text, "UICanvas::removeText")) {
        m_items->remove(id);
        changed();
    }
}

// ---- polygons

UICanvas::ItemId UICanvas::addPolygon(const Colour& colour)
{
    ItemId id = m_items->create(Kind::Polygon, colour);
    changed();
    return id;
}

void UICanvas::setPolygonRect(ItemId id, Point topLeft, Point bottomRight, const TexRect& tex)
{
    const Point corners[4] = {topLeft, {bottomRight.x, topLeft.y}, bottomRight, {topLeft.x, bottomRight.y}};
    setPolygonCorners(id, corners, tex);
}

void UICanvas::setPolygonCorners(ItemId id, const Point (&corners)[4], const TexRect& tex)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::setPolygonCorners")) {
        UICanvasItems::PolygonData& data = m_items->polygon(*item);
        std::copy(std::begin(corners), std::end(corners), data.corners);
        data.tex = tex;
        data.empty = false;
        m_items->markMoved(id);
        changed();
    }
}

void UICanvas::clearPolygon(ItemId id)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::clearPolygon")) {
        UICanvasItems::PolygonData& data = m_items->polygon(*item);
        if (data.empty)
            return;
        data.empty = true;
        std::fill(std::begin(data.corners), std::end(data.corners), Point{});
        data.tex = {};
        m_items->markMoved(id);
        changed();
    }
}

bool UICanvas::isPolygonEmpty(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::isPolygonEmpty");
    return !item || m_items->polygon(*item).empty;
}

void UICanvas::setPolygonColour(ItemId id, const Colour& colour)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::setPolygonColour")) {
        if (item->colour == colour)
            return;
        item->colour = colour;
        changed();
    }
}

const UICanvas::Colour& UICanvas::getPolygonColour(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonColour");
    return item ? item->colour : kNoColour;
}

void UICanvas::setPolygonBlend(ItemId id, int source, int destination)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::setPolygonBlend")) {
        UICanvasItems::PolygonData& data = m_items->polygon(*item);
        if (data.blendSource == source && data.blendDestination == destination)
            return;
        data.blendSource = source;
        data.blendDestination = destination;
        changed();
    }
}

int UICanvas::getPolygonBlendSource(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonBlendSource");
    return item ? m_items->polygon(*item).blendSource : 0;
}

int UICanvas::getPolygonBlendDestination(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonBlendDestination");
    return item ? m_items->polygon(*item).blendDestination : 0;
}

void UICanvas::setPolygonTexture(ItemId id, const jString& path)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::setPolygonTexture")) {
        uint32_t texture = m_items->internTexture(path);
        UICanvasItems::PolygonData& data = m_items->polygon(*item);
        if (data.texture == texture)
            return;
        data.texture = texture;
        changed();
    }
}

const jString& UICanvas::getPolygonTexture(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonTexture");
    return item ? m_items->texturePath(m_items->polygon(*item).texture) : kNoText;
}

void UICanvas::getPolygonCorners(ItemId id, Point (&corners)[4]) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonCorners");
    if (!item) {
        std::fill(std::begin(corners), std::end(corners), Point{});
        return;
    }
    m_items->transformedCorners(*item, corners);
}

const UICanvas::TexRect& UICanvas::getPolygonTexRect(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Polygon, "UICanvas::getPolygonTexRect");
    return item ? m_items->polygon(*item).tex : kNoTexRect;
}

UICanvas::Point UICanvas::getPolygonCentre(ItemId id) const
{
    Point corners[4];
    getPolygonCorners(id, corners);
    return {(corners[0].x + corners[1].x + corners[2].x + corners[3].x) * 0.25f,
            (corners[0].y + corners[1].y + corners[2].y + corners[3].y) * 0.25f};
}

void UICanvas::removePolygon(ItemId id)
{
    if (m_items->get(id, Kind::Polygon, "UICanvas::removePolygon")) {
        m_items->remove(id);
        changed();
    }
}

// ---- lines

UICanvas::ItemId UICanvas::addLine(const Colour& colour)
{
    ItemId id = m_items->create(Kind::Line, colour);
    changed();
    return id;
}

void UICanvas::clearLinePoints(ItemId id)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::clearLinePoints")) {
        std::vector<Point>& points = m_items->line(*item).points;
        if (points.empty())
            return;
        points.clear();
        m_items->markMoved(id);
        changed();
    }
}

void UICanvas::addLinePoint(ItemId id, Point point)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::addLinePoint")) {
        m_items->line(*item).points.push_back(point);
        m_items->markMoved(id);
        changed();
    }
}

size_t UICanvas::getLinePointCount(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::getLinePointCount");
    return item ? m_items->line(*item).points.size() : 0;
}

UICanvas::Point UICanvas::getLinePoint(ItemId id, size_t index) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::getLinePoint");
    if (!item)
        return {};
    const std::vector<Point>& points = m_items->line(*item).points;
    return index < points.size() ? points[index] : Point{};
}

void UICanvas::setLineColour(ItemId id, const Colour& colour)
{
    if (UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::setLineColour")) {
        if (item->colour == colour)
            return;
        item->colour = colour;
        changed();
    }
}

const UICanvas::Colour& UICanvas::getLineColour(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::getLineColour");
    return item ? item->colour : kNoColour;
}

void UICanvas::removeLine(ItemId id)
{
    if (m_items->get(id, Kind::Line, "UICanvas::removeLine")) {
        m_items->remove(id);
        changed();
    }
}

// ---- any item

void UICanvas::setItemTransform(ItemId id, const Transform& transform)
{
    if (UICanvasItems::Item* item = m_items->getAny(id, "UICanvas::setItemTransform")) {
        if (item->transform == transform)
            return;
        item->transform = transform;
        m_items->markMoved(id);
        changed();
    }
}

const UICanvas::Transform& UICanvas::getItemTransform(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->getAny(id, "UICanvas::getItemTransform");
    return item ? item->transform : kIdentity;
}

void UICanvas::setItemOrder(ItemId id, uint32_t order)
{
    if (m_items->getAny(id, "UICanvas::setItemOrder")) {
        m_items->setOrder(id, order);
        changed();
    }
}

uint32_t UICanvas::getItemOrder(ItemId id) const
{
    const UICanvasItems::Item* item = m_items->getAny(id, "UICanvas::getItemOrder");
    return item ? item->order : 0;
}

// ---- hit tests

UICanvas::ItemId UICanvas::hitPolygon(Point local) const
{
    return m_items->hitPolygon(local, m_canvasTransform);
}

bool UICanvas::isLineHit(ItemId id, Point local, float distance) const
{
    const UICanvasItems::Item* item = m_items->get(id, Kind::Line, "UICanvas::isLineHit");
    if (!item)
        return false;
    const Transform& c = m_canvasTransform;
    const Transform& t = item->transform;
    if (c.scaleX == 0.0f || c.scaleY == 0.0f || t.scaleX == 0.0f || t.scaleY == 0.0f)
        return false;
    // The point in the line's own units.
    const Point canvas{(local.x - c.x) / c.scaleX, (local.y - c.y) / c.scaleY};
    const Point p{(canvas.x - t.x) / t.scaleX, (canvas.y - t.y) / t.scaleY};
    const std::vector<Point>& points = m_items->line(*item).points;
    if (points.size() == 1)
        return segmentDistance(p, points[0], points[0]) <= distance;
    for (size_t i = 1; i < points.size(); ++i) {
        const Point& a = points[i - 1];
        const Point& b = points[i];
        // Cheap rejection before the exact distance.
        if (p.x < std::min(a.x, b.x) - distance || p.x > std::max(a.x, b.x) + distance ||
            p.y < std::min(a.y, b.y) - distance || p.y > std::max(a.y, b.y) + distance)
            continue;
        if (segmentDistance(p, a, b) <= distance)
            return true;
    }
    return false;
}

size_t UICanvas::getItemCount() const
{
    return m_items->count();
}

void UICanvas::clearItems()
{
    m_items->clear();
    changed();
}

// ---- painting

void UICanvas::paintArea(QPainter& painter, const QRect& area)
{
    UICanvasPainter::Scene scene{*m_items, m_canvasTransform, m_background, m_backgroundTexture};
    m_painter->paint(painter, area, scene, m_paintStats);
}

const UICanvas::PaintStats& UICanvas::getLastPaintStats() const
{
    return m_paintStats;
}

void UICanvas::paintEvent(QPaintEvent* event)
{
    m_updatePending = false;
    QPainter painter(this);
    paintArea(painter, event->rect());
}

void UICanvas::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        m_fonts->setBase(font());
        m_items->remeasureTexts();
        changed();
    }
    QWidget::changeEvent(event);
}

// ---- input: Qt events become the engine's records in one place

bool UICanvas::onMouseDown(UIEventMouse&)
{
    return false;
}

bool UICanvas::onMouseMove(UIEventMouse&)
{
    return false;
}

bool UICanvas::onMouseUp(UIEventMouse&)
{
    return false;
}

bool UICanvas::onMouseWheel(UIEventWheel&)
{
    return false;
}

bool UICanvas::onKeyPress(UIEventKey&)
{
    return false;
}

bool UICanvas::onDropFinish(UIEventDrop&)
{
    return false;
}

void UICanvas::mousePressEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    onMouseDown(e);
    // The canvas keeps the press (and so the pointer grab) either way, so
    // that the moves and the release of a drag come back to it.
    event->accept();
}

void UICanvas::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseMove(e));
}

void UICanvas::mouseReleaseEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *this);
    event->setAccepted(onMouseUp(e));
}

void UICanvas::wheelEvent(QWheelEvent* event)
{
    UIEventWheel e = UIEventTranslator::wheel(*event, *this);
    event->setAccepted(onMouseWheel(e));
}

void UICanvas::keyPressEvent(QKeyEvent* event)
{
    UIEventKey e;
    if (UIEventTranslator::key(*event, e) && onKeyPress(e))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

void UICanvas::keyReleaseEvent(QKeyEvent* event)
{
    UIEventKey e;
    if (!event->isAutoRepeat() && UIEventTranslator::key(*event, e) && onKeyPress(e))
        event->accept();
    else
        QWidget::keyReleaseEvent(event);
}

void UICanvas::dragEnterEvent(QDragEnterEvent* event)
{
    if (UIEventTranslator::isAcceptableDrag(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void UICanvas::dragMoveEvent(QDragMoveEvent* event)
{
    if (UIEventTranslator::isAcceptableDrag(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void UICanvas::dropEvent(QDropEvent* event)
{
    UIEventDrop e = UIEventTranslator::drop(*event, *this);
    if (onDropFinish(e))
        event->acceptProposedAction();
    else
        event->ignore();
}
