#pragma once

#include "jString.h"

#include <QImage>

#include <map>

// The images the canvas draws from, converted once per path from the
// engine's TextureManager (DDS included) and shared by every canvas of the
// process.
class UICanvasTextures {
public:
    static constexpr const char* kFallback = "data/core/textures/common/black.dds";
    // Larger thumbnails are reduced to fit this many pixels a side.
    static constexpr int kMaxThumbnailSize = 256;

    // A polygon's own texture (a thumbnail). A path that does not exist,
    // lies outside the data root or does not decode shows the fallback, and
    // one warning naming the path is logged the first time.
    static const QImage& thumbnail(const jString& path);
    // The sprite sheet; a null image (and one logged error) when it does not
    // load.
    static const QImage& sheet(const jString& path);
    // Forgets every converted image and drops the files from the
    // TextureManager's cache, so they are read again (after textures
    // changed on disk). Other canvases keep the copies they hold until they
    // reset theirs.
    static void clear();

    // The first face and level of an engine image as a premultiplied QImage.
    static QImage load(const jString& path);

private:
    static bool isInsideRoot(const jString& path);
    static const QImage& fallback();

    static std::map<jString, QImage>& cache();
};
