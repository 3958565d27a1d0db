#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>
#include <stb_image.h>

#include <filesystem>

// material-tool preview end to end: a bundled sample renders from the
// repository's data root into a throw-away folder; what it looks like is
// checked in the renderer's own tests.
namespace {

std::string pixelsOf(const std::string& png, int& width, int& height)
{
    int channels = 0;
    unsigned char* pixels = stbi_load(png.c_str(), &width, &height, &channels, 4);
    const std::string rgba = pixels ? std::string(pixels, pixels + 4 * size_t(width) * size_t(height)) : "";
    stbi_image_free(pixels);
    return rgba;
}

class PreviewCommandTest : public ::testing::Test {
protected:
    // Renders data/materials/textured.mat, from the repository's root, into out/NAME.
    ToolResult render(const std::string& name, const std::vector<std::string>& options)
    {
        std::vector<std::string> args = {
            "--data-root", MATERIAL_SOURCE_ROOT, "preview", "data/materials/textured.mat", "-o", out / name};
        args.insert(args.end(), options.begin(), options.end());
        return runTool(args, {MATERIAL_SOURCE_ROOT, std::nullopt});
    }

    TempFolder out;
};

} // namespace

TEST_F(PreviewCommandTest, WritesAPngOfTheRequestedSizeSeenFromTheRequestedAngle)
{
    const ToolResult result = render("front.png", {"--size", "64"});
    if (!MATERIAL_REQUIRE_GL && result.exitCode == 1 && result.err.find("error: preview: no OpenGL context: ") == 0)
        GTEST_SKIP() << result.err;
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "preview: wrote \"" + (out / "front.png") + "\"\n");

    const ToolResult quiet = render("default.png", {"--quiet"});
    EXPECT_EQ(quiet.exitCode, 0) << quiet.err;
    EXPECT_EQ(quiet.err, "");
    ASSERT_EQ(render("yaw.png", {"--size", "64", "--yaw", "40"}).exitCode, 0);

    int width = 0, height = 0;
    pixelsOf(out / "default.png", width, height);
    EXPECT_EQ(width, 256);
    const std::string front = pixelsOf(out / "front.png", width, height);
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 64);
    const std::string turned = pixelsOf(out / "yaw.png", width, height);
    EXPECT_EQ(turned.size(), front.size());
    EXPECT_NE(turned, front);
}

TEST_F(PreviewCommandTest, RefusesBadOptionsBeforeRendering)
{
    const std::string help = "Run with --help for more information.\n";
    const ToolResult size = render("x.png", {"--size", "0"});
    EXPECT_EQ(size.exitCode, 2);
    EXPECT_EQ(size.err, "--size: Value 0 not in range 1 to 4096\n" + help);
    EXPECT_FALSE(std::filesystem::exists(out / "x.png"));
    const ToolResult noOutput = runTool({"preview", "data/none.mat"}, {out.path(), std::nullopt});
    EXPECT_EQ(noOutput.exitCode, 2);
    EXPECT_EQ(noOutput.err, "--output is required\n" + help);
}
