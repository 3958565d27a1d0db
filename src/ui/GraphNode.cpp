#include "GraphNode.h"

#include "Block.h"
#include "BlockVariable.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "jLog.h"

#include <algorithm>

namespace {

constexpr UICanvas::Colour kVariableColour{0.0f, 1.0f, 0.0f, 1.0f};
constexpr UICanvas::TexRect kFrameTex{0.0f, 0.0f, 0.25f, 0.5f};
constexpr UICanvas::TexRect kPanelTex{0.25f, 0.0f, 0.5f, 0.5f};
// The badge: the generic anchor disc of the sprite sheet, in the problem red.
constexpr size_t kBadgePolygon = 2 * GraphNode::kFramePolygons;
constexpr UICanvas::TexRect kBadgeTex{0.5f, 0.0f, 0.625f, 0.25f};
constexpr UICanvas::Colour kBadgeColour{1.0f, 0.35f, 0.3f, 1.0f};
constexpr float kBadgeSize = 16.0f;
// Half the band of texels that the nine-slice stretches.
constexpr float kGapU = 1.0f / 256.0f;
constexpr float kGapV = 1.0f / 128.0f;
// Space around the columns and between items.
constexpr int kItemGap = 8;
constexpr int kBottomRow = 11;
constexpr int kTitleOffset = 11;
constexpr int kSideMargin = 32;

int inputSide(const jString& position)
{
    if (position == "right")
        return GraphAnchor::kRight;
    if (position == "bottom")
        return GraphAnchor::kBottom;
    return GraphAnchor::kLeft;
}

int outputSide(const jString& position)
{
    if (position == "left")
        return GraphAnchor::kLeft;
    if (position == "bottom")
        return GraphAnchor::kBottom;
    return GraphAnchor::kRight;
}

int spriteRow(int side)
{
    switch (side) {
    case GraphAnchor::kRight:
        return 1;
    case GraphAnchor::kBottom:
        return 3;
    default:
        return 0;
    }
}

} // namespace

struct GraphNode::Columns {
    int leftWidth = 0;
    int rightWidth = 0;
    int leftHeight = 0;
    int rightHeight = 0;
    int bottomCount = 0;

    void add(int side, int width, int height)
    {
        if (side == GraphAnchor::kLeft) {
            leftWidth = std::max(leftWidth, width);
            leftHeight += kItemGap + height;
        } else if (side == GraphAnchor::kRight) {
            rightWidth = std::max(rightWidth, width);
            rightHeight += kItemGap + height;
        } else if (side == GraphAnchor::kBottom) {
            ++bottomCount;
        }
    }
};

GraphNode::GraphNode(DataNode* data, const UICanvas::Colour& colour)
    : m_data(nullptr)
    , m_colour(colour)
{
    m_polygons.fill(UICanvas::kNoItem);
    setData(data);
}

GraphNode::~GraphNode()
{
    release();
}

void GraphNode::setData(DataNode* data)
{
    release();
    m_data = data;
    if (!m_data)
        return;
    build_anchors();
    build_variables();
}

void GraphNode::build_anchors()
{
    const auto addInputs = [this](size_t count, auto get) {
        for (size_t i = 0; i < count; ++i) {
            DataAnchor* anchor = get(i);
            addAnchor(std::make_unique<GraphAnchor>(this, anchor, inputSide(anchor->getSecondText()), GraphAnchor::kInput));
        }
    };
    const auto addOutputs = [this](size_t count, auto get) {
        for (size_t i = 0; i < count; ++i) {
            DataAnchor* anchor = get(i);
            addAnchor(std::make_unique<GraphAnchor>(this, anchor, outputSide(anchor->getSecondText()), GraphAnchor::kOutput));
        }
    };
    DataNode& data = *m_data;
    addInputs(data.getInputLinkCount(), [&data](size_t i) { return data.getInputLink(i); });
    addInputs(data.getInputPathCount(), [&data](size_t i) { return data.getInputPath(i); });
    addOutputs(data.getOutputLinkCount(), [&data](size_t i) { return data.getOutputLink(i); });
    addOutputs(data.getOutputPathCount(), [&data](size_t i) { return data.getOutputPath(i); });
}

