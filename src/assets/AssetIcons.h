#pragma once

#include "Asset.h"
#include "jImage.h"

#include <QImage>
#include <QPixmap>

// The icons of the asset kinds, read once from
// "data/core/editor/gui/assets/<kind>.dds" (made by tools/imagegen) with the
// engine's image decoder. An icon whose file is missing or broken is drawn
// as a plain tile instead, with one warning for that file.
class AssetIcons {
public:
    static constexpr const char* kFolder = "data/core/editor/gui/assets/";
    // Edge of the square icons, in pixels; thumbnails fit in it too. The
    // strip draws them at this size or smaller, as its height allows.
    static constexpr int kSize = 64;

    static const QPixmap& get(Asset::Kind kind);
    // The material icon with the instance badge in its lower right corner.
    static const QPixmap& instanceMaterial();

    // One face and level of an engine image as a QImage (RGBA8, straight
    // alpha); a null image when the level does not exist.
    static QImage toQImage(const jImage& image, int level = 0);

private:
    static QPixmap load(const jString& name, Asset::Kind kind);
    static QPixmap fallback(Asset::Kind kind);
};
