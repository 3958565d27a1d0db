#include "TintedSheetCache.h"

#include <algorithm>
#include <cmath>

namespace {

uint8_t toByte(float v)
{
    return uint8_t(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f));
}

uint16_t toTexel(float v, int size)
{
    return uint16_t(std::clamp(int(std::lround(v * float(size))), 0, size));
}

} // namespace

TintedSheetCache::TintedSheetCache(QImage source)
    : m_source(source.convertToFormat(QImage::Format_ARGB32_Premultiplied))
{
}

uint32_t TintedSheetCache::colourKey(const UICanvas::Colour& colour)
{
    return uint32_t(toByte(colour.r)) << 24 | uint32_t(toByte(colour.g)) << 16 | uint32_t(toByte(colour.b)) << 8 |
           toByte(colour.a);
}

const QImage& TintedSheetCache::get(const UICanvas::Colour& colour)
{
    uint32_t key = colourKey(colour);
    if (key == 0xFFFFFFFFu || m_source.isNull())
        return m_source;
    for (const auto& [k, image] : m_tinted)
        if (k == key)
            return image;
    if (m_tinted.size() >= kMaxColours)
        m_tinted.clear();

    // Premultiplied texels times the colour (its alpha scales all four).
    const uint32_t r = key >> 24, g = (key >> 16) & 0xFF, b = (key >> 8) & 0xFF, a = key & 0xFF;
    const uint32_t mr = r * a, mg = g * a, mb = b * a;
    QImage tinted(m_source.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < m_source.height(); ++y) {
        const QRgb* in = reinterpret_cast<const QRgb*>(m_source.constScanLine(y));
        QRgb* out = reinterpret_cast<QRgb*>(tinted.scanLine(y));
        for (int x = 0; x < m_source.width(); ++x) {
            QRgb p = in[x];
            out[x] = qRgba(int(qRed(p) * mr / 65025), int(qGreen(p) * mg / 65025), int(qBlue(p) * mb / 65025),
                           int(qAlpha(p) * a / 255));
        }
    }
    m_tinted.emplace_back(key, std::move(tinted));
    return m_tinted.back().second;
}

TintedSheetCache::Sum TintedSheetCache::averageOf(const UICanvas::TexRect& tex) const
{
    int x0 = toTexel(std::min(tex.u0, tex.u1), m_source.width());
    int x1 = toTexel(std::max(tex.u0, tex.u1), m_source.width());
    int y0 = toTexel(std::min(tex.v0, tex.v1), m_source.height());
    int y1 = toTexel(std::max(tex.v0, tex.v1), m_source.height());
    // A rectangle thinner than a texel takes the texel it lies on.
    x1 = std::min(std::max(x1, x0 + 1), m_source.width());
    y1 = std::min(std::max(y1, y0 + 1), m_source.height());
    x0 = std::min(x0, x1 - 1);
    y0 = std::min(y0, y1 - 1);
    Sum sum{0, 0, 0, 0};
    if (x0 < 0 || y0 < 0)
        return sum;
    for (int y = y0; y < y1; ++y) {
        const QRgb* row = reinterpret_cast<const QRgb*>(m_source.constScanLine(y));
        for (int x = x0; x < x1; ++x) {
            sum.r += float(qRed(row[x]));
            sum.g += float(qGreen(row[x]));
            sum.b += float(qBlue(row[x]));
            sum.a += float(qAlpha(row[x]));
        }
    }
    float n = float((x1 - x0) * (y1 - y0)) * 255.0f;
    return {sum.r / n, sum.g / n, sum.b / n, sum.a / n};
}

QColor TintedSheetCache::average(const UICanvas::TexRect& tex, const UICanvas::Colour& colour)
{
    if (m_source.isNull())
        return QColor::fromRgbF(colour.r, colour.g, colour.b, colour.a);
    uint64_t key = uint64_t(toTexel(tex.u0, 4096)) << 48 | uint64_t(toTexel(tex.v0, 4096)) << 32 |
                   uint64_t(toTexel(tex.u1, 4096)) << 16 | toTexel(tex.v1, 4096);
    auto it = m_averages.find(key);
    if (it == m_averages.end())
        it = m_averages.emplace(key, averageOf(tex)).first;
    const Sum& s = it->second;
    float alpha = s.a * std::clamp(colour.a, 0.0f, 1.0f);
    if (s.a <= 0.0f)
        return QColor(0, 0, 0, 0);
    // Premultiplied sums back to straight colour, then tinted.
    return QColor::fromRgbF(std::clamp(s.r / s.a * colour.r, 0.0f, 1.0f), std::clamp(s.g / s.a * colour.g, 0.0f, 1.0f),
                            std::clamp(s.b / s.a * colour.b, 0.0f, 1.0f), alpha);
}
