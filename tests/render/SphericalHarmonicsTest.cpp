#include "Render.h"
#include "SphericalHarmonics.h"
#include "jImage.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

using math3d::Vec3;

constexpr int kFace = 32;
const float kSqrt4Pi = std::sqrt(4.0f * math3d::kPi);
// The integral of x * x over the sphere is 4 pi / 3; Y11 = 0.488603 x.
const float kBand1 = 0.488603f * 4.0f * math3d::kPi / 3.0f;

// A cube map whose texel colours are a function of the texel's direction.
jImage cubeOf(const std::function<Vec3(const Vec3&)>& colourAt)
{
    jImage cube;
    cube.create(kFace, kFace, 1, jImage::CubeFaces, 1);
    for (int face = 0; face < jImage::CubeFaces; ++face)
        for (int y = 0; y < kFace; ++y)
            for (int x = 0; x < kFace; ++x) {
                const Vec3 c = colourAt(SphericalHarmonics::texelDirection(face, x, y, kFace));
                uint8_t* p = cube.getPixels(face, 0) + (size_t(y) * kFace + size_t(x)) * 4;
                p[0] = uint8_t(std::lround(c.x * 255));
                p[1] = uint8_t(std::lround(c.y * 255));
                p[2] = uint8_t(std::lround(c.z * 255));
                p[3] = 255;
            }
    return cube;
}

void expectNear(const Vec3& actual, const Vec3& expected, float tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

TEST(SphericalHarmonicsTest, ProjectsConstantLinearAndSrgbSkies)
{
    // red = (1 + x) / 2, green = (1 + y) / 2, blue = (1 + z) / 2
    const auto linear = [](const Vec3& d) { return Vec3{1 + d.x, 1 + d.y, 1 + d.z} * 0.5f; };
    EnvironmentCoefficients sh;
    ASSERT_TRUE(Render::calculateEnvironmentCoefficients(cubeOf(linear), sh));
    const float half = 0.5f * kBand1;
    const float tolerance = 0.01f;
    expectNear(sh[0], Vec3{1, 1, 1} * (0.5f * kSqrt4Pi), tolerance);
    expectNear(sh[1], {0, half, 0}, tolerance); // Y1-1 follows y
    expectNear(sh[2], {0, 0, half}, tolerance); // Y10 follows z
    expectNear(sh[3], {half, 0, 0}, tolerance); // Y11 follows x
    for (size_t i = 4; i < 9; ++i)
        expectNear(sh[i], {0, 0, 0}, tolerance);

    // 128/255 in sRGB is 0.2158 linear; a constant sky has only the DC term.
    jImage grey = cubeOf([](const Vec3&) { return Vec3{0.5f, 0.5f, 0.5f}; });
    grey.setSrgb(true);
    ASSERT_TRUE(SphericalHarmonics::project(grey, sh));
    EXPECT_NEAR(sh[0].x, 0.21586f * kSqrt4Pi, 1e-3f);
    for (size_t i = 1; i < 9; ++i)
        expectNear(sh[i], {0, 0, 0}, 1e-4f);
}

TEST(SphericalHarmonicsTest, OnlyCubeMapsAreProjected)
{
    jImage flat;
    flat.create(4, 4, 1, 1, 1);
    EnvironmentCoefficients sh{};
    EXPECT_FALSE(Render::calculateEnvironmentCoefficients(flat, sh));

    jLog::Capture log;
    EXPECT_FALSE(Render::calculateEnvironmentCoefficients("data/core/textures/common/white.dds", sh));
    EXPECT_EQ(log.text(),
        "error: Render::calculateEnvironmentCoefficients: \"data/core/textures/common/white.dds\" is not a cube map\n");
}

} // namespace
