#include "TextureManager.h"

#include "jDir.h"
#include "jLog.h"

#include "DdsBytes.h"
#include "TempFolder.h"

#include <gtest/gtest.h>
#include <stb_image_write.h>

#include <array>
#include <string>

namespace {

using Pixel = std::array<int, 4>;

Pixel pixelOf(const jImage& image, int face, int x, int y)
{
    const uint8_t* p = image.getPixel(face, 0, x, y);
    if (!p)
        return {-1, -1, -1, -1};
    return {p[0], p[1], p[2], p[3]};
}

// One BGRA8 pixel whose red channel is value.
std::string onePixelDds(uint8_t value)
{
    return DdsBytes(1, 1).bgra8().pixels({0, 0, value, 255}).text();
}

void appendBytes(void* context, void* data, int size)
{
    auto* out = static_cast<std::string*>(context);
    out->append(static_cast<const char*>(data), size_t(size));
}

// A 2x1 image (red, half-transparent green) in a format stb writes.
std::string encodeWithStb(const char* format)
{
    const uint8_t rgba[] = {255, 0, 0, 255, 0, 255, 0, 128};
    std::string out;
    if (std::string(format) == "png")
        stbi_write_png_to_func(appendBytes, &out, 2, 1, 4, rgba, 8);
    else if (std::string(format) == "tga")
        stbi_write_tga_to_func(appendBytes, &out, 2, 1, 4, rgba);
    else
        stbi_write_jpg_to_func(appendBytes, &out, 2, 1, 4, rgba, 100);
    return out;
}

// Points the project root at a temporary folder for one test.
class TextureManagerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_oldRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(m_folder.path());
    }
    void TearDown() override { jDir::setProjectRoot(m_oldRoot); }

    TempFolder m_folder;
    TextureManager m_manager;
    jString m_oldRoot;
};

} // namespace

TEST_F(TextureManagerTest, CachesByNormalisedRootRelativePath)
{
    m_folder.write("data/a.dds", onePixelDds(7));
    EXPECT_EQ(m_manager.find("data/a.dds"), nullptr);
    const TextureManager::ImagePtr first = m_manager.load("data/a.dds");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(pixelOf(*first, 0, 0, 0), (Pixel{7, 0, 0, 255}));
    EXPECT_EQ(m_manager.load("data/./x/../a.dds"), first);
    EXPECT_EQ(m_manager.find("data//a.dds"), first);
    EXPECT_EQ(m_manager.getCount(), 1u);

    // The cache answers without reading the file again.
    m_folder.write("data/a.dds", onePixelDds(9));
    EXPECT_EQ(m_manager.load("data/a.dds"), first);

    EXPECT_TRUE(m_manager.remove("data/a.dds"));
    EXPECT_FALSE(m_manager.remove("data/a.dds"));
    const TextureManager::ImagePtr second = m_manager.load("data/a.dds");
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(pixelOf(*second, 0, 0, 0), (Pixel{9, 0, 0, 255}));
    EXPECT_EQ(pixelOf(*first, 0, 0, 0), (Pixel{7, 0, 0, 255}));
}

TEST_F(TextureManagerTest, ReloadReplacesTheEntryAndKeepsItWhenTheFileBreaks)
{
    m_folder.write("data/a.dds", onePixelDds(1));
    const TextureManager::ImagePtr first = m_manager.load("data/a.dds");
    ASSERT_NE(first, nullptr);

    m_folder.write("data/a.dds", onePixelDds(2));
    const TextureManager::ImagePtr second = m_manager.reload("data/a.dds");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(pixelOf(*second, 0, 0, 0), (Pixel{2, 0, 0, 255}));
    EXPECT_EQ(pixelOf(*first, 0, 0, 0), (Pixel{1, 0, 0, 255}));
    EXPECT_EQ(m_manager.find("data/a.dds"), second);

    m_folder.write("data/a.dds", "DDS ");
    jLog::Capture capture;
    EXPECT_EQ(m_manager.reload("data/a.dds"), nullptr);
    EXPECT_EQ(capture.text(), "error: TextureManager: can't load \"data/a.dds\": file too small for a DDS header (4 bytes)\n");
    EXPECT_EQ(m_manager.find("data/a.dds"), second);
}

TEST_F(TextureManagerTest, ReleaseUnusedDropsOnlyEntriesNobodyHolds)
{
    m_folder.write("data/a.dds", onePixelDds(1));
    m_folder.write("data/b.dds", onePixelDds(2));
    TextureManager::ImagePtr held = m_manager.load("data/a.dds");
    ASSERT_NE(m_manager.load("data/b.dds"), nullptr);
    EXPECT_EQ(m_manager.releaseUnused(), 1u);
    EXPECT_EQ(m_manager.find("data/a.dds"), held);
    EXPECT_EQ(m_manager.find("data/b.dds"), nullptr);
    m_manager.clear();
    EXPECT_EQ(m_manager.getCount(), 0u);
    EXPECT_EQ(pixelOf(*held, 0, 0, 0), (Pixel{1, 0, 0, 255}));
}

