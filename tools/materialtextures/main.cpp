// Writes the block library's default textures into the data root given as
// the first argument (the repository root by default):
//   data/core/textures/common/flat_normal.dds  tangent-space +z, full mip chain
//   data/core/textures/common/noise3d.dds      16^3 value noise volume
//   data/textures/stone_tiles.dds              stone blocks and mortar, albedo
//   data/textures/stone_tiles_normal.dds       the same blocks' normal map
// The output is the same on every run.
#include "DdsWriter.h"
#include "StoneTiles.h"
#include "TilingNoise.h"
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
                        sum += weight * tiling::noise(x * scale + channel * 7, y * scale, z * scale, cells);
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
    const StoneTiles stone;
    ok &= DdsWriter::save(stone.albedo(), "data/textures/stone_tiles.dds");
    ok &= DdsWriter::save(stone.normalMap(), "data/textures/stone_tiles_normal.dds");
    if (!ok)
        std::fprintf(stderr, "materialtextures: writing failed\n");
    return ok ? 0 : 1;
}
