// Writes the block library's default textures into the data root given as
// the first argument (the repository root by default):
//   data/core/textures/common/flat_normal.dds  tangent-space +z, full mip chain
//   data/core/textures/common/noise3d.dds      16^3 value noise volume
#include "DdsWriter.h"
#include "jDir.h"
#include "jImage.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

jImage flatNormal()
{
    jImage image;
    image.create(4, 4, 1, 1, jImage::fullMipChain(4, 4));
    for (int level = 0; level < image.getMipLevels(); ++level) {
        uint8_t* pixels = image.getPixels(0, level);
        for (size_t i = 0; i < image.getLevelBytes(level); i += 4) {
            pixels[i] = 128;
            pixels[i + 1] = 128;
            pixels[i + 2] = 255;
            pixels[i + 3] = 255;
        }
    }
    return image;
}

// A repeatable lattice value in 0..1.
float lattice(int x, int y, int z)
{
    uint32_t h = static_cast<uint32_t>(x) * 374761393u + static_cast<uint32_t>(y) * 668265263u +
        static_cast<uint32_t>(z) * 2147483647u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return static_cast<float>((h ^ (h >> 16)) & 0xFFFF) / 65535.0f;
}

// Smoothly interpolated lattice noise of period `cells`, tiling in x, y, z.
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

// Four octaves of tiling noise in red, green and blue (each channel its own
// offset), alpha opaque.
jImage noiseVolume()
{
    constexpr int size = 16;
    jImage image;
    image.create(size, size, size, 1, 1);
    uint8_t* pixels = image.getPixels(0, 0);
    for (int z = 0; z < size; ++z) {
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                uint8_t* pixel = pixels + 4 * ((z * size + y) * size + x);
                for (int channel = 0; channel < 3; ++channel) {
                    float sum = 0.0f;
                    float weight = 0.5f;
                    for (int octave = 0; octave < 4; ++octave) {
                        const int cells = 2 << octave;
                        const float scale = static_cast<float>(cells) / size;
                        sum += weight * noise(x * scale + channel * 7, y * scale, z * scale, cells);
                        weight *= 0.5f;
                    }
                    pixel[channel] = static_cast<uint8_t>(std::lround(std::fmin(sum / 0.9375f, 1.0f) * 255.0f));
                }
                pixel[3] = 255;
            }
        }
    }
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1)
        jDir::setProjectRoot(argv[1]);
    bool ok = DdsWriter::save(flatNormal(), "data/core/textures/common/flat_normal.dds");
    ok &= DdsWriter::save(noiseVolume(), "data/core/textures/common/noise3d.dds");
    if (!ok)
        std::fprintf(stderr, "materialtextures: writing failed\n");
    return ok ? 0 : 1;
}
