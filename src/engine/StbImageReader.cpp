#include "StbImageReader.h"

#include <stb_image.h>

#include <climits>
#include <cstring>
#include <memory>

namespace {

bool startsWith(const uint8_t* data, size_t size, const char* prefix, size_t length)
{
    return size >= length && std::memcmp(data, prefix, length) == 0;
}

struct StbFree {
    void operator()(unsigned char* pixels) const { stbi_image_free(pixels); }
};

} // namespace

jString StbImageReader::detectFormat(const uint8_t* data, size_t size)
{
    if (startsWith(data, size, "\x89PNG", 4))
        return "PNG";
    if (startsWith(data, size, "\xFF\xD8", 2))
        return "JPEG";
    if (startsWith(data, size, "BM", 2))
        return "BMP";
    if (startsWith(data, size, "GIF8", 4))
        return "GIF";
    if (startsWith(data, size, "8BPS", 4))
        return "PSD";
    if (startsWith(data, size, "#?", 2))
        return "HDR";
    if (size >= 2 && data[0] == 'P' && (data[1] == '5' || data[1] == '6'))
        return "PNM";
    return "TGA";
}

bool StbImageReader::decode(const uint8_t* data, size_t size, jImage& image, jString& error)
{
    image.clear();
    if (!data || size == 0) {
        error = "empty file";
        return false;
    }
    if (size > size_t(INT_MAX)) {
        error = "file too large";
        return false;
    }
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_memory(data, int(size), &width, &height, &channels)) {
        error = jFormat("not a readable image (%s)", stbi_failure_reason());
        return false;
    }
    if (width <= 0 || height <= 0 || width > MaxDimension || height > MaxDimension) {
        error = jFormat("size %dx%d exceeds the limit of %d", width, height, MaxDimension);
        return false;
    }
    std::unique_ptr<unsigned char, StbFree> pixels(
        stbi_load_from_memory(data, int(size), &width, &height, &channels, 4));
    if (!pixels) {
        error = jFormat("can't decode the image (%s)", stbi_failure_reason());
        return false;
    }
    if (!image.create(width, height, 1, 1, 1)) {
        error = "bad image shape";
        return false;
    }
    std::memcpy(image.getPixels(0, 0), pixels.get(), image.getLevelBytes(0));
    image.setSourceFormat(detectFormat(data, size));
    return true;
}
