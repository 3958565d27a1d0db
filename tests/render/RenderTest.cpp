#include "MaterialManager.h"
#include "PreviewRenderer.h"
#include "Render.h"
#include "jDir.h"
#include "jLog.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <filesystem>

namespace {

constexpr int kSize = 128;
const jString kTestRoot = MATERIAL_TEST_DATA "/render";

using Pixel = std::array<int, 4>;

Pixel pixelAt(const std::vector<uint8_t>& rgba, int x, int y)
{
    const uint8_t* p = rgba.data() + (size_t(y) * kSize + size_t(x)) * 4;
    return {p[0], p[1], p[2], p[3]};
}

double fractionOf(const std::vector<uint8_t>& rgba, const Pixel& colour)
{
    size_t count = 0;
    for (size_t i = 0; i < rgba.size(); i += 4)
        count += Pixel{rgba[i], rgba[i + 1], rgba[i + 2], rgba[i + 3]} == colour;
    return double(count) / double(kSize * kSize);
}

// One GL preview for the whole suite: a context is slow to make on llvmpipe.
class RenderTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { preview = PreviewRenderer::create(kSize, kSize, reason).release(); }
    static void TearDownTestSuite() { delete std::exchange(preview, nullptr); }
    void SetUp() override
    {
        // Where Mesa is installed a context can always be made; a skip
        // there would hide a broken preview.
        if (!preview && MATERIAL_REQUIRE_GL)
            FAIL() << "no OpenGL context although Mesa is installed: " << reason;
        if (!preview)
            GTEST_SKIP() << "no OpenGL context: " << reason;
        jDir::setProjectRoot(kTestRoot);
        MaterialManager::get().clear();
        preview->getCamera().reset();
    }

    // A frame drawn straight by the renderer, without the preview pass.
    std::vector<uint8_t> plainFrame(const Material& material, const Material* sky = nullptr)
    {
        Render& render = preview->getRender();
        render.setCamera(preview->getCamera());
        EXPECT_TRUE(render.renderFrame(material, sky));
        std::vector<uint8_t> rgba;
        render.readPixels(rgba);
        return rgba;
    }

    static inline PreviewRenderer* preview = nullptr;
    static inline jString reason;
};

// An instance with another colour renders differently, its parent unchanged.
TEST_F(RenderTest, MaterialDrawsASphereOverTheSkyItsInstanceInItsOwnColourAndTheDollyShrinksIt)
{
    auto material = MaterialManager::get().load("data/materials/flat.mat");
    auto sky = MaterialManager::get().load(PreviewRenderer::kSkyMaterial);
    ASSERT_TRUE(material && sky);
    const std::vector<uint8_t> rgba = plainFrame(*material, sky.get());
    ASSERT_EQ(rgba.size(), size_t(kSize * kSize * 4));
    EXPECT_EQ(pixelAt(rgba, kSize / 2, kSize / 2), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(rgba, 0, 0), (Pixel{128, 128, 128, 255}));
    EXPECT_EQ(pixelAt(rgba, kSize - 1, kSize - 1), (Pixel{128, 128, 128, 255}));
    // The sphere's radius in half-widths is tan(asin(1/d)) / tan(22.5 deg):
    // 57.2% of the frame at distance 3. Multisampled edge pixels are mixed.
    const double sphere = fractionOf(rgba, {255, 0, 0, 255});
    const double sky_ = fractionOf(rgba, {128, 128, 128, 255});
    EXPECT_NEAR(sphere, 0.572, 0.012);
    EXPECT_GT(sphere + sky_, 0.97);
    EXPECT_LT(sphere + sky_, 1.0);

    auto instance = MaterialManager::get().load("data/materials/flat_blue.mat");
    ASSERT_TRUE(instance);
    EXPECT_EQ(pixelAt(plainFrame(*instance), kSize / 2, kSize / 2), (Pixel{0, 0, 255, 255}));
    for (int i = 0; i < 10; ++i)
        preview->getCamera().onMouseWheel(OrbitCamera::kWheelOut);
    EXPECT_NEAR(fractionOf(plainFrame(*material), {255, 0, 0, 255}), 0.3046, 0.012); // distance 4
}

