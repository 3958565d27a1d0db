#include "UICanvasPainter.h"

#include "UICanvasTextures.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace {

// The engine's blend factors (numbered like Direct3D's).
enum Blend {
    kZero = 1,
    kOne = 2,
    kSourceColour = 3,
    kSourceAlpha = 5,
    kInverseSourceAlpha = 6,
    kDestinationColour = 9,
};

// Background grid: a line every kGridStep units, a stronger one every
// kGridMajor steps; only drawn when its lines are kGridMinPixels apart.
constexpr float kGridStep = 32.0f;
constexpr int kGridMajor = 5;
constexpr float kGridMinPixels = 8.0f;
constexpr float kGridMinorLift = 0.025f;
constexpr float kGridMajorLift = 0.06f;

QColor toQColor(const UICanvas::Colour& c)
{
    return QColor::fromRgbF(std::clamp(c.r, 0.0f, 1.0f), std::clamp(c.g, 0.0f, 1.0f), std::clamp(c.b, 0.0f, 1.0f),
                            std::clamp(c.a, 0.0f, 1.0f));
}

QColor lifted(const UICanvas::Colour& c, float lift)
{
    return toQColor({c.r + lift, c.g + lift, c.b + lift, 1.0f});
}

QPointF toWidget(const UICanvas::Transform& canvas, const UICanvas::Transform& item, UICanvas::Point p)
{
    UICanvas::Point w = canvas.apply(item.apply(p));
    return {w.x, w.y};
}

bool isAxisAligned(const QPointF (&c)[4])
{
    return c[0].y() == c[1].y() && c[1].x() == c[2].x() && c[2].y() == c[3].y() && c[3].x() == c[0].x() &&
           c[2].x() > c[0].x() && c[2].y() > c[0].y();
}

QRectF boundsOf(const QPointF (&c)[4])
{
    qreal x0 = c[0].x(), y0 = c[0].y(), x1 = x0, y1 = y0;
    for (int i = 1; i < 4; ++i) {
        x0 = std::min(x0, c[i].x());
        y0 = std::min(y0, c[i].y());
        x1 = std::max(x1, c[i].x());
        y1 = std::max(y1, c[i].y());
    }
    return QRectF(QPointF(x0, y0), QPointF(x1, y1));
}

void gridLines(std::vector<QLineF>& minor, std::vector<QLineF>& major, const QRect& area, float origin, float step,
               bool vertical)
{
    const float from = vertical ? float(area.left()) : float(area.top());
    const float to = vertical ? float(area.right() + 1) : float(area.bottom() + 1);
    for (long k = long(std::ceil((from - origin) / step)); origin + float(k) * step < to; ++k) {
        float at = std::floor(origin + float(k) * step) + 0.5f;
        QLineF line = vertical ? QLineF(at, area.top(), at, area.bottom() + 1) : QLineF(area.left(), at, area.right() + 1, at);
        (k % kGridMajor == 0 ? major : minor).push_back(line);
    }
}

} // namespace

UICanvasPainter::UICanvasPainter(UICanvasItems& items, UICanvasFonts& fonts) : m_items(items), m_fonts(fonts) {}

std::optional<QPainter::CompositionMode> UICanvasPainter::compositionFor(int source, int destination)
{
    if (destination == kInverseSourceAlpha && (source == kSourceAlpha || source == kOne))
        return QPainter::CompositionMode_SourceOver;
    if (destination == kOne && (source == kOne || source == kSourceAlpha))
        return QPainter::CompositionMode_Plus;
    if (destination == kZero && (source == kOne || source == kSourceAlpha))
        return QPainter::CompositionMode_Source;
    if ((source == kDestinationColour && destination == kZero) || (source == kZero && destination == kSourceColour))
        return QPainter::CompositionMode_Multiply;
    if (source == kZero && destination == kOne)
        return std::nullopt;
    return QPainter::CompositionMode_SourceOver;
}

void UICanvasPainter::resetTextures()
{
    m_sheetLoaded = false;
    m_sheet = TintedSheetCache();
    m_ownTextures.clear();
}

