#include "SphericalHarmonics.h"

#include "jImage.h"

#include <cmath>

using math3d::Vec3;

namespace {

float srgbToLinear(float c)
{
    return c <= 0.04045f ? c / 12.92f : std::pow((c + 0.055f) / 1.055f, 2.4f);
}

// The solid angle of the face region from (0,0) to (x,y), face at distance 1.
float areaElement(float x, float y)
{
    return std::atan2(x * y, std::sqrt(x * x + y * y + 1.0f));
}

// Face coordinates in [-1, 1] of a texel's centre.
float faceCoordinate(int index, int size)
{
    return 2.0f * (float(index) + 0.5f) / float(size) - 1.0f;
}

Vec3 texelColour(const uint8_t* pixel, bool srgb)
{
    Vec3 colour{pixel[0] / 255.0f, pixel[1] / 255.0f, pixel[2] / 255.0f};
    if (srgb)
        colour = {srgbToLinear(colour.x), srgbToLinear(colour.y), srgbToLinear(colour.z)};
    return colour;
}

} // namespace

std::array<float, 9> SphericalHarmonics::basis(const Vec3& d)
{
    return {0.282095f, 0.488603f * d.y, 0.488603f * d.z, 0.488603f * d.x, 1.092548f * d.x * d.y,
        1.092548f * d.y * d.z, 0.315392f * (3.0f * d.z * d.z - 1.0f), 1.092548f * d.x * d.z,
        0.546274f * (d.x * d.x - d.y * d.y)};
}

Vec3 SphericalHarmonics::texelDirection(int face, int x, int y, int size)
{
    const float s = faceCoordinate(x, size);
    const float t = faceCoordinate(y, size);
    Vec3 d;
    switch (face) {
    case 0: d = {1, -t, -s}; break;
    case 1: d = {-1, -t, s}; break;
    case 2: d = {s, 1, t}; break;
    case 3: d = {s, -1, -t}; break;
    case 4: d = {s, -t, 1}; break;
    default: d = {-s, -t, -1}; break;
    }
    return d.normalized();
}

float SphericalHarmonics::texelSolidAngle(int x, int y, int size)
{
    const float step = 1.0f / float(size);
    const float x0 = faceCoordinate(x, size) - step, x1 = x0 + 2 * step;
    const float y0 = faceCoordinate(y, size) - step, y1 = y0 + 2 * step;
    return areaElement(x0, y0) - areaElement(x0, y1) - areaElement(x1, y0) + areaElement(x1, y1);
}

bool SphericalHarmonics::project(const jImage& cube, EnvironmentCoefficients& out)
{
    if (cube.getType() != jImage::Type::Cube)
        return false;
    const int size = cube.getWidth();
    // Sums in double: a 512-texel face adds up 1.5 million small terms.
    std::array<std::array<double, 3>, 9> sums{};
    for (int face = 0; face < jImage::CubeFaces; ++face)
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const Vec3 colour = texelColour(cube.getPixel(face, 0, x, y), cube.isSrgb());
                const float weight = texelSolidAngle(x, y, size);
                const std::array<float, 9> b = basis(texelDirection(face, x, y, size));
                for (size_t i = 0; i < 9; ++i) {
                    const double w = double(b[i]) * weight;
                    sums[i][0] += colour.x * w;
                    sums[i][1] += colour.y * w;
                    sums[i][2] += colour.z * w;
                }
            }
    for (size_t i = 0; i < 9; ++i)
        out[i] = {float(sums[i][0]), float(sums[i][1]), float(sums[i][2])};
    return true;
}
