#include "MatViewport.h"
#include "MaterialManager.h"
#include "jDir.h"
#include "jLog.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>

namespace {

constexpr int kSize = 256;
// Absolute positions sit this far from local ones: the orbit follows the
// absolute ones.
constexpr int kWindowOffset = 40;
const jString kTestRoot = MATERIAL_TEST_DATA "/viewport";

using Pixel = std::array<int, 4>;
using math3d::Vec3;

Pixel pixelAt(const QImage& image, int x, int y)
{
    const QColor c = image.pixelColor(x, y);
    return {c.red(), c.green(), c.blue(), c.alpha()};
}

// The mean colour of a square of side 16 at (x, y).
Vec3 meanAt(const QImage& image, int x, int y)
{
    Vec3 sum;
    for (int j = y; j < y + 16; ++j)
        for (int i = x; i < x + 16; ++i) {
            const QColor c = image.pixelColor(i, j);
            sum = sum + Vec3{float(c.red()), float(c.green()), float(c.blue())};
        }
    return sum * (1.0f / 256.0f);
}

UIEventMouse mouse(int x, int y, uint32_t buttons = UIEventMouse::kLeft)
{
    return UIEventMouse(x + kWindowOffset, y + kWindowOffset, x, y, buttons);
}

void expectNear(const Vec3& actual, const Vec3& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
    EXPECT_NEAR(actual.z, expected.z, 1e-5f);
}

class NoGlViewport : public MatViewport {
public:
    NoGlViewport() : MatViewport(nullptr, kSize, kSize) {}

protected:
    std::unique_ptr<Render> create_render(int, int, jString& reason) override
    {
        reason = "no display here";
        return nullptr;
    }
};

} // namespace

TEST(MatViewportInput, DragsOrbitAboutTheObjectAndEventsOutsideAreTakenOnlyWhileFocused)
{
    MatViewport viewport(nullptr, kSize, kSize);
    const OrbitCamera start = viewport.getCamera();
    UIEventMouse at = mouse(100, 100);
    EXPECT_TRUE(viewport.onMouseDown(at));
    EXPECT_TRUE(viewport.isDragging());
    EXPECT_TRUE(viewport.onMouseUp(at));
    EXPECT_FALSE(viewport.isDragging());
    EXPECT_EQ(viewport.getCamera().getPosition(), start.getPosition());
    EXPECT_TRUE(viewport.getCamera().getRotation() == start.getRotation());

    viewport.onMouseDown(at);
    UIEventMouse right = mouse(101, 100);
    EXPECT_TRUE(viewport.onMouseMove(right));
    // The eye starts at (0, -3, 0) and turns by -0.2 degrees about z.
    const float angle = math3d::radians(0.2f);
    expectNear(viewport.getCamera().getPosition(), {-3.0f * std::sin(angle), -3.0f * std::cos(angle), 0.0f});
    viewport.getCamera().reset();
    UIEventMouse down = mouse(101, 101);
    viewport.onMouseMove(down);
    // Dragging down lowers the eye.
    expectNear(viewport.getCamera().getPosition(), {0.0f, -3.0f * std::cos(angle), -3.0f * std::sin(angle)});
    viewport.onMouseUp(down);
    viewport.getCamera().reset();

    // Events outside are taken only while focused.
    int unfocusedPresses = 0, focusedPresses = 0;
    QObject::connect(&viewport, &MatViewport::pressedUnfocused, [&] { ++unfocusedPresses; });
    QObject::connect(&viewport, &MatViewport::pressedFocused, [&] { ++focusedPresses; });
    UIEventMouse outside = mouse(-5, 300);
    UIEventWheel outsideWheel(-5, 300, -5, 300, UIEventWheel::kWheelDown);
    EXPECT_FALSE(viewport.onMouseDown(outside));
    EXPECT_FALSE(viewport.onMouseWheel(outsideWheel));
    EXPECT_FALSE(viewport.isDragging());
    EXPECT_EQ(viewport.getCamera().getDistance(), 3.0f);

    // A drag that leaves the view goes on turning; releasing it outside
    // keeps the focus (the reverse of the graph canvas).
    UIEventMouse press = mouse(250, 100);
    viewport.onMouseDown(press);
    UIEventMouse leave = mouse(270, 100);
    EXPECT_TRUE(viewport.onMouseMove(leave));
    UIEventMouse releaseOutside = mouse(270, 100);
    EXPECT_TRUE(viewport.onMouseUp(releaseOutside));
    EXPECT_FALSE(viewport.isDragging());
    EXPECT_TRUE(viewport.hasViewportFocus());
    EXPECT_TRUE(viewport.onMouseWheel(outsideWheel));
    EXPECT_NEAR(viewport.getCamera().getDistance(), 3.1f, 1e-5f);

    UIEventMouse pressAgain = mouse(10, 10);
    viewport.onMouseDown(pressAgain);
    EXPECT_EQ(unfocusedPresses, 1);
    EXPECT_EQ(focusedPresses, 1);
    // Any release over the view drops the focus.
    UIEventMouse rightRelease = mouse(10, 10, UIEventMouse::kRight);
    viewport.onMouseUp(rightRelease);
    EXPECT_TRUE(viewport.isDragging());
    EXPECT_FALSE(viewport.hasViewportFocus());
}

