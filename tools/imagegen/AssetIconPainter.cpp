#include "AssetIconPainter.h"

#include <algorithm>
#include <cmath>

namespace {

using Sdf::Vec2;

const Colour Rim = Colour::grey(0.06f, 0.85f);
const float RimWidth = 2.0f;

void drawWithRim(Raster& raster, const Raster::Shape& shape, const Colour& colour)
{
    raster.draw([&](Vec2 p) { return shape(p) - RimWidth; }, Rim);
    raster.draw(shape, colour);
}

// An axis-aligned ellipse; exact enough for pictograms of this size.
float ellipse(Vec2 p, Vec2 centre, float rx, float ry)
{
    const float k = Sdf::length((p.x - centre.x) / rx, (p.y - centre.y) / ry);
    return (k - 1.0f) * std::min(rx, ry);
}

// A convex quadrilateral (either winding): the distance to its nearest edge,
// negative inside.
float quad(Vec2 p, Vec2 a, Vec2 b, Vec2 c, Vec2 d)
{
    const Vec2 v[4] = {a, b, c, d};
    float distance = 1e9f;
    int positive = 0, negative = 0;
    for (int i = 0; i < 4; ++i) {
        const Vec2 e0 = v[i], e1 = v[(i + 1) % 4];
        distance = std::min(distance, Sdf::segment(p, e0, e1, 0));
        const float cross = (e1.x - e0.x) * (p.y - e0.y) - (e1.y - e0.y) * (p.x - e0.x);
        positive += cross > 0;
        negative += cross < 0;
    }
    return positive == 0 || negative == 0 ? -distance : distance;
}

// A page with its top right corner folded over.
float page(Vec2 p)
{
    const float body = Sdf::roundedBox(p, {32, 32}, 20, 26, 3);
    const float corner = -Sdf::triangle(p, {40, 2}, {56, 2}, {56, 18});
    return std::max(body, corner);
}

void drawPage(Raster& raster, const Colour& paper)
{
    drawWithRim(raster, page, paper);
    raster.draw([](Vec2 p) { return Sdf::triangle(p, {40, 6}, {40, 18}, {52, 18}); }, paper.mix(Colour::grey(0.3f), 0.35f));
}

// An isometric cube: top, left and right faces, and the visible edges.
void drawCube(Raster& raster, const Colour& top, const Colour& left, const Colour& right, const Colour& edge)
{
    const Vec2 t{32, 8}, l{10, 20}, r{54, 20}, c{32, 32}, bl{10, 44}, br{54, 44}, b{32, 56};
    raster.draw([&](Vec2 p) { return quad(p, t, r, c, l) - RimWidth; }, Rim);
    raster.draw([&](Vec2 p) { return quad(p, l, c, b, bl) - RimWidth; }, Rim);
    raster.draw([&](Vec2 p) { return quad(p, c, r, br, b) - RimWidth; }, Rim);
    raster.draw([&](Vec2 p) { return quad(p, t, r, c, l); }, top);
    raster.draw([&](Vec2 p) { return quad(p, l, c, b, bl); }, left);
    raster.draw([&](Vec2 p) { return quad(p, c, r, br, b); }, right);
    const float w = 0.9f;
    raster.draw([&](Vec2 p) {
        float d = Sdf::segment(p, c, t, w);
        d = std::min(d, Sdf::segment(p, c, b, w));
        d = std::min(d, Sdf::segment(p, c, l, w));
        return std::min(d, Sdf::segment(p, c, r, w));
    }, edge);
}

} // namespace

Raster AssetIconPainter::paintFolder()
{
    Raster raster(Size, Size);
    const Colour back{0.78f, 0.58f, 0.22f, 1};
    const Colour front{0.96f, 0.78f, 0.36f, 1};
    auto backShape = [](Vec2 p) {
        const float tab = Sdf::roundedBox(p, {20, 15}, 12, 5, 2.5f);
        return std::min(tab, Sdf::roundedBox(p, {32, 33}, 27, 19, 3));
    };
    drawWithRim(raster, backShape, back);
    // A sheet of paper peeking out.
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {33, 27}, 21, 9, 1.5f); }, Colour::grey(0.97f));
    drawWithRim(raster, [](Vec2 p) { return Sdf::roundedBox(p, {32, 39}, 27, 14, 3); }, front);
    raster.draw([](Vec2 p) { return Sdf::segment(p, {8, 27}, {56, 27}, 0.7f); }, Colour{1.0f, 0.9f, 0.6f, 1});
    return raster;
}

