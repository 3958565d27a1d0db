#include "DdsReader.h"
#include "DdsWriter.h"

#include "DdsBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace {

using Pixel = std::array<int, 4>;

Pixel pixelOf(const jImage& image, int face, int level, int x, int y, int z = 0)
{
    const uint8_t* p = image.getPixel(face, level, x, y, z);
    return p ? Pixel{p[0], p[1], p[2], p[3]} : Pixel{-1, -1, -1, -1};
}

using Pixels = std::vector<Pixel>;

// The first `count` pixels of row y of level 0.
Pixels rowOf(const jImage& image, int y, int count)
{
    Pixels row;
    for (int x = 0; x < count; ++x)
        row.push_back(pixelOf(image, 0, 0, x, y));
    return row;
}

// The decoded image, or the error of a decode that must fail (leaving the image empty).
jImage decoded(const DdsBytes& file)
{
    jImage image;
    jString error;
    EXPECT_TRUE(DdsReader::decode(file.bytes().data(), file.bytes().size(), image, error)) << error;
    return image;
}

jString errorOf(const DdsBytes& file)
{
    jImage image;
    jString error;
    EXPECT_FALSE(DdsReader::decode(file.bytes().data(), file.bytes().size(), image, error));
    EXPECT_TRUE(image.isEmpty());
    return error;
}

// DXT1 colour block: red (0xF800) and blue (0x001F) end points; row 0 uses
// indices 0, 1, 2, 3, the other rows 3, 2, 1, 0.
std::vector<uint8_t> redBlueBlock(bool threeColourMode)
{
    const uint16_t red = 0xF800, blue = 0x001F;
    const uint16_t c0 = threeColourMode ? blue : red, c1 = threeColourMode ? red : blue;
    return {uint8_t(c0), uint8_t(c0 >> 8), uint8_t(c1), uint8_t(c1 >> 8), 0xE4, 0x1B, 0x1B, 0x1B};
}

} // namespace

