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

    // A polygon's own texture (a thumbnail). A path that does not exist,
    // lies outside the data root or does not decode shows the fallback, and
    // one warning naming the path is logged the first time.
    static const QImage& thumbnail(const jString& path);
    // The sprite sheet; a null image (and one logged error) when it does not
    // load.
    static const QImage& sheet(const jString& path);
    // Forgets every converted image (after textures changed on disk).
    static void clear();

    // The first face and level of an engine image as a premultiplied QImage.
    static QImage load(const jString& path);

private:
    static bool isInsideRoot(const jString& path);
    static const QImage& fallback();

    static std::map<jString, QImage>& cache();
};
