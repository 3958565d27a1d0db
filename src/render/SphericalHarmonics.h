#pragma once

#include "Math3D.h"

#include <array>

class jImage;

// The nine coefficients (bands 0 to 2) of the environment's radiance in the
// real spherical-harmonic basis, one RGB triple each, in the order
// Y00, Y1-1 (y), Y10 (z), Y11 (x), Y2-2 (xy), Y2-1 (yz), Y20 (3z^2-1),
// Y21 (xz), Y22 (x^2-y^2). Each coefficient is the integral of radiance
// times the basis function over the sphere, so a constant colour c gives
// c * sqrt(4 pi) in the first one and zero elsewhere. Directions are those
// of the cube map (OpenGL face layout).
using EnvironmentCoefficients = std::array<math3d::Vec3, 9>;

class SphericalHarmonics {
public:
    // The basis functions at a unit direction, in the order above.
    static std::array<float, 9> basis(const math3d::Vec3& direction);

    // Projects the first level of a cube map, each texel weighted by the
    // solid angle it covers. sRGB images are converted to linear first.
    // False when the image is not a cube map.
    static bool project(const jImage& cube, EnvironmentCoefficients& out);

    // The unit direction through the centre of a texel of a cube face
    // (+X, -X, +Y, -Y, +Z, -Z), rows from the top.
    static math3d::Vec3 texelDirection(int face, int x, int y, int size);
    // The solid angle a texel covers.
    static float texelSolidAngle(int x, int y, int size);
};
