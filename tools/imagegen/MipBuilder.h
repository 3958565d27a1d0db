#pragma once

#include "jImage.h"

// Fills levels 1.. of every face of an image from level 0 by averaging 2x2
// (2x2x2 for volumes) blocks, alpha-weighted so transparent texels do not
// darken their neighbours.
class MipBuilder {
public:
    static void build(jImage& image);

private:
    static void downsample(const jImage& image, int face, int level, uint8_t* out);
};