TEST(MatViewportInput, QtEventsReachTheHandlers)
{
    MatViewport viewport(nullptr, kSize, kSize);
    viewport.show();
    QTest::mousePress(&viewport, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseMove(&viewport, QPoint(15, 10));
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, QPoint(15, 10));
    const float angle = math3d::radians(1.0f);
    expectNear(viewport.getCamera().getPosition(), {-3.0f * std::sin(angle), -3.0f * std::cos(angle), 0.0f});
    EXPECT_FALSE(viewport.isDragging());

    QWheelEvent turn(QPointF(10, 10), viewport.mapToGlobal(QPointF(10, 10)), {}, QPoint(0, -120), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&viewport, &turn); // towards the user: away from the object
    expectNear(viewport.getCamera().getPosition(), viewport.getCamera().getBack() * 3.1f);
    UIEventWheel closer(10, 10, 10, 10, UIEventWheel::kWheelUp);
    viewport.onMouseWheel(closer);
    viewport.onMouseWheel(closer);
    expectNear(viewport.getCamera().getPosition(), viewport.getCamera().getBack() * 2.9f);
}

TEST(MatViewportInput, WithoutGlOneErrorAndAPlainBackground)
{
    jDir::setProjectRoot(kTestRoot);
    NoGlViewport viewport;
    jLog::Capture log;
    EXPECT_FALSE(viewport.setMaterial("data/materials/missing.mat"));
    EXPECT_EQ(log.text(), "error: MaterialManager::load: can't open material \"data/materials/missing.mat\"\n");
    log.clear();
    viewport.render(); // nothing to draw: no context is asked for
    EXPECT_TRUE(log.empty());

    viewport.setMaterial(MatViewportScene::kEditorMesh);
    viewport.render();
    viewport.update(0.1f);
    viewport.getCamera().orbit(5, 0);
    viewport.render();
    EXPECT_EQ(log.text(), "error: MatViewport: no OpenGL context, the preview is off: no display here\n");
    EXPECT_TRUE(viewport.isRenderUnavailable());
    EXPECT_EQ(viewport.getRenderCount(), 0u);
    EXPECT_TRUE(viewport.getImage().isNull());
    const QImage shown = viewport.grab().toImage();
    EXPECT_EQ(pixelAt(shown, 2, 2), (Pixel{170, 170, 170, 255}));
    EXPECT_NE(meanAt(shown, 120, 120), (Vec3{170, 170, 170})); // the text
}

// One GL viewport for the suite: a context is slow to make on llvmpipe.
class MatViewportRenderTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        jDir::setProjectRoot(kTestRoot);
        viewport = new MatViewport(nullptr, kSize, kSize);
    }
    static void TearDownTestSuite() { delete std::exchange(viewport, nullptr); }
    void SetUp() override
    {
        jDir::setProjectRoot(kTestRoot);
        viewport->getCamera().reset();
    }

    // Shows the material; false (failing where Mesa is installed) without GL.
    bool show(const jString& material)
    {
        viewport->setMaterial(material);
        jLog::Capture log;
        viewport->render();
        if (viewport->getRender())
            return true;
        if (MATERIAL_REQUIRE_GL)
            ADD_FAILURE() << "no OpenGL context although Mesa is installed: " << log.text();
        return false;
    }

    static inline MatViewport* viewport = nullptr;
};

