#include "SpriteSheetPainter.h"

#include <cmath>

namespace {

using Sdf::Vec2;

// Unit vector of the outward direction of a node side (image y grows down).
Vec2 outwardOf(int row)
{
    switch (row) {
    case SpriteSheetPainter::LeftRow: return {-1, 0};
    case SpriteSheetPainter::RightRow: return {1, 0};
    case SpriteSheetPainter::TopRow: return {0, -1};
    default: return {0, 1};
    }
}

// Triangle with its tip at centre + dir * tip and its base across
// centre + dir * base, half as wide as halfWidth each way.
float pointer(Vec2 p, Vec2 centre, Vec2 dir, float base, float tip, float halfWidth)
{
    const Vec2 side{-dir.y, dir.x};
    const Vec2 a{centre.x + dir.x * tip, centre.y + dir.y * tip};
    const Vec2 b{centre.x + dir.x * base + side.x * halfWidth, centre.y + dir.y * base + side.y * halfWidth};
    const Vec2 c{centre.x + dir.x * base - side.x * halfWidth, centre.y + dir.y * base - side.y * halfWidth};
    return Sdf::triangle(p, a, b, c);
}

const Colour White{1, 1, 1, 1};
const Colour Shade = Colour::grey(0.05f, 0.85f);

} // namespace

Raster SpriteSheetPainter::paint()
{
    Raster raster(Width, Height);
    paintFrame(raster);
    paintInnerPanel(raster);
    for (int row = 0; row < 4; ++row) {
        paintAnchor(raster, GenericColumn, row);
        paintAnchor(raster, InputColumn, row);
        paintAnchor(raster, OutputColumn, row);
        paintArrow(raster, row);
    }
    return raster;
}

// u 0-0.25, v 0-0.5: 64x64 texels. The nine-slice splits it at texel 32
// and stretches texels 31-33, so everything that varies (rounded corners,
// border) lies within 31 texels of the edges and rows/columns
// 31-33 are uniform along the stretch.
void SpriteSheetPainter::paintFrame(Raster& raster)
{
    const Vec2 centre{32, 32};
    auto body = [centre](Vec2 p) { return Sdf::roundedBox(p, centre, 31, 31, 12); };
    raster.draw([centre](Vec2 p) { return Sdf::roundedBox(p, centre, 32, 32, 13); }, Colour::grey(0, 0.35f), 0, 0, 64, 64);
    raster.draw(body, Colour::grey(0.62f), 0, 0, 64, 64);
    raster.draw([centre](Vec2 p) { return Sdf::roundedBox(p, centre, 28, 28, 9); }, Colour::grey(0.24f, 1), 0, 0, 64, 64);
}

// u 0.25-0.5, v 0-0.5: a recessed panel for the sub-title area.
void SpriteSheetPainter::paintInnerPanel(Raster& raster)
{
    const Vec2 centre{96, 32};
    raster.draw([centre](Vec2 p) { return Sdf::roundedBox(p, centre, 30, 30, 8); }, Colour::grey(0.38f), 64, 0, 128, 64);
    raster.draw([centre](Vec2 p) { return Sdf::roundedBox(p, centre, 28.5f, 28.5f, 6.5f); }, Colour::grey(0.15f), 64, 0,
                128, 64);
}

// Anchors are white so the canvas tint gives them the anchor's colour; a dark
// rim keeps them visible on the node body. Generic (kind 0): a disc. Input
// (kind 1): a ring with a pointer facing into the node. Output (kind 2): a
// disc with a pointer facing out of the node. The anchor's label starts 4
// units (8 texels) from the cell's centre on the node's side, so each glyph
// sits 3 texels towards the outside and reaches at most 5.5 texels from the
// cell's centre on the inner side (rim included), leaving a gap before the
// label.
void SpriteSheetPainter::paintAnchor(Raster& raster, int column, int row)
{
    const int x0 = column * Cell, y0 = row * Cell;
    const Vec2 out = outwardOf(row);
    const Vec2 in{-out.x, -out.y};
    constexpr float kOutwardShift = 3.0f;
    const Vec2 centre{x0 + Cell * 0.5f + out.x * kOutwardShift, y0 + Cell * 0.5f + out.y * kOutwardShift};
    Raster::Shape shape;
    switch (column) {
    case InputColumn:
        shape = [=](Vec2 p) {
            const float ring = Sdf::outline(Sdf::circle(p, centre, 6.0f), 3.0f);
            return std::min(ring, pointer(p, centre, in, -2.5f, 3.5f, 4.0f));
        };
        break;
    case OutputColumn:
        shape = [=](Vec2 p) {
            return std::min(Sdf::circle(p, centre, 7.5f), pointer(p, centre, out, 5.0f, 12.0f, 5.5f));
        };
        break;
    default:
        shape = [=](Vec2 p) { return Sdf::circle(p, centre, 7.5f); };
        break;
    }
    raster.draw([&](Vec2 p) { return shape(p) - 1.0f; }, Shade, x0, y0, x0 + Cell, y0 + Cell);
    raster.draw(shape, White, x0, y0, x0 + Cell, y0 + Cell);
}

// Arrow heads, u 0.875-1.0: row 0 points left, 1 right, 2 up, 3 down. The tip
// touches the cell's edge in the pointing direction, where the joint's
// curve meets its anchor.
void SpriteSheetPainter::paintArrow(Raster& raster, int row)
{
    const int x0 = ArrowColumn * Cell, y0 = row * Cell;
    const Vec2 centre{x0 + Cell * 0.5f, y0 + Cell * 0.5f};
    const Vec2 dir = outwardOf(row);
    auto head = [=](Vec2 p) { return pointer(p, centre, dir, -12.0f, 15.0f, 11.0f); };
    raster.draw(head, White, x0, y0, x0 + Cell, y0 + Cell);
}
