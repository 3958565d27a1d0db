#pragma once

#include <algorithm>
#include <cmath>

// Signed distance functions of simple shapes: negative inside, in pixels.
namespace Sdf {

struct Vec2 {
    float x = 0, y = 0;
};

inline float length(float x, float y)
{
    return std::sqrt(x * x + y * y);
}

inline float circle(Vec2 p, Vec2 centre, float radius)
{
    return length(p.x - centre.x, p.y - centre.y) - radius;
}

// Box centred at centre with half sizes (hw, hh) and corner radius r.
inline float roundedBox(Vec2 p, Vec2 centre, float hw, float hh, float r)
{
    const float qx = std::abs(p.x - centre.x) - hw + r;
    const float qy = std::abs(p.y - centre.y) - hh + r;
    return length(std::max(qx, 0.0f), std::max(qy, 0.0f)) + std::min(std::max(qx, qy), 0.0f) - r;
}

// A ring: the band of the given thickness centred on a shape's outline.
inline float outline(float distance, float thickness)
{
    return std::abs(distance) - thickness * 0.5f;
}

// Capsule around the segment a-b.
inline float segment(Vec2 p, Vec2 a, Vec2 b, float radius)
{
    const float px = p.x - a.x, py = p.y - a.y, bx = b.x - a.x, by = b.y - a.y;
    const float h = std::clamp((px * bx + py * by) / (bx * bx + by * by), 0.0f, 1.0f);
    return length(px - bx * h, py - by * h) - radius;
}

// Triangle a, b, c (either winding).
inline float triangle(Vec2 p, Vec2 a, Vec2 b, Vec2 c)
{
    const Vec2 v[3] = {a, b, c};
    float distance = 1e9f;
    int positive = 0, negative = 0;
    for (int i = 0; i < 3; ++i) {
        const Vec2 e0 = v[i], e1 = v[(i + 1) % 3];
        distance = std::min(distance, segment(p, e0, e1, 0));
        const float cross = (e1.x - e0.x) * (p.y - e0.y) - (e1.y - e0.y) * (p.x - e0.x);
        positive += cross > 0;
        negative += cross < 0;
    }
    const bool inside = positive == 0 || negative == 0;
    return inside ? -distance : distance;
}

} // namespace Sdf
