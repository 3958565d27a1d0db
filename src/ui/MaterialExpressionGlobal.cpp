#include "MaterialExpressionGlobal.h"

MaterialExpressionGlobal::MaterialExpressionGlobal(QWidget* parent, AppData* document, Graph* graph)
    : MaterialExpression(parent, document, graph, nullptr)
{
}

MaterialExpressionGlobal::~MaterialExpressionGlobal() = default;

bool MaterialExpressionGlobal::create()
{
    release();
    section = add_section("Global");
    return true;
}
