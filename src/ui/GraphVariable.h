#pragma once

#include "UICanvas.h"
#include "jString.h"

class DataVariable;

// The item that shows one variable of a node inside the node's box: a text
// label for an ordinary variable, a 90 by 90 thumbnail of the texture for a
// texture variable. It is not a widget: it owns at most one text and one
// polygon of the canvas it is attached to and moves with its node.
class GraphVariable {
public:
    // Sides of the node the item sits on.
    static constexpr int kLeft = 1;
    static constexpr int kRight = 2;
    static constexpr int kBottom = 8;
    static constexpr int kThumbnailSize = 90;
    static constexpr int kTextSize = 14;
    static constexpr const char* kBlackTexture = "data/core/textures/common/black.dds";

    // Sets the variable's value to valueText (a texture variable without
    // one shows the black texture instead).
    GraphVariable(DataVariable* variable, const UICanvas::Colour& colour, const jString& valueText);
    ~GraphVariable();
    GraphVariable(const GraphVariable&) = delete;
    GraphVariable& operator=(const GraphVariable&) = delete;

    const jString& getName() const;
    const jString& getType() const;
    bool isEdit() const;
    DataVariable* getVariable() const { return m_variable; }
    // Texture variables are those of type "texture2D", "texture3D" or
    // "textureCube"; the test is made afresh each time.
    bool isTexture() const;

    void attach(UICanvas* canvas);
    void detach();
    UICanvas* getCanvas() const { return m_canvas; }

    void setPosition(int x, int y);
    void setTexture(const jString& path);
    // Ordinary variables only.
    void setLabel(const jString& text);
    void setTransform(const UICanvas::Transform& transform);
    void setOrder(uint32_t order);
    bool ownsPolygon(UICanvas::ItemId id) const { return id != UICanvas::kNoItem && id == m_polygon; }

    int getX() const { return m_x; }
    int getY() const { return m_y; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    int getSide() const { return m_side; }
    void setSide(int side) { m_side = side; }
    const jString& getLabel() const { return m_label; }
    const UICanvas::Colour& getColour() const { return m_colour; }
    UICanvas::ItemId getTextId() const { return m_text; }
    UICanvas::ItemId getPolygonId() const { return m_polygon; }

private:
    void update_size();
    void place_label();
    void place_thumbnail();

    DataVariable* m_variable;
    int m_x = 0;
    int m_y = 0;
    UICanvas::ItemId m_text = UICanvas::kNoItem;
    UICanvas::ItemId m_polygon = UICanvas::kNoItem;
    UICanvas* m_canvas = nullptr;
    int m_width = 0;
    int m_height = 0;
    int m_side = kLeft;
    jString m_label;
    UICanvas::Colour m_colour;
};
