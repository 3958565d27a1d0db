#pragma once

#include "MaterialExpression.h"

// The property panel of the material as a whole, shown while no node is
// selected: naming, render options, blending and render states.
class MaterialExpressionGlobal : public MaterialExpression {
public:
    MaterialExpressionGlobal(QWidget* parent, AppData* document, Graph* graph);
    ~MaterialExpressionGlobal() override;

    bool create() override;
    int getKind() const override { return KIND_GLOBAL; }
};
