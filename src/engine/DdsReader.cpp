#include "DdsReader.h"

#include "DdsHeader.h"

#include <squish.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstring>

namespace {

enum class Encoding { Masked, BC1, BC2, BC3 };

struct PixelFormat {
    Encoding encoding = Encoding::Masked;
    uint32_t bitCount = 0;
    uint32_t masks[4] = {0, 0, 0, 0};  // red, green, blue, alpha
    bool luminance = false;
    bool srgb = false;
    jString name;
};

struct Shape {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t depth = 1;
    uint32_t faces = 1;
    uint32_t mipLevels = 1;
};

// DXGI formats the reader accepts.
enum : uint32_t {
    DxgiRgba8 = 28,
    DxgiRgba8Srgb = 29,
    DxgiBc1 = 71,
    DxgiBc1Srgb = 72,
    DxgiBc2 = 74,
    DxgiBc2Srgb = 75,
    DxgiBc3 = 77,
    DxgiBc3Srgb = 78,
    DxgiBgra8 = 87,
    DxgiBgrx8 = 88,
    DxgiBgra8Srgb = 91,
    DxgiBgrx8Srgb = 93,
};

PixelFormat maskedFormat(const char* name, uint32_t bits, uint32_t r, uint32_t g, uint32_t b, uint32_t a)
{
    PixelFormat format;
    format.name = name;
    format.bitCount = bits;
    format.masks[0] = r;
    format.masks[1] = g;
    format.masks[2] = b;
    format.masks[3] = a;
    return format;
}

PixelFormat blockFormat(Encoding encoding, const char* name)
{
    PixelFormat format;
    format.encoding = encoding;
    format.name = name;
    return format;
}

jString describeFourCC(uint32_t code)
{
    jString text;
    for (int shift = 0; shift < 32; shift += 8) {
        const char c = char((code >> shift) & 0xFF);
        if (!std::isprint(static_cast<unsigned char>(c)))
            return jFormat("0x%08X", code);
        text += c;
    }
    return "\"" + text + "\"";
}

bool isContiguous(uint32_t mask)
{
    if (mask == 0)
        return true;
    const uint32_t shifted = mask >> std::countr_zero(mask);
    return (shifted & (shifted + 1)) == 0;
}

jString nameMaskedFormat(const PixelFormat& f)
{
    struct Known {
        const char* name;
        uint32_t bits, r, g, b, a;
    };
    static const Known known[] = {
        {"BGRA8", 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000}, {"RGBA8", 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000},
        {"BGRX8", 32, 0xFF0000, 0xFF00, 0xFF, 0},          {"RGBX8", 32, 0xFF, 0xFF00, 0xFF0000, 0},
        {"BGR8", 24, 0xFF0000, 0xFF00, 0xFF, 0},           {"RGB8", 24, 0xFF, 0xFF00, 0xFF0000, 0},
        {"B5G6R5", 16, 0xF800, 0x7E0, 0x1F, 0},            {"BGR5A1", 16, 0x7C00, 0x3E0, 0x1F, 0x8000},
        {"BGRA4", 16, 0xF00, 0xF0, 0xF, 0xF000},
    };
    const jString alpha = f.masks[3] ? jFormat("A%d", std::popcount(f.masks[3])) : jString();
    if (f.luminance)
        return jFormat("L%d", std::popcount(f.masks[0])) + alpha;
    if (!f.masks[0] && !f.masks[1] && !f.masks[2])
        return alpha;
    for (const Known& k : known)
        if (k.bits == f.bitCount && k.r == f.masks[0] && k.g == f.masks[1] && k.b == f.masks[2] && k.a == f.masks[3])
            return k.name;
    return jFormat("%u-bit masked", f.bitCount);
}

bool readLegacyMaskedFormat(const DdsHeader& h, PixelFormat& format, jString& error)
{
    const uint32_t bits = h.pfBitCount;
    if (bits != 8 && bits != 16 && bits != 24 && bits != 32) {
        error = jFormat("unsupported %u-bit pixel format", bits);
        return false;
    }
    format.encoding = Encoding::Masked;
    format.bitCount = bits;
    format.luminance = (h.pfFlags & DdsHeader::PfLuminance) != 0;
    const bool hasColour = (h.pfFlags & (DdsHeader::PfRgb | DdsHeader::PfLuminance)) != 0;
    const bool hasAlpha = (h.pfFlags & (DdsHeader::PfAlphaPixels | DdsHeader::PfAlpha)) != 0;
    if (hasColour) {
        format.masks[0] = h.pfMasks[0];
        format.masks[1] = format.luminance ? 0 : h.pfMasks[1];
        format.masks[2] = format.luminance ? 0 : h.pfMasks[2];
    }
    format.masks[3] = hasAlpha ? h.pfMasks[3] : 0;
    const uint64_t limit = bits == 32 ? 0xFFFFFFFFull : (uint64_t(1) << bits) - 1;
    for (uint32_t mask : format.masks) {
        if (mask > limit || !isContiguous(mask)) {
            error = jFormat("bad channel mask 0x%08X for %u bits per pixel", mask, bits);
            return false;
        }
    }
    if (!format.masks[0] && !format.masks[1] && !format.masks[2] && !format.masks[3]) {
        error = "pixel format has no channel masks";
        return false;
    }
    format.name = nameMaskedFormat(format);
    return true;
}

bool readLegacyFourCC(uint32_t code, PixelFormat& format, jString& error)
{
    if (code == DdsHeader::fourCC('D', 'X', 'T', '1'))
        format = blockFormat(Encoding::BC1, "DXT1");
    else if (code == DdsHeader::fourCC('D', 'X', 'T', '2'))
        format = blockFormat(Encoding::BC2, "DXT2");
    else if (code == DdsHeader::fourCC('D', 'X', 'T', '3'))
        format = blockFormat(Encoding::BC2, "DXT3");
    else if (code == DdsHeader::fourCC('D', 'X', 'T', '4'))
        format = blockFormat(Encoding::BC3, "DXT4");
    else if (code == DdsHeader::fourCC('D', 'X', 'T', '5'))
        format = blockFormat(Encoding::BC3, "DXT5");
    else {
        error = "unsupported FourCC " + describeFourCC(code);
        return false;
    }
    return true;
}

bool readDxgiFormat(uint32_t dxgi, PixelFormat& format, jString& error)
{
    switch (dxgi) {
    case DxgiRgba8:
    case DxgiRgba8Srgb:
        format = maskedFormat("RGBA8", 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000);
        break;
    case DxgiBgra8:
    case DxgiBgra8Srgb:
        format = maskedFormat("BGRA8", 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000);
        break;
    case DxgiBgrx8:
    case DxgiBgrx8Srgb:
        format = maskedFormat("BGRX8", 32, 0xFF0000, 0xFF00, 0xFF, 0);
        break;
    case DxgiBc1:
    case DxgiBc1Srgb:
        format = blockFormat(Encoding::BC1, "BC1");
        break;
    case DxgiBc2:
    case DxgiBc2Srgb:
        format = blockFormat(Encoding::BC2, "BC2");
        break;
    case DxgiBc3:
    case DxgiBc3Srgb:
        format = blockFormat(Encoding::BC3, "BC3");
        break;
    default:
        error = jFormat("unsupported DXGI format %u", dxgi);
        return false;
    }
    format.srgb = dxgi == DxgiRgba8Srgb || dxgi == DxgiBgra8Srgb || dxgi == DxgiBgrx8Srgb ||
                  dxgi == DxgiBc1Srgb || dxgi == DxgiBc2Srgb || dxgi == DxgiBc3Srgb;
    return true;
}

bool readDx10Shape(const DdsHeader& h, Shape& shape, jString& error)
{
    if (h.arraySize == 0) {
        error = "bad array size 0";
        return false;
    }
    if (h.arraySize > 1) {
        error = jFormat("texture arrays are not supported (array size %u)", h.arraySize);
        return false;
    }
    switch (h.resourceDimension) {
    case DdsHeader::Dimension1D:
    case DdsHeader::Dimension2D:
        shape.faces = (h.miscFlag & DdsHeader::MiscTextureCube) ? 6 : 1;
        break;
    case DdsHeader::Dimension3D:
        shape.depth = std::max(h.depth, 1u);
        break;
    default:
        error = jFormat("unsupported resource dimension %u", h.resourceDimension);
        return false;
    }
    return true;
}

bool readLegacyShape(const DdsHeader& h, Shape& shape, jString& error)
{
    const bool cube = (h.caps2 & DdsHeader::Caps2CubeMap) != 0;
    const bool volume = (h.caps2 & DdsHeader::Caps2Volume) != 0;
    if (cube && volume) {
        error = "header declares both a cube map and a volume";
        return false;
    }
    if (cube) {
        if ((h.caps2 & DdsHeader::Caps2AllFaces) != DdsHeader::Caps2AllFaces) {
            error = "cube map lacks some of its six faces";
            return false;
        }
        shape.faces = 6;
    }
    if (volume)
        shape.depth = std::max(h.depth, 1u);
    return true;
}

bool checkShape(const DdsHeader& h, Shape& shape, jString& error)
{
    shape.width = h.width;
    shape.height = h.height;
    if (shape.width == 0 || shape.height == 0) {
        error = jFormat("bad size %ux%u", shape.width, shape.height);
        return false;
    }
    if (shape.width > DdsReader::MaxDimension || shape.height > DdsReader::MaxDimension) {
        error = jFormat("size %ux%u exceeds the limit of %u", shape.width, shape.height, DdsReader::MaxDimension);
        return false;
    }
    if (shape.depth > DdsReader::MaxDepth) {
        error = jFormat("depth %u exceeds the limit of %u", shape.depth, DdsReader::MaxDepth);
        return false;
    }
    if (shape.faces == 6 && shape.width != shape.height) {
        error = jFormat("cube map faces are not square (%ux%u)", shape.width, shape.height);
        return false;
    }
    const int chain = jImage::fullMipChain(int(shape.width), int(shape.height), int(shape.depth));
    shape.mipLevels = std::max(h.mipMapCount, 1u);
    if (shape.mipLevels > uint32_t(chain)) {
        error = jFormat("mip count %u exceeds the full chain of %d levels", shape.mipLevels, chain);
        return false;
    }
    return true;
}

uint64_t levelDimension(uint32_t size, uint32_t level)
{
    return std::max<uint64_t>(1, uint64_t(size) >> level);
}

// Bytes one face's level takes in the file.
uint64_t encodedLevelBytes(const PixelFormat& format, const Shape& shape, uint32_t level)
{
    const uint64_t w = levelDimension(shape.width, level);
    const uint64_t h = levelDimension(shape.height, level);
    const uint64_t d = levelDimension(shape.depth, level);
    if (format.encoding == Encoding::Masked)
        return w * h * d * (format.bitCount / 8);
    const uint64_t blockBytes = format.encoding == Encoding::BC1 ? 8 : 16;
    return ((w + 3) / 4) * ((h + 3) / 4) * blockBytes * d;
}

uint64_t decodedLevelBytes(const Shape& shape, uint32_t level)
{
    return levelDimension(shape.width, level) * levelDimension(shape.height, level) *
           levelDimension(shape.depth, level) * 4;
}

bool checkPayload(const PixelFormat& format, const Shape& shape, size_t available, jString& error)
{
    uint64_t encoded = 0;
    uint64_t decoded = 0;
    for (uint32_t level = 0; level < shape.mipLevels; ++level) {
        encoded += encodedLevelBytes(format, shape, level) * shape.faces;
        decoded += decodedLevelBytes(shape, level) * shape.faces;
    }
    if (decoded > DdsReader::MaxDecodedBytes) {
        error = jFormat("decoded image of %llu bytes exceeds the limit of %llu", (unsigned long long)decoded,
                        (unsigned long long)DdsReader::MaxDecodedBytes);
        return false;
    }
    if (encoded > available) {
        error = jFormat("pixel data truncated: needs %llu bytes, has %zu", (unsigned long long)encoded, available);
        return false;
    }
    return true;
}

uint8_t scaleChannel(uint32_t pixel, uint32_t mask, uint8_t fallback)
{
    if (mask == 0)
        return fallback;
    const uint64_t value = (pixel & mask) >> std::countr_zero(mask);
    const uint64_t maximum = uint64_t(mask) >> std::countr_zero(mask);
    return uint8_t((value * 255 + maximum / 2) / maximum);
}

void decodeMasked(const PixelFormat& format, const uint8_t* src, size_t pixels, uint8_t* dst)
{
    const size_t bytes = format.bitCount / 8;
    for (size_t i = 0; i < pixels; ++i, src += bytes, dst += 4) {
        uint32_t pixel = 0;
        for (size_t b = 0; b < bytes; ++b)
            pixel |= uint32_t(src[b]) << (8 * b);
        dst[0] = scaleChannel(pixel, format.masks[0], 0);
        dst[1] = format.luminance ? dst[0] : scaleChannel(pixel, format.masks[1], 0);
        dst[2] = format.luminance ? dst[0] : scaleChannel(pixel, format.masks[2], 0);
        dst[3] = scaleChannel(pixel, format.masks[3], 255);
    }
}

int squishFlags(Encoding encoding)
{
    switch (encoding) {
    case Encoding::BC1:
        return squish::kDxt1;
    case Encoding::BC2:
        return squish::kDxt3;
    default:
        return squish::kDxt5;
    }
}

// Block by block rather than squish::DecompressImage: that one spreads a
// level over OpenMP threads, which costs far more than it saves on the small
// levels textures are made of.
void decodeBlocks(Encoding encoding, const uint8_t* src, uint64_t w, uint64_t h, uint8_t* dst)
{
    const int flags = squishFlags(encoding);
    const size_t blockBytes = encoding == Encoding::BC1 ? 8 : 16;
    uint8_t block[16 * 4];
    for (uint64_t by = 0; by < h; by += 4)
        for (uint64_t bx = 0; bx < w; bx += 4, src += blockBytes) {
            squish::Decompress(block, src, flags);
            for (uint64_t y = by; y < std::min(by + 4, h); ++y)
                std::memcpy(dst + (y * w + bx) * 4, block + (y - by) * 16, size_t(std::min<uint64_t>(4, w - bx)) * 4);
        }
}

void decodeLevel(const PixelFormat& format, const Shape& shape, uint32_t level, const uint8_t* src, uint8_t* dst)
{
    const uint64_t w = levelDimension(shape.width, level);
    const uint64_t h = levelDimension(shape.height, level);
    const uint64_t d = levelDimension(shape.depth, level);
    if (format.encoding == Encoding::Masked) {
        decodeMasked(format, src, size_t(w * h * d), dst);
        return;
    }
    const uint64_t sliceIn = encodedLevelBytes(format, shape, level) / d;
    const uint64_t sliceOut = w * h * 4;
    for (uint64_t z = 0; z < d; ++z)
        decodeBlocks(format.encoding, src + z * sliceIn, w, h, dst + z * sliceOut);
}

bool readFormat(const DdsHeader& h, PixelFormat& format, jString& error)
{
    if (h.hasDx10)
        return readDxgiFormat(h.dxgiFormat, format, error);
    if (h.pfFlags & DdsHeader::PfFourCC)
        return readLegacyFourCC(h.pfFourCC, format, error);
    if (h.pfFlags & (DdsHeader::PfRgb | DdsHeader::PfLuminance | DdsHeader::PfAlpha))
        return readLegacyMaskedFormat(h, format, error);
    error = jFormat("pixel format flags 0x%X name no supported format", h.pfFlags);
    return false;
}

bool readHeaders(const uint8_t* data, size_t size, DdsHeader& header, size_t& payloadOffset, jString& error)
{
    if (size < DdsHeader::MagicBytes || DdsHeader::readWord(data) != DdsHeader::Magic) {
        error = "not a DDS file (bad magic)";
        return false;
    }
    if (size < DdsHeader::MagicBytes + DdsHeader::HeaderBytes) {
        error = jFormat("file too small for a DDS header (%zu bytes)", size);
        return false;
    }
    header.readHeader(data + DdsHeader::MagicBytes);
    if (header.size != DdsHeader::HeaderBytes) {
        error = jFormat("bad header size %u (expected %u)", header.size, DdsHeader::HeaderBytes);
        return false;
    }
    if (header.pfSize != DdsHeader::PixelFormatBytes) {
        error = jFormat("bad pixel format size %u (expected %u)", header.pfSize, DdsHeader::PixelFormatBytes);
        return false;
    }
    payloadOffset = DdsHeader::MagicBytes + DdsHeader::HeaderBytes;
    const bool dx10 = (header.pfFlags & DdsHeader::PfFourCC) && header.pfFourCC == DdsHeader::fourCC('D', 'X', '1', '0');
    if (dx10) {
        if (size - payloadOffset < DdsHeader::Dx10Bytes) {
            error = "file too small for the DX10 header";
            return false;
        }
        header.readDx10(data + payloadOffset);
        payloadOffset += DdsHeader::Dx10Bytes;
    }
    return true;
}

} // namespace

