#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

// Builds DDS files byte by byte at the documented offsets, independently of
// the engine's own header code, so tests check the reader against the format
// rather than against itself.
class DdsBytes {
public:
    // Offsets from the start of the file (after the 4-byte magic come the
    // header words).
    enum Offset : size_t {
        Size = 4, Flags = 8, Height = 12, Width = 16, Pitch = 20, Depth = 24, MipCount = 28,
        PfSize = 76, PfFlags = 80, FourCC = 84, BitCount = 88, RMask = 92, GMask = 96, BMask = 100, AMask = 104,
        Caps = 108, Caps2 = 112, Dx10 = 128,
    };
    enum : uint32_t { PfAlphaPixels = 0x1, PfAlpha = 0x2, PfFourCC = 0x4, PfRgb = 0x40, PfLuminance = 0x20000 };

    DdsBytes(uint32_t width, uint32_t height) : m_bytes(128, 0)
    {
        m_bytes[0] = 'D', m_bytes[1] = 'D', m_bytes[2] = 'S', m_bytes[3] = ' ';
        put(Size, 124);
        put(Flags, 0x1007);
        put(Height, height);
        put(Width, width);
        put(PfSize, 32);
        put(Caps, 0x1000);
    }

    DdsBytes& put(size_t offset, uint32_t value)
    {
        if (m_bytes.size() < offset + 4)
            m_bytes.resize(offset + 4, 0);
        for (int i = 0; i < 4; ++i)
            m_bytes[offset + i] = uint8_t(value >> (8 * i));
        return *this;
    }
    DdsBytes& masks(uint32_t pfFlags, uint32_t bits, uint32_t r, uint32_t g, uint32_t b, uint32_t a)
    {
        return put(PfFlags, pfFlags).put(BitCount, bits).put(RMask, r).put(GMask, g).put(BMask, b).put(AMask, a);
    }
    DdsBytes& bgra8() { return masks(PfRgb | PfAlphaPixels, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000); }
    DdsBytes& fourCC(const char code[5])
    {
        put(PfFlags, PfFourCC);
        for (int i = 0; i < 4; ++i)
            m_bytes[FourCC + i] = uint8_t(code[i]);
        return *this;
    }
    DdsBytes& mips(uint32_t count) { return put(MipCount, count).put(Flags, 0x21007); }
    DdsBytes& cube() { return put(Caps2, 0x200 | 0xFC00); }
    DdsBytes& volume(uint32_t depth) { return put(Caps2, 0x200000).put(Depth, depth).put(Flags, 0x801007); }
    // Adds the DX10 extension (the FourCC "DX10" and its 20 bytes).
    DdsBytes& dx10(uint32_t dxgi, uint32_t dimension = 3, uint32_t misc = 0, uint32_t arraySize = 1)
    {
        fourCC("DX10");
        return put(Dx10, dxgi).put(Dx10 + 4, dimension).put(Dx10 + 8, misc).put(Dx10 + 12, arraySize).put(Dx10 + 16, 0);
    }
    DdsBytes& pixels(std::initializer_list<uint8_t> bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes);
        return *this;
    }
    DdsBytes& pixels(const std::vector<uint8_t>& bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }

    const std::vector<uint8_t>& bytes() const { return m_bytes; }
    std::string text() const { return std::string(m_bytes.begin(), m_bytes.end()); }

private:
    std::vector<uint8_t> m_bytes;
};
