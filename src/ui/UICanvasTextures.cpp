#include "UICanvasTextures.h"

#include "TextureManager.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"

#include <cstring>

std::map<jString, QImage>& UICanvasTextures::cache()
{
    static std::map<jString, QImage> images;
    return images;
}

void UICanvasTextures::clear()
{
    cache().clear();
}

QImage UICanvasTextures::load(const jString& path)
{
    TextureManager::ImagePtr image = TextureManager::get().load(path);
    if (!image || image->isEmpty())
        return {};
    const int width = image->getWidth(), height = image->getHeight();
    QImage rgba(width, height, QImage::Format_RGBA8888);
    const uint8_t* pixels = image->getPixels(0, 0);
    for (int y = 0; y < height; ++y)
        std::memcpy(rgba.scanLine(y), pixels + size_t(y) * size_t(width) * 4, size_t(width) * 4);
    return rgba.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

bool UICanvasTextures::isInsideRoot(const jString& path)
{
    jString normal = jKit::normalizePath(path);
    return !normal.empty() && normal[0] != '/' && normal != ".." && normal.rfind("../", 0) != 0;
}

const QImage& UICanvasTextures::fallback()
{
    static QImage black;
    if (black.isNull()) {
        black = load(kFallback);
        if (black.isNull()) {
            black = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
            black.fill(Qt::black);
        }
    }
    return black;
}

const QImage& UICanvasTextures::thumbnail(const jString& path)
{
    auto it = cache().find(path);
    if (it != cache().end())
        return it->second;
    QImage image;
    // A missing file is told here in one line; a file that exists but does
    // not decode is also reported by the TextureManager with its reason.
    if (isInsideRoot(path) && jDir::exists(jDir::resolveRead(path)))
        image = load(path);
    if (image.isNull()) {
        jLog::warning("UICanvas: can't show texture \"%s\", showing \"%s\" instead", path.c_str(), kFallback);
        image = fallback();
    }
    return cache().emplace(path, std::move(image)).first->second;
}

const QImage& UICanvasTextures::sheet(const jString& path)
{
    const jString key = "sheet:" + path;
    auto it = cache().find(key);
    if (it != cache().end())
        return it->second;
    QImage image = load(path);
    if (image.isNull())
        jLog::error("UICanvas: can't load the sprite sheet \"%s\"; polygons are drawn in their colours", path.c_str());
    return cache().emplace(key, std::move(image)).first->second;
}
