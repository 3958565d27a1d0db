#include "TextureManager.h"

#include "jLog.h"

#include "DdsBytes.h"
#include "TempRootTest.h"

#include <stb_image_write.h>

#include <array>
#include <string>

namespace {

using Pixel = std::array<int, 4>;
using ImagePtr = TextureManager::ImagePtr;

Pixel pixelOf(const jImage& image, int x = 0, int y = 0)
{
    const uint8_t* p = image.getPixel(0, 0, x, y);
    return p ? Pixel{p[0], p[1], p[2], p[3]} : Pixel{-1, -1, -1, -1};
}

// One BGRA8 pixel whose red channel is value.
std::string onePixelDds(uint8_t value)
{
    return DdsBytes(1, 1).bgra8().pixels({0, 0, value, 255}).text();
}

void appendBytes(void* context, void* data, int size)
{
    static_cast<std::string*>(context)->append(static_cast<const char*>(data), size_t(size));
}

class TextureManagerTest : public TempRootTest {
protected:
    TextureManager m_manager;
};

} // namespace

TEST_F(TextureManagerTest, CachesByNormalisedPathReleasesUnheldRemovesAndReloads)
{
    root.write("data/a.dds", onePixelDds(7));
    root.write("data/b.dds", onePixelDds(2));
    const ImagePtr first = m_manager.load("data/a.dds");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(pixelOf(*first), (Pixel{7, 0, 0, 255}));
    EXPECT_EQ(m_manager.load("data/./x/../a.dds"), first);
    EXPECT_EQ(m_manager.find("data//a.dds"), first);
    ASSERT_NE(m_manager.load("data/b.dds"), nullptr);
    EXPECT_EQ(m_manager.releaseUnused(), 1u);
    EXPECT_EQ(m_manager.getCount(), 1u);

    // The cache answers without reading the file again.
    root.write("data/a.dds", onePixelDds(9));
    EXPECT_EQ(m_manager.load("data/a.dds"), first);
    EXPECT_TRUE(m_manager.remove("data/a.dds"));
    const ImagePtr second = m_manager.load("data/a.dds");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(pixelOf(*second), (Pixel{9, 0, 0, 255}));

    // Reload replaces the entry, holders keep theirs, and a broken file keeps it.
    root.write("data/a.dds", onePixelDds(2));
    const ImagePtr third = m_manager.reload("data/a.dds");
    ASSERT_NE(third, nullptr);
    EXPECT_EQ(pixelOf(*third), (Pixel{2, 0, 0, 255}));
    EXPECT_EQ(pixelOf(*second), (Pixel{9, 0, 0, 255}));
    EXPECT_EQ(m_manager.find("data/a.dds"), third);

    root.write("data/a.dds", "DDS ");
    jLog::Capture capture;
    EXPECT_EQ(m_manager.reload("data/a.dds"), nullptr);
    EXPECT_EQ(capture.text(), "error: TextureManager: can't load \"data/a.dds\": file too small for a DDS header (4 bytes)\n");
    EXPECT_EQ(m_manager.find("data/a.dds"), third);
}

TEST_F(TextureManagerTest, FailuresAreLoggedWithPathAndReasonAndNotCached)
{
    root.write("data/bad.png", "not an image at all");
    root.write("data/empty.dds", "");
    root.makeFolder("data/folder.dds");
    jLog::Capture capture;
    for (const char* path : {"data/missing.dds", "data/bad.png", "data/empty.dds", "", "data/folder.dds",
             "/etc/passwd", "../data/missing.dds"})
        EXPECT_EQ(m_manager.load(path), nullptr) << path;
    EXPECT_EQ(capture.text(),
              "error: TextureManager: can't load \"data/missing.dds\": no such file\n"
              "error: TextureManager: can't load \"data/bad.png\": not a readable image (unknown image type)\n"
              "error: TextureManager: can't load \"data/empty.dds\": not a DDS file (bad magic)\n"
              "error: TextureManager: can't load \"\": empty path\n"
              "error: TextureManager: can't load \"data/folder.dds\": a folder, not a regular file\n"
              "error: TextureManager: can't load \"/etc/passwd\": outside the data root\n"
              "error: TextureManager: can't load \"../data/missing.dds\": outside the data root\n");
    EXPECT_EQ(m_manager.getCount(), 0u);
    root.write("data/missing.dds", onePixelDds(5));
    EXPECT_NE(m_manager.load("data/missing.dds"), nullptr);
}

TEST_F(TextureManagerTest, ReadsPngThroughStbAndDdsByItsMagic)
{
    // A 2x1 image: red, half-transparent green.
    const uint8_t rgba[] = {255, 0, 0, 255, 0, 255, 0, 128};
    std::string png;
    stbi_write_png_to_func(appendBytes, &png, 2, 1, 4, rgba, 8);
    root.write("data/a.png", png);
    root.write("data/texture.bin", onePixelDds(3));
    const ImagePtr image = m_manager.load("data/a.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getSourceFormat(), "PNG");
    EXPECT_EQ(pixelOf(*image, 0, 0), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelOf(*image, 1, 0), (Pixel{0, 255, 0, 128}));
    // DDS is recognised by its magic whatever the name.
    EXPECT_EQ(m_manager.load("data/texture.bin")->getSourceFormat(), "BGRA8");
}