TEST_F(TextureManagerTest, FailuresAreLoggedWithPathAndReasonAndNotCached)
{
    jLog::Capture capture;
    EXPECT_EQ(m_manager.load("data/missing.dds"), nullptr);
    m_folder.write("data/short.dds", DdsBytes(4, 4).bgra8().pixels({1, 2, 3}).text());
    EXPECT_EQ(m_manager.load("data/short.dds"), nullptr);
    m_folder.write("data/bad.png", "not an image at all");
    EXPECT_EQ(m_manager.load("data/bad.png"), nullptr);
    m_folder.write("data/empty.dds", "");
    EXPECT_EQ(m_manager.load("data/empty.dds"), nullptr);
    EXPECT_EQ(m_manager.load(""), nullptr);
    m_folder.makeFolder("data/folder.dds");
    EXPECT_EQ(m_manager.load("data/folder.dds"), nullptr);
    EXPECT_EQ(capture.text(),
              "error: TextureManager: can't load \"data/missing.dds\": no such file\n"
              "error: TextureManager: can't load \"data/short.dds\": pixel data truncated: needs 64 bytes, has 3\n"
              "error: TextureManager: can't load \"data/bad.png\": not a readable image (unknown image type)\n"
              "error: TextureManager: can't load \"data/empty.dds\": not a DDS file (bad magic)\n"
              "error: TextureManager: can't load \"\": empty path\n"
              "error: TextureManager: can't load \"data/folder.dds\": not a regular file\n");
    EXPECT_EQ(m_manager.getCount(), 0u);

    m_folder.write("data/missing.dds", onePixelDds(5));
    EXPECT_NE(m_manager.load("data/missing.dds"), nullptr);
}

TEST_F(TextureManagerTest, ReadsPngTgaAndJpegThroughStbAndDdsByItsMagic)
{
    m_folder.write("data/a.png", encodeWithStb("png"));
    m_folder.write("data/a.tga", encodeWithStb("tga"));
    m_folder.write("data/a.jpg", encodeWithStb("jpg"));
    for (const char* name : {"data/a.png", "data/a.tga"}) {
        SCOPED_TRACE(name);
        const TextureManager::ImagePtr image = m_manager.load(name);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getWidth(), 2);
        EXPECT_EQ(image->getHeight(), 1);
        EXPECT_EQ(image->getMipLevels(), 1);
        EXPECT_EQ(pixelOf(*image, 0, 0, 0), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixelOf(*image, 0, 1, 0), (Pixel{0, 255, 0, 128}));
    }
    EXPECT_EQ(m_manager.load("data/a.png")->getSourceFormat(), "PNG");
    EXPECT_EQ(m_manager.load("data/a.tga")->getSourceFormat(), "TGA");
    const TextureManager::ImagePtr jpeg = m_manager.load("data/a.jpg");
    ASSERT_NE(jpeg, nullptr);
    EXPECT_EQ(jpeg->getSourceFormat(), "JPEG");
    EXPECT_EQ(jpeg->getWidth(), 2);
    EXPECT_EQ(pixelOf(*jpeg, 0, 0, 0)[3], 255);

    // DDS is recognised by its magic whatever the name.
    m_folder.write("data/texture.bin", onePixelDds(3));
    const TextureManager::ImagePtr dds = m_manager.load("data/texture.bin");
    ASSERT_NE(dds, nullptr);
    EXPECT_EQ(dds->getSourceFormat(), "BGRA8");
}

TEST_F(TextureManagerTest, ProjectRootWinsOverTheBundledRoot)
{
    m_folder.write("data/core/textures/common/white.dds", onePixelDds(42));
    const TextureManager::ImagePtr own = m_manager.load("data/core/textures/common/white.dds");
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(pixelOf(*own, 0, 0, 0), (Pixel{42, 0, 0, 255}));
    // Files the project lacks come from the bundled data.
    const TextureManager::ImagePtr bundled = m_manager.load("data/core/textures/common/black.dds");
    ASSERT_NE(bundled, nullptr);
    EXPECT_EQ(bundled->getWidth(), 4);
}

