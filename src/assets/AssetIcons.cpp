#include "AssetIcons.h"

#include "AssetThumbnailer.h"
#include "jDir.h"
#include "jLog.h"

#include <QCoreApplication>
#include <QPainter>

#include <array>
#include <cstring>

namespace {

constexpr int kKinds = int(Asset::Kind::Unknown) + 1;

// The tile colour of a kind when its icon file is missing.
QColor fallbackColour(Asset::Kind kind)
{
    switch (kind) {
    case Asset::Kind::Folder: return QColor(230, 180, 80);
    case Asset::Kind::Material: return QColor(200, 90, 60);
    case Asset::Kind::Image: return QColor(90, 160, 220);
    case Asset::Kind::Mesh: return QColor(150, 150, 150);
    case Asset::Kind::Prefab: return QColor(80, 130, 220);
    case Asset::Kind::Script: return QColor(230, 230, 230);
    case Asset::Kind::World: return QColor(70, 150, 90);
    case Asset::Kind::Unknown: break;
    }
    return QColor(190, 190, 190);
}

} // namespace

QImage AssetIcons::toQImage(const jImage& image, int level)
{
    const uint8_t* pixels = image.getPixels(0, level);
    if (!pixels)
        return {};
    const int width = image.getLevelWidth(level), height = image.getLevelHeight(level);
    QImage rgba(width, height, QImage::Format_RGBA8888);
    const size_t rowBytes = size_t(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(rgba.scanLine(y), pixels + size_t(y) * rowBytes, rowBytes);
    return rgba;
}

QPixmap AssetIcons::fallback(Asset::Kind kind)
{
    QPixmap tile(kSize, kSize);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(20, 20, 20, 220), 2));
    painter.setBrush(fallbackColour(kind));
    painter.drawRoundedRect(QRectF(4, 4, kSize - 8, kSize - 8), 6, 6);
    painter.setPen(QColor(20, 20, 20));
    painter.drawText(QRect(0, 0, kSize, kSize), Qt::AlignCenter, QString(QChar(Asset::kindName(kind)[0]).toUpper()));
    return tile;
}

QPixmap AssetIcons::load(const jString& name, Asset::Kind kind)
{
    const jString path = jString(kFolder) + name + ".dds";
    jImage image;
    jString reason;
    QImage picture = AssetThumbnailer::decodeFile(jDir::resolveRead(path), image, reason) ? toQImage(image) : QImage();
    if (picture.isNull()) {
        jLog::warning("AssetsBrowser: can't load the icon \"%s\": %s; drawing a plain one", path.c_str(),
                      reason.empty() ? "no pixels" : reason.c_str());
        return fallback(kind);
    }
    // Icons are drawn at their size; smaller ones are scaled once here.
    if (picture.width() != kSize && name != "instance")
        picture = picture.scaled(kSize, kSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return QPixmap::fromImage(std::move(picture));
}

namespace {

struct IconCache {
    std::array<QPixmap, kKinds> kinds;
    QPixmap instance;
};

// Pixmaps must go before the application does: the cache is emptied as the
// application ends rather than at exit.
IconCache& cache()
{
    static IconCache icons;
    static const bool registered = [] {
        qAddPostRoutine([] { cache() = IconCache(); });
        return true;
    }();
    (void)registered;
    return icons;
}

} // namespace

const QPixmap& AssetIcons::get(Asset::Kind kind)
{
    QPixmap& icon = cache().kinds[size_t(kind)];
    if (icon.isNull())
        icon = load(Asset::kindName(kind), kind);
    return icon;
}

const QPixmap& AssetIcons::instanceMaterial()
{
    QPixmap& icon = cache().instance;
    if (icon.isNull()) {
        icon = get(Asset::Kind::Material).copy();
        jImage badgeImage;
        jString reason;
        const jString badgePath = jString(kFolder) + "instance.dds";
        QImage badge;
        if (AssetThumbnailer::decodeFile(jDir::resolveRead(badgePath), badgeImage, reason))
            badge = toQImage(badgeImage);
        else
            jLog::warning("AssetsBrowser: can't load the icon \"%s\": %s; drawing a plain one", badgePath.c_str(),
                          reason.c_str());
        QPainter painter(&icon);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const int edge = kSize / 2;
        const QRect corner(kSize - edge, kSize - edge, edge, edge);
        if (!badge.isNull()) {
            painter.drawImage(corner, badge);
        } else {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(QColor(20, 20, 20), 1.5));
            painter.setBrush(QColor(250, 160, 30));
            painter.drawEllipse(corner.adjusted(2, 2, -2, -2));
        }
    }
    return icon;
}