void GraphNode::build_variables()
{
    for (size_t i = 0; i < m_data->getVariableCount(); ++i) {
        DataVariable* variable = m_data->getVariable(i);
        addVar(std::make_unique<GraphVariable>(variable, kVariableColour, jString(variable->getValue())));
    }
}

void GraphNode::release()
{
    detach();
    m_anchors.clear();
    m_variables.clear();
}

std::unique_ptr<GraphNode> GraphNode::clone() const
{
    return std::make_unique<GraphNode>(m_data, m_colour);
}

void GraphNode::addAnchor(std::unique_ptr<GraphAnchor> anchor)
{
    for (const auto& existing : m_anchors) {
        if (existing->getName() == anchor->getName()) {
            jLog::error("GraphNode::addAnchor(): \"%s\" anchor is already defined", anchor->getName().c_str());
            break;
        }
    }
    if (m_canvas)
        anchor->attach(m_canvas);
    m_anchors.push_back(std::move(anchor));
}

GraphAnchor* GraphNode::getAnchor(const jString& name) const
{
    for (const auto& anchor : m_anchors) {
        if (anchor->getName() == name)
            return anchor.get();
    }
    jLog::error("GraphNode::getAnchor(): can't find \"%s\" anchor", name.c_str());
    return nullptr;
}

void GraphNode::addVar(std::unique_ptr<GraphVariable> variable)
{
    for (const auto& existing : m_variables) {
        if (existing->getName() == variable->getName()) {
            jLog::error("GraphNode::addVar(): \"%s\" variable is already defined", variable->getName().c_str());
            break;
        }
    }
    if (m_canvas)
        variable->attach(m_canvas);
    m_variables.push_back(std::move(variable));
}

GraphVariable* GraphNode::getVar(const jString& name) const
{
    for (const auto& variable : m_variables) {
        if (variable->getName() == name)
            return variable.get();
    }
    jLog::error("GraphNode::getVar(): can't find \"%s\" variable", name.c_str());
    return nullptr;
}

void GraphNode::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    detach();
    m_canvas = canvas;
    if (!m_canvas)
        return;
    m_title = m_canvas->addText({}, kTextSize, m_colour);
    m_subTitle = m_canvas->addText({}, kTextSize, m_colour);
    for (UICanvas::ItemId& polygon : m_polygons)
        polygon = m_canvas->addPolygon(m_colour);
    for (const auto& anchor : m_anchors)
        anchor->attach(m_canvas);
    for (const auto& variable : m_variables)
        variable->attach(m_canvas);
}

void GraphNode::detach()
{
    if (!m_canvas)
        return;
    for (const auto& anchor : m_anchors)
        anchor->detach();
    for (const auto& variable : m_variables)
        variable->detach();
    m_canvas->removeText(m_title);
    m_canvas->removeText(m_subTitle);
    for (UICanvas::ItemId& polygon : m_polygons) {
        m_canvas->removePolygon(polygon);
        polygon = UICanvas::kNoItem;
    }
    m_title = m_subTitle = UICanvas::kNoItem;
    m_canvas = nullptr;
}

jString GraphNode::getDisplayName() const
{
    if (!m_data)
        return {};
    if (!m_data->getName().empty())
        return m_data->getName();
    return m_data->getBlock() ? m_data->getBlock()->getType() : jString();
}

void GraphNode::refresh_labels()
{
    for (const auto& variable : m_variables) {
        jString label = variable->getName();
        const jString& value = variable->getVariable()->getValue();
        if (!value.empty())
            label += "(" + value + ")";
        variable->setLabel(label);
    }
}

GraphNode::Columns GraphNode::measure_columns() const
{
    Columns columns;
    for (const auto& anchor : m_anchors)
        columns.add(anchor->getSide(), anchor->getWidth(), anchor->getHeight());
    for (const auto& variable : m_variables)
        columns.add(variable->getSide(), variable->getWidth(), variable->getHeight());
    return columns;
}