TEST(DdsReader, UncompressedMaskedFormatsDecodeToRgba)
{
    struct Case {
        const char* name;
        DdsBytes file;
        Pixel expected;
        bool srgb = false;
    };
    const Case cases[] = {
        {"BGRA8", DdsBytes(1, 1).bgra8().pixels({10, 20, 30, 40}), {30, 20, 10, 40}},
        // An alpha mask without the alpha flag is not alpha.
        {"BGRX8", DdsBytes(1, 1).masks(DdsBytes::PfRgb, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000).pixels({10, 20, 30, 40}), {30, 20, 10, 255}},
        {"B5G6R5", DdsBytes(1, 1).masks(DdsBytes::PfRgb, 16, 0xF800, 0x7E0, 0x1F, 0).pixels({0x10, 0x84}), {132, 130, 132, 255}},
        {"L8A8", DdsBytes(1, 1).masks(DdsBytes::PfLuminance | DdsBytes::PfAlphaPixels, 16, 0xFF, 0, 0, 0xFF00).pixels({77, 9}), {77, 77, 77, 9}},
        {"A8", DdsBytes(1, 1).masks(DdsBytes::PfAlpha, 8, 0, 0, 0, 0xFF).pixels({99}), {0, 0, 0, 99}},
        {"RGBA8", DdsBytes(1, 1).dx10(29).pixels({10, 20, 30, 40}), {10, 20, 30, 40}, true},
        {"BC1", DdsBytes(4, 4).dx10(71).pixels(redBlueBlock(false)), {255, 0, 0, 255}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const jImage image = decoded(c.file);
        EXPECT_EQ(image.getSourceFormat(), c.name);
        EXPECT_EQ(pixelOf(image, 0, 0, 0, 0), c.expected);
        EXPECT_EQ(image.isSrgb(), c.srgb);
    }
}

TEST(DdsReader, BlockFormatsDecodeToExactPixels)
{
    const jImage four = decoded(DdsBytes(4, 4).fourCC("DXT1").pixels(redBlueBlock(false)));
    EXPECT_EQ(four.getSourceFormat(), "DXT1");
    // Four-colour mode: c2 = (2 c0 + c1) / 3, c3 = (c0 + 2 c1) / 3.
    const Pixel red{255, 0, 0, 255}, blue{0, 0, 255, 255}, c2{170, 0, 85, 255}, c3{85, 0, 170, 255};
    EXPECT_EQ(rowOf(four, 0, 4), (Pixels{red, blue, c2, c3}));
    EXPECT_EQ(rowOf(four, 3, 4), (Pixels{c3, c2, blue, red}));

    // Three-colour mode (c0 <= c1): c2 is the midpoint, index 3 transparent black.
    EXPECT_EQ(rowOf(decoded(DdsBytes(4, 4).fourCC("DXT1").pixels(redBlueBlock(true))), 0, 4),
        (Pixels{blue, red, {127, 0, 127, 255}, {0, 0, 0, 0}}));

    // BC2 and BC3 carry alpha.
    std::vector<uint8_t> colour = redBlueBlock(false);
    // DXT3: explicit 4-bit alpha, pixel 0 = 0xF, pixel 1 = 0x0, pixel 2 = 0x8.
    std::vector<uint8_t> dxt3 = {0x0F, 0x08, 0, 0, 0, 0, 0, 0};
    dxt3.insert(dxt3.end(), colour.begin(), colour.end());
    // DXT5: a0 = 255, a1 = 0; pixel 0 index 0, pixel 1 index 1, the rest 0.
    std::vector<uint8_t> dxt5 = {255, 0, 0x08, 0, 0, 0, 0, 0};
    dxt5.insert(dxt5.end(), colour.begin(), colour.end());

    const jImage bc2 = decoded(DdsBytes(4, 4).fourCC("DXT3").pixels(dxt3));
    EXPECT_EQ(bc2.getSourceFormat(), "DXT3");
    EXPECT_EQ(rowOf(bc2, 0, 3), (Pixels{{255, 0, 0, 255}, {0, 0, 255, 0}, {170, 0, 85, 136}}));
    const jImage bc3 = decoded(DdsBytes(4, 4).fourCC("DXT5").pixels(dxt5));
    EXPECT_EQ(bc3.getSourceFormat(), "DXT5");
    EXPECT_EQ(rowOf(bc3, 0, 3), (Pixels{{255, 0, 0, 255}, {0, 0, 255, 0}, {170, 0, 85, 255}}));
}

TEST(DdsReader, LevelsFacesAndSlicesFollowEachOther)
{
    // 4x2 BGRA8 with 3 levels: 4x2, 2x1, 1x1 = 8 + 2 + 1 pixels.
    DdsBytes mipFile(4, 2);
    mipFile.bgra8().mips(3);
    for (uint8_t i = 0; i < 11; ++i)
        mipFile.pixels({i, 0, 0, 255});
    const jImage mips = decoded(mipFile);
    ASSERT_EQ(mips.getMipLevels(), 3);
    EXPECT_EQ(pixelOf(mips, 0, 1, 1, 0), (Pixel{0, 0, 9, 255}));
    EXPECT_EQ(pixelOf(mips, 0, 2, 0, 0), (Pixel{0, 0, 10, 255}));
    EXPECT_EQ(mips.getPixel(0, 2, 1, 0), nullptr);

    // 2x2 cube, 2 levels: each face is 4 + 1 pixels, faces +X..-Z in order.
    DdsBytes cubeFile(2, 2);
    cubeFile.bgra8().mips(2).cube();
    for (uint8_t face = 0; face < 6; ++face)
        for (uint8_t i = 0; i < 5; ++i)
            cubeFile.pixels({i, 0, uint8_t(face * 10), 255});
    const jImage cube = decoded(cubeFile);
    EXPECT_EQ(cube.getType(), jImage::Type::Cube);
    EXPECT_EQ(cube.getFaces(), 6);
    EXPECT_EQ(pixelOf(cube, 3, 0, 1, 1), (Pixel{30, 0, 3, 255}));
    EXPECT_EQ(pixelOf(cube, 5, 1, 0, 0), (Pixel{50, 0, 4, 255}));

    // 2x1x2 volume, 2 levels: level 0 = 2 slices of 2 pixels, level 1 = 1 pixel.
    const jImage volume = decoded(DdsBytes(2, 1).bgra8().mips(2).volume(2).pixels(
        {1, 0, 0, 255, 2, 0, 0, 255, 3, 0, 0, 255, 4, 0, 0, 255, 5, 0, 0, 255}));
    EXPECT_EQ(volume.getType(), jImage::Type::Volume);
    EXPECT_EQ(volume.getDepth(), 2);
    EXPECT_EQ(pixelOf(volume, 0, 0, 1, 0, 1), (Pixel{0, 0, 4, 255}));
    EXPECT_EQ(pixelOf(volume, 0, 1, 0, 0, 0), (Pixel{0, 0, 5, 255}));
}

TEST(DdsReader, BadHeadersAndTruncatedDataGiveExactReasons)
{
    struct Case {
        DdsBytes file;
        const char* error;
    };
    DdsBytes badMagic(1, 1);
    badMagic.put(0, 0x20534443);
    const Case cases[] = {
        {badMagic.bgra8(), "not a DDS file (bad magic)"},
        {DdsBytes(1, 1).bgra8().put(DdsBytes::Size, 100), "bad header size 100 (expected 124)"},
        {DdsBytes(1, 1).bgra8().put(DdsBytes::PfSize, 0), "bad pixel format size 0 (expected 32)"},
        {DdsBytes(0, 4).bgra8(), "bad size 0x4"},
        {DdsBytes(16385, 1).bgra8(), "size 16385x1 exceeds the limit of 16384"},
        {DdsBytes(1, 1).bgra8().volume(2049), "depth 2049 exceeds the limit of 2048"},
        {DdsBytes(4, 2).bgra8().mips(4), "mip count 4 exceeds the full chain of 3 levels"},
        {DdsBytes(2, 2).bgra8().put(DdsBytes::Caps2, 0x200 | 0x400), "cube map lacks some of its six faces"},
        {DdsBytes(2, 1).bgra8().cube(), "cube map faces are not square (2x1)"},
        {DdsBytes(2, 2).bgra8().put(DdsBytes::Caps2, 0x200 | 0xFC00 | 0x200000), "header declares both a cube map and a volume"},
        {DdsBytes(4, 4).fourCC("ATI2"), "unsupported FourCC \"ATI2\""},
        {DdsBytes(4, 4).put(DdsBytes::PfFlags, DdsBytes::PfFourCC).put(DdsBytes::FourCC, 113), "unsupported FourCC 0x00000071"},
        {DdsBytes(1, 1).masks(DdsBytes::PfRgb, 12, 0xF00, 0xF0, 0xF, 0), "unsupported 12-bit pixel format"},
        {DdsBytes(1, 1).masks(DdsBytes::PfRgb, 16, 0xF0F0, 0x0F00, 0xF, 0), "bad channel mask 0x0000F0F0 for 16 bits per pixel"},
        {DdsBytes(1, 1).masks(DdsBytes::PfRgb, 32, 0, 0, 0, 0), "pixel format has no channel masks"},
        {DdsBytes(1, 1).put(DdsBytes::PfFlags, 0x200), "pixel format flags 0x200 name no supported format"},
        {DdsBytes(1, 1).dx10(2), "unsupported DXGI format 2"},
        {DdsBytes(1, 1).dx10(87, 3, 0, 2), "texture arrays are not supported (array size 2)"},
        {DdsBytes(1, 1).dx10(87, 3, 0, 0), "bad array size 0"},
        {DdsBytes(1, 1).dx10(87, 5), "unsupported resource dimension 5"},
        {DdsBytes(1, 1).fourCC("DX10"), "file too small for the DX10 header"},
        // 4x4 BGRA8 with 3 levels needs (16 + 4 + 1) * 4 = 84 bytes.
        {DdsBytes(4, 4).bgra8().mips(3).pixels(std::vector<uint8_t>(83, 0)), "pixel data truncated: needs 84 bytes, has 83"},
        // Decoded size is checked before the file size: a full 16384^2 BGRA8
        // chain with six faces would decode to more than 1 GiB.
        {DdsBytes(16384, 16384).bgra8().cube().mips(15), "decoded image of 8589934584 bytes exceeds the limit of 1073741824"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.error);
        EXPECT_EQ(errorOf(c.file), c.error);
    }

    jImage image;
    jString error;
    EXPECT_FALSE(DdsReader::decode(DdsBytes(1, 1).bytes().data(), 100, image, error));
    EXPECT_EQ(error, "file too small for a DDS header (100 bytes)");
}

TEST(DdsWriter, EveryFormatReadsBackExactlyForRepresentableColours)
{
    // Colours exact in 5:6:5 and in BC alpha, so block formats round-trip too.
    jImage volume, cube;
    ASSERT_TRUE(volume.create(4, 4, 2, 1, 3));
    ASSERT_TRUE(cube.create(4, 4, 1, 6, 2));
    for (jImage* image : {&volume, &cube})
        for (int face = 0; face < image->getFaces(); ++face)
            for (int level = 0; level < image->getMipLevels(); ++level) {
                uint8_t* p = image->getPixels(face, level);
                const uint8_t value = face % 2 ? 255 : 0;
                for (size_t i = 0; i < image->getLevelBytes(level); i += 4)
                    p[i] = value, p[i + 1] = 255 - value, p[i + 2] = 0, p[i + 3] = 255;
            }
    using F = DdsWriter::Format;
    for (F format : {F::BGRA8, F::RGBA8, F::BGR8, F::BC1, F::BC2, F::BC3})
        for (bool dx10 : {false, true})
            for (const jImage* image : {&volume, &cube}) {
                SCOPED_TRACE(int(format) * 10 + dx10);
                std::vector<uint8_t> bytes;
                jString error;
                if (format == F::BGR8 && dx10) {
                    EXPECT_FALSE(DdsWriter::encode(*image, bytes, error, {format, dx10}));
                    EXPECT_EQ(error, "BGR8 has no DX10 format");
                    continue;
                }
                ASSERT_TRUE(DdsWriter::encode(*image, bytes, error, {format, dx10})) << error;
                jImage back;
                ASSERT_TRUE(DdsReader::decode(bytes.data(), bytes.size(), back, error)) << error;
                ASSERT_EQ(back.getFaces(), image->getFaces());
                ASSERT_EQ(back.getDepth(), image->getDepth());
                ASSERT_EQ(back.getMipLevels(), image->getMipLevels());
                for (int face = 0; face < image->getFaces(); ++face)
                    for (int level = 0; level < image->getMipLevels(); ++level)
                        EXPECT_EQ(0, std::memcmp(back.getPixels(face, level), image->getPixels(face, level),
                                                 image->getLevelBytes(level)));
            }
}

