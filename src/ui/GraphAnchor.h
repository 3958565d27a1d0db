#pragma once

#include "UICanvas.h"
#include "jString.h"

class DataAnchor;
class GraphNode;

// One connection point of a node on the canvas: a label, the anchor square
// and a larger highlight square behind it (transparent until hovered). Its
// centre is in node coordinates; the node's transform places it.
class GraphAnchor {
public:
    static constexpr int kLeft = 1;
    static constexpr int kRight = 2;
    static constexpr int kBottom = 8;
    // Sprite columns.
    static constexpr int kGeneric = 0;
    static constexpr int kInput = 1;
    static constexpr int kOutput = 2;
    static constexpr int kTextSize = 14;

    GraphAnchor(GraphNode* node, DataAnchor* data, int side, int kind);
    ~GraphAnchor();
    GraphAnchor(const GraphAnchor&) = delete;
    GraphAnchor& operator=(const GraphAnchor&) = delete;

    // Adds the label and the two squares.
    void attach(UICanvas* canvas);
    void detach();
    UICanvas* getCanvas() const { return m_canvas; }

    // Places the centre at (x, y) with the sprite row of the node's side.
    void setPosition(int x, int y, int row);
    void setTransform(const UICanvas::Transform& transform);
    // The two squares, then (with the texts, after every polygon of the
    // node) the label, each from order on; each returns the next order.
    uint32_t raiseSquares(uint32_t order);
    uint32_t raiseLabel(uint32_t order);
    void setHighlightColour(const UICanvas::Colour& colour);

    bool ownsPolygon(UICanvas::ItemId id) const
    {
        return id != UICanvas::kNoItem && (id == m_square || id == m_highlight);
    }
    // The square's centre through its transform.
    UICanvas::Point getCentre() const;
    // The sprite rectangle of a kind and row.
    static UICanvas::TexRect spriteRect(int kind, int row);

    GraphNode* getNode() const { return m_node; }
    DataAnchor* getData() const { return m_data; }
    int getSide() const { return m_side; }
    int getKind() const { return m_kind; }
    const UICanvas::Colour& getColour() const { return m_colour; }
    const jString& getName() const { return m_name; }
    // The block anchor's type string.
    const jString& getType() const;
    int getX() const { return m_x; }
    int getY() const { return m_y; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    UICanvas::ItemId getTextId() const { return m_text; }
    UICanvas::ItemId getSquareId() const { return m_square; }
    UICanvas::ItemId getHighlightId() const { return m_highlight; }

private:
    void place_label();

    GraphNode* m_node;
    DataAnchor* m_data;
    int m_side;
    int m_kind;
    UICanvas::Colour m_colour;
    jString m_name;
    int m_x = 0;
    int m_y = 0;
    UICanvas::ItemId m_text = UICanvas::kNoItem;
    UICanvas::ItemId m_square = UICanvas::kNoItem;
    UICanvas::ItemId m_highlight = UICanvas::kNoItem;
    int m_width = 0;
    int m_height = 0;
    UICanvas* m_canvas = nullptr;
};
