#include "OrbitCamera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using math3d::Vec3;

void expectNear(const Vec3& actual, const Vec3& expected, float tolerance = 1e-5f)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

float degreesAboutZ(const Vec3& from, const Vec3& to)
{
    return (std::atan2(to.y, to.x) - std::atan2(from.y, from.x)) * 180.0f / math3d::kPi;
}

TEST(OrbitCameraTest, LeftDragTurnsAndPitchesAboutTheObject)
{
    OrbitCamera camera;
    const Vec3 before = camera.getPosition();
    camera.onMouseDown(4, 0, 0); // right button: no drag
    camera.onMouseMove(0, 100);
    EXPECT_FALSE(camera.isDragging());
    EXPECT_EQ(camera.getPosition(), before);

    camera.onMouseDown(OrbitCamera::kButtonLeft, 10, 10);
    EXPECT_TRUE(camera.isDragging());
    camera.onMouseMove(11, 10);
    const Vec3 after = camera.getPosition();
    EXPECT_NEAR(degreesAboutZ(before, after), -0.2f, 1e-4f);
    EXPECT_NEAR(after.z, 0.0f, 1e-6f);
    EXPECT_NEAR(after.length(), 3.0f, 1e-5f);
    expectNear(camera.getUp(), {0, 0, 1});
    // Later moves are measured from the last position, not from the press.
    camera.onMouseMove(12, 10);
    EXPECT_NEAR(degreesAboutZ(before, camera.getPosition()), -0.4f, 1e-4f);
    camera.onMouseUp(OrbitCamera::kButtonLeft);
    EXPECT_FALSE(camera.isDragging());

    camera.reset();
    camera.onMouseDown(OrbitCamera::kButtonLeft, 0, 0);
    camera.onMouseMove(0, 150); // 30 degrees: the eye goes below the equator
    const float angle = math3d::radians(30.0f);
    expectNear(camera.getPosition(), {0, -3 * std::cos(angle), -3 * std::sin(angle)});
    EXPECT_NEAR(camera.getViewMatrix().transformPoint({0, 0, 0}).z, -3.0f, 1e-5f);
}

} // namespace
