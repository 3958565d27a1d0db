#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>
#include <stb_image.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

// material-tool preview run end to end: the bundled samples render from the
// repository's data root into a throw-away folder; the failures run on a
// throw-away project root (the bundled root supplies data/core).
namespace {

struct Png {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgba;

    const unsigned char* at(int x, int y) const { return rgba.data() + 4 * (size_t(y) * size_t(width) + size_t(x)); }
};

Png readPng(const std::string& path)
{
    Png png;
    int channels = 0;
    unsigned char* pixels = stbi_load(path.c_str(), &png.width, &png.height, &channels, 4);
    if (pixels) {
        png.rgba.assign(pixels, pixels + 4 * size_t(png.width) * size_t(png.height));
        stbi_image_free(pixels);
    }
    return png;
}

int colourDistance(const unsigned char* a, const unsigned char* b)
{
    return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
}

std::string readSource(const std::string& relative)
{
    std::ifstream in(std::string(MATERIAL_SOURCE_ROOT) + "/" + relative, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool lacksContext(const ToolResult& result)
{
    return result.exitCode == 1 && result.err.find("error: preview: no OpenGL context: ") == 0;
}

class PreviewCommandTest : public ::testing::Test {
protected:
    void SetUp() override { project.makeFolder("data"); }

    // Renders a bundled material, from the repository's root, into out/NAME.
    ToolResult renderSample(
        const std::string& material, const std::string& name, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> args = {"--data-root", MATERIAL_SOURCE_ROOT, "preview", material, "-o", out / name};
        args.insert(args.end(), options.begin(), options.end());
        return runTool(args, {MATERIAL_SOURCE_ROOT, std::nullopt});
    }

    ToolResult renderInProject(const std::string& material)
    {
        return runTool({"--data-root", project.path(), "preview", material, "-o", out / "project.png"},
            {project.path(), std::nullopt});
    }

    TempFolder out;
    TempFolder project;
};

} // namespace

TEST_F(PreviewCommandTest, ASampleRendersToAPngOfTheRequestedSize)
{
    const ToolResult result = renderSample("data/materials/textured.mat", "textured.png", {"--size", "96"});
    if (lacksContext(result))
        GTEST_SKIP() << result.err;
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "preview: wrote \"" + (out / "textured.png") + "\"\n");

    const Png png = readPng(out / "textured.png");
    ASSERT_EQ(png.width, 96);
    ASSERT_EQ(png.height, 96);
    // The sphere fills the middle of the frame, the sky its corners.
    EXPECT_GT(colourDistance(png.at(48, 48), png.at(2, 2)), 24);

    const ToolResult quiet = renderSample("data/materials/metal_gold.mat", "gold.png", {"--quiet"});
    EXPECT_EQ(quiet.exitCode, 0) << quiet.err;
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(readPng(out / "gold.png").width, 256);
}

TEST_F(PreviewCommandTest, YawAndPitchTurnTheCameraAroundTheSphere)
{
    const ToolResult front = renderSample("data/materials/textured.mat", "front.png", {"--size", "64"});
    if (lacksContext(front))
        GTEST_SKIP() << front.err;
    ASSERT_EQ(front.exitCode, 0) << front.err;
    ASSERT_EQ(renderSample("data/materials/textured.mat", "yaw.png", {"--size", "64", "--yaw", "40"}).exitCode, 0);
    ASSERT_EQ(renderSample("data/materials/textured.mat", "pitch.png", {"--size", "64", "--pitch", "-30"}).exitCode, 0);

    const Png reference = readPng(out / "front.png");
    for (const char* turned : {"yaw.png", "pitch.png"}) {
        const Png png = readPng(out / turned);
        ASSERT_EQ(png.rgba.size(), reference.rgba.size()) << turned;
        EXPECT_NE(png.rgba, reference.rgba) << turned;
    }
}

TEST_F(PreviewCommandTest, RefusesBadPathsAndOptionsBeforeRendering)
{
    TempFolder elsewhere;
    const std::string outside = elsewhere.write("x.mat", "materials { material {} }\n");
    const ToolResult foreign = renderInProject(outside);
    EXPECT_EQ(foreign.exitCode, 2);
    EXPECT_EQ(foreign.err, "error: preview: \"" + outside + "\" is outside the data root \"" + project.path() + "\"\n");

    const ToolResult missing = renderInProject("data/none.mat");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "error: preview: \"data/none.mat\" does not exist\n");

    const ToolResult noOutput = runTool({"preview", "data/none.mat"}, {project.path(), std::nullopt});
    EXPECT_EQ(noOutput.exitCode, 2);
    const ToolResult zero =
        runTool({"preview", "data/none.mat", "-o", "x.png", "--size", "0"}, {project.path(), std::nullopt});
    EXPECT_EQ(zero.exitCode, 2);
    EXPECT_FALSE(std::filesystem::exists(out / "project.png"));
}

TEST_F(PreviewCommandTest, AShaderErrorIsReportedWithItsGeneratedLine)
{
    std::string material = readSource("data/materials/plastic_red.mat");
    const std::string line = "\t\t\t\ti \"Surface OUT = default_surface();\"\n";
    const size_t at = material.find(line);
    ASSERT_NE(at, std::string::npos);
    material.insert(at + line.size(), "\t\t\t\ti \"OUT.base_color = undeclared_colour;\"\n");
    project.write("data/broken.mat", material);

    const ToolResult result = renderInProject("data/broken.mat");
    if (lacksContext(result))
        GTEST_SKIP() << result.err;
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')),
        "error: Render::buildProgram: \"data/broken.mat\" ambient fragment: generated:11(18): error: "
        "`undeclared_colour' undeclared");
    EXPECT_FALSE(std::filesystem::exists(out / "project.png"));
}