Raster AssetIconPainter::paintMaterial()
{
    Raster raster(Size, Size);
    const Vec2 centre{32, 32};
    const float radius = 26;
    raster.draw([&](Vec2 p) { return Sdf::circle(p, centre, radius + RimWidth); }, Rim);
    // Lambert shading with a light from the upper left and a specular spot,
    // painted pixel by pixel with the disc's edge anti-aliased.
    const Colour base{0.85f, 0.32f, 0.18f, 1};
    const float lx = -0.5f, ly = -0.6f, lz = 0.62f;
    for (int y = 0; y < Size; ++y)
        for (int x = 0; x < Size; ++x) {
            const float nx = (float(x) + 0.5f - centre.x) / radius, ny = (float(y) + 0.5f - centre.y) / radius;
            const float r2 = std::min(nx * nx + ny * ny, 1.0f);
            const float nz = std::sqrt(1.0f - r2);
            const float diffuse = std::max(0.0f, nx * lx + ny * ly + nz * lz);
            const float hz = lz + 1.0f, hl = Sdf::length(Sdf::length(lx, ly), hz);
            const float specular = std::pow(std::max(0.0f, (nx * lx + ny * ly + nz * hz) / hl), 40.0f);
            const float light = 0.18f + 0.82f * diffuse;
            const Colour shaded{std::min(1.0f, base.r * light + specular), std::min(1.0f, base.g * light + specular),
                                std::min(1.0f, base.b * light + specular), 1};
            raster.draw([&](Vec2 p) { return Sdf::circle(p, centre, radius); }, shaded, x, y, x + 1, y + 1);
        }
    return raster;
}

Raster AssetIconPainter::paintInstanceBadge()
{
    Raster raster(BadgeSize, BadgeSize);
    drawWithRim(raster, [](Vec2 p) { return Sdf::circle(p, {12, 12}, 9.5f); }, {0.98f, 0.62f, 0.12f, 1});
    const Colour white = Colour::grey(1.0f);
    raster.draw([](Vec2 p) { return Sdf::outline(Sdf::roundedBox(p, {10, 10}, 3.6f, 3.6f, 1), 1.3f); }, white);
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {14, 14}, 3.6f, 3.6f, 1); }, white);
    return raster;
}

Raster AssetIconPainter::paintImage()
{
    Raster raster(Size, Size);
    drawWithRim(raster, [](Vec2 p) { return Sdf::roundedBox(p, {32, 32}, 27, 22, 3); }, Colour::grey(0.93f));
    raster.draw([](Vec2 p) { return Sdf::roundedBox(p, {32, 32}, 23, 18, 1); }, {0.45f, 0.72f, 0.95f, 1});
    raster.draw([](Vec2 p) { return Sdf::circle(p, {42, 23}, 5); }, {1.0f, 0.86f, 0.3f, 1});
    auto hills = [](Vec2 p) {
        const float clip = Sdf::roundedBox(p, {32, 32}, 23, 18, 1);
        const float hill = std::min(Sdf::circle(p, {22, 58}, 20), Sdf::circle(p, {44, 64}, 22));
        return std::max(clip, hill);
    };
    raster.draw(hills, {0.3f, 0.62f, 0.28f, 1});
    return raster;
}

