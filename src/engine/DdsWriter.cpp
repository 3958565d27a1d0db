#include "DdsWriter.h"

#include "DdsHeader.h"
#include "jDir.h"
#include "jLog.h"

#include <squish.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace {

enum : uint32_t { DxgiRgba8 = 28, DxgiBc1 = 71, DxgiBc2 = 74, DxgiBc3 = 77, DxgiBgra8 = 87 };

bool isBlockFormat(DdsWriter::Format format)
{
    return format == DdsWriter::Format::BC1 || format == DdsWriter::Format::BC2 || format == DdsWriter::Format::BC3;
}

void setLegacyPixelFormat(DdsWriter::Format format, DdsHeader& h)
{
    switch (format) {
    case DdsWriter::Format::BGRA8:
        h.pfFlags = DdsHeader::PfRgb | DdsHeader::PfAlphaPixels;
        h.pfBitCount = 32;
        h.pfMasks[0] = 0xFF0000, h.pfMasks[1] = 0xFF00, h.pfMasks[2] = 0xFF, h.pfMasks[3] = 0xFF000000;
        break;
    case DdsWriter::Format::RGBA8:
        h.pfFlags = DdsHeader::PfRgb | DdsHeader::PfAlphaPixels;
        h.pfBitCount = 32;
        h.pfMasks[0] = 0xFF, h.pfMasks[1] = 0xFF00, h.pfMasks[2] = 0xFF0000, h.pfMasks[3] = 0xFF000000;
        break;
    case DdsWriter::Format::BGR8:
        h.pfFlags = DdsHeader::PfRgb;
        h.pfBitCount = 24;
        h.pfMasks[0] = 0xFF0000, h.pfMasks[1] = 0xFF00, h.pfMasks[2] = 0xFF;
        break;
    case DdsWriter::Format::BC1:
        h.pfFlags = DdsHeader::PfFourCC;
        h.pfFourCC = DdsHeader::fourCC('D', 'X', 'T', '1');
        break;
    case DdsWriter::Format::BC2:
        h.pfFlags = DdsHeader::PfFourCC;
        h.pfFourCC = DdsHeader::fourCC('D', 'X', 'T', '3');
        break;
    case DdsWriter::Format::BC3:
        h.pfFlags = DdsHeader::PfFourCC;
        h.pfFourCC = DdsHeader::fourCC('D', 'X', 'T', '5');
        break;
    }
}

bool setDx10PixelFormat(DdsWriter::Format format, const jImage& image, DdsHeader& h, jString& error)
{
    switch (format) {
    case DdsWriter::Format::BGRA8: h.dxgiFormat = DxgiBgra8; break;
    case DdsWriter::Format::RGBA8: h.dxgiFormat = DxgiRgba8; break;
    case DdsWriter::Format::BC1: h.dxgiFormat = DxgiBc1; break;
    case DdsWriter::Format::BC2: h.dxgiFormat = DxgiBc2; break;
    case DdsWriter::Format::BC3: h.dxgiFormat = DxgiBc3; break;
    case DdsWriter::Format::BGR8:
        error = "BGR8 has no DX10 format";
        return false;
    }
    h.hasDx10 = true;
    h.pfFlags = DdsHeader::PfFourCC;
    h.pfFourCC = DdsHeader::fourCC('D', 'X', '1', '0');
    h.resourceDimension = image.getType() == jImage::Type::Volume ? DdsHeader::Dimension3D : DdsHeader::Dimension2D;
    h.miscFlag = image.getType() == jImage::Type::Cube ? DdsHeader::MiscTextureCube : 0;
    h.arraySize = 1;
    return true;
}

uint32_t bytesPerPixel(DdsWriter::Format format)
{
    return format == DdsWriter::Format::BGR8 ? 3 : 4;
}

DdsHeader makeHeader(const jImage& image, DdsWriter::Format format)
{
    DdsHeader h;
    h.flags = DdsHeader::FlagCaps | DdsHeader::FlagHeight | DdsHeader::FlagWidth | DdsHeader::FlagPixelFormat;
    h.width = uint32_t(image.getWidth());
    h.height = uint32_t(image.getHeight());
    h.caps = DdsHeader::CapsTexture;
    if (isBlockFormat(format)) {
        h.flags |= DdsHeader::FlagLinearSize;
        const uint32_t blockBytes = format == DdsWriter::Format::BC1 ? 8 : 16;
        h.pitchOrLinearSize = ((h.width + 3) / 4) * ((h.height + 3) / 4) * blockBytes;
    } else {
        h.flags |= DdsHeader::FlagPitch;
        h.pitchOrLinearSize = h.width * bytesPerPixel(format);
    }
    if (image.getMipLevels() > 1) {
        h.flags |= DdsHeader::FlagMipMapCount;
        h.mipMapCount = uint32_t(image.getMipLevels());
        h.caps |= DdsHeader::CapsComplex | DdsHeader::CapsMipMap;
    }
    if (image.getType() == jImage::Type::Cube) {
        h.caps |= DdsHeader::CapsComplex;
        h.caps2 = DdsHeader::Caps2CubeMap | DdsHeader::Caps2AllFaces;
    }
    if (image.getType() == jImage::Type::Volume) {
        h.flags |= DdsHeader::FlagDepth;
        h.depth = uint32_t(image.getDepth());
        h.caps |= DdsHeader::CapsComplex;
        h.caps2 = DdsHeader::Caps2Volume;
    }
    return h;
}

