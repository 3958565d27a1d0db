#include "GraphJoint.h"

#include "GraphAnchor.h"

#include <algorithm>
#include <cmath>

namespace {

using Point = UICanvas::Point;

Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}

Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}

// The first control point leaves the source anchor away from its node.
Point sourceControl(int side, Point s, Point t, float d)
{
    switch (side) {
    case GraphAnchor::kLeft:
        return s - Point{d, 0.0f};
    case GraphAnchor::kRight:
        return s + Point{d, 0.0f};
    case GraphAnchor::kBottom:
        return s + Point{0.0f, d};
    default:
        return t - s;
    }
}

// The end of the curve (where the arrow's base is) and the second control
// point, by the side of the target anchor.
void targetEnd(int side, Point s, Point t, float d, Point& end, Point& control)
{
    constexpr float arrow = GraphJoint::kArrowLength;
    switch (side) {
    case GraphAnchor::kLeft:
        end = t - Point{arrow, 0.0f};
        control = end - Point{d, 0.0f};
        break;
    case GraphAnchor::kRight:
        end = t + Point{arrow, 0.0f};
        control = end + Point{d, 0.0f};
        break;
    case GraphAnchor::kBottom:
        end = t + Point{0.0f, arrow};
        control = end + Point{0.0f, d};
        break;
    default:
        end = t - s;
        control = t - s;
        break;
    }
}

Point bezier(Point p0, Point p1, Point p2, Point p3, float t)
{
    const float u = 1.0f - t;
    const float a = u * u * u;
    const float b = 3.0f * u * u * t;
    const float c = 3.0f * u * t * t;
    const float d = t * t * t;
    return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
}

} // namespace

GraphJoint::GraphJoint(GraphAnchor* from, GraphAnchor* to, DataJoint* link)
    : m_from(from)
    , m_to(to)
    , m_link(link)
{
}

GraphJoint::~GraphJoint()
{
    detach();
}

void GraphJoint::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    detach();
    m_canvas = canvas;
    if (!m_canvas)
        return;
    const UICanvas::Colour colour = m_from ? m_from->getColour() : UICanvas::Colour{};
    m_line = m_canvas->addLine(colour);
    m_arrow = m_canvas->addPolygon(colour);
}

void GraphJoint::detach()
{
    if (!m_canvas)
        return;
    m_canvas->removeLine(m_line);
    m_canvas->removePolygon(m_arrow);
    m_line = m_arrow = UICanvas::kNoItem;
    m_canvas = nullptr;
}

void GraphJoint::update()
{
    if (!m_canvas || !m_from || !m_to)
        return;
    const Point s = m_from->getCentre();
    const Point t = m_to->getCentre();
    const Point delta = t - s;
    const float d = std::sqrt(delta.x * delta.x + delta.y * delta.y) * 0.5f;
    const Point p1 = sourceControl(m_from->getSide(), s, t, d);
    Point end;
    Point p2;
    targetEnd(m_to->getSide(), s, t, d, end, p2);

    m_canvas->clearLinePoints(m_line);
    m_boxMin = m_boxMax = t;
    for (int i = 0; i < kCurveSteps; ++i) {
        const Point point = bezier(s, p1, p2, end, static_cast<float>(i) * 0.041666668f);
        m_canvas->addLinePoint(m_line, point);
        m_boxMin = {std::min(m_boxMin.x, point.x), std::min(m_boxMin.y, point.y)};
        m_boxMax = {std::max(m_boxMax.x, point.x), std::max(m_boxMax.y, point.y)};
    }
    m_canvas->addLinePoint(m_line, t);
    place_arrow(m_to->getSide(), end);
}

void GraphJoint::place_arrow(int side, Point end)
{
    switch (side) {
    case GraphAnchor::kLeft:
        m_canvas->setPolygonRect(m_arrow, {end.x, end.y - 8}, {end.x + 16, end.y + 8}, {0.875f, 0.25f, 1.0f, 0.5f});
        break;
    case GraphAnchor::kRight:
        m_canvas->setPolygonRect(m_arrow, {end.x - 16, end.y - 8}, {end.x, end.y + 8}, {0.875f, 0.0f, 1.0f, 0.25f});
        break;
    case GraphAnchor::kBottom:
        m_canvas->setPolygonRect(m_arrow, {end.x - 8, end.y - 16}, {end.x + 8, end.y}, {0.875f, 0.5f, 1.0f, 0.75f});
        break;
    default:
        break;
    }
}

void GraphJoint::setColour(const UICanvas::Colour& colour)
{
    if (!m_canvas)
        return;
    m_canvas->setLineColour(m_line, colour);
    m_canvas->setPolygonColour(m_arrow, colour);
}

uint32_t GraphJoint::raise(uint32_t order)
{
    if (!m_canvas)
        return order;
    m_canvas->setItemOrder(m_line, order++);
    m_canvas->setItemOrder(m_arrow, order++);
    return order;
}

bool GraphJoint::isLineHit(Point local, float distance) const
{
    if (!m_canvas)
        return false;
    // The box is in item units, the point in widget pixels.
    const UICanvas::Transform& view = m_canvas->getCanvasTransform();
    const Point item{(local.x - view.x) / view.scaleX, (local.y - view.y) / view.scaleY};
    if (item.x < m_boxMin.x - distance || item.x > m_boxMax.x + distance || item.y < m_boxMin.y - distance
        || item.y > m_boxMax.y + distance)
        return false;
    return m_canvas->isLineHit(m_line, local, distance);
}
