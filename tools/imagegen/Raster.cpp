#include "Raster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

uint8_t toByte(float v)
{
    return uint8_t(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f));
}

} // namespace

Raster::Raster(int width, int height)
    : m_width(width), m_height(height), m_pixels(size_t(width) * size_t(height), Colour{0, 0, 0, 0})
{
}

void Raster::fill(const Colour& colour)
{
    std::fill(m_pixels.begin(), m_pixels.end(), colour);
}

void Raster::draw(const Shape& shape, const Colour& colour)
{
    draw(shape, colour, 0, 0, m_width, m_height);
}

void Raster::draw(const Shape& shape, const Colour& colour, int x0, int y0, int x1, int y1)
{
    x0 = std::max(x0, 0), y0 = std::max(y0, 0);
    x1 = std::min(x1, m_width), y1 = std::min(y1, m_height);
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) {
            const float distance = shape({float(x) + 0.5f, float(y) + 0.5f});
            const float coverage = std::clamp(0.5f - distance, 0.0f, 1.0f);
            if (coverage > 0)
                blend(x, y, colour, coverage);
        }
}

void Raster::set(int x, int y, const Colour& colour)
{
    if (x >= 0 && y >= 0 && x < m_width && y < m_height)
        m_pixels[size_t(y) * m_width + x] = colour;
}

Colour Raster::at(int x, int y) const
{
    return m_pixels[size_t(y) * m_width + x];
}

void Raster::blend(int x, int y, const Colour& colour, float coverage)
{
    Colour& dst = m_pixels[size_t(y) * m_width + x];
    const float srcA = colour.a * coverage;
    const float outA = srcA + dst.a * (1 - srcA);
    if (outA <= 0) {
        dst = {0, 0, 0, 0};
        return;
    }
    auto channel = [&](float s, float d) { return (s * srcA + d * dst.a * (1 - srcA)) / outA; };
    dst = {channel(colour.r, dst.r), channel(colour.g, dst.g), channel(colour.b, dst.b), outA};
}

std::vector<uint8_t> Raster::toRgba8() const
{
    std::vector<uint8_t> bytes;
    bytes.reserve(m_pixels.size() * 4);
    for (const Colour& c : m_pixels) {
        // Fully transparent pixels carry no colour, so that they compress
        // well and never bleed a stale colour through filtering.
        const bool clear = toByte(c.a) == 0;
        bytes.push_back(clear ? 0 : toByte(c.r));
        bytes.push_back(clear ? 0 : toByte(c.g));
        bytes.push_back(clear ? 0 : toByte(c.b));
        bytes.push_back(toByte(c.a));
    }
    return bytes;
}

void Raster::copyTo(jImage& image, int face, int level) const
{
    uint8_t* pixels = image.getPixels(face, level);
    if (!pixels || image.getLevelWidth(level) != m_width || image.getLevelHeight(level) != m_height)
        return;
    const std::vector<uint8_t> bytes = toRgba8();
    std::memcpy(pixels, bytes.data(), bytes.size());
}
