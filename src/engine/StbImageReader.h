#pragma once

#include "jImage.h"

#include <cstddef>
#include <cstdint>

// Decodes PNG, TGA, JPEG (and the other formats stb_image knows) held in
// memory into a one-level RGBA8 image. The size is checked before the
// pixels are decoded.
class StbImageReader {
public:
    static constexpr int MaxDimension = 16384;

    static bool decode(const uint8_t* data, size_t size, jImage& image, jString& error);
    // "PNG", "JPEG", "BMP", "GIF", ... by the leading bytes; "TGA" when none
    // matches (TGA has no signature).
    static jString detectFormat(const uint8_t* data, size_t size);
};