void appendUncompressed(DdsWriter::Format format, const uint8_t* rgba, size_t pixels, std::vector<uint8_t>& out)
{
    for (size_t i = 0; i < pixels; ++i, rgba += 4) {
        if (format == DdsWriter::Format::RGBA8) {
            out.insert(out.end(), rgba, rgba + 4);
            continue;
        }
        out.push_back(rgba[2]);
        out.push_back(rgba[1]);
        out.push_back(rgba[0]);
        if (format == DdsWriter::Format::BGRA8)
            out.push_back(rgba[3]);
    }
}

int squishFlags(DdsWriter::Format format)
{
    if (format == DdsWriter::Format::BC1)
        return squish::kDxt1;
    return format == DdsWriter::Format::BC2 ? squish::kDxt3 : squish::kDxt5;
}

// Block by block (see the reader): squish::CompressImage runs OpenMP threads.
void appendCompressedSlice(int flags, const uint8_t* rgba, int width, int height, std::vector<uint8_t>& out)
{
    const size_t blockBytes = (flags & squish::kDxt1) ? 8 : 16;
    for (int by = 0; by < height; by += 4)
        for (int bx = 0; bx < width; bx += 4) {
            uint8_t block[16 * 4] = {};
            int mask = 0;
            for (int y = 0; y < 4 && by + y < height; ++y)
                for (int x = 0; x < 4 && bx + x < width; ++x) {
                    std::memcpy(block + (y * 4 + x) * 4, rgba + (size_t(by + y) * width + bx + x) * 4, 4);
                    mask |= 1 << (y * 4 + x);
                }
            const size_t start = out.size();
            out.resize(start + blockBytes);
            squish::CompressMasked(block, mask, out.data() + start, flags);
        }
}

void appendCompressed(DdsWriter::Format format, const uint8_t* rgba, int width, int height, int depth,
                      std::vector<uint8_t>& out)
{
    for (int z = 0; z < depth; ++z)
        appendCompressedSlice(squishFlags(format), rgba + size_t(z) * width * height * 4, width, height, out);
}

bool writeFileAtomically(const jString& path, const std::vector<uint8_t>& bytes, jString& error)
{
    std::error_code ec;
    const std::filesystem::path target(path);
    if (target.has_parent_path())
        std::filesystem::create_directories(target.parent_path(), ec);
    const jString temporary = path + ".tmp";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        if (!file) {
            error = "can't create " + temporary;
            return false;
        }
        file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        file.flush();
        if (!file) {
            error = "can't write " + temporary;
            std::remove(temporary.c_str());
            return false;
        }
    }
    std::filesystem::rename(temporary, target, ec);
    if (ec) {
        error = "can't replace " + path + ": " + ec.message();
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

} // namespace

bool DdsWriter::encode(const jImage& image, std::vector<uint8_t>& out, jString& error, const Options& options)
{
    out.clear();
    if (image.isEmpty()) {
        error = "the image is empty";
        return false;
    }
    DdsHeader header = makeHeader(image, options.format);
    if (options.dx10Header) {
        if (!setDx10PixelFormat(options.format, image, header, error))
            return false;
    } else {
        setLegacyPixelFormat(options.format, header);
    }
    header.write(out);
    for (int face = 0; face < image.getFaces(); ++face) {
        for (int level = 0; level < image.getMipLevels(); ++level) {
            const uint8_t* rgba = image.getPixels(face, level);
            const int w = image.getLevelWidth(level);
            const int h = image.getLevelHeight(level);
            const int d = image.getLevelDepth(level);
            if (isBlockFormat(options.format))
                appendCompressed(options.format, rgba, w, h, d, out);
            else
                appendUncompressed(options.format, rgba, size_t(w) * h * d, out);
        }
    }
    return true;
}

bool DdsWriter::save(const jImage& image, const jString& path, const Options& options)
{
    std::vector<uint8_t> bytes;
    jString error;
    if (!encode(image, bytes, error, options) || !writeFileAtomically(jDir::resolveWrite(path), bytes, error)) {
        jLog::error("DdsWriter: can't save \"%s\": %s", path.c_str(), error.c_str());
        return false;
    }
    return true;
}
