// libFuzzer target of the DDS reader: any bytes must give either an image or
// a reason, never a crash. A decoded image is written back as BGRA8 and read
// again, which must reproduce it exactly.

#include "DdsReader.h"
#include "DdsWriter.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

bool sameImage(const jImage& a, const jImage& b)
{
    if (a.getWidth() != b.getWidth() || a.getHeight() != b.getHeight() || a.getDepth() != b.getDepth() ||
        a.getFaces() != b.getFaces() || a.getMipLevels() != b.getMipLevels())
        return false;
    for (int face = 0; face < a.getFaces(); ++face)
        for (int level = 0; level < a.getMipLevels(); ++level)
            if (std::memcmp(a.getPixels(face, level), b.getPixels(face, level), a.getLevelBytes(level)) != 0)
                return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    jImage image;
    jString error;
    if (!DdsReader::decode(data, size, image, error)) {
        if (error.empty())
            std::abort();
        return 0;
    }
    std::vector<uint8_t> encoded;
    jImage again;
    if (!DdsWriter::encode(image, encoded, error) || !DdsReader::decode(encoded.data(), encoded.size(), again, error) ||
        !sameImage(image, again))
        std::abort();
    return 0;
}
