// The canvas: hit tests through item and canvas transforms, draw order,
// line distances, text measurement, and what painting puts into an image.
#include "UICanvas.h"
#include "UICanvasPainter.h"
#include "UICanvasTextures.h"
#include "ProjectRootScope.h"
#include "TempFolder.h"
#include "jDir.h"
#include "jLog.h"

#include <QApplication>
#include <QFontInfo>
#include <QImage>
#include <QPainter>

#include <QTest>

#include <filesystem>
#include <map>

#include <gtest/gtest.h>

namespace {

using C = UICanvas;

const C::Colour kWhite{1, 1, 1, 1};
const C::Colour kYellow{1, 1, 0, 1};
const C::TexRect kWholeTexture{0, 0, 1, 1};

class UICanvasTest : public testing::Test {
protected:
    void SetUp() override { jDir::setProjectRoot(MATERIAL_SOURCE_ROOT); }

    C::ItemId addRect(C::Point topLeft, C::Point bottomRight, uint32_t order)
    {
        C::ItemId id = canvas.addPolygon(kWhite);
        canvas.setPolygonRect(id, topLeft, bottomRight, kWholeTexture);
        canvas.setItemOrder(id, order);
        return id;
    }

    QImage paint(int width, int height)
    {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        canvas.paintArea(painter, QRect(0, 0, width, height));
        return image;
    }

