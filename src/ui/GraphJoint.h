#pragma once

#include "UICanvas.h"

#include <cstdint>

class GraphAnchor;
struct DataJoint;

// One document link on the canvas: a cubic curve from the source (output)
// anchor to the target (input) anchor, ending in a 16-unit straight piece
// and an arrow head at the target.
class GraphJoint {
public:
    // Points of the curve before the final point on the target anchor.
    static constexpr int kCurveSteps = 24;
    static constexpr float kArrowLength = 16.0f;

    GraphJoint(GraphAnchor* from, GraphAnchor* to, DataJoint* link);
    ~GraphJoint();
    GraphJoint(const GraphJoint&) = delete;
    GraphJoint& operator=(const GraphJoint&) = delete;

    // Adds the line and the arrow polygon, coloured like the source anchor.
    void attach(UICanvas* canvas);
    void detach();
    UICanvas* getCanvas() const { return m_canvas; }

    // Recomputes the curve and the arrow from the anchors' current places.
    void update();
    void setColour(const UICanvas::Colour& colour);
    // Line, then arrow; returns the next free order.
    uint32_t raise(uint32_t order);
    // Whether the line passes within distance (item units) of the point
    // (widget pixels); the curve's bounding box rejects far points at once.
    bool isLineHit(UICanvas::Point local, float distance) const;
    bool ownsArrow(UICanvas::ItemId id) const { return id != UICanvas::kNoItem && id == m_arrow; }

    GraphAnchor* getFrom() const { return m_from; }
    GraphAnchor* getTo() const { return m_to; }
    DataJoint* getLink() const { return m_link; }
    UICanvas::ItemId getLineId() const { return m_line; }
    UICanvas::ItemId getArrowId() const { return m_arrow; }

private:
    void place_arrow(int side, UICanvas::Point end);

    GraphAnchor* m_from;
    GraphAnchor* m_to;
    DataJoint* m_link;
    UICanvas::ItemId m_line = UICanvas::kNoItem;
    UICanvas::ItemId m_arrow = UICanvas::kNoItem;
    UICanvas* m_canvas = nullptr;
    // Bounding box of the curve's points, in item units.
    UICanvas::Point m_boxMin;
    UICanvas::Point m_boxMax;
};
