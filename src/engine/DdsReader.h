#pragma once

#include "jImage.h"

#include <cstddef>
#include <cstdint>

// Decodes DDS files held in memory into RGBA8 images.
//
// Supported: uncompressed 8/16/24/32-bit pixels described by channel masks
// (BGRA8, RGBA8, BGRX8, BGR8, luminance, alpha, 565 and the like), BC1-BC3
// (DXT1-DXT5), 2D textures, cube maps with all six faces, volume textures,
// mip chains, and the DX10 extension header for the same formats.
//
// Every header field and size is checked against the buffer before a pixel
// is touched; a bad file gives false and a one-line reason, never a crash.
class DdsReader {
public:
    static constexpr uint32_t MaxDimension = 16384;
    static constexpr uint32_t MaxDepth = 2048;
    static constexpr uint64_t MaxDecodedBytes = uint64_t(1) << 30;

    static bool decode(const uint8_t* data, size_t size, jImage& image, jString& error);
    // True when the buffer starts with the DDS magic.
    static bool hasMagic(const uint8_t* data, size_t size);
};
