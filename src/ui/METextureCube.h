#pragma once

#include "METexture2D.h"

// The texture panel for "textureCube" variables.
class METextureCube : public METexture2D {
public:
    METextureCube(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
        : METexture2D(parent, document, graph, node, "textureCube")
    {
    }

    int getKind() const override { return KIND_TEXTURE_CUBE; }
};