bool DdsReader::hasMagic(const uint8_t* data, size_t size)
{
    return data && size >= DdsHeader::MagicBytes && DdsHeader::readWord(data) == DdsHeader::Magic;
}

bool DdsReader::decode(const uint8_t* data, size_t size, jImage& image, jString& error)
{
    image.clear();
    if (!data)
        size = 0;

    DdsHeader header;
    size_t offset = 0;
    if (!readHeaders(data, size, header, offset, error))
        return false;
    PixelFormat format;
    if (!readFormat(header, format, error))
        return false;
    Shape shape;
    const bool shapeRead = header.hasDx10 ? readDx10Shape(header, shape, error) : readLegacyShape(header, shape, error);
    if (!shapeRead || !checkShape(header, shape, error) || !checkPayload(format, shape, size - offset, error))
        return false;

    if (!image.create(int(shape.width), int(shape.height), int(shape.depth), int(shape.faces), int(shape.mipLevels))) {
        error = "bad image shape";
        return false;
    }
    const uint8_t* src = data + offset;
    for (uint32_t face = 0; face < shape.faces; ++face) {
        for (uint32_t level = 0; level < shape.mipLevels; ++level) {
            decodeLevel(format, shape, level, src, image.getPixels(int(face), int(level)));
            src += encodedLevelBytes(format, shape, level);
        }
    }
    image.setSourceFormat(format.name);
    image.setSrgb(format.srgb);
    return true;
}