TEST_F(RenderTest, ShaderErrorIsReportedAndThePreviousMaterialStays)
{
    namespace fs = std::filesystem;
    TempFolder root;
    fs::copy(kTestRoot + "/data", root / "data", fs::copy_options::recursive);
    jDir::setProjectRoot(root.path());
    const jString path = "data/materials/edit.mat";
    fs::copy_file(root / "data/materials/flat.mat", root / path);
    auto good = MaterialManager::get().load(path);
    ASSERT_TRUE(good);
    EXPECT_EQ(pixelAt(plainFrame(*good), kSize / 2, kSize / 2), (Pixel{255, 0, 0, 255}));
    fs::copy_file(root / "data/materials/broken.mat", root / path, fs::copy_options::overwrite_existing);
    auto broken = MaterialManager::get().reload(path);
    ASSERT_TRUE(broken);
    jLog::Capture log;
    Render& render = preview->getRender();
    EXPECT_TRUE(render.renderFrame(*broken, nullptr));
    EXPECT_EQ(log.text(), "error: Render::buildProgram: \"data/materials/edit.mat\" ambient fragment: generated:3(14): "
                          "error: `undeclared_colour' undeclared\n");
    std::vector<uint8_t> rgba;
    render.readPixels(rgba);
    EXPECT_EQ(pixelAt(rgba, kSize / 2, kSize / 2), (Pixel{255, 0, 0, 255}));

    // The failure is reported once, not on every frame.
    log.clear();
    EXPECT_TRUE(render.renderFrame(*broken, nullptr));
    EXPECT_TRUE(log.empty());
}

TEST_F(RenderTest, PreviewPassOverridesStatesForTheFrameOnly)
{
    auto material = MaterialManager::get().load("data/materials/flat.mat");
    ASSERT_TRUE(material);
    EnvironmentCoefficients own{};
    own[0] = {1, 2, 3};
    preview->getRender().setEnvironmentCoefficients(own);

    std::vector<uint8_t> rgba;
    ASSERT_TRUE(preview->renderPixels(*material, rgba));
    EXPECT_EQ(pixelAt(rgba, kSize / 2, kSize / 2), (Pixel{0, 255, 0, 255})); // EDITOR_MODE on

    EXPECT_EQ(material->findState("EDITOR_MODE")->value, 0);
    EXPECT_EQ(material->findState("Environment")->value, 0);
    EXPECT_EQ(material->findState("Quality")->value, 3);
    EXPECT_EQ(preview->getRender().getEnvironmentCoefficients()[0], (math3d::Vec3{1, 2, 3}));
    EXPECT_FALSE(MaterialManager::get().isEditorMode());
    EXPECT_EQ(pixelAt(plainFrame(*material), kSize / 2, kSize / 2), (Pixel{255, 0, 0, 255}));
}

TEST_F(RenderTest, PreviewPassLightsWithTheSkyCoefficients)
{
    auto material = MaterialManager::get().load("data/materials/environment.mat");
    ASSERT_TRUE(material);
    std::vector<uint8_t> rgba;
    ASSERT_TRUE(preview->renderPixels(*material, rgba));
    const math3d::Vec3 dc = preview->getSkyCoefficients()[0] * 0.1f;
    const Pixel centre = pixelAt(rgba, kSize / 2, kSize / 2);
    const float expected[3] = {dc.x, dc.y, dc.z};
    for (size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(centre[i], expected[i] * 255, 1.0);
    EXPECT_GT(centre[2], 0);
    EXPECT_EQ(material->findState("Environment")->value, 0);
    EXPECT_EQ(pixelAt(plainFrame(*material), kSize / 2, kSize / 2), (Pixel{255, 0, 255, 255}));
}

// Writing a frame is covered by the preview command; a frame of the wrong
// size is refused.
TEST_F(RenderTest, WritingAPngRefusesPixelsOfTheWrongSize)
{
    TempFolder folder;
    jLog::Capture log;
    EXPECT_FALSE(Render::writePng(folder / "short.png", kSize, kSize, {1, 2, 3}));
    EXPECT_EQ(log.text(), "error: Render::writePng: \"" + folder / "short.png" + "\": the pixels do not match 128x128\n");
}

} // namespace