void GraphNode::genUI()
{
    if (!m_canvas)
        return;
    m_width = 0;
    m_height = 0;
    const jString title = getDisplayName();
    m_canvas->setText(m_title, title);
    m_canvas->setText(m_subTitle, {});
    refresh_labels();

    const int titleWidth = m_canvas->getTextWidth(m_title);
    int header = 0;
    if (!title.empty()) {
        m_width = std::max(m_width, titleWidth);
        header = m_canvas->getTextHeight(m_title) + 4;
        m_height = header;
    }
    const Columns columns = measure_columns();
    m_width = std::max(m_width, columns.leftWidth + columns.rightWidth);
    m_height += std::max(columns.leftHeight, columns.rightHeight);
    if (columns.bottomCount > 0)
        m_height += kBottomRow;
    m_width += kSideMargin;
    m_height += kItemGap;
    int top = 0;
    if (!title.empty()) {
        m_height += kTitleOffset;
        top = kTitleOffset;
    }
    place_items(columns, top + header);

    m_canvas->setTextPosition(m_title, {static_cast<float>((m_width - titleWidth) / 2), 4.0f});
    m_canvas->setTextPosition(m_subTitle, {static_cast<float>(columns.leftWidth + 16), 30.0f});

    const auto w = static_cast<float>(m_width);
    const auto h = static_cast<float>(m_height);
    nine_slice(0, {0.0f, 0.0f}, {w, h}, kFrameTex);
    if (!m_canvas->getText(m_subTitle).empty()) {
        const float panelBottom = columns.bottomCount > 0 ? h - 14.0f : h;
        nine_slice(kFramePolygons, {static_cast<float>(columns.leftWidth), 14.0f},
            {w - static_cast<float>(columns.rightWidth), panelBottom}, kPanelTex);
    } else {
        clear_polygons(kFramePolygons, kFramePolygons);
    }
    place_badge();
    setPosition(getX(), getY());
}

void GraphNode::place_items(const Columns& columns, int top)
{
    int leftY = top;
    int rightY = top;
    int bottomIndex = 0;
    const auto bottomX = [&]() { return ++bottomIndex * m_width / (columns.bottomCount + 1); };
    for (const auto& anchor : m_anchors) {
        const int row = spriteRow(anchor->getSide());
        if (anchor->getSide() == GraphAnchor::kLeft) {
            anchor->setPosition(0, leftY, row);
            leftY += kItemGap + anchor->getHeight();
        } else if (anchor->getSide() == GraphAnchor::kRight) {
            anchor->setPosition(m_width, rightY, row);
            rightY += kItemGap + anchor->getHeight();
        } else if (anchor->getSide() == GraphAnchor::kBottom) {
            anchor->setPosition(bottomX(), m_height, row);
        }
    }
    for (const auto& variable : m_variables) {
        if (variable->getSide() == GraphVariable::kLeft) {
            variable->setPosition(kItemGap, leftY);
            leftY += kItemGap + variable->getHeight();
        } else if (variable->getSide() == GraphVariable::kRight) {
            variable->setPosition(m_width, rightY);
            rightY += kItemGap + variable->getHeight();
        } else if (variable->getSide() == GraphVariable::kBottom) {
            variable->setPosition(bottomX(), m_height);
        }
    }
}

void GraphNode::nine_slice(size_t first, UICanvas::Point from, UICanvas::Point to, const UICanvas::TexRect& tex)
{
    const float x0 = from.x;
    const float y0 = from.y;
    const float x1 = to.x;
    const float y1 = to.y;
    const float xa = x0 + kCorner;
    const float ya = y0 + kCorner;
    const float xb = x1 - kCorner;
    const float yb = y1 - kCorner;
    const float uc = (tex.u0 + tex.u1) * 0.5f;
    const float vc = (tex.v0 + tex.v1) * 0.5f;
    const float ul = uc - kGapU;
    const float ur = uc + kGapU;
    const float vt = vc - kGapV;
    const float vb = vc + kGapV;
    struct Slice {
        UICanvas::Point from, to;
        UICanvas::TexRect tex;
    };
    const Slice slices[kFramePolygons] = {
        {{x0, y0}, {xa, ya}, {tex.u0, tex.v0, ul, vt}},
        {{xb, y0}, {x1, ya}, {ur, tex.v0, tex.u1, vt}},
        {{x0, yb}, {xa, y1}, {tex.u0, vb, ul, tex.v1}},
        {{xb, yb}, {x1, y1}, {ur, vb, tex.u1, tex.v1}},
        {{xa, y0}, {xb, ya}, {ul, tex.v0, ur, vt}},
        {{x0, ya}, {xa, yb}, {tex.u0, vt, ul, vb}},
        {{xb, ya}, {x1, yb}, {ur, vt, tex.u1, vb}},
        {{xa, yb}, {xb, y1}, {ul, vb, ur, tex.v1}},
        {{xa, ya}, {xb, yb}, {ul, vt, ur, vb}},
    };
    for (size_t i = 0; i < kFramePolygons; ++i)
        m_canvas->setPolygonRect(m_polygons[first + i], slices[i].from, slices[i].to, slices[i].tex);
}