    C canvas;
};

TEST_F(UICanvasTest, TopmostPolygonInDrawOrderWinsAndEqualOrdersGoByCreation)
{
    C::ItemId low = addRect({0, 0}, {100, 100}, 5);
    C::ItemId high = addRect({50, 50}, {150, 150}, 9);
    C::ItemId sameAsLow = addRect({0, 0}, {20, 20}, 5);

    EXPECT_EQ(canvas.hitPolygon({60, 60}), high);
    EXPECT_EQ(canvas.hitPolygon({10, 10}), sameAsLow);
    EXPECT_EQ(canvas.hitPolygon({30, 30}), low);
    EXPECT_EQ(canvas.hitPolygon({200, 200}), C::kNoItem);

    canvas.setItemOrder(low, 10);
    EXPECT_EQ(canvas.hitPolygon({60, 60}), low);
    EXPECT_EQ(canvas.hitPolygon({10, 10}), low);

    canvas.removePolygon(low);
    EXPECT_EQ(canvas.hitPolygon({60, 60}), high);
    EXPECT_EQ(canvas.hitPolygon({30, 30}), C::kNoItem);
    canvas.clearPolygon(high);
    EXPECT_TRUE(canvas.isPolygonEmpty(high));
    EXPECT_EQ(canvas.hitPolygon({60, 60}), C::kNoItem);
    EXPECT_EQ(canvas.getItemCount(), 2u);
}

TEST_F(UICanvasTest, HitTestsGoThroughItemAndCanvasTransforms)
{
    // A 16-unit square at (100, 40) in a node, at zoom 0.5: pixels 50..58, 20..28.
    C::ItemId square = addRect({0, 0}, {16, 16}, 1);
    canvas.setItemTransform(square, C::Transform::translation(100, 40));
    canvas.setCanvasTransform(C::Transform::scale(0.5f));

    EXPECT_EQ(canvas.hitPolygon({50, 20}), square);
    EXPECT_EQ(canvas.hitPolygon({57.9f, 27.9f}), square);
    EXPECT_EQ(canvas.hitPolygon({58, 24}), C::kNoItem);
    EXPECT_EQ(canvas.hitPolygon({54, 28}), C::kNoItem);
    EXPECT_EQ(canvas.hitPolygon({49.9f, 24}), C::kNoItem);

    C::Point corners[4];
    canvas.getPolygonCorners(square, corners);
    EXPECT_EQ(corners[0], (C::Point{100, 40}));
    EXPECT_EQ(corners[2], (C::Point{116, 56}));
    EXPECT_EQ(canvas.getPolygonCentre(square), (C::Point{108, 48}));

    // Moving the item moves what is hit; the old place is free.
    canvas.setItemTransform(square, C::Transform::translation(1000, 40));
    EXPECT_EQ(canvas.hitPolygon({50, 20}), C::kNoItem);
    EXPECT_EQ(canvas.hitPolygon({504, 24}), square);
}

TEST_F(UICanvasTest, AQuadThatIsNotARectangleIsHitAndPaintedAsItsShape)
{
    // A diamond around (50, 50): its bounding box's corner is outside.
    canvas.setBackgroundColour({0, 0, 0, 1});
    canvas.setBackgroundTexture("data/core/textures/common/white.dds");
    C::ItemId diamond = canvas.addPolygon(kYellow);
    const C::Point corners[4] = {{50, 0}, {100, 50}, {50, 100}, {0, 50}};
    canvas.setPolygonCorners(diamond, corners, kWholeTexture);
    EXPECT_EQ(canvas.hitPolygon({50, 50}), diamond);
    EXPECT_EQ(canvas.hitPolygon({80, 50}), diamond);
    EXPECT_EQ(canvas.hitPolygon({10, 10}), C::kNoItem);
    EXPECT_EQ(canvas.hitPolygon({90, 90}), C::kNoItem);
    QImage image = paint(100, 100);
    EXPECT_EQ(image.pixel(50, 50), qRgb(255, 255, 0));
    EXPECT_EQ(image.pixel(8, 8), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(91, 91), qRgb(0, 0, 0));
}

TEST_F(UICanvasTest, LineHitIsTheDistanceToItsSegmentsInItemUnits)
{
    C::ItemId line = canvas.addLine(kWhite);
    for (C::Point p : {C::Point{0, 0}, C::Point{100, 0}, C::Point{100, 100}})
        canvas.addLinePoint(line, p);
    canvas.setItemTransform(line, C::Transform::translation(20, 20));
    canvas.setCanvasTransform(C::Transform::scale(0.5f));

    // Once as set, once after a paint brought the index up to date.
    for (int pass = 0; pass < 2; ++pass) {
        SCOPED_TRACE(pass);
        // (40, 14) in pixels is (80, 28) on the canvas, 8 units below the first segment.
        EXPECT_TRUE(canvas.isLineHit(line, {40, 14}, 8.0f));
        EXPECT_FALSE(canvas.isLineHit(line, {40, 14}, 7.9f));
        // Before the start the distance is to the end point: 6 units, then 9.
        EXPECT_TRUE(canvas.isLineHit(line, {7, 10}, 8.0f));
        EXPECT_FALSE(canvas.isLineHit(line, {5.5f, 10}, 8.0f));
        // 5 units right of the second segment.
        EXPECT_TRUE(canvas.isLineHit(line, {62.5f, 35}, 8.0f));
        EXPECT_FALSE(canvas.isLineHit(line, {62.5f, 35}, 4.9f));
        paint(10, 10);
    }

    canvas.clearLinePoints(line);
    EXPECT_EQ(canvas.getLinePointCount(line), 0u);
    EXPECT_FALSE(canvas.isLineHit(line, {60, 10}, 8.0f));
}

TEST_F(UICanvasTest, TextsMeasureInDejaVuSansAtTheirSize)
{
    EXPECT_EQ(QFontInfo(canvas.font()).family(), "DejaVu Sans");
    C::ItemId title = canvas.addText("Math.Add", 14, kWhite);
    C::ItemId small = canvas.addText("Math.Add", 10, kWhite);
    C::ItemId empty = canvas.addText("", 14, kWhite);

    EXPECT_EQ(canvas.getTextWidth(title), 67);
    EXPECT_EQ(canvas.getTextHeight(title), 17);
    EXPECT_EQ(canvas.getTextWidth(small), 48);
    EXPECT_EQ(canvas.getTextHeight(small), 12);
    EXPECT_EQ(canvas.getTextWidth(empty), 0);
    EXPECT_EQ(canvas.getTextHeight(empty), 17);

    // The canvas transform does not change measurements; a new text does.
    canvas.setCanvasTransform(C::Transform::scale(0.2f));
    EXPECT_EQ(canvas.getTextWidth(title), 67);
    canvas.setText(title, "Math.Add.Add");
    EXPECT_EQ(canvas.getTextWidth(title), 98);

    // The widget's font is the measuring font.
    QFont bold = canvas.font();
    bold.setBold(true);
    canvas.setFont(bold);
    EXPECT_EQ(canvas.getTextWidth(small), 55);
}

TEST_F(UICanvasTest, UnknownIdsAreLoggedAndHarmless)
{
    jLog::Capture log;
    C::ItemId text = canvas.addText("a", 14, kWhite);
    canvas.setPolygonColour(text, kYellow);
    canvas.removeLine(42);
    EXPECT_EQ(canvas.getText(-1), "");
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: UICanvas::setPolygonColour: 0 is not a polygon of the canvas",
                               "error: UICanvas::removeLine: 42 is not a line of the canvas",
                               "error: UICanvas::getText: -1 is not a text of the canvas",
                           }));
    EXPECT_EQ(canvas.getItemCount(), 1u);
}

