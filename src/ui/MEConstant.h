#pragma once

#include "MaterialExpression.h"

// The panel of a constant node: a "Constant" section with a numeric field
// per "float" or "int" variable, then the "Base" section.
class MEConstant : public MaterialExpression {
public:
    MEConstant(QWidget* parent, AppData* document, Graph* graph, GraphNode* node);

    bool create() override;
    int getKind() const override { return KIND_CONSTANT; }
};
