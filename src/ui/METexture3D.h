#pragma once

#include "METexture2D.h"

// The texture panel for "texture3D" variables.
class METexture3D : public METexture2D {
public:
    METexture3D(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
        : METexture2D(parent, document, graph, node, "texture3D")
    {
    }

    int getKind() const override { return KIND_TEXTURE_3D; }
};