TEST_F(UICanvasTest, APolygonIsTheTextureTimesItsColourPaintedInDrawOrder)
{
    canvas.setBackgroundColour({0, 0, 0, 1});
    canvas.setBackgroundTexture("data/core/textures/common/white.dds");
    C::ItemId id = addRect({10, 10}, {30, 30}, 1);
    canvas.setPolygonColour(id, kYellow);
    QImage image = paint(40, 40);
    EXPECT_EQ(image.pixel(20, 20), qRgb(255, 255, 0));
    EXPECT_EQ(image.pixel(11, 28), qRgb(255, 255, 0));
    EXPECT_EQ(image.pixel(5, 5), qRgb(0, 0, 0));
    EXPECT_EQ(canvas.getLastPaintStats().polygons, 1u);

    // Additive blending (one, one) adds the colour to what is below.
    canvas.setBackgroundColour({0, 0.5f, 0, 1});
    canvas.setPolygonColour(id, {1, 0, 0, 1});
    canvas.setPolygonBlend(id, 2, 2);
    image = paint(40, 40);
    EXPECT_EQ(image.pixel(20, 20), qRgb(255, 128, 0));
    canvas.setBackgroundColour({0, 0, 0, 1});
    canvas.removePolygon(id);

    // Paint follows the draw order as orders change and ids are reused.
    C::ItemId red = addRect({0, 0}, {20, 20}, 3);
    C::ItemId green = addRect({0, 0}, {20, 20}, 3);
    canvas.setPolygonColour(red, {1, 0, 0, 1});
    canvas.setPolygonColour(green, {0, 1, 0, 1});
    EXPECT_EQ(paint(20, 20).pixel(10, 10), qRgb(0, 255, 0));

    // Raised above everything (the usual append) and lowered again (a re-sort).
    canvas.setItemOrder(red, 100);
    EXPECT_EQ(paint(20, 20).pixel(10, 10), qRgb(255, 0, 0));
    canvas.setItemOrder(red, 1);
    EXPECT_EQ(paint(20, 20).pixel(10, 10), qRgb(0, 255, 0));

    // A removed item's id comes back for the next item, which is drawn as new.
    canvas.removePolygon(green);
    C::ItemId blue = canvas.addPolygon({0, 0, 1, 1});
    EXPECT_EQ(blue, green);
    canvas.setPolygonRect(blue, {0, 0}, {10, 20}, kWholeTexture);
    canvas.setItemOrder(blue, 1);
    image = paint(20, 20);
    EXPECT_EQ(image.pixel(5, 10), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(15, 10), qRgb(255, 0, 0));

    // Moved several cells of the index away, it is painted at its new place only.
    canvas.setItemTransform(red, C::Transform::translation(580, 0));
    image = paint(600, 20);
    EXPECT_EQ(image.pixel(15, 10), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(585, 10), qRgb(255, 0, 0));

    canvas.clearItems();
    EXPECT_EQ(canvas.getItemCount(), 0u);
    EXPECT_EQ(paint(20, 20).pixel(10, 10), qRgb(0, 0, 0));
}

