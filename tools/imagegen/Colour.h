#pragma once

// A straight-alpha RGBA colour with components in 0..1.
struct Colour {
    float r = 0, g = 0, b = 0, a = 1;

    static Colour grey(float v, float alpha = 1) { return {v, v, v, alpha}; }
    Colour withAlpha(float alpha) const { return {r, g, b, alpha}; }
    Colour mix(const Colour& other, float t) const
    {
        return {r + (other.r - r) * t, g + (other.g - g) * t, b + (other.b - b) * t, a + (other.a - a) * t};
    }
};
