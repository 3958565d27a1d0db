#include "StoneTiles.h"

#include "TilingNoise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace {

constexpr int kRows = 4;
constexpr int kColumns = 2;
constexpr int kBlockWidth = StoneTiles::kSize / kColumns;
constexpr int kBlockHeight = StoneTiles::kSize / kRows;
// Half the width of a mortar joint, and the width of the bevel from the
// joint up to a block's face, in texels.
constexpr float kMortar = 2.5f;
constexpr float kBevel = 5.0f;
// Slope scale of the normal map: larger gives deeper relief.
constexpr float kRelief = 6.0f;

float smoothstep(float edge0, float edge1, float x)
{
    const float t = std::clamp((x - edge0) / (edge1 - edge0), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

float srgbToLinear(float c)
{
    return c <= 0.04045f ? c / 12.92f : std::pow((c + 0.055f) / 1.055f, 2.4f);
}

uint8_t toByte(float value)
{
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}

int wrap(int value)
{
    return (value % StoneTiles::kSize + StoneTiles::kSize) % StoneTiles::kSize;
}

// Each coarser level averages 2x2 texels of the one above; `average` turns
// the four texels into one (a normal map renormalises).
template <typename Average>
void fillMips(jImage& image, Average average)
{
    for (int level = 1; level < image.getMipLevels(); ++level) {
        const uint8_t* above = image.getPixels(0, level - 1);
        const int aboveWidth = image.getLevelWidth(level - 1);
        uint8_t* pixels = image.getPixels(0, level);
        const int width = image.getLevelWidth(level);
        for (int y = 0; y < image.getLevelHeight(level); ++y) {
            for (int x = 0; x < width; ++x) {
                const std::array<const uint8_t*, 4> quad = {above + 4 * (2 * y * aboveWidth + 2 * x),
                    above + 4 * (2 * y * aboveWidth + 2 * x + 1), above + 4 * ((2 * y + 1) * aboveWidth + 2 * x),
                    above + 4 * ((2 * y + 1) * aboveWidth + 2 * x + 1)};
                average(quad, pixels + 4 * (y * width + x));
            }
        }
    }
}

void averageColour(const std::array<const uint8_t*, 4>& quad, uint8_t* out)
{
    for (int channel = 0; channel < 4; ++channel)
        out[channel] = static_cast<uint8_t>((quad[0][channel] + quad[1][channel] + quad[2][channel] +
                                                quad[3][channel] + 2) / 4);
}

void averageNormal(const std::array<const uint8_t*, 4>& quad, uint8_t* out)
{
    float n[3] = {0.0f, 0.0f, 0.0f};
    for (const uint8_t* texel : quad)
        for (int axis = 0; axis < 3; ++axis)
            n[axis] += texel[axis] / 127.5f - 1.0f;
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    for (int axis = 0; axis < 3; ++axis)
        out[axis] = toByte((length > 0.0f ? n[axis] / length : (axis == 2 ? 1.0f : 0.0f)) * 0.5f + 0.5f);
    out[3] = 255;
}

jImage emptyImage()
{
    jImage image;
    constexpr int size = StoneTiles::kSize;
    image.create(size, size, 1, 1, jImage::fullMipChain(size, size));
    return image;
}

} // namespace

StoneTiles::StoneTiles()
{
    m_cells.reserve(kSize * kSize);
    m_height.reserve(kSize * kSize);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x)
            m_cells.push_back(cellAt(x, y));
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const Cell& cell = m_cells[y * kSize + x];
            const float face = smoothstep(kMortar, kMortar + kBevel, cell.edgeDistance);
            const float grain = tiling::fractal(float(x), float(y), kSize, 8, 4, 0);
            const float mortarGrain = tiling::fractal(float(x), float(y), kSize, 32, 2, 1);
            const float stone = 0.55f + 0.3f * grain + 0.1f * blockTone(cell);
            m_height.push_back(face * stone + (1.0f - face) * 0.1f * mortarGrain);
        }
    }
}

// The block under a texel. Joints wander a little with noise, so that the
// blocks look cut by hand rather than drawn with a ruler.
StoneTiles::Cell StoneTiles::cellAt(int x, int y)
{
    const float wobble = 2.0f * (tiling::fractal(float(x), float(y), kSize, 16, 2, 2) - 0.5f);
    Cell cell;
    cell.row = y / kBlockHeight;
    const int shifted = wrap(x + (cell.row % 2) * kBlockWidth / 2);
    cell.column = shifted / kBlockWidth;
    const int localX = shifted % kBlockWidth;
    const int localY = y % kBlockHeight;
    const float toEdge = float(std::min({localX, kBlockWidth - 1 - localX, localY, kBlockHeight - 1 - localY}));
    cell.edgeDistance = std::max(0.0f, toEdge + 0.5f + wobble);
    return cell;
}

// A per-block value in 0..1 that varies the blocks' brightness and hue.
float StoneTiles::blockTone(const Cell& cell)
{
    return tiling::lattice(cell.column, cell.row, 97);
}

float StoneTiles::heightAt(int x, int y) const
{
    return m_height[wrap(y) * kSize + wrap(x)];
}

// Display colour of one channel before the conversion to linear.
float StoneTiles::stoneColour(int x, int y, int channel) const
{
    const Cell& cell = m_cells[y * kSize + x];
    const float tone = blockTone(cell);
    const float face = smoothstep(kMortar, kMortar + kBevel, cell.edgeDistance);
    const float speckle = tiling::fractal(float(x), float(y), kSize, 64, 2, 3);
    const float mottle = tiling::fractal(float(x), float(y), kSize, 8, 3, 1);
    // Blocks: grey stone from cool to warm, darker in its hollows.
    const float warm[3] = {0.06f, 0.02f, -0.04f};
    const float block = 0.48f + 0.2f * tone + 0.22f * (mottle - 0.5f) + 0.12f * (speckle - 0.5f) +
        warm[channel] * (tone - 0.3f) + 0.3f * (heightAt(x, y) - 0.7f);
    // Mortar: a pale sandy grey, darkened by the joint's depth.
    const float sand[3] = {0.62f, 0.6f, 0.55f};
    const float mortar = sand[channel] * (0.8f + 0.25f * speckle);
    const float edgeShade = 0.75f + 0.25f * face;
    return (face * block + (1.0f - face) * mortar) * edgeShade;
}

jImage StoneTiles::albedo() const
{
    jImage image = emptyImage();
    uint8_t* pixels = image.getPixels(0, 0);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            uint8_t* pixel = pixels + 4 * (y * kSize + x);
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = toByte(srgbToLinear(stoneColour(x, y, channel)));
            pixel[3] = 255;
        }
    }
    fillMips(image, averageColour);
    return image;
}

jImage StoneTiles::normalMap() const
{
    jImage image = emptyImage();
    uint8_t* pixels = image.getPixels(0, 0);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            // Rows run down the image; +y of the normal points up it.
            const float slopeX = 0.5f * (heightAt(x + 1, y) - heightAt(x - 1, y));
            const float slopeDown = 0.5f * (heightAt(x, y + 1) - heightAt(x, y - 1));
            float n[3] = {-kRelief * slopeX, kRelief * slopeDown, 1.0f};
            const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            uint8_t* pixel = pixels + 4 * (y * kSize + x);
            for (int axis = 0; axis < 3; ++axis)
                pixel[axis] = toByte(n[axis] / length * 0.5f + 0.5f);
            pixel[3] = 255;
        }
    }
    fillMips(image, averageNormal);
    return image;
}