TEST_F(UICanvasTest, ThumbnailsAreReadOnceUntilReloadedAndAnUndecodableFileFallsBack)
{
    TempFolder project;
    std::filesystem::create_directories(project / "data/textures");
    auto writePng = [&](QColor colour) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(QString::fromStdString(project / "data/textures/rock.png")));
    };
    ProjectRootScope scope(project.path());
    writePng(Qt::red);
    project.write("data/textures/broken.png", "not an image");
    C::ItemId rock = addRect({0, 0}, {20, 20}, 1);
    canvas.setPolygonTexture(rock, "data/textures/rock.png");
    C::ItemId broken = addRect({20, 0}, {40, 20}, 1);
    canvas.setPolygonTexture(broken, "data/textures/broken.png");
    jLog::Capture log;
    EXPECT_EQ(paint(40, 20).pixel(10, 10), qRgb(255, 0, 0));
    EXPECT_EQ(paint(40, 20).pixel(30, 10), qRgb(0, 0, 0));
    ASSERT_EQ(log.lines().size(), 2u);
    EXPECT_EQ(log.lines()[0].rfind("error: TextureManager: can't load \"data/textures/broken.png\": ", 0), 0u) << log.lines()[0];
    EXPECT_EQ(log.lines()[1], "warning: UICanvas: can't show texture \"data/textures/broken.png\", showing "
                              "\"data/core/textures/common/black.dds\" instead");

    writePng(Qt::blue);
    EXPECT_EQ(paint(40, 20).pixel(10, 10), qRgb(255, 0, 0));
    canvas.reloadTextures();
    EXPECT_EQ(paint(40, 20).pixel(10, 10), qRgb(0, 0, 255));
}

TEST_F(UICanvasTest, ATextureRectangleShowsItsOwnTexelsAtAnySize)
{
    // Left half red, right half blue; wide enough to be kept reduced.
    TempFolder project;
    std::filesystem::create_directories(project / "data/textures");
    QImage halves(1024, 8, QImage::Format_RGB32);
    halves.fill(Qt::red);
    for (int y = 0; y < 8; ++y)
        for (int x = 512; x < 1024; ++x)
            halves.setPixel(x, y, qRgb(0, 0, 255));
    ASSERT_TRUE(halves.save(QString::fromStdString(project / "data/textures/halves.png")));
    ProjectRootScope scope(project.path());

    C::ItemId right = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(right, {0, 0}, {30, 30}, {0.5f, 0, 1, 1});
    C::ItemId left = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(left, {30, 0}, {37, 30}, {0, 0, 0.5f, 1});
    // A rectangle across the border, and the same mirrored.
    C::ItemId across = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(across, {40, 0}, {80, 30}, {0.25f, 0, 0.75f, 1});
    C::ItemId mirrored = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(mirrored, {80, 0}, {120, 30}, {0.75f, 0, 0.25f, 1});
    for (C::ItemId id : {right, left, across, mirrored})
        canvas.setPolygonTexture(id, "data/textures/halves.png");

    QImage image = paint(120, 30);
    for (int x : {0, 15, 29})
        EXPECT_EQ(image.pixel(x, 15), qRgb(0, 0, 255)) << x;
    for (int x : {30, 36})
        EXPECT_EQ(image.pixel(x, 15), qRgb(255, 0, 0)) << x;
    EXPECT_EQ(image.pixel(42, 15), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(78, 15), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(82, 15), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(118, 15), qRgb(255, 0, 0));
    EXPECT_EQ(UICanvasTextures::thumbnail("data/textures/halves.png").size(), QSize(256, 2));
}

