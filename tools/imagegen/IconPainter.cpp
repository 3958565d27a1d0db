#include "IconPainter.h"

#include <algorithm>

namespace {

using Sdf::Vec2;

const Colour Rim = Colour::grey(0.08f, 0.9f);
const float RimWidth = 1.5f;

// Draws a shape with a dark rim around it.
void drawWithRim(Raster& raster, const Raster::Shape& shape, const Colour& colour)
{
    raster.draw([&](Vec2 p) { return shape(p) - RimWidth; }, Rim);
    raster.draw(shape, colour);
}

} // namespace

Raster IconPainter::paintSave()
{
    Raster raster(Size, Size);
    const Vec2 centre{16, 16};
    drawWithRim(raster, [=](Vec2 p) { return Sdf::roundedBox(p, centre, 12.5f, 12.5f, 2.5f); }, {0.22f, 0.42f, 0.78f, 1});
    // Metal shutter at the top with its slot.
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {17, 8.5f}, 7.5f, 5.0f, 1.0f); }, Colour::grey(0.82f));
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {20, 8.5f}, 1.6f, 3.0f, 0.5f); }, {0.22f, 0.42f, 0.78f, 1});
    // Label at the bottom with two written lines.
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {16, 22.5f}, 9.0f, 5.5f, 1.0f); }, Colour::grey(0.97f));
    raster.draw([](Vec2 p) { return Sdf::segment(p, {10, 21}, {22, 21}, 0.6f); }, Colour::grey(0.55f));
    raster.draw([](Vec2 p) { return Sdf::segment(p, {10, 24.5f}, {19, 24.5f}, 0.6f); }, Colour::grey(0.55f));
    return raster;
}

Raster IconPainter::paintApply()
{
    Raster raster(Size, Size);
    drawWithRim(raster, [](Vec2 p) { return Sdf::circle(p, {16, 16}, 13.0f); }, {0.20f, 0.66f, 0.30f, 1});
    auto check = [](Vec2 p) {
        return std::min(Sdf::segment(p, {9, 16.5f}, {14, 21.5f}, 2.2f), Sdf::segment(p, {14, 21.5f}, {23, 11}, 2.2f));
    };
    raster.draw(check, Colour::grey(1.0f));
    return raster;
}

Raster IconPainter::paintCenter()
{
    Raster raster(Size, Size);
    const Vec2 c{16, 16};
    const Colour blue{0.35f, 0.75f, 1.0f, 1};
    auto crossHair = [=](Vec2 p) {
        float d = Sdf::outline(Sdf::circle(p, c, 9.5f), 2.6f);
        d = std::min(d, Sdf::segment(p, {16, 2.5f}, {16, 9}, 1.3f));
        d = std::min(d, Sdf::segment(p, {16, 23}, {16, 29.5f}, 1.3f));
        d = std::min(d, Sdf::segment(p, {2.5f, 16}, {9, 16}, 1.3f));
        d = std::min(d, Sdf::segment(p, {23, 16}, {29.5f, 16}, 1.3f));
        return std::min(d, Sdf::circle(p, c, 2.8f));
    };
    drawWithRim(raster, crossHair, blue);
    return raster;
}

Raster IconPainter::paintLive()
{
    Raster raster(Size, Size);
    const Vec2 c{16, 16};
    const Colour orange{1.0f, 0.62f, 0.2f, 1};
    auto playInRing = [=](Vec2 p) {
        float d = Sdf::outline(Sdf::circle(p, c, 12.0f), 2.4f);
        d = std::min(d, Sdf::segment(p, {13, 10}, {13, 22}, 1.6f));
        d = std::min(d, Sdf::segment(p, {13, 10}, {22, 16}, 1.6f));
        d = std::min(d, Sdf::segment(p, {13, 22}, {22, 16}, 1.6f));
        return std::min(d, Sdf::segment(p, {15, 14}, {15, 18}, 2.2f));
    };
    drawWithRim(raster, playInRing, orange);
    return raster;
}

// An arc over the top of a circle, its end on the right running down, and
// an arrow head at its left end pointing down. mirror flips it left-right.
static Raster paintTurnArrow(bool mirror)
{
    Raster raster(IconPainter::Size, IconPainter::Size);
    const Colour amber{1.0f, 0.78f, 0.30f, 1};
    auto arrow = [=](Vec2 p) {
        if (mirror)
            p.x = static_cast<float>(IconPainter::Size) - p.x;
        const Vec2 c{17, 18};
        // Upper half of a ring; the lower half is cut away.
        float d = std::max(Sdf::outline(Sdf::circle(p, c, 8.0f), 1.6f), p.y - c.y);
        d = std::min(d, Sdf::segment(p, {25, 18}, {25, 25}, 1.6f));
        return std::min(d, Sdf::triangle(p, {3.5f, 17}, {14.5f, 17}, {9, 25}));
    };
    drawWithRim(raster, arrow, amber);
    return raster;
}

Raster IconPainter::paintUndo()
{
    return paintTurnArrow(false);
}

Raster IconPainter::paintRedo()
{
    return paintTurnArrow(true);
}

Raster IconPainter::paintFunction()
{
    Raster raster(Size, Size);
    const Colour frame = Colour::grey(0.62f);
    drawWithRim(raster, [](Vec2 p) { return Sdf::roundedBox(p, {16, 16}, 11.0f, 10.0f, 3.0f); }, frame);
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {16, 17.5f}, 9.0f, 6.5f, 1.5f); }, Colour::grey(0.24f));
    // Title bar.
    raster.draw([](Vec2 p) { return Sdf::segment(p, {10, 9}, {22, 9}, 0.9f); }, Colour::grey(0.95f));
    // Input on the left, output on the right.
    drawWithRim(raster, [](Vec2 p) { return Sdf::circle(p, {5, 18}, 3.2f); }, {0.40f, 0.85f, 1.0f, 1});
    drawWithRim(raster, [](Vec2 p) { return Sdf::circle(p, {27, 18}, 3.2f); }, {1.0f, 0.75f, 0.25f, 1});
    return raster;
}
