#include "jImage.h"

#include <algorithm>

bool jImage::create(int width, int height, int depth, int faces, int mipLevels)
{
    clear();
    if (width <= 0 || height <= 0 || depth <= 0 || mipLevels <= 0)
        return false;
    if (faces != 1 && faces != CubeFaces)
        return false;
    if (faces == CubeFaces && (width != height || depth != 1))
        return false;
    if (mipLevels > fullMipChain(width, height, depth))
        return false;
    m_width = width;
    m_height = height;
    m_depth = depth;
    m_faces = faces;
    m_mipLevels = mipLevels;
    m_levels.resize(static_cast<size_t>(faces) * static_cast<size_t>(mipLevels));
    for (int face = 0; face < faces; ++face)
        for (int level = 0; level < mipLevels; ++level)
            m_levels[static_cast<size_t>(face * mipLevels + level)].assign(getLevelBytes(level), 0);
    return true;
}

void jImage::clear()
{
    m_width = m_height = m_depth = m_faces = m_mipLevels = 0;
    m_srgb = false;
    m_sourceFormat.clear();
    m_levels.clear();
}

jImage::Type jImage::getType() const
{
    if (m_faces == CubeFaces)
        return Type::Cube;
    if (m_depth > 1)
        return Type::Volume;
    return Type::Texture2D;
}

size_t jImage::getLevelBytes(int level) const
{
    return static_cast<size_t>(getLevelWidth(level)) * static_cast<size_t>(getLevelHeight(level)) *
           static_cast<size_t>(getLevelDepth(level)) * 4u;
}

uint8_t* jImage::getPixels(int face, int level)
{
    if (face < 0 || face >= m_faces || level < 0 || level >= m_mipLevels)
        return nullptr;
    return m_levels[static_cast<size_t>(face * m_mipLevels + level)].data();
}

const uint8_t* jImage::getPixels(int face, int level) const
{
    return const_cast<jImage*>(this)->getPixels(face, level);
}

const uint8_t* jImage::getPixel(int face, int level, int x, int y, int z) const
{
    const uint8_t* pixels = getPixels(face, level);
    if (!pixels)
        return nullptr;
    const int w = getLevelWidth(level);
    const int h = getLevelHeight(level);
    if (x < 0 || y < 0 || z < 0 || x >= w || y >= h || z >= getLevelDepth(level))
        return nullptr;
    const size_t index = (static_cast<size_t>(z) * h + y) * w + x;
    return pixels + index * 4u;
}

int jImage::fullMipChain(int width, int height, int depth)
{
    int largest = std::max({width, height, depth, 1});
    int levels = 1;
    while (largest > 1) {
        largest >>= 1;
        ++levels;
    }
    return levels;
}

int jImage::levelSize(int size, int level)
{
    if (level <= 0)
        return std::max(1, size);
    if (level >= 31)
        return 1;
    return std::max(1, size >> level);
}