// Random edits (adds, removals, moves, order changes, paints between them)
// against a plain list: the topmost rectangle under a point must agree.
TEST_F(UICanvasTest, HitTestsAgreeWithABruteForceScanUnderRandomEdits)
{
    struct Model {
        C::Point p0, p1;
        uint32_t order;
        uint64_t created;
    };
    std::map<C::ItemId, Model> model;
    uint64_t created = 0;
    uint32_t raise = 1000;
    uint32_t seed = 12345;
    auto next = [&seed](uint32_t bound) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % bound;
    };
    auto randomRect = [&]() {
        const float x = float(next(2000)), y = float(next(2000));
        // Now and then one too large for the grid's cells.
        if (next(20) == 0)
            return std::make_pair(C::Point{x, y}, C::Point{x + 3000.0f, y + 3000.0f});
        return std::make_pair(C::Point{x, y}, C::Point{x + float(1 + next(600)), y + float(1 + next(400))});
    };
    for (int step = 0; step < 3000; ++step) {
        const uint32_t action = next(10);
        if (action < 4 || model.empty()) {
            auto [p0, p1] = randomRect();
            C::ItemId id = canvas.addPolygon(kWhite);
            canvas.setPolygonRect(id, p0, p1, kWholeTexture);
            const uint32_t order = next(50);
            canvas.setItemOrder(id, order);
            model[id] = {p0, p1, order, ++created};
            continue;
        }
        auto it = std::next(model.begin(), next(uint32_t(model.size())));
        if (action == 4) {
            canvas.removePolygon(it->first);
            model.erase(it);
        } else if (action == 5) {
            auto [p0, p1] = randomRect();
            canvas.setPolygonRect(it->first, p0, p1, kWholeTexture);
            it->second.p0 = p0;
            it->second.p1 = p1;
        } else if (action == 6) {
            it->second.order = next(3) == 0 ? next(50) : ++raise;
            canvas.setItemOrder(it->first, it->second.order);
        } else if (action == 7) {
            paint(64, 64);
        } else {
            const C::Point at{float(next(2600)) + 0.5f, float(next(2400)) + 0.5f};
            C::ItemId expected = C::kNoItem;
            std::pair<uint32_t, uint64_t> best{0, 0};
            for (const auto& [id, m] : model) {
                const bool inside = at.x >= m.p0.x && at.x < m.p1.x && at.y >= m.p0.y && at.y < m.p1.y;
                if (inside && (expected == C::kNoItem || std::make_pair(m.order, m.created) > best)) {
                    expected = id;
                    best = {m.order, m.created};
                }
            }
            ASSERT_EQ(canvas.hitPolygon(at), expected) << "step " << step;
        }
    }
    EXPECT_EQ(canvas.getItemCount(), model.size());
}

TEST(UICanvasBlend, EngineBlendFactorsMapToCompositionModes)
{
    using P = UICanvasPainter;
    EXPECT_EQ(P::compositionFor(5, 6), QPainter::CompositionMode_SourceOver);
    EXPECT_EQ(P::compositionFor(2, 6), QPainter::CompositionMode_SourceOver);
    EXPECT_EQ(P::compositionFor(2, 2), QPainter::CompositionMode_Plus);
    EXPECT_EQ(P::compositionFor(5, 2), QPainter::CompositionMode_Plus);
    EXPECT_EQ(P::compositionFor(2, 1), QPainter::CompositionMode_Source);
    EXPECT_EQ(P::compositionFor(9, 1), QPainter::CompositionMode_Multiply);
    EXPECT_EQ(P::compositionFor(1, 3), QPainter::CompositionMode_Multiply);
    EXPECT_EQ(P::compositionFor(1, 2), std::nullopt);
    EXPECT_EQ(P::compositionFor(7, 8), QPainter::CompositionMode_SourceOver);
}

TEST_F(UICanvasTest, OnlyItemsMeetingTheExposedAreaArePainted)
{
    canvas.setBackgroundColour({0, 0, 0, 1});
    addRect({10, 10}, {30, 30}, 1);
    addRect({500, 500}, {530, 530}, 2);
    C::ItemId far = canvas.addText("far away", 14, kWhite);
    canvas.setTextPosition(far, {400, 10});
    C::ItemId across = canvas.addLine(kWhite);
    canvas.addLinePoint(across, {-5000, 20});
    canvas.addLinePoint(across, {5000, 20});

    QImage image = paint(100, 100);
    const C::PaintStats& stats = canvas.getLastPaintStats();
    EXPECT_EQ(stats.polygons, 1u);
    EXPECT_EQ(stats.texts, 0u);
    EXPECT_EQ(stats.lines, 1u);

    // Zoomed out, everything lies in the area.
    canvas.setCanvasTransform(C::Transform::scale(0.5f));
    paint(300, 300);
    EXPECT_EQ(stats.polygons, 2u);
    EXPECT_EQ(stats.texts, 1u);
}

