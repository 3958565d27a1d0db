#pragma once

#include "Raster.h"

// Paints the node sprite sheet of the graph canvas (widget_graph.png). The
// texture rectangles it fills are the ones the graph's nodes, anchors and
// joints use; docs/sprite-sheet.md lists them.
class SpriteSheetPainter {
public:
    static constexpr int Width = 256;
    static constexpr int Height = 128;
    // Anchors and arrow heads sit in cells of this size.
    static constexpr int Cell = 32;

    // Sprite columns of the anchor kinds and of the arrow heads.
    enum Column { GenericColumn = 4, InputColumn = 5, OutputColumn = 6, ArrowColumn = 7 };
    // Sprite rows: the side of the node the anchor sits on, or the
    // direction an arrow head points to.
    enum Row { LeftRow = 0, RightRow = 1, TopRow = 2, BottomRow = 3 };

    static Raster paint();

private:
    static void paintFrame(Raster& raster);
    static void paintInnerPanel(Raster& raster);
    static void paintAnchor(Raster& raster, int column, int row);
    static void paintArrow(Raster& raster, int row);
};
