// The canvas: hit tests through item and canvas transforms, draw order,
// line distances, text measurement, and what painting puts into an image.
#include "UICanvas.h"
#include "UICanvasTextures.h"
#include "jDir.h"
#include "jLog.h"

#include <QFontInfo>
#include <QImage>
#include <QPainter>

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

TEST_F(UICanvasTest, AQuadThatIsNotARectangleIsHitExactly)
{
    // A diamond around (50, 50): its bounding box's corner is outside.
    C::ItemId diamond = canvas.addPolygon(kWhite);
    const C::Point corners[4] = {{50, 0}, {100, 50}, {50, 100}, {0, 50}};
    canvas.setPolygonCorners(diamond, corners, kWholeTexture);
    EXPECT_EQ(canvas.hitPolygon({50, 50}), diamond);
    EXPECT_EQ(canvas.hitPolygon({80, 50}), diamond);
    EXPECT_EQ(canvas.hitPolygon({10, 10}), C::kNoItem);
    EXPECT_EQ(canvas.hitPolygon({90, 90}), C::kNoItem);
}

TEST_F(UICanvasTest, LineHitIsTheDistanceToItsSegmentsInItemUnits)
{
    C::ItemId line = canvas.addLine(kWhite);
    for (C::Point p : {C::Point{0, 0}, C::Point{100, 0}, C::Point{100, 100}})
        canvas.addLinePoint(line, p);
    canvas.setItemTransform(line, C::Transform::translation(20, 20));
    canvas.setCanvasTransform(C::Transform::scale(0.5f));

    // (40, 14) in pixels is (80, 28) on the canvas, 8 units below the first segment.
    EXPECT_TRUE(canvas.isLineHit(line, {40, 14}, 8.0f));
    EXPECT_FALSE(canvas.isLineHit(line, {40, 14}, 7.9f));
    // Before the start the distance is to the end point: 6 units, then 9.
    EXPECT_TRUE(canvas.isLineHit(line, {7, 10}, 8.0f));
    EXPECT_FALSE(canvas.isLineHit(line, {5.5f, 10}, 8.0f));
    // 5 units right of the second segment.
    EXPECT_TRUE(canvas.isLineHit(line, {62.5f, 35}, 8.0f));
    EXPECT_FALSE(canvas.isLineHit(line, {62.5f, 35}, 4.9f));

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

TEST_F(UICanvasTest, APolygonIsTheTextureMultipliedByItsColour)
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
    canvas.setBackgroundColour({0, 0, 0, 1});
    canvas.setBackgroundTexture("data/core/textures/common/white.dds");
    C::ItemId id = addRect({10, 10}, {26, 26}, 1);
    canvas.setPolygonColour(id, kYellow);
    canvas.setTextPosition(canvas.addText("title", 14, kWhite), {40, 0});
    canvas.setCanvasTransform(C::Transform::scale(0.2f));
    QImage image = paint(20, 20);
    // 3.2 pixels: filled with the texture's average, tinted.
    EXPECT_EQ(image.pixel(3, 3), qRgb(255, 255, 0));
    EXPECT_EQ(canvas.getLastPaintStats().simplified, 2u);
    EXPECT_EQ(canvas.getLastPaintStats().polygons, 0u);
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
    EXPECT_EQ(canvas.getPolygonTexture(missing), "data/textures/no_such_thumbnail.dds");

    QImage image = paint(40, 20);
    EXPECT_EQ(image.pixel(10, 10), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(30, 10), qRgb(0, 0, 0));
    paint(40, 20);
    EXPECT_EQ(log.lines(),
              (std::vector<jString>{
                  "warning: UICanvas: can't show texture \"data/textures/no_such_thumbnail.dds\", showing "
                  "\"data/core/textures/common/black.dds\" instead",
                  "warning: UICanvas: can't show texture \"../outside_the_root.dds\", showing "
                  "\"data/core/textures/common/black.dds\" instead",
              }));
}

TEST_F(UICanvasTest, ABundledThumbnailIsDrawnFromItsOwnTexture)
{
    canvas.setBackgroundColour({0, 0, 0, 1});
    C::ItemId thumb = addRect({0, 0}, {20, 20}, 1);
    canvas.setPolygonTexture(thumb, "data/core/textures/common/white.dds");
    EXPECT_EQ(paint(20, 20).pixel(10, 10), qRgb(255, 255, 255));
}

} // namespace