void GraphNode::clear_polygons(size_t first, size_t count)
{
    for (size_t i = first; i < first + count; ++i)
        m_canvas->clearPolygon(m_polygons[i]);
}

int GraphNode::getX() const
{
    return m_data ? m_data->getPosX() : 0;
}

int GraphNode::getY() const
{
    return m_data ? m_data->getPosY() : 0;
}

void GraphNode::setPosition(int x, int y)
{
    if (m_data) {
        m_data->setPosX(x);
        m_data->setPosY(y);
    }
    if (!m_canvas)
        return;
    const auto transform = UICanvas::Transform::translation(static_cast<float>(x), static_cast<float>(y));
    m_canvas->setItemTransform(m_title, transform);
    m_canvas->setItemTransform(m_subTitle, transform);
    for (UICanvas::ItemId polygon : m_polygons)
        m_canvas->setItemTransform(polygon, transform);
    for (const auto& anchor : m_anchors)
        anchor->setTransform(transform);
    for (const auto& variable : m_variables)
        variable->setTransform(transform);
}

uint32_t GraphNode::raise(uint32_t order)
{
    if (!m_canvas)
        return order;
    for (UICanvas::ItemId polygon : m_polygons)
        m_canvas->setItemOrder(polygon, order++);
    for (const auto& variable : m_variables) {
        if (variable->isTexture())
            variable->setOrder(order++);
    }
    for (const auto& anchor : m_anchors)
        order = anchor->raiseSquares(order);
    m_canvas->setItemOrder(m_title, order++);
    m_canvas->setItemOrder(m_subTitle, order++);
    for (const auto& anchor : m_anchors)
        order = anchor->raiseLabel(order);
    for (const auto& variable : m_variables) {
        if (!variable->isTexture())
            variable->setOrder(order++);
    }
    return order;
}

void GraphNode::setColour(const UICanvas::Colour& colour)
{
    m_colour = colour;
    if (!m_canvas)
        return;
    m_canvas->setTextColour(m_title, colour);
    m_canvas->setTextColour(m_subTitle, colour);
    for (UICanvas::ItemId polygon : m_polygons)
        m_canvas->setPolygonColour(polygon, colour);
    if (m_badge)
        m_canvas->setPolygonColour(m_polygons[kBadgePolygon], kBadgeColour);
}

void GraphNode::setBadge(bool shown)
{
    if (m_badge == shown)
        return;
    m_badge = shown;
    place_badge();
}

void GraphNode::place_badge()
{
    if (!m_canvas)
        return;
    if (!m_badge) {
        clear_polygons(kBadgePolygon, 1);
        return;
    }
    const auto right = static_cast<float>(m_width);
    m_canvas->setPolygonRect(m_polygons[kBadgePolygon], {right - kBadgeSize + 4.0f, -4.0f},
        {right + 4.0f, kBadgeSize - 4.0f}, kBadgeTex);
    m_canvas->setPolygonColour(m_polygons[kBadgePolygon], kBadgeColour);
}

void GraphNode::setFrameColour(const UICanvas::Colour& colour)
{
    if (!m_canvas)
        return;
    for (size_t i = 0; i < kFramePolygons; ++i)
        m_canvas->setPolygonColour(m_polygons[i], colour);
}

bool GraphNode::ownsPolygon(UICanvas::ItemId id) const
{
    if (id == UICanvas::kNoItem)
        return false;
    if (std::find(m_polygons.begin(), m_polygons.end(), id) != m_polygons.end())
        return true;
    return std::any_of(m_variables.begin(), m_variables.end(), [id](const auto& v) { return v->ownsPolygon(id); });
}

void GraphNode::removeJoint(const GraphJoint* joint)
{
    const auto it = std::find(m_joints.begin(), m_joints.end(), joint);
    if (it != m_joints.end())
        m_joints.erase(it);
}