TintedSheetCache& UICanvasPainter::texturesFor(const UICanvasItems::PolygonData& polygon, const Scene& scene)
{
    if (polygon.texture == 0) {
        if (!m_sheetLoaded || m_sheetPath != scene.sheetPath) {
            m_sheetPath = scene.sheetPath;
            m_sheet = TintedSheetCache(m_sheetPath.empty() ? QImage() : UICanvasTextures::sheet(m_sheetPath));
            m_sheetLoaded = true;
        }
        return m_sheet;
    }
    auto it = m_ownTextures.find(polygon.texture);
    if (it == m_ownTextures.end())
        it = m_ownTextures.emplace(polygon.texture, TintedSheetCache(UICanvasTextures::thumbnail(m_items.texturePath(polygon.texture)))).first;
    return it->second;
}

void UICanvasPainter::paint(QPainter& painter, const QRect& area, const Scene& scene, UICanvas::PaintStats& stats)
{
    stats = {};
    painter.save();
    painter.setClipRect(area);
    paintBackground(painter, area, scene);

    const UICanvas::Transform& c = scene.canvas;
    if (c.scaleX > 0.0f && c.scaleY > 0.0f) {
        // Lines reach a little beyond their points.
        const float margin = 2.0f + kLineWidth;
        UICanvasItems::Box box{(float(area.left()) - c.x) / c.scaleX - margin, (float(area.top()) - c.y) / c.scaleY - margin,
                               (float(area.right() + 1) - c.x) / c.scaleX + margin,
                               (float(area.bottom() + 1) - c.y) / c.scaleY + margin};
        scene.items.query(box, m_visible);
        for (UICanvas::ItemId id : m_visible) {
            const UICanvasItems::Item& item = scene.items.at(id);
            switch (item.kind) {
            case UICanvasItems::Kind::Polygon:
                paintPolygon(painter, item, scene, stats);
                break;
            case UICanvasItems::Kind::Line:
                paintLine(painter, item, scene, stats);
                break;
            case UICanvasItems::Kind::Text:
                paintText(painter, item, scene, stats);
                break;
            case UICanvasItems::Kind::Free:
                break;
            }
        }
    }
    painter.restore();
}

void UICanvasPainter::paintBackground(QPainter& painter, const QRect& area, const Scene& scene)
{
    painter.fillRect(area, toQColor({scene.background.r, scene.background.g, scene.background.b, 1.0f}));
    const float stepX = kGridStep * scene.canvas.scaleX, stepY = kGridStep * scene.canvas.scaleY;
    if (!(stepX >= kGridMinPixels && stepY >= kGridMinPixels))
        return;
    std::vector<QLineF> minor, major;
    gridLines(minor, major, area, scene.canvas.x, stepX, true);
    gridLines(minor, major, area, scene.canvas.y, stepY, false);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(lifted(scene.background, kGridMinorLift), 1.0));
    painter.drawLines(minor.data(), int(minor.size()));
    painter.setPen(QPen(lifted(scene.background, kGridMajorLift), 1.0));
    painter.drawLines(major.data(), int(major.size()));
}

