#include "TilingNoise.h"

#include <cmath>
#include <cstdint>

namespace tiling {

float lattice(int x, int y, int z)
{
    uint32_t h = static_cast<uint32_t>(x) * 374761393u + static_cast<uint32_t>(y) * 668265263u +
        static_cast<uint32_t>(z) * 2147483647u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return static_cast<float>((h ^ (h >> 16)) & 0xFFFF) / 65535.0f;
}

float noise(float x, float y, float z, int cells)
{
    const int x0 = static_cast<int>(std::floor(x));
    const int y0 = static_cast<int>(std::floor(y));
    const int z0 = static_cast<int>(std::floor(z));
    auto fade = [](float t) { return t * t * (3.0f - 2.0f * t); };
    const float fx = fade(x - x0);
    const float fy = fade(y - y0);
    const float fz = fade(z - z0);
    auto at = [&](int dx, int dy, int dz) {
        return lattice((x0 + dx) % cells, (y0 + dy) % cells, (z0 + dz) % cells);
    };
    auto mix = [](float a, float b, float t) { return a + (b - a) * t; };
    const float x00 = mix(at(0, 0, 0), at(1, 0, 0), fx);
    const float x10 = mix(at(0, 1, 0), at(1, 1, 0), fx);
    const float x01 = mix(at(0, 0, 1), at(1, 0, 1), fx);
    const float x11 = mix(at(0, 1, 1), at(1, 1, 1), fx);
    return mix(mix(x00, x10, fy), mix(x01, x11, fy), fz);
}

float fractal(float x, float y, int size, int cells, int octaves, int layer)
{
    float sum = 0.0f;
    float total = 0.0f;
    float weight = 1.0f;
    for (int octave = 0; octave < octaves; ++octave) {
        const int octaveCells = cells << octave;
        const float scale = static_cast<float>(octaveCells) / static_cast<float>(size);
        sum += weight * noise(x * scale, y * scale, static_cast<float>(layer), octaveCells);
        total += weight;
        weight *= 0.5f;
    }
    return sum / total;
}

} // namespace tiling