TEST_F(MatViewportRenderTest, BundledSampleShowsASphereAndIdleFramesRenderNothing)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    const jString sample = "data/materials/plastic_red.mat";
    if (!show(sample))
        GTEST_SKIP();
    const size_t first = viewport->getRenderCount();
    const QImage& image = viewport->getImage();
    ASSERT_EQ(image.size(), QSize(kSize, kSize));
    const Vec3 centre = meanAt(image, 120, 120);
    EXPECT_GT(centre.x, centre.z + 60);
    for (const auto& [x, y] : {std::pair{0, 0}, {240, 0}, {0, 240}, {240, 240}})
        EXPECT_GT((meanAt(image, x, y) - centre).length(), 60.0f) << x << "," << y;
    EXPECT_EQ(pixelAt(viewport->grab().toImage(), 128, 128), pixelAt(image, 128, 128));

    viewport->render();
    viewport->update(0.5f);
    EXPECT_EQ(viewport->getRenderCount(), first);

    viewport->getCamera().orbit(30, 0);
    viewport->update(0.0f);
    EXPECT_EQ(viewport->getRenderCount(), first + 1);
    // A reload shows the new copy; the programs of the old one go.
    const size_t programs = viewport->getRender()->getProgramCount();
    MaterialManager::get().reload(sample);
    viewport->update(0.0f);
    EXPECT_EQ(viewport->getRenderCount(), first + 2);
    EXPECT_EQ(viewport->getRender()->getProgramCount(), programs);
    viewport->setMaterial(sample);
    viewport->update(0.0f);
    viewport->update(0.0f);
    EXPECT_EQ(viewport->getRenderCount(), first + 3);
}

TEST_F(MatViewportRenderTest, PreviewStatesAndSkyLightingHoldForTheFrameOnly)
{
    if (!show("data/materials/preview_states.mat"))
        GTEST_SKIP();
    // EDITOR_MODE 1, Environment 3, LightModulation kept at Unlit.
    EXPECT_EQ(pixelAt(viewport->getImage(), 128, 128), (Pixel{255, 255, 255, 255}));
    auto material = MaterialManager::get().find("data/materials/preview_states.mat");
    EXPECT_EQ(material->findState("EDITOR_MODE")->value, 0);
    EXPECT_EQ(material->findState("LightModulation")->value, 1);
    EXPECT_EQ(material->findState("Environment")->value, 0);
    EXPECT_EQ(viewport->getRender()->getEnvironmentCoefficients(), EnvironmentCoefficients{});
    EXPECT_FALSE(MaterialManager::get().isEditorMode());

    viewport->getPassValues().lightModulation = 0;
    show("data/materials/preview_states.mat");
    viewport->getPassValues() = {};
    EXPECT_EQ(pixelAt(viewport->getImage(), 128, 128), (Pixel{255, 255, 0, 255}));
    EXPECT_EQ(material->findState("LightModulation")->value, 1);

    // Without any of the states only the sky's lighting changes for the frame.
    jLog::Capture log;
    show("data/materials/stateless.mat");
    const Vec3 expected = viewport->getSkyCoefficients()[0] * (0.1f * 255.0f);
    const Pixel centre = pixelAt(viewport->getImage(), 128, 128);
    EXPECT_NEAR(centre[0], expected.x, 1.0);
    EXPECT_NEAR(centre[1], expected.y, 1.0);
    EXPECT_NEAR(centre[2], expected.z, 1.0);
    EXPECT_TRUE(MaterialManager::get().find("data/materials/stateless.mat")->getStates().empty());
    EXPECT_EQ(viewport->getRender()->getEnvironmentCoefficients(), EnvironmentCoefficients{});
    EXPECT_TRUE(log.empty());
}

TEST_F(MatViewportRenderTest, AnimatedMaterialRendersEveryFrameTheOthersOnlyOnChange)
{
    if (!show("data/materials/clock.mat"))
        GTEST_SKIP();
    const size_t first = viewport->getRenderCount();
    for (int frame = 1; frame <= 2; ++frame) {
        viewport->update(0.25f);
        EXPECT_EQ(viewport->getRenderCount(), first + size_t(frame));
        const float fraction = viewport->getTime() - std::floor(viewport->getTime());
        EXPECT_NEAR(pixelAt(viewport->getImage(), 128, 128)[0], fraction * 255.0f, 1.0);
    }
    viewport->update(0.0f);
    EXPECT_EQ(viewport->getRenderCount(), first + 2);

    show("data/materials/preview_states.mat");
    viewport->update(0.25f);
    EXPECT_EQ(viewport->getRenderCount(), first + 3);
}
