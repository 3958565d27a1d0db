#include "GraphScrollBox.h"

#include "AppData.h"
#include "Graph.h"
#include "MsgMngr.h"
#include "UIEventTranslator.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

float barPercent(const QScrollBar& bar)
{
    if (bar.maximum() <= bar.minimum())
        return 0.5f;
    return static_cast<float>(bar.value() - bar.minimum()) / static_cast<float>(bar.maximum() - bar.minimum());
}

void setBarPercent(QScrollBar& bar, float percent)
{
    const int range = bar.maximum() - bar.minimum();
    bar.setValue(bar.minimum() + static_cast<int>(static_cast<float>(range) * percent + 0.5f));
}

} // namespace

GraphScrollBox::GraphScrollBox(QWidget* parent, Graph* graph)
    : QScrollArea(parent)
    , m_graph(graph)
{
    setWidget(m_graph);
    setWidgetResizable(false);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    viewport()->installEventFilter(this);
    if (m_graph)
        m_graph->installEventFilter(this);
}

GraphScrollBox::~GraphScrollBox()
{
    viewport()->removeEventFilter(this);
    if (m_graph)
        m_graph->removeEventFilter(this);
}

bool GraphScrollBox::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

bool GraphScrollBox::accepts(const UIEventMouse& event) const
{
    return event.getType() == UI_EVENT_MOUSE && (is_inside(event) || hasFocus() || (m_graph && m_graph->isFocused()));
}

void GraphScrollBox::record_pan(const UIEventMouse& event)
{
    setPanX(event.x);
    setPanY(event.y);
}

bool GraphScrollBox::onMouseDown(UIEventMouse& event)
{
    if (accepts(event) && (event.buttons & UIEventMouse::kRight))
        record_pan(event);
    return false;
}

bool GraphScrollBox::onMouseMove(UIEventMouse& event)
{
    if (!accepts(event) || !is_inside(event) || !(event.buttons & UIEventMouse::kRight))
        return false;
    const int dx = event.x - getPanX();
    const int dy = event.y - getPanY();
    record_pan(event);
    AppData& doc = *AppData::get();
    QScrollBar& horizontal = *horizontalScrollBar();
    horizontal.setValue(horizontal.value() - static_cast<int>(getScrollScale() * static_cast<float>(dx)));
    doc.setHScroll(getHScrollPercent());
    QScrollBar& vertical = *verticalScrollBar();
    vertical.setValue(vertical.value() - static_cast<int>(getScrollScale() * static_cast<float>(dy)));
    doc.setVScroll(getVScrollPercent());
    MsgMngr::instance().post(kMsgScrolled);
    return true;
}

bool GraphScrollBox::onMouseWheel(UIEventWheel& event)
{
    if (!accepts(event))
        return false;
    if (event.buttons & UIEventMouse::kRight)
        record_pan(event);
    const bool zoomOut = (event.buttons & UIEventWheel::kWheelDown) != 0;
    if (!zoomOut && !(event.buttons & UIEventWheel::kWheelUp))
        return false;
    AppData& doc = *AppData::get();
    const float oldScale = doc.getScale();
    if (!m_graph)
        return true;
    const QPoint pointer = m_graph->mapFrom(m_graph->window(), QPoint(event.x, event.y));
    if (!m_graph->rect().contains(pointer))
        return true;

    auto scale = static_cast<float>(static_cast<double>(oldScale) * (zoomOut ? 0.9 : 1.1));
    if (scale < kMinScale)
        scale = kMinScale;
    if (scale > kMaxScale)
        scale = kMaxScale;
    doc.setScale(scale);
    m_graph->setScale(scale);
    const auto gx = static_cast<float>(pointer.x());
    const auto gy = static_cast<float>(pointer.y());
    const int dx = static_cast<int>(gx / scale) - static_cast<int>(gx / oldScale);
    const int dy = static_cast<int>(gy / scale) - static_cast<int>(gy / oldScale);
    m_graph->moveAllNodes(dx, dy);
    MsgMngr::instance().post(kMsgZoomed);
    return true;
}

float GraphScrollBox::getHScrollPercent() const
{
    return barPercent(*horizontalScrollBar());
}

float GraphScrollBox::getVScrollPercent() const
{
    return barPercent(*verticalScrollBar());
}

void GraphScrollBox::setHScrollPercent(float percent)
{
    setBarPercent(*horizontalScrollBar(), percent);
}

void GraphScrollBox::setVScrollPercent(float percent)
{
    setBarPercent(*verticalScrollBar(), percent);
}

void GraphScrollBox::to_box_local(UIEventMouse& event) const
{
    const QPoint local = mapFrom(window(), QPoint(event.x, event.y));
    event.localX = local.x();
    event.localY = local.y();
}

bool GraphScrollBox::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || (widget != viewport() && widget != m_graph))
        return QScrollArea::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        UIEventMouse record = UIEventTranslator::mouse(*static_cast<QMouseEvent*>(event), *widget);
        to_box_local(record);
        return onMouseDown(record);
    }
    case QEvent::MouseMove: {
        UIEventMouse record = UIEventTranslator::mouse(*static_cast<QMouseEvent*>(event), *widget);
        to_box_local(record);
        return onMouseMove(record);
    }
    case QEvent::Wheel: {
        UIEventWheel record = UIEventTranslator::wheel(*static_cast<QWheelEvent*>(event), *widget);
        to_box_local(record);
        if (onMouseWheel(record)) {
            event->accept();
            return true;
        }
        return false;
    }
    default:
        return QScrollArea::eventFilter(watched, event);
    }
}
