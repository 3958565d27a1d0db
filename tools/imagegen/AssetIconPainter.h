#pragma once

#include "Raster.h"

// Paints the icons of the asset strip: one pictogram per asset kind on a
// transparent background, each with a dark rim so it reads on light and dark
// panels alike, plus the small badge that marks a material instance.
class AssetIconPainter {
public:
    static constexpr int Size = 64;
    static constexpr int BadgeSize = 24;

    // A manila folder with its tab.
    static Raster paintFolder();
    // A lit, glossy sphere: a material.
    static Raster paintMaterial();
    // Two overlapping sheets in an orange disc: laid over a material icon for
    // an instance.
    static Raster paintInstanceBadge();
    // A framed picture (sun over hills): an image while its thumbnail is
    // being made, or when it cannot be made.
    static Raster paintImage();
    // A grey cube in wireframe over its shaded faces: a mesh.
    static Raster paintMesh();
    // A blue cube: a prefab.
    static Raster paintPrefab();
    // A page of coloured code lines: a script.
    static Raster paintScript();
    // A globe: a world.
    static Raster paintWorld();
    // A blank page with a question mark: a file of no known kind.
    static Raster paintUnknown();
};
