#include "GraphAnchor.h"

#include "BlockAnchor.h"
#include "DataAnchor.h"
#include "Package.h"

namespace {

constexpr UICanvas::Colour kNoHighlight{0.0f, 0.0f, 0.0f, 0.0f};

} // namespace

GraphAnchor::GraphAnchor(GraphNode* node, DataAnchor* data, int side, int kind)
    : m_node(node)
    , m_data(data)
    , m_side(side)
    , m_kind(kind)
    , m_name(data ? data->getName() : jString())
{
}

GraphAnchor::~GraphAnchor()
{
    detach();
}

const jString& GraphAnchor::getType() const
{
    const BlockAnchor* definition = m_data ? m_data->getDefinition() : nullptr;
    return definition ? definition->getType() : Package::kEmptyString;
}

void GraphAnchor::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    detach();
    m_canvas = canvas;
    if (!m_canvas)
        return;
    m_text = m_canvas->addText(m_name, kTextSize, m_colour);
    m_width = m_canvas->getTextWidth(m_text);
    m_height = m_canvas->getTextHeight(m_text);
    m_highlight = m_canvas->addPolygon(kNoHighlight);
    m_square = m_canvas->addPolygon(m_colour);
}

void GraphAnchor::detach()
{
    if (!m_canvas)
        return;
    m_canvas->removeText(m_text);
    m_canvas->removePolygon(m_square);
    m_canvas->removePolygon(m_highlight);
    m_text = m_square = m_highlight = UICanvas::kNoItem;
    m_canvas = nullptr;
}

UICanvas::TexRect GraphAnchor::spriteRect(int kind, int row)
{
    float u0 = 0.0f;
    switch (kind) {
    case kGeneric:
        u0 = 0.5f;
        break;
    case kInput:
        // Rows 4 to 7 of the input column lie in the arrow column.
        u0 = row >= 4 ? 0.875f : 0.625f;
        row = row >= 4 ? row - 4 : row;
        break;
    case kOutput:
        u0 = 0.75f;
        break;
    default:
        return {};
    }
    return {u0, row * 0.25f, u0 + 0.125f, (row + 1) * 0.25f};
}

void GraphAnchor::setPosition(int x, int y, int row)
{
    m_x = x;
    m_y = y;
    if (!m_canvas)
        return;
    place_label();
    const UICanvas::TexRect tex = spriteRect(m_kind, row);
    const float fx = static_cast<float>(x);
    const float fy = static_cast<float>(y);
    m_canvas->setPolygonRect(m_square, {fx - 8, fy - 8}, {fx + 8, fy + 8}, tex);
    m_canvas->setPolygonRect(m_highlight, {fx - 11, fy - 11}, {fx + 11, fy + 11}, tex);
}

void GraphAnchor::place_label()
{
    float x = static_cast<float>(m_x);
    float y = static_cast<float>(m_y);
    switch (m_side) {
    case kLeft:
        x += 4;
        y -= 7;
        break;
    case kRight:
        x -= static_cast<float>(m_width + 4);
        y -= 7;
        break;
    case kBottom:
        x -= static_cast<float>(m_width / 2);
        y -= 22;
        break;
    default:
        return;
    }
    m_canvas->setTextPosition(m_text, {x, y});
}

void GraphAnchor::setTransform(const UICanvas::Transform& transform)
{
    if (!m_canvas)
        return;
    m_canvas->setItemTransform(m_text, transform);
    m_canvas->setItemTransform(m_square, transform);
    m_canvas->setItemTransform(m_highlight, transform);
}

uint32_t GraphAnchor::raiseSquares(uint32_t order)
{
    if (!m_canvas)
        return order;
    m_canvas->setItemOrder(m_highlight, order++);
    m_canvas->setItemOrder(m_square, order++);
    return order;
}

uint32_t GraphAnchor::raiseLabel(uint32_t order)
{
    if (m_canvas)
        m_canvas->setItemOrder(m_text, order++);
    return order;
}

void GraphAnchor::setHighlightColour(const UICanvas::Colour& colour)
{
    if (m_canvas)
        m_canvas->setPolygonColour(m_highlight, colour);
}

UICanvas::Point GraphAnchor::getCentre() const
{
    if (!m_canvas)
        return {static_cast<float>(m_x), static_cast<float>(m_y)};
    return m_canvas->getPolygonCentre(m_square);
}