void UICanvasPainter::paintPolygon(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene,
                                   UICanvas::PaintStats& stats)
{
    const UICanvasItems::PolygonData& polygon = m_items.polygon(item);
    if (polygon.empty || item.colour.a <= 0.0f)
        return;
    std::optional<QPainter::CompositionMode> mode = compositionFor(polygon.blendSource, polygon.blendDestination);
    if (!mode)
        return;
    QPointF corners[4];
    for (int i = 0; i < 4; ++i)
        corners[i] = toWidget(scene.canvas, item.transform, polygon.corners[i]);

    TintedSheetCache& textures = texturesFor(polygon, scene);
    const bool aligned = isAxisAligned(corners);
    const QRectF bounds = boundsOf(corners);
    const bool tiny = std::min(bounds.width(), bounds.height()) < kMinTexturedPixels;
    if (*mode != QPainter::CompositionMode_SourceOver)
        painter.setCompositionMode(*mode);

    if (textures.isNull() || (tiny && aligned)) {
        painter.fillRect(aligned ? QRectF(corners[0], corners[2]) : bounds,
                         textures.isNull() ? toQColor(item.colour) : textures.average(polygon.tex, item.colour));
        ++stats.simplified;
    } else {
        const QImage& image = textures.get(item.colour);
        const float w = float(image.width()), h = float(image.height());
        const UICanvas::TexRect& t = polygon.tex;
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        if (aligned && t.u1 > t.u0 && t.v1 > t.v0) {
            painter.drawImage(QRectF(corners[0], corners[2]), image,
                              QRectF(t.u0 * w, t.v0 * h, (t.u1 - t.u0) * w, (t.v1 - t.v0) * h));
        } else {
            QPolygonF source({QPointF(t.u0 * w, t.v0 * h), QPointF(t.u1 * w, t.v0 * h), QPointF(t.u1 * w, t.v1 * h),
                              QPointF(t.u0 * w, t.v1 * h)});
            QTransform map;
            if (QTransform::quadToQuad(source, QPolygonF({corners[0], corners[1], corners[2], corners[3]}), map)) {
                QRectF rect = source.boundingRect();
                painter.save();
                painter.setTransform(map, true);
                painter.drawImage(rect, image, rect);
                painter.restore();
            }
        }
        ++stats.polygons;
    }
    if (*mode != QPainter::CompositionMode_SourceOver)
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void UICanvasPainter::paintLine(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene,
                                UICanvas::PaintStats& stats)
{
    const std::vector<UICanvas::Point>& points = m_items.line(item).points;
    if (points.size() < 2 || item.colour.a <= 0.0f)
        return;
    // Points closer than a pixel to the last one kept add nothing visible.
    m_polyline.clear();
    QPointF last = toWidget(scene.canvas, item.transform, points.front());
    m_polyline.append(last);
    for (size_t i = 1; i < points.size(); ++i) {
        QPointF p = toWidget(scene.canvas, item.transform, points[i]);
        if (i + 1 == points.size() || std::fabs(p.x() - last.x()) + std::fabs(p.y() - last.y()) >= 1.0) {
            m_polyline.append(p);
            last = p;
        }
    }
    const float scale = std::fabs(scene.canvas.scaleX * item.transform.scaleX);
    // Widths are in pixels already: a cosmetic pen takes Qt's fast stroker.
    QPen pen(toQColor(item.colour), std::max(1.0f, kLineWidth * scale), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setCosmetic(true);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(pen);
    painter.drawPolyline(m_polyline);
    painter.setRenderHint(QPainter::Antialiasing, false);
    ++stats.lines;
}

void UICanvasPainter::paintText(QPainter& painter, const UICanvasItems::Item& item, const Scene& scene,
                                UICanvas::PaintStats& stats)
{
    UICanvasItems::TextData& text = const_cast<UICanvasItems&>(scene.items).text(item);
    if (text.text.empty() || item.colour.a <= 0.0f)
        return;
    const float scale = std::fabs(scene.canvas.scaleY * item.transform.scaleY);
    const float pixels = float(text.size) * scale;
    if (pixels < kMinTextPixels) {
        ++stats.simplified;
        return;
    }
    const int pixelSize = int(std::lround(pixels));
    const QFont& font = m_fonts.font(pixelSize);
    if (text.drawnSize != pixelSize) {
        text.drawn.setText(QString::fromStdString(text.text));
        text.drawn.setTextFormat(Qt::PlainText);
        text.drawn.setPerformanceHint(QStaticText::AggressiveCaching);
        text.drawn.prepare(QTransform(), font);
        text.drawnSize = pixelSize;
    }
    QPointF at = toWidget(scene.canvas, item.transform, text.position);
    painter.setFont(font);
    painter.setPen(toQColor(item.colour));
    painter.drawStaticText(QPointF(std::round(at.x()), std::round(at.y())), text.drawn);
    ++stats.texts;
}
