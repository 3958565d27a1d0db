#pragma once

#include "Math3D.h"

// The preview camera: it orbits the origin, where the preview object stands,
// and moves along its view axis. World z is up. The camera's rotation maps
// its local axes to the world: local x is up, local y points left and local
// z back from the origin to the eye, so the eye sits at column 2 times the
// distance. Angles are in degrees.
//
// The mouse handlers take absolute pointer positions and the button and
// wheel flags of the UI events (1 = left button; wheel 8 = zoom in,
// 16 = zoom out), so a viewport widget forwards its events unchanged.
class OrbitCamera {
public:
    static constexpr float kDefaultDistance = 3.0f;
    static constexpr float kDegreesPerPixel = 0.2f;
    static constexpr float kDollyStep = 0.1f;
    // A dolly step that would bring the eye closer than this is ignored.
    static constexpr float kMinDistance = 0.5f;
    static constexpr float kFieldOfView = 45.0f;
    static constexpr float kNear = 0.05f;
    static constexpr float kFar = 100.0f;

    enum : int { kButtonLeft = 1, kWheelIn = 8, kWheelOut = 16 };

    OrbitCamera() { reset(); }

    // In front of the object (on the -y side), level with it.
    void reset(float distance = kDefaultDistance);

    // q = rotation(z, -yaw) * q * rotation(y, -pitch); the eye keeps its
    // distance. A positive pitch lowers the eye.
    void orbit(float yawDegrees, float pitchDegrees);
    // Moves the eye along its view axis: positive steps away from the object.
    void dolly(float step);

    void onMouseDown(int buttons, int x, int y);
    void onMouseUp(int buttons);
    void onMouseMove(int x, int y);
    void onMouseWheel(int flags);
    bool isDragging() const { return m_dragging; }

    const math3d::Vec3& getPosition() const { return m_position; }
    const math3d::Quat& getRotation() const { return m_rotation; }
    void setPosition(const math3d::Vec3& position) { m_position = position; }
    void setRotation(const math3d::Quat& rotation) { m_rotation = rotation; }
    float getDistance() const { return m_position.length(); }

    math3d::Vec3 getUp() const { return m_rotation.column(0); }
    math3d::Vec3 getRight() const { return -m_rotation.column(1); }
    math3d::Vec3 getBack() const { return m_rotation.column(2); }

    math3d::Mat4 getViewMatrix() const;
    math3d::Mat4 getProjectionMatrix(float aspect) const;

private:
    math3d::Vec3 m_position;
    math3d::Quat m_rotation;
    bool m_dragging = false;
    int m_lastX = 0;
    int m_lastY = 0;
};
