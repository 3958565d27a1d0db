#include "GraphVariable.h"

#include "BlockVariable.h"
#include "DataVariable.h"
#include "Package.h"

#include <algorithm>

GraphVariable::GraphVariable(DataVariable* variable, const UICanvas::Colour& colour, const jString& valueText)
    : m_variable(variable)
    , m_colour(colour)
{
    const BlockVariable* definition = m_variable->getDefinition();
    m_label = definition ? definition->getText() : jString();
    m_variable->setValue(valueText);
    if (isTexture() && valueText.empty())
        m_variable->setValue(kBlackTexture);
    update_size();
}

GraphVariable::~GraphVariable()
{
    detach();
}

const jString& GraphVariable::getName() const
{
    const BlockVariable* definition = m_variable->getDefinition();
    return definition ? definition->getName() : Package::kEmptyString;
}

const jString& GraphVariable::getType() const
{
    const BlockVariable* definition = m_variable->getDefinition();
    return definition ? definition->getType() : Package::kEmptyString;
}

bool GraphVariable::isEdit() const
{
    const BlockVariable* definition = m_variable->getDefinition();
    return definition && definition->isEdit();
}

bool GraphVariable::isTexture() const
{
    const jString& type = getType();
    return type == "texture2D" || type == "texture3D" || type == "textureCube";
}

void GraphVariable::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    detach();
    m_canvas = canvas;
    if (!m_canvas)
        return;
    if (isTexture())
        m_polygon = m_canvas->addPolygon({1.0f, 1.0f, 1.0f, 1.0f});
    else
        m_text = m_canvas->addText(m_label, kTextSize, m_colour);
    update_size();
}

void GraphVariable::detach()
{
    if (!m_canvas)
        return;
    if (m_text != UICanvas::kNoItem)
        m_canvas->removeText(m_text);
    if (m_polygon != UICanvas::kNoItem)
        m_canvas->removePolygon(m_polygon);
    m_text = UICanvas::kNoItem;
    m_polygon = UICanvas::kNoItem;
    m_canvas = nullptr;
}

void GraphVariable::setPosition(int x, int y)
{
    m_x = x;
    m_y = y;
    if (isTexture())
        place_thumbnail();
    else
        place_label();
}

void GraphVariable::place_label()
{
    if (!m_canvas || m_text == UICanvas::kNoItem)
        return;
    switch (m_side) {
    case kLeft:
        m_canvas->setTextPosition(m_text, {static_cast<float>(m_x + 4), static_cast<float>(m_y - 7)});
        break;
    case kRight:
        m_canvas->setTextPosition(m_text, {static_cast<float>(m_x - m_width - 4), static_cast<float>(m_y - 7)});
        break;
    case kBottom:
        m_canvas->setTextPosition(m_text, {static_cast<float>(m_x - m_width / 2), static_cast<float>(m_y - 22)});
        break;
    default:
        break;
    }
}

void GraphVariable::place_thumbnail()
{
    if (m_canvas && m_polygon != UICanvas::kNoItem) {
        const float x = static_cast<float>(m_x);
        const float y = static_cast<float>(m_y);
        m_canvas->setPolygonRect(m_polygon, {x, y}, {x + kThumbnailSize, y + kThumbnailSize}, {0.0f, 0.0f, 1.0f, 1.0f});
        m_canvas->setPolygonBlend(m_polygon, 5, 6);
    }
    // A copy: the value is written back by setTexture.
    setTexture(jString(m_variable->getValue()));
}

void GraphVariable::setTexture(const jString& path)
{
    if (m_canvas) {
        if (m_text != UICanvas::kNoItem)
            m_canvas->setText(m_text, {});
        if (m_polygon != UICanvas::kNoItem)
            m_canvas->setPolygonTexture(m_polygon, path);
    }
    m_variable->setValue(path);
    update_size();
}

void GraphVariable::setLabel(const jString& text)
{
    if (isTexture())
        return;
    if (m_canvas && m_polygon != UICanvas::kNoItem)
        m_canvas->setPolygonTexture(m_polygon, {});
    m_label = text;
    if (m_canvas && m_text != UICanvas::kNoItem) {
        m_canvas->setText(m_text, m_label);
        update_size();
    }
}

void GraphVariable::setTransform(const UICanvas::Transform& transform)
{
    if (!m_canvas)
        return;
    if (m_text != UICanvas::kNoItem)
        m_canvas->setItemTransform(m_text, transform);
    if (m_polygon != UICanvas::kNoItem)
        m_canvas->setItemTransform(m_polygon, transform);
}

void GraphVariable::setOrder(uint32_t order)
{
    if (!m_canvas)
        return;
    if (m_text != UICanvas::kNoItem)
        m_canvas->setItemOrder(m_text, order);
    if (m_polygon != UICanvas::kNoItem)
        m_canvas->setItemOrder(m_polygon, order);
}

void GraphVariable::update_size()
{
    if (isTexture()) {
        m_width = std::max(m_width, kThumbnailSize);
        if (m_height < kThumbnailSize + 1)
            m_height = kThumbnailSize;
        return;
    }
    if (m_canvas && m_text != UICanvas::kNoItem) {
        m_width = m_canvas->getTextWidth(m_text);
        m_height = m_canvas->getTextHeight(m_text);
    }
}
