#pragma once

#include "Colour.h"
#include "Sdf.h"

#include "jImage.h"

#include <functional>
#include <vector>

// A float RGBA drawing surface. Shapes are given as signed distance
// functions and drawn with one pixel of anti-aliasing, composited "over"
// what is already there.
class Raster {
public:
    using Shape = std::function<float(Sdf::Vec2)>;

    Raster(int width, int height);

    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }

    void fill(const Colour& colour);
    // Draws a shape, only testing pixels inside the clip rectangle
    // [x0, x1) x [y0, y1) (the whole raster when omitted).
    void draw(const Shape& shape, const Colour& colour);
    void draw(const Shape& shape, const Colour& colour, int x0, int y0, int x1, int y1);
    // Sets a pixel, replacing what was there.
    void set(int x, int y, const Colour& colour);
    Colour at(int x, int y) const;

    // RGBA8 bytes, row by row, top first.
    std::vector<uint8_t> toRgba8() const;
    // Copies into one face and level of an image of the same size.
    void copyTo(jImage& image, int face, int level) const;

private:
    void blend(int x, int y, const Colour& colour, float coverage);

    int m_width;
    int m_height;
    std::vector<Colour> m_pixels;
};