TEST_F(UICanvasTest, SmallPiecesAreSimplifiedAndUnreadableTextsSkipped)
{
    // An input anchor's cell of the sprite sheet. At 0.2 both squares are
    // 3.2 pixels: the first is a copy of its texels; the second's rectangle
    // does not lie on whole texels, so it is filled with its average.
    canvas.setBackgroundColour({0, 0, 0, 1});
    C::ItemId copied = addRect({10, 10}, {26, 26}, 1);
    canvas.setPolygonRect(copied, {10, 10}, {26, 26}, {0.625f, 0.0f, 0.75f, 0.25f});
    C::ItemId filled = addRect({40, 10}, {56, 26}, 1);
    canvas.setPolygonRect(filled, {40, 10}, {56, 26}, {0.6251f, 0.0001f, 0.7501f, 0.2501f});
    canvas.setTextPosition(canvas.addText("title", 14, kWhite), {60, 0});
    canvas.setCanvasTransform(C::Transform::scale(0.2f));
    QImage image = paint(20, 20);
    EXPECT_NE(image.pixel(3, 3), qRgb(0, 0, 0));
    EXPECT_NE(image.pixel(9, 3), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(15, 15), qRgb(0, 0, 0));
    EXPECT_EQ(canvas.getLastPaintStats().polygons, 1u);
    EXPECT_EQ(canvas.getLastPaintStats().simplified, 2u);
    EXPECT_EQ(canvas.getLastPaintStats().texts, 0u);
}

TEST_F(UICanvasTest, AThumbnailThatDoesNotLoadShowsBlackWithOneWarning)
{
    jLog::Capture log;
    canvas.setBackgroundColour({1, 1, 1, 1});
    C::ItemId missing = addRect({0, 0}, {20, 20}, 1);
    canvas.setPolygonTexture(missing, "data/textures/no_such_thumbnail.dds");
    C::ItemId outside = addRect({20, 0}, {40, 20}, 2);
    canvas.setPolygonTexture(outside, "../outside_the_root.dds");
    // A bundled thumbnail is drawn from its own texture.
    C::ItemId bundled = addRect({40, 0}, {60, 20}, 3);
    canvas.setPolygonTexture(bundled, "data/core/textures/common/white.dds");
    canvas.setPolygonColour(bundled, kYellow);

    QImage image = paint(60, 20);
    EXPECT_EQ(image.pixel(10, 10), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(30, 10), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(50, 10), qRgb(255, 255, 0));
    paint(60, 20);
    EXPECT_EQ(log.lines(),
              (std::vector<jString>{
                  "warning: UICanvas: can't show texture \"data/textures/no_such_thumbnail.dds\", showing "
                  "\"data/core/textures/common/black.dds\" instead",
                  "warning: UICanvas: can't show texture \"../outside_the_root.dds\", showing "
                  "\"data/core/textures/common/black.dds\" instead",
              }));
}

class CountingCanvas : public UICanvas {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        UICanvas::paintEvent(event);
    }
};

TEST(UICanvasRepaint, ChangesRepaintOnceAndAnIdleCanvasNever)
{
    CountingCanvas canvas;
    canvas.resize(100, 100);
    canvas.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&canvas));
    QApplication::processEvents();
    const int shown = canvas.paints;
    EXPECT_GE(shown, 1);

    QApplication::processEvents();
    EXPECT_EQ(canvas.paints, shown);

    C::ItemId id = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(id, {0, 0}, {10, 10}, kWholeTexture);
    canvas.setPolygonColour(id, kYellow);
    canvas.setItemOrder(id, 4);
    QApplication::processEvents();
    EXPECT_EQ(canvas.paints, shown + 1);

    // Setting what is already set changes nothing.
    canvas.setPolygonColour(id, kYellow);
    canvas.setItemOrder(id, 4);
    QApplication::processEvents();
    EXPECT_EQ(canvas.paints, shown + 1);
}

} // namespace
