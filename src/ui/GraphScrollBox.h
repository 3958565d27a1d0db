#pragma once

#include "UIEventMouse.h"
#include "UIEventWheel.h"

#include <QScrollArea>

class Graph;

// The scroll container around the graph: pans it while the context/pan
// button (flag 4) is held and zooms it with the wheel about the pointer.
// Every change of the view is written into the document (scale and the two
// scroll fractions) so that it is saved with it.
//
// The graph becomes the scroll area's widget (Qt then owns it). Pointer
// events of the graph and of the viewport pass through the scroll box's
// handlers first.
class GraphScrollBox : public QScrollArea {
public:
    static constexpr int kMsgScrolled = 22;
    static constexpr int kMsgZoomed = 23;
    static constexpr float kMinScale = 0.2f;
    static constexpr float kMaxScale = 1.0f;

    GraphScrollBox(QWidget* parent, Graph* graph);
    ~GraphScrollBox() override;

    Graph* getGraph() const { return m_graph; }

    virtual int getPanX() const { return m_panX; }
    virtual void setPanX(int x) { m_panX = x; }
    virtual int getPanY() const { return m_panY; }
    virtual void setPanY(int y) { m_panY = y; }

    // Each returns whether it consumed the event; what is not consumed goes
    // on to the scroll area.
    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    virtual bool onMouseWheel(UIEventWheel& event);

    // Scroll bar units per pointer pixel: the bars count viewport pixels.
    float getScrollScale() const { return 1.0f; }
    // value / maximum of the bar; 0.5 when it cannot scroll.
    float getHScrollPercent() const;
    float getVScrollPercent() const;
    // Restores a stored fraction.
    void setHScrollPercent(float percent);
    void setVScrollPercent(float percent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool accepts(const UIEventMouse& event) const;
    bool is_inside(const UIEventMouse& event) const;
    void record_pan(const UIEventMouse& event);
    // Makes a record's local position the box's own.
    void to_box_local(UIEventMouse& event) const;

    Graph* m_graph;
    int m_panX = 0;
    int m_panY = 0;
};
