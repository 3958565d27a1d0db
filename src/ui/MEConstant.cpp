#include "MEConstant.h"

#include "AttrWrap.h"
#include "BlockVariable.h"
#include "DataNode.h"

#include <QGridLayout>

MEConstant::MEConstant(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
    : MaterialExpression(parent, document, graph, node)
{
}

bool MEConstant::create()
{
    release();
    AttrWrap* constant = add_section("Constant");
    QGridLayout* grid = add_grid(constant);
    const DataNode* node = getDataNode();
    const size_t count = node ? node->getVariableCount() : 0;
    for (size_t i = 0; i < count; ++i) {
        const BlockVariable* definition = node->getVariable(i)->getDefinition();
        if (!definition || (definition->getType() != "float" && definition->getType() != "int"))
            continue;
        add_row(grid, definition->getText(), make_number_field(constant->getContent(), i, definition->getType()));
    }
    return create_base();
}
