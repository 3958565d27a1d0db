#pragma once

#include "jImage.h"

#include <cstdint>

// Encodes images as DDS files: every face and mip level of the image, as a
// 2D texture, a cube map or a volume. Uncompressed BGRA8 is what the bundled
// data uses; the other formats exist so that every kind the reader accepts
// can be produced (test files, fuzz seeds).
class DdsWriter {
public:
    enum class Format { BGRA8, RGBA8, BGR8, BC1, BC2, BC3 };

    struct Options {
        Format format = Format::BGRA8;
        // Writes the DX10 extension header instead of a legacy pixel format.
        bool dx10Header = false;
    };

    // False with a reason when the image is empty or the format cannot be
    // expressed (BGR8 has no DX10 form).
    static bool encode(const jImage& image, std::vector<uint8_t>& out, jString& error, const Options& options);
    static bool encode(const jImage& image, std::vector<uint8_t>& out, jString& error)
    {
        return encode(image, out, error, Options{});
    }

    // Encodes and writes atomically to a path resolved for writing through the
    // data root. Logs and returns false on failure.
    static bool save(const jImage& image, const jString& path, const Options& options);
    static bool save(const jImage& image, const jString& path) { return save(image, path, Options{}); }
};
