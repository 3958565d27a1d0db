#include "OrbitCamera.h"

using math3d::Mat4;
using math3d::Quat;
using math3d::Vec3;

namespace {

// Local x up (world z), local y left (world -x), local z back (world -y).
constexpr Quat kFrontView{0.5f, 0.5f, -0.5f, 0.5f};

} // namespace

void OrbitCamera::reset(float distance)
{
    m_rotation = kFrontView;
    m_position = m_rotation.column(2) * distance;
}

void OrbitCamera::orbit(float yawDegrees, float pitchDegrees)
{
    if (yawDegrees == 0 && pitchDegrees == 0)
        return;
    const float distance = m_position.length();
    const Quat yaw = Quat::fromAxisAngle({0, 0, 1}, -yawDegrees);
    const Quat pitch = Quat::fromAxisAngle({0, 1, 0}, -pitchDegrees);
    m_rotation = (yaw * m_rotation * pitch).normalized();
    m_position = m_rotation.column(2) * distance;
}

void OrbitCamera::dolly(float step)
{
    const Vec3 moved = m_position + getBack() * step;
    if (moved.dot(getBack()) < kMinDistance)
        return;
    m_position = moved;
}

void OrbitCamera::onMouseDown(int buttons, int x, int y)
{
    if (!(buttons & kButtonLeft))
        return;
    m_lastX = x;
    m_lastY = y;
    m_dragging = true;
}

void OrbitCamera::onMouseUp(int buttons)
{
    if (buttons & kButtonLeft)
        m_dragging = false;
}

void OrbitCamera::onMouseMove(int x, int y)
{
    if (!m_dragging)
        return;
    const int dx = x - m_lastX;
    const int dy = y - m_lastY;
    m_lastX = x;
    m_lastY = y;
    orbit(float(dx) * kDegreesPerPixel, float(dy) * kDegreesPerPixel);
}

void OrbitCamera::onMouseWheel(int flags)
{
    if (flags & kWheelOut)
        dolly(kDollyStep);
    else if (flags & kWheelIn)
        dolly(-kDollyStep);
}

Mat4 OrbitCamera::getViewMatrix() const
{
    return Mat4::view(m_position, getRight(), getUp(), getBack());
}

Mat4 OrbitCamera::getProjectionMatrix(float aspect) const
{
    return Mat4::perspective(kFieldOfView, aspect, kNear, kFar);
}
