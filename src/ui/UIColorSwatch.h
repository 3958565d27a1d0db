#pragma once

#include "jString.h"

#include <QToolButton>

#include <functional>

class QColorDialog;

// A small button showing a colour value text ("r,g,b" or "r,g,b,a", each
// from 0 to 1) bound to a getter and a setter. A click opens the colour
// dialog on the current colour (through DialogAnswerer, so tests answer
// it); accepting writes the chosen colour with as many components as the
// value had (three or four; four when it was not a colour).
class UIColorSwatch : public QToolButton {
public:
    using Getter = std::function<jString()>;
    using Setter = std::function<void(const jString&)>;

    static constexpr int kSize = 22;

    UIColorSwatch(QWidget* parent, Getter getter, Setter setter);

    void refresh();
    // The colour a value text shows: components clamped to 0..1, a single
    // number as grey, missing alpha as 1; black for text that is no number.
    static QColor colourOf(const jString& value);
    // A colour as a value text of count (3 or 4) components, four decimals
    // at most.
    static jString textOf(const QColor& colour, size_t count);
    const QColor& getColour() const { return m_colour; }

private:
    void choose();

    Getter m_getter;
    Setter m_setter;
    QColor m_colour;
};
