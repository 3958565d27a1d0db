#pragma once

#include <array>
#include <cmath>

// The small vector algebra of the preview: 3-vectors, unit quaternions and
// column-major 4x4 matrices as OpenGL takes them.
namespace math3d {

constexpr float kPi = 3.14159265358979323846f;

inline float radians(float degrees)
{
    return degrees * kPi / 180.0f;
}

struct Vec3 {
    float x = 0, y = 0, z = 0;

    Vec3 operator+(const Vec3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    Vec3 operator-(const Vec3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    Vec3 operator*(float s) const { return {x * s, y * s, z * s}; }
    Vec3 operator-() const { return {-x, -y, -z}; }
    bool operator==(const Vec3&) const = default;
    float dot(const Vec3& o) const { return x * o.x + y * o.y + z * o.z; }
    Vec3 cross(const Vec3& o) const { return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x}; }
    float length() const { return std::sqrt(dot(*this)); }
    Vec3 normalized() const
    {
        const float l = length();
        return l > 0 ? *this * (1.0f / l) : *this;
    }
};

// A rotation (w + xi + yj + zk); the product a * b applies b first.
struct Quat {
    float w = 1, x = 0, y = 0, z = 0;

    bool operator==(const Quat&) const = default;

    // Rotation by angleDegrees about a unit axis (right-handed).
    static Quat fromAxisAngle(const Vec3& axis, float angleDegrees)
    {
        const float half = radians(angleDegrees) * 0.5f;
        const float s = std::sin(half);
        return {std::cos(half), axis.x * s, axis.y * s, axis.z * s};
    }

    Quat operator*(const Quat& o) const
    {
        return {w * o.w - x * o.x - y * o.y - z * o.z, w * o.x + x * o.w + y * o.z - z * o.y,
            w * o.y - x * o.z + y * o.w + z * o.x, w * o.z + x * o.y - y * o.x + z * o.w};
    }

    Quat normalized() const
    {
        const float l = std::sqrt(w * w + x * x + y * y + z * z);
        return l > 0 ? Quat{w / l, x / l, y / l, z / l} : Quat{};
    }

    // Column c of the rotation matrix: the image of the c-th basis vector.
    Vec3 column(int c) const
    {
        switch (c) {
        case 0: return {1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)};
        case 1: return {2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)};
        default: return {2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)};
        }
    }

    Vec3 rotate(const Vec3& v) const { return column(0) * v.x + column(1) * v.y + column(2) * v.z; }
};

// Column-major: m[column * 4 + row].
struct Mat4 {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    float& at(int row, int column) { return m[size_t(column * 4 + row)]; }
    float at(int row, int column) const { return m[size_t(column * 4 + row)]; }
    const float* data() const { return m.data(); }

    Mat4 operator*(const Mat4& o) const
    {
        Mat4 r;
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column) {
                float sum = 0;
                for (int k = 0; k < 4; ++k)
                    sum += at(row, k) * o.at(k, column);
                r.at(row, column) = sum;
            }
        return r;
    }

    // Transforms a point (w = 1) and divides by w.
    Vec3 transformPoint(const Vec3& p) const
    {
        const float x = at(0, 0) * p.x + at(0, 1) * p.y + at(0, 2) * p.z + at(0, 3);
        const float y = at(1, 0) * p.x + at(1, 1) * p.y + at(1, 2) * p.z + at(1, 3);
        const float z = at(2, 0) * p.x + at(2, 1) * p.y + at(2, 2) * p.z + at(2, 3);
        const float w = at(3, 0) * p.x + at(3, 1) * p.y + at(3, 2) * p.z + at(3, 3);
        return {x / w, y / w, z / w};
    }

    static Mat4 perspective(float fovYDegrees, float aspect, float zNear, float zFar)
    {
        const float f = 1.0f / std::tan(radians(fovYDegrees) * 0.5f);
        Mat4 r;
        r.m.fill(0);
        r.at(0, 0) = f / aspect;
        r.at(1, 1) = f;
        r.at(2, 2) = (zFar + zNear) / (zNear - zFar);
        r.at(2, 3) = 2 * zFar * zNear / (zNear - zFar);
        r.at(3, 2) = -1;
        return r;
    }

    // World to view for an eye at position with the given right, up and
    // back (opposite of the viewing direction) axes.
    static Mat4 view(const Vec3& position, const Vec3& right, const Vec3& up, const Vec3& back)
    {
        Mat4 r;
        const Vec3 axes[3] = {right, up, back};
        for (int row = 0; row < 3; ++row) {
            r.at(row, 0) = axes[row].x;
            r.at(row, 1) = axes[row].y;
            r.at(row, 2) = axes[row].z;
            r.at(row, 3) = -axes[row].dot(position);
        }
        return r;
    }
};

} // namespace math3d
