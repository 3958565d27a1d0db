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
    if (result.exitCode == 1 && result.err.find("error: preview: no OpenGL context: ") == 0)
        GTEST_SKIP() << result.err;
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "preview: wrote \"" + (out / "front.png") + "\"\n");

    const ToolResult quiet = render("default.png", {"--quiet"});
    EXPECT_EQ(quiet.exitCode, 0) << quiet.err;
    EXPECT_EQ(quiet.err, "");
    ASSERT_EQ(render("yaw.png", {"--size", "64", "--yaw", "40"}).exitCode, 0);
    ASSERT_EQ(render("pitch.png", {"--size", "64", "--pitch", "-30"}).exitCode, 0);

    int width = 0, height = 0;
    pixelsOf(out / "default.png", width, height);
    EXPECT_EQ(width, 256);
    const std::string front = pixelsOf(out / "front.png", width, height);
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 64);
    for (const char* turned : {"yaw.png", "pitch.png"}) {
        const std::string pixels = pixelsOf(out / turned, width, height);
        EXPECT_EQ(pixels.size(), front.size()) << turned;
        EXPECT_NE(pixels, front) << turned;
    }
}

TEST_F(PreviewCommandTest, RefusesBadPathsAndOptionsBeforeRendering)
{
    TempFolder project, elsewhere;
    project.makeFolder("data");
    const std::string outside = elsewhere.write("x.mat", "materials { material {} }\n");
    const struct {
        std::vector<std::string> args;
        int exitCode;
        std::string err;
    } cases[] = {
        {{outside, "-o", out / "x.png"}, 2,
            "error: preview: \"" + outside + "\" is outside the data root \"" + project.path() + "\"\n"},
        {{"data/none.mat", "-o", out / "x.png"}, 1, "error: preview: \"data/none.mat\" does not exist\n"},
        {{"data/none.mat"}, 2, "--output is required\nRun with --help for more information.\n"},
        {{"data/none.mat", "-o", "x.png", "--size", "0"}, 2,
            "--size: Value 0 not in range 1 to 4096\nRun with --help for more information.\n"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"--data-root", project.path(), "preview"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ToolResult result = runTool(args, {project.path(), std::nullopt});
        EXPECT_EQ(result.exitCode, c.exitCode) << c.err;
        EXPECT_EQ(result.err, c.err);
    }
    EXPECT_FALSE(std::filesystem::exists(out / "x.png"));
}
