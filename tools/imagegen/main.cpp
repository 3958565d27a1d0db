// imagegen: regenerates the bundled images under <root>/data and, when asked,
// the DDS fuzz seeds.
//
//   imagegen [--root DIR] [--corpus DIR]
//
// Without --root the bundled root is used. Output is deterministic, so
// running it again over committed files changes nothing.

#include "AssetIconPainter.h"
#include "CorpusWriter.h"
#include "IconPainter.h"
#include "MipBuilder.h"
#include "SkyPainter.h"
#include "SpriteSheetPainter.h"

#include "DdsWriter.h"
#include "jDir.h"
#include "jLog.h"

#include <stb_image_write.h>

#include <cstdio>
#include <cstring>
#include <filesystem>

namespace {

jImage solidImage(int size, uint8_t value)
{
    jImage image;
    image.create(size, size, 1, 1, jImage::fullMipChain(size, size));
    for (int level = 0; level < image.getMipLevels(); ++level) {
        uint8_t* pixels = image.getPixels(0, level);
        for (size_t i = 0; i < image.getLevelBytes(level); i += 4) {
            pixels[i] = pixels[i + 1] = pixels[i + 2] = value;
            pixels[i + 3] = 255;
        }
    }
    return image;
}

jImage imageOf(const Raster& raster)
{
    jImage image;
    image.create(raster.getWidth(), raster.getHeight(), 1, 1, 1);
    raster.copyTo(image, 0, 0);
    return image;
}

bool savePng(const Raster& raster, const jString& path)
{
    const jString target = jDir::resolveWrite(path);
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(target).parent_path(), ec);
    const std::vector<uint8_t> bytes = raster.toRgba8();
    if (!stbi_write_png(target.c_str(), raster.getWidth(), raster.getHeight(), 4, bytes.data(), raster.getWidth() * 4)) {
        jLog::error("imagegen: can't write \"%s\"", target.c_str());
        return false;
    }
    return true;
}

// The asset strip's icons, one per asset kind (see docs/asset-strip.md).
bool generateAssetIcons()
{
    const jString folder = "data/core/editor/gui/assets/";
    bool ok = true;
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintFolder()), folder + "folder.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintMaterial()), folder + "material.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintInstanceBadge()), folder + "instance.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintImage()), folder + "image.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintMesh()), folder + "mesh.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintPrefab()), folder + "prefab.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintScript()), folder + "script.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintWorld()), folder + "world.dds");
    ok &= DdsWriter::save(imageOf(AssetIconPainter::paintUnknown()), folder + "unknown.dds");
    return ok;
}

bool generateData()
{
    bool ok = true;
    ok &= DdsWriter::save(solidImage(4, 0), "data/core/textures/common/black.dds");
    ok &= DdsWriter::save(solidImage(4, 255), "data/core/textures/common/white.dds");
    ok &= DdsWriter::save(SkyPainter::paint(), "data/core/textures/environment/sky.dds");
    ok &= savePng(SpriteSheetPainter::paint(), "data/core/editor/gui/widget_graph.png");
    ok &= DdsWriter::save(imageOf(IconPainter::paintSave()), "data/core/editor/gui/save.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintApply()), "data/core/editor/gui/apply.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintCenter()), "data/core/editor/gui/center.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintLive()), "data/core/editor/gui/live.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintUndo()), "data/core/editor/gui/undo.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintRedo()), "data/core/editor/gui/redo.dds");
    ok &= DdsWriter::save(imageOf(IconPainter::paintFunction()), "data/core/editor/gui/function.dds");
    ok &= generateAssetIcons();
    return ok;
}

int usage()
{
    std::fprintf(stderr, "usage: imagegen [--root DIR] [--corpus DIR]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    jString root = jDir::getBundledRoot();
    jString corpus;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc)
            root = argv[++i];
        else if (std::strcmp(argv[i], "--corpus") == 0 && i + 1 < argc)
            corpus = argv[++i];
        else
            return usage();
    }
    std::error_code ec;
    jDir::setProjectRoot(std::filesystem::absolute(root, ec).lexically_normal().string());
    bool ok = generateData();
    if (!corpus.empty())
        ok &= CorpusWriter::write(std::filesystem::absolute(corpus, ec).lexically_normal().string());
    return ok ? 0 : 1;
}
