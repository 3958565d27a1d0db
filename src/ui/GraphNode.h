#pragma once

#include "GraphAnchor.h"
#include "GraphVariable.h"
#include "UICanvas.h"
#include "jString.h"

#include <array>
#include <memory>
#include <vector>

class DataNode;
class GraphJoint;

// One document node on the canvas: a framed box with a title, its anchors
// and its variables. Not a widget: it owns canvas texts and polygons by id.
// All geometry is in unscaled document units; the node's position is the
// DataNode's and becomes the translation of every item.
class GraphNode {
public:
    static constexpr int kPolygonCount = 19;
    static constexpr int kFramePolygons = 9;
    static constexpr int kTextSize = 14;
    // Corner size of the nine-slices.
    static constexpr int kCorner = 16;

    GraphNode(DataNode* data, const UICanvas::Colour& colour);
    virtual ~GraphNode();
    GraphNode(const GraphNode&) = delete;
    GraphNode& operator=(const GraphNode&) = delete;

    // Builds the anchors (inputs, then outputs) and the variables of the node.
    void setData(DataNode* data);
    // Detaches and frees the anchors and variables.
    void release();
    // A new node for the same DataNode and colour, not attached.
    std::unique_ptr<GraphNode> clone() const;

    // Adds it even when the name is taken (after a log line).
    void addAnchor(std::unique_ptr<GraphAnchor> anchor);
    GraphAnchor* getAnchor(const jString& name) const;
    void addVar(std::unique_ptr<GraphVariable> variable);
    GraphVariable* getVar(const jString& name) const;

    void attach(UICanvas* canvas);
    void detach();
    UICanvas* getCanvas() const { return m_canvas; }

    // Lays out the texts, anchors, variables and the frame, then re-applies
    // the position.
    void genUI();
    // The title: the node's own name, else its block type.
    virtual jString getDisplayName() const;

    void setPosition(int x, int y);
    int getX() const;
    int getY() const;
    // Gives every item a draw order from order on, texts last; returns the
    // next free order.
    uint32_t raise(uint32_t order);
    // The two texts and the nineteen polygons.
    void setColour(const UICanvas::Colour& colour);
    // The frame's nine polygons only (hover and selection tints).
    void setFrameColour(const UICanvas::Colour& colour);
    bool ownsPolygon(UICanvas::ItemId id) const;
    // The problem badge: a small red disc on the frame's top right corner,
    // drawn with the nineteenth polygon.
    void setBadge(bool shown);
    bool hasBadge() const { return m_badge; }

    DataNode* getData() const { return m_data; }
    const UICanvas::Colour& getColour() const { return m_colour; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    size_t getAnchorCount() const { return m_anchors.size(); }
    GraphAnchor* getAnchorAt(size_t index) const { return m_anchors[index].get(); }
    size_t getVarCount() const { return m_variables.size(); }
    GraphVariable* getVarAt(size_t index) const { return m_variables[index].get(); }
    UICanvas::ItemId getTitleId() const { return m_title; }
    UICanvas::ItemId getSubTitleId() const { return m_subTitle; }
    UICanvas::ItemId getPolygonId(size_t index) const { return m_polygons[index]; }

    // The joints that end on this node, kept by the graph in its joint order.
    const std::vector<GraphJoint*>& getJoints() const { return m_joints; }
    void addJoint(GraphJoint* joint) { m_joints.push_back(joint); }
    void removeJoint(const GraphJoint* joint);

private:
    struct Columns;

    void build_anchors();
    void build_variables();
    void refresh_labels();
    Columns measure_columns() const;
    void place_items(const Columns& columns, int top);
    void nine_slice(size_t first, UICanvas::Point from, UICanvas::Point to, const UICanvas::TexRect& tex);
    void clear_polygons(size_t first, size_t count);
    void place_badge();

    DataNode* m_data;
    UICanvas* m_canvas = nullptr;
    UICanvas::Colour m_colour;
    int m_width = 0;
    int m_height = 0;
    std::vector<std::unique_ptr<GraphAnchor>> m_anchors;
    std::vector<std::unique_ptr<GraphVariable>> m_variables;
    UICanvas::ItemId m_title = UICanvas::kNoItem;
    UICanvas::ItemId m_subTitle = UICanvas::kNoItem;
    std::array<UICanvas::ItemId, kPolygonCount> m_polygons;
    std::vector<GraphJoint*> m_joints;
    bool m_badge = false;
};
