#include "CorpusWriter.h"

#include "DdsWriter.h"
#include "MipBuilder.h"
#include "jKit.h"

#include <algorithm>

namespace {

// Deterministic texture content: a pattern that differs per face and slice
// so that layout mistakes show up in decoded seeds.
jImage makePattern(int width, int height, int depth, int faces, int mips)
{
    jImage image;
    image.create(width, height, depth, faces, mips);
    for (int face = 0; face < faces; ++face) {
        uint8_t* pixels = image.getPixels(face, 0);
        for (int z = 0; z < depth; ++z)
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    uint8_t* p = pixels + ((size_t(z) * height + y) * width + x) * 4;
                    p[0] = uint8_t(x * 255 / std::max(1, width - 1));
                    p[1] = uint8_t(y * 255 / std::max(1, height - 1));
                    p[2] = uint8_t(face * 40 + z * 60);
                    p[3] = uint8_t((x + y) % 2 ? 255 : 128);
                }
    }
    MipBuilder::build(image);
    return image;
}

struct Seed {
    const char* name;
    int width, height, depth, faces, mips;
    DdsWriter::Format format;
    bool dx10;
};

} // namespace

bool CorpusWriter::write(const jString& folder)
{
    using F = DdsWriter::Format;
    const Seed seeds[] = {
        {"bgra8_mips.dds", 8, 4, 1, 1, 4, F::BGRA8, false},
        {"rgba8.dds", 4, 4, 1, 1, 1, F::RGBA8, false},
        {"bgr8_odd.dds", 5, 3, 1, 1, 3, F::BGR8, false},
        {"dxt1_mips.dds", 8, 8, 1, 1, 4, F::BC1, false},
        {"dxt3.dds", 8, 4, 1, 1, 1, F::BC2, false},
        {"dxt5_odd.dds", 6, 5, 1, 1, 3, F::BC3, false},
        {"bgra8_cube.dds", 4, 4, 1, 6, 3, F::BGRA8, false},
        {"dxt1_cube.dds", 4, 4, 1, 6, 1, F::BC1, false},
        {"bgra8_volume.dds", 4, 4, 4, 1, 3, F::BGRA8, false},
        {"dxt5_volume.dds", 4, 4, 2, 1, 2, F::BC3, false},
        {"dx10_rgba8.dds", 4, 2, 1, 1, 2, F::RGBA8, true},
        {"dx10_bc1_cube.dds", 8, 8, 1, 6, 2, F::BC1, true},
        {"dx10_bc3_volume.dds", 4, 4, 2, 1, 1, F::BC3, true},
        {"dx10_bgra8.dds", 3, 3, 1, 1, 1, F::BGRA8, true},
    };
    for (const Seed& seed : seeds) {
        const jImage image = makePattern(seed.width, seed.height, seed.depth, seed.faces, seed.mips);
        DdsWriter::Options options;
        options.format = seed.format;
        options.dx10Header = seed.dx10;
        if (!DdsWriter::save(image, jKit::joinPath(folder, seed.name), options))
            return false;
    }
    return true;
}
