#include "SkyPainter.h"

#include "MipBuilder.h"

#include <algorithm>
#include <cmath>

namespace {

const Colour Zenith{0.20f, 0.40f, 0.80f, 1};
const Colour SkyHorizon{0.72f, 0.83f, 0.95f, 1};
const Colour GroundHorizon{0.47f, 0.44f, 0.40f, 1};
const Colour Ground{0.20f, 0.18f, 0.16f, 1};
const Colour SunColour{1.0f, 0.96f, 0.86f, 1};

// Points to the sun: about 35 degrees above the horizon.
const float Sun[3] = {0.55f, 0.57f, 0.61f};

float smoothstep(float edge0, float edge1, float x)
{
    const float t = std::clamp((x - edge0) / (edge1 - edge0), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

Colour add(const Colour& c, const Colour& light, float amount)
{
    return {std::min(1.0f, c.r + light.r * amount), std::min(1.0f, c.g + light.g * amount),
            std::min(1.0f, c.b + light.b * amount), 1};
}

} // namespace

void SkyPainter::directionOf(int face, int size, int x, int y, float direction[3])
{
    const float sc = 2.0f * (float(x) + 0.5f) / float(size) - 1.0f;
    const float tc = 2.0f * (float(y) + 0.5f) / float(size) - 1.0f;
    const float table[6][3] = {
        {1, -tc, -sc}, {-1, -tc, sc}, {sc, 1, tc}, {sc, -1, -tc}, {sc, -tc, 1}, {-sc, -tc, -1},
    };
    std::copy(table[face], table[face] + 3, direction);
}

Colour SkyPainter::colourAt(float x, float y, float z)
{
    const float length = std::sqrt(x * x + y * y + z * z);
    x /= length, y /= length, z /= length;
    const Colour sky = SkyHorizon.mix(Zenith, std::pow(std::max(y, 0.0f), 0.6f));
    const Colour ground = GroundHorizon.mix(Ground, std::pow(std::clamp(-y * 4.0f, 0.0f, 1.0f), 0.7f));
    Colour colour = ground.mix(sky, smoothstep(-0.03f, 0.03f, y));

    const float sunLength = std::sqrt(Sun[0] * Sun[0] + Sun[1] * Sun[1] + Sun[2] * Sun[2]);
    const float cosine = (x * Sun[0] + y * Sun[1] + z * Sun[2]) / sunLength;
    const float disc = smoothstep(0.9955f, 0.9975f, cosine);
    const float glow = std::pow(std::max(cosine, 0.0f), 48.0f) * 0.55f + std::pow(std::max(cosine, 0.0f), 6.0f) * 0.12f;
    colour = add(colour, SunColour, glow);
    return colour.mix(SunColour, disc);
}

jImage SkyPainter::paint()
{
    jImage image;
    image.create(FaceSize, FaceSize, 1, jImage::CubeFaces, jImage::fullMipChain(FaceSize, FaceSize));
    // Four samples per texel keep the sun's edge and the horizon smooth.
    const int samples = 2;
    for (int face = 0; face < jImage::CubeFaces; ++face) {
        uint8_t* pixels = image.getPixels(face, 0);
        for (int y = 0; y < FaceSize; ++y)
            for (int x = 0; x < FaceSize; ++x) {
                float sum[3] = {0, 0, 0};
                for (int sy = 0; sy < samples; ++sy)
                    for (int sx = 0; sx < samples; ++sx) {
                        float d[3];
                        directionOf(face, FaceSize * samples, x * samples + sx, y * samples + sy, d);
                        const Colour c = colourAt(d[0], d[1], d[2]);
                        sum[0] += c.r, sum[1] += c.g, sum[2] += c.b;
                    }
                uint8_t* dst = pixels + (size_t(y) * FaceSize + x) * 4;
                for (int c = 0; c < 3; ++c)
                    dst[c] = uint8_t(std::lround(sum[c] / (samples * samples) * 255.0f));
                dst[3] = 255;
            }
    }
    MipBuilder::build(image);
    return image;
}
