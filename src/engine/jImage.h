#pragma once

#include "jString.h"

#include <cstddef>
#include <cstdint>

// A decoded image: RGBA8 pixels for every face and mip level.
//
// A plain image has one face and depth 1; a cube map has six faces in the
// order +X, -X, +Y, -Y, +Z, -Z; a volume has one face and depth > 1. Level l
// of a dimension n is max(1, n >> l). A level's pixels are stored row by
// row, top row first, slice after slice for volumes, four bytes per pixel.
class jImage {
public:
    enum class Type { Texture2D, Cube, Volume };

    static constexpr int CubeFaces = 6;

    jImage() = default;

    // Allocates zeroed pixels for the given shape. False (and the image left
    // empty) when a dimension is not positive, faces is neither 1 nor 6, a
    // cube is not square or has depth, or mipLevels exceeds the chain.
    bool create(int width, int height, int depth, int faces, int mipLevels);
    void clear();
    bool isEmpty() const { return m_levels.empty(); }

    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    int getDepth() const { return m_depth; }
    int getFaces() const { return m_faces; }
    int getMipLevels() const { return m_mipLevels; }
    Type getType() const;

    int getLevelWidth(int level) const { return levelSize(m_width, level); }
    int getLevelHeight(int level) const { return levelSize(m_height, level); }
    int getLevelDepth(int level) const { return levelSize(m_depth, level); }
    // Bytes of one face's level: width * height * depth * 4.
    size_t getLevelBytes(int level) const;

    // Pixels of one face and level; null when out of range.
    uint8_t* getPixels(int face, int level);
    const uint8_t* getPixels(int face, int level) const;
    // One pixel's four bytes (RGBA); null when out of range.
    const uint8_t* getPixel(int face, int level, int x, int y, int z = 0) const;

    // The encoding the image was read from ("BGRA8", "DXT1", "PNG", ...).
    const jString& getSourceFormat() const { return m_sourceFormat; }
    void setSourceFormat(const jString& format) { m_sourceFormat = format; }
    // True when the file declared its colours as sRGB.
    bool isSrgb() const { return m_srgb; }
    void setSrgb(bool srgb) { m_srgb = srgb; }

    // Number of levels of a full chain down to 1x1x1.
    static int fullMipChain(int width, int height, int depth = 1);
    static int levelSize(int size, int level);

private:
    int m_width = 0;
    int m_height = 0;
    int m_depth = 0;
    int m_faces = 0;
    int m_mipLevels = 0;
    bool m_srgb = false;
    jString m_sourceFormat;
    // Indexed face * m_mipLevels + level.
    jVector<jVector<uint8_t>> m_levels;
};
