#pragma once

#include "UICanvas.h"

#include <QWidget>

#include <cstdint>

class QLabel;

// One cell of the mask grid: the decimal index of its bit, a selected flag
// and a highlight painted as the cell's background in the cell's colour.
// The cell lets the pointer through; the grid decides what a press does.
class MaskBitItem : public QWidget {
public:
    using Colour = UICanvas::Colour;

    static constexpr int kWidth = 48;
    static constexpr int kHeight = 32;
    static constexpr Colour kNoColour{1.0f, 1.0f, 1.0f, 1.0f};

    MaskBitItem(QWidget* parent, int bit);

    int getBit() const { return m_bit; }
    uint8_t isSelected() const { return m_selected; }
    void setSelected(bool selected) { m_selected = selected ? 1 : 0; }

    bool isHighlighted() const { return m_highlight; }
    void setHighlight(bool on);
    const Colour& getColour() const { return m_colour; }
    void setColour(const Colour& colour);

    const QLabel* getLabel() const { return m_label; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void update_label_colour();

    int m_bit;
    uint8_t m_selected = 0;
    bool m_highlight = false;
    Colour m_colour = kNoColour;
    QLabel* m_label = nullptr;
};