Raster AssetIconPainter::paintMesh()
{
    Raster raster(Size, Size);
    drawCube(raster, Colour::grey(0.78f), Colour::grey(0.52f), Colour::grey(0.64f), Colour::grey(0.95f));
    // One diagonal per face: the triangles a mesh is made of.
    raster.draw([](Vec2 p) {
        float d = Sdf::segment(p, {10, 20}, {54, 20}, 0.5f);
        d = std::min(d, Sdf::segment(p, {10, 20}, {32, 56}, 0.5f));
        return std::min(d, Sdf::segment(p, {54, 20}, {32, 56}, 0.5f));
    }, Colour::grey(0.92f, 0.8f));
    return raster;
}

Raster AssetIconPainter::paintPrefab()
{
    Raster raster(Size, Size);
    drawCube(raster, {0.55f, 0.78f, 1.0f, 1}, {0.2f, 0.45f, 0.82f, 1}, {0.32f, 0.6f, 0.95f, 1}, {0.85f, 0.94f, 1.0f, 1});
    return raster;
}

Raster AssetIconPainter::paintScript()
{
    Raster raster(Size, Size);
    drawPage(raster, Colour::grey(0.95f));
    struct Line {
        float x0, x1, y;
        Colour colour;
    };
    const Line lines[] = {
        {18, 34, 16, {0.2f, 0.45f, 0.85f, 1}}, {22, 44, 24, {0.75f, 0.3f, 0.55f, 1}},
        {22, 38, 32, {0.25f, 0.6f, 0.3f, 1}},  {22, 46, 40, {0.75f, 0.3f, 0.55f, 1}},
        {18, 28, 48, {0.2f, 0.45f, 0.85f, 1}},
    };
    for (const Line& line : lines)
        raster.draw([&](Vec2 p) { return Sdf::segment(p, {line.x0, line.y}, {line.x1, line.y}, 1.6f); }, line.colour);
    return raster;
}

Raster AssetIconPainter::paintWorld()
{
    Raster raster(Size, Size);
    const Vec2 c{32, 32};
    drawWithRim(raster, [&](Vec2 p) { return Sdf::circle(p, c, 26); }, {0.22f, 0.5f, 0.85f, 1});
    auto land = [&](Vec2 p) {
        const float disc = Sdf::circle(p, c, 26);
        float d = ellipse(p, {22, 24}, 11, 8);
        d = std::min(d, ellipse(p, {27, 40}, 6, 10));
        d = std::min(d, ellipse(p, {45, 30}, 8, 12));
        return std::max(disc, d);
    };
    raster.draw(land, {0.35f, 0.72f, 0.35f, 1});
    const Colour grid{1, 1, 1, 0.55f};
    auto lines = [&](Vec2 p) {
        float d = Sdf::outline(ellipse(p, c, 11, 26), 1.1f);
        d = std::min(d, Sdf::outline(Sdf::circle(p, c, 26), 1.1f));
        d = std::min(d, std::max(Sdf::segment(p, {6, 32}, {58, 32}, 0.55f), Sdf::circle(p, c, 26)));
        d = std::min(d, std::max(Sdf::segment(p, {10, 20}, {54, 20}, 0.55f), Sdf::circle(p, c, 26)));
        return std::min(d, std::max(Sdf::segment(p, {10, 44}, {54, 44}, 0.55f), Sdf::circle(p, c, 26)));
    };
    raster.draw(lines, grid);
    return raster;
}

Raster AssetIconPainter::paintUnknown()
{
    Raster raster(Size, Size);
    drawPage(raster, Colour::grey(0.86f));
    const Colour mark = Colour::grey(0.38f);
    // The question mark: an arc open at the lower left, a stem and a dot.
    auto question = [](Vec2 p) {
        const float ring = Sdf::outline(Sdf::circle(p, {32, 26}, 7.5f), 3.6f);
        // The lower left quarter of the ring is cut away.
        float d = ring;
        if (p.y > 26.0f && p.x < 32.0f)
            d = std::max(ring, std::min(p.y - 26.0f, 32.0f - p.x));
        d = std::min(d, Sdf::segment(p, {32, 33}, {32, 38.5f}, 1.8f));
        return std::min(d, Sdf::circle(p, {32, 46}, 2.4f));
    };
    raster.draw(question, mark);
    return raster;
}
