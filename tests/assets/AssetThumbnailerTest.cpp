// Thumbnails made from image files: the mip level taken, small pictures
// blown up pixel by pixel, transparency over the checkerboard, failures,
// and the worker's results reaching the UI thread.
#include "AssetThumbnailer.h"
#include "DdsBytes.h"
#include "ProjectRootScope.h"
#include "TempFolder.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

std::vector<uint8_t> solidBgra(int pixels, uint8_t r, uint8_t g, uint8_t b, uint8_t a = 255)
{
    std::vector<uint8_t> bytes;
    for (int i = 0; i < pixels; ++i)
        bytes.insert(bytes.end(), {b, g, r, a});
    return bytes;
}

class AssetThumbnailerTest : public ::testing::Test {
protected:
    static constexpr int kSize = 48;

    QImage make(const std::string& name, const std::string& bytes)
    {
        reason.clear();
        return AssetThumbnailer::make(folder.write(name, bytes), kSize, reason);
    }

    TempFolder folder;
    jString reason;
};

TEST_F(AssetThumbnailerTest, TakesTheSmallestMipLevelThatCoversTheThumbnail)
{
    // 256, 128 and 64 pixels: red, blue, green. 64 is the last one at least 48 wide.
    DdsBytes dds(256, 256);
    dds.bgra8().mips(3).pixels(solidBgra(256 * 256, 255, 0, 0)).pixels(solidBgra(128 * 128, 0, 0, 255))
        .pixels(solidBgra(64 * 64, 0, 255, 0));
    const QImage thumbnail = make("mips.dds", dds.text());
    ASSERT_FALSE(thumbnail.isNull()) << reason;
    EXPECT_EQ(thumbnail.size(), QSize(kSize, kSize));
    EXPECT_EQ(QColor(thumbnail.pixel(24, 24)), QColor(0, 255, 0));
}

TEST_F(AssetThumbnailerTest, SmallPicturesGrowPixelByPixelInsideAFrameOverTheCheckerboard)
{
    // Two pixels side by side: the thumbnail is 48 x 24, half red, half blue.
    std::vector<uint8_t> pixels = solidBgra(1, 255, 0, 0);
    const std::vector<uint8_t> blue = solidBgra(1, 0, 0, 255);
    pixels.insert(pixels.end(), blue.begin(), blue.end());
    const QImage thumbnail = make("pair.dds", DdsBytes(2, 1).bgra8().pixels(pixels).text());
    ASSERT_EQ(thumbnail.size(), QSize(48, 24));
    EXPECT_EQ(QColor(thumbnail.pixel(23, 12)), QColor(255, 0, 0));
    EXPECT_EQ(QColor(thumbnail.pixel(24, 12)), QColor(0, 0, 255));
    // The frame darkens the border.
    EXPECT_LT(qRed(thumbnail.pixel(0, 12)), 255);

    // Transparent pixels show the checkerboard.
    const QImage clear = make("clear.dds", DdsBytes(4, 4).bgra8().pixels(solidBgra(16, 255, 0, 0, 0)).text());
    ASSERT_FALSE(clear.isNull()) << reason;
    EXPECT_EQ(QColor(clear.pixel(3, 3)), QColor(240, 240, 240));
    EXPECT_EQ(QColor(clear.pixel(9, 3)), QColor(200, 200, 200));
}

TEST_F(AssetThumbnailerTest, FailuresComeBackWithTheirReason)
{
    EXPECT_TRUE(AssetThumbnailer::make(folder / "none.png", kSize, reason).isNull());
    EXPECT_EQ(reason, "no such file");
    ASSERT_EQ(mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    EXPECT_TRUE(AssetThumbnailer::make(folder / "pipe.png", kSize, reason).isNull());
    EXPECT_EQ(reason, "a pipe, not a regular file");
    EXPECT_TRUE(make("cut.dds", DdsBytes(8, 8).bgra8().pixels(solidBgra(4, 1, 2, 3)).text()).isNull());
    EXPECT_FALSE(reason.empty());
}

TEST_F(AssetThumbnailerTest, ResultsReachTheUiThreadAsSignals)
{
    ProjectRootScope rootScope(folder.path());
    folder.write("data/a.dds", DdsBytes(1, 1).bgra8().pixels(solidBgra(1, 9, 9, 9)).text());
    AssetThumbnailer thumbnailer(kSize);
    QSignalSpy ready(&thumbnailer, &AssetThumbnailer::thumbnailReady);
    QSignalSpy failed(&thumbnailer, &AssetThumbnailer::thumbnailFailed);
    thumbnailer.request("data/a.dds");
    thumbnailer.request("data/b.dds");
    QTRY_COMPARE_WITH_TIMEOUT(ready.count() + failed.count(), 2, 10000);
    EXPECT_EQ(ready.first().first().toString(), "data/a.dds");
    EXPECT_EQ(failed.first(), QList<QVariant>({"data/b.dds", "no such file"}));
    EXPECT_EQ(thumbnailer.getBusyCount(), 0u);
}

} // namespace