TEST(BundledImages, LoadWithTheirExpectedShapes)
{
    struct Expected {
        const char* path;
        int width, height, faces, mips;
        const char* format;
    };
    const Expected images[] = {
        {"data/core/textures/common/black.dds", 4, 4, 1, 3, "BGRA8"},
        {"data/core/textures/common/white.dds", 4, 4, 1, 3, "BGRA8"},
        {"data/core/textures/environment/sky.dds", 64, 64, 6, 7, "BGRA8"},
        {"data/core/editor/gui/widget_graph.png", 256, 128, 1, 1, "PNG"},
        {"data/core/editor/gui/save.dds", 32, 32, 1, 1, "BGRA8"},
        {"data/core/editor/gui/apply.dds", 32, 32, 1, 1, "BGRA8"},
        {"data/core/editor/gui/center.dds", 32, 32, 1, 1, "BGRA8"},
        {"data/core/editor/gui/function.dds", 32, 32, 1, 1, "BGRA8"},
    };
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    TextureManager manager;
    for (const Expected& e : images) {
        SCOPED_TRACE(e.path);
        const TextureManager::ImagePtr image = manager.load(e.path);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getWidth(), e.width);
        EXPECT_EQ(image->getHeight(), e.height);
        EXPECT_EQ(image->getFaces(), e.faces);
        EXPECT_EQ(image->getMipLevels(), e.mips);
        EXPECT_EQ(image->getSourceFormat(), e.format);
    }
    for (int level = 0; level < 3; ++level) {
        EXPECT_EQ(manager.load(images[0].path)->getPixel(0, level, 0, 0)[0], 0);
        EXPECT_EQ(manager.load(images[1].path)->getPixel(0, level, 0, 0)[0], 255);
    }
    // Icons are pictograms on a transparent background.
    for (size_t i = 4; i < 8; ++i) {
        const TextureManager::ImagePtr icon = manager.load(images[i].path);
        EXPECT_EQ(pixelOf(*icon, 0, 0, 0)[3], 0) << images[i].path;
        EXPECT_EQ(pixelOf(*icon, 0, 16, 16)[3], 255) << images[i].path;
    }
}

TEST(BundledImages, SkyIsBlueAboveDarkBelowAndBrightestTowardsTheSun)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    const TextureManager::ImagePtr sky = TextureManager().load("data/core/textures/environment/sky.dds");
    ASSERT_NE(sky, nullptr);
    const Pixel up = pixelOf(*sky, 2, 32, 32), down = pixelOf(*sky, 3, 32, 32);
    EXPECT_GT(up[2], up[0] + 60);
    EXPECT_LT(down[0] + down[1] + down[2], 3 * 80);
    // The sun lies towards +X, +Y, +Z: the brightest texel of level 0 is on
    // one of those faces, at least as bright as almost white.
    int brightest = 0, brightestFace = -1;
    for (int face = 0; face < 6; ++face)
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                const Pixel p = pixelOf(*sky, face, x, y);
                if (p[0] + p[1] + p[2] > brightest)
                    brightest = p[0] + p[1] + p[2], brightestFace = face;
            }
    EXPECT_TRUE(brightestFace == 0 || brightestFace == 2 || brightestFace == 4) << brightestFace;
    EXPECT_GE(brightest, 3 * 230);
}

TEST(BundledImages, SpriteSheetHasItsShapesInTheirTextureRectangles)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    const TextureManager::ImagePtr sheet = TextureManager().load("data/core/editor/gui/widget_graph.png");
    ASSERT_NE(sheet, nullptr);
    // Frame (u 0-0.25, v 0-0.5): transparent rounded corner, opaque body and
    // a band around the centre (texels 31-33) that is uniform for stretching.
    EXPECT_EQ(pixelOf(*sheet, 0, 0, 0)[3], 0);
    EXPECT_EQ(pixelOf(*sheet, 0, 32, 32)[3], 255);
    for (int t = 31; t <= 33; ++t) {
        EXPECT_EQ(pixelOf(*sheet, 0, t, 1), pixelOf(*sheet, 0, 32, 1));
        EXPECT_EQ(pixelOf(*sheet, 0, 1, t), pixelOf(*sheet, 0, 1, 32));
        EXPECT_EQ(pixelOf(*sheet, 0, 64 + t, 2), pixelOf(*sheet, 0, 96, 2));
    }
    // Inner panel (u 0.25-0.5): opaque in the middle.
    EXPECT_EQ(pixelOf(*sheet, 0, 96, 32)[3], 255);
    // Anchor cells of kinds 0-2 (u 0.5-0.875), rows 0-3: white in the
    // centre, transparent in the cell corners.
    for (int column = 4; column <= 6; ++column)
        for (int row = 0; row < 4; ++row) {
            const int x = column * 32, y = row * 32;
            EXPECT_EQ(pixelOf(*sheet, 0, x, y)[3], 0);
            if (column != 5) {
                EXPECT_EQ(pixelOf(*sheet, 0, x + 16, y + 16), (Pixel{255, 255, 255, 255}));
            }
        }
    // Arrow heads (u 0.875-1.0): row 0 points left, 1 right, 2 up, 3 down;
    // the tip touches the cell edge in that direction.
    EXPECT_GT(pixelOf(*sheet, 0, 224 + 1, 16)[3], 0);
    EXPECT_EQ(pixelOf(*sheet, 0, 255, 16)[3], 0);
    EXPECT_GT(pixelOf(*sheet, 0, 254, 32 + 16)[3], 0);
    EXPECT_GT(pixelOf(*sheet, 0, 224 + 15, 64 + 1)[3], 0);
    EXPECT_GT(pixelOf(*sheet, 0, 224 + 15, 96 + 30)[3], 0);
    // The lower half of the first two columns is unused.
    EXPECT_EQ(pixelOf(*sheet, 0, 64, 96)[3], 0);
}
