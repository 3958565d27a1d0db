#include "MipBuilder.h"

#include <cmath>

void MipBuilder::build(jImage& image)
{
    for (int face = 0; face < image.getFaces(); ++face)
        for (int level = 1; level < image.getMipLevels(); ++level)
            downsample(image, face, level, image.getPixels(face, level));
}

void MipBuilder::downsample(const jImage& image, int face, int level, uint8_t* out)
{
    const int w = image.getLevelWidth(level), h = image.getLevelHeight(level), d = image.getLevelDepth(level);
    const int pw = image.getLevelWidth(level - 1), ph = image.getLevelHeight(level - 1);
    const int pd = image.getLevelDepth(level - 1);
    for (int z = 0; z < d; ++z)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                double sum[4] = {0, 0, 0, 0};
                int count = 0;
                for (int dz = 0; dz < (pd > d ? 2 : 1); ++dz)
                    for (int dy = 0; dy < (ph > h ? 2 : 1); ++dy)
                        for (int dx = 0; dx < (pw > w ? 2 : 1); ++dx) {
                            const uint8_t* p = image.getPixel(face, level - 1, x * (pw > w ? 2 : 1) + dx,
                                                              y * (ph > h ? 2 : 1) + dy, z * (pd > d ? 2 : 1) + dz);
                            const double alpha = p[3] / 255.0;
                            for (int c = 0; c < 3; ++c)
                                sum[c] += p[c] * alpha;
                            sum[3] += alpha;
                            ++count;
                        }
                uint8_t* dst = out + ((size_t(z) * h + y) * w + x) * 4;
                for (int c = 0; c < 3; ++c)
                    dst[c] = sum[3] > 0 ? uint8_t(std::lround(sum[c] / sum[3])) : 0;
                dst[3] = uint8_t(std::lround(sum[3] * 255.0 / count));
            }
}
