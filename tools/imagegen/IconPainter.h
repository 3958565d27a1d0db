#pragma once

#include "Raster.h"

// Paints the toolbar icons and the block drag icon: simple pictograms on a
// transparent background, each with a dark rim so it reads on light and
// dark toolbars alike.
class IconPainter {
public:
    static constexpr int Size = 32;

    // A floppy disk.
    static Raster paintSave();
    // A check mark in a green disc: compile and apply the material.
    static Raster paintApply();
    // A cross-hair: centre the graph in the view.
    static Raster paintCenter();
    // A play triangle in an orange ring: the live preview follows edits.
    static Raster paintLive();
    // A curved arrow turning back to the left: undo.
    static Raster paintUndo();
    // The same arrow mirrored, turning to the right: redo.
    static Raster paintRedo();
    // A small node with an input and an output: a block being dragged.
    static Raster paintFunction();
};
