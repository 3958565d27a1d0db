#pragma once

#include "Colour.h"

#include "jImage.h"

// Paints the preview's environment: a cube map sky with a blue gradient
// above a hazy horizon, a darker ground below, and a bright sun high in the
// +X/+Z quadrant so that environment lighting has a clear direction.
//
// Faces are +X, -X, +Y, -Y, +Z, -Z with y up, each face's rows top first,
// laid out as OpenGL samples cube maps.
class SkyPainter {
public:
    static constexpr int FaceSize = 64;

    static jImage paint();
    // The sky's colour seen along a direction (any length).
    static Colour colourAt(float x, float y, float z);
    // The direction a face's texel centre looks along.
    static void directionOf(int face, int size, int x, int y, float direction[3]);
};
