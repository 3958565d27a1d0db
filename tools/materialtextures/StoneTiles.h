#pragma once

#include "jImage.h"

#include <vector>

// The stone block textures of the textured sample materials: blocks laid in
// a running bond (each row shifted by half a block) with recessed mortar
// joints, 256x256, tiling, with a full mip chain.
//
// One height field drives both images: the albedo darkens where the surface
// is low, and the normal map is the height field's slope. Colours are stored
// as linear values (the renderer reads BGRA8 files as linear and writes
// display colours), so the sphere shows the intended tones.
class StoneTiles {
public:
    static constexpr int kSize = 256;

    StoneTiles();

    jImage albedo() const;
    // Tangent-space normals, +y pointing up the image (towards row 0), z out.
    jImage normalMap() const;

private:
    struct Cell {
        int row = 0;
        int column = 0;
        // Texels from the texel to the block's nearest edge.
        float edgeDistance = 0.0f;
    };

    static Cell cellAt(int x, int y);
    static float blockTone(const Cell& cell);
    float heightAt(int x, int y) const;
    float stoneColour(int x, int y, int channel) const;

    std::vector<Cell> m_cells;
    std::vector<float> m_height;
};
