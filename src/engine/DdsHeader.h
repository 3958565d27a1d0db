#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The fixed part of a DDS file: the "DDS " magic, the 124-byte header with
// its 32-byte pixel format, and the optional 20-byte DX10 extension. All
// fields are little-endian 32-bit words.
struct DdsHeader {
    static constexpr uint32_t Magic = 0x20534444;  // "DDS "
    static constexpr size_t MagicBytes = 4;
    static constexpr uint32_t HeaderBytes = 124;
    static constexpr uint32_t PixelFormatBytes = 32;
    static constexpr size_t Dx10Bytes = 20;

    // dwFlags
    static constexpr uint32_t FlagCaps = 0x1;
    static constexpr uint32_t FlagHeight = 0x2;
    static constexpr uint32_t FlagWidth = 0x4;
    static constexpr uint32_t FlagPitch = 0x8;
    static constexpr uint32_t FlagPixelFormat = 0x1000;
    static constexpr uint32_t FlagMipMapCount = 0x20000;
    static constexpr uint32_t FlagLinearSize = 0x80000;
    static constexpr uint32_t FlagDepth = 0x800000;

    // Pixel format flags
    static constexpr uint32_t PfAlphaPixels = 0x1;
    static constexpr uint32_t PfAlpha = 0x2;
    static constexpr uint32_t PfFourCC = 0x4;
    static constexpr uint32_t PfRgb = 0x40;
    static constexpr uint32_t PfLuminance = 0x20000;

    // dwCaps / dwCaps2
    static constexpr uint32_t CapsComplex = 0x8;
    static constexpr uint32_t CapsTexture = 0x1000;
    static constexpr uint32_t CapsMipMap = 0x400000;
    static constexpr uint32_t Caps2CubeMap = 0x200;
    static constexpr uint32_t Caps2AllFaces = 0xFC00;
    static constexpr uint32_t Caps2Volume = 0x200000;

    // DX10 extension
    static constexpr uint32_t Dimension1D = 2;
    static constexpr uint32_t Dimension2D = 3;
    static constexpr uint32_t Dimension3D = 4;
    static constexpr uint32_t MiscTextureCube = 0x4;

    static constexpr uint32_t fourCC(char a, char b, char c, char d)
    {
        return uint32_t(uint8_t(a)) | uint32_t(uint8_t(b)) << 8 | uint32_t(uint8_t(c)) << 16 |
               uint32_t(uint8_t(d)) << 24;
    }

    uint32_t size = HeaderBytes;
    uint32_t flags = 0;
    uint32_t height = 0;
    uint32_t width = 0;
    uint32_t pitchOrLinearSize = 0;
    uint32_t depth = 0;
    uint32_t mipMapCount = 0;
    uint32_t pfSize = PixelFormatBytes;
    uint32_t pfFlags = 0;
    uint32_t pfFourCC = 0;
    uint32_t pfBitCount = 0;
    uint32_t pfMasks[4] = {0, 0, 0, 0};  // red, green, blue, alpha
    uint32_t caps = 0;
    uint32_t caps2 = 0;

    bool hasDx10 = false;
    uint32_t dxgiFormat = 0;
    uint32_t resourceDimension = 0;
    uint32_t miscFlag = 0;
    uint32_t arraySize = 0;
    uint32_t miscFlags2 = 0;

    // Reads the 124 header bytes that follow the magic (the caller has
    // checked there are that many).
    void readHeader(const uint8_t* bytes);
    // Reads the 20 bytes of the DX10 extension and sets hasDx10.
    void readDx10(const uint8_t* bytes);
    // Appends magic, header and (when hasDx10) the extension.
    void write(std::vector<uint8_t>& out) const;

    static uint32_t readWord(const uint8_t* bytes);
    static void appendWord(std::vector<uint8_t>& out, uint32_t word);
};
