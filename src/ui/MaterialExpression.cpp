#include "MaterialExpression.h"

#include "AttrWrap.h"
#include "DataNode.h"
#include "GraphNode.h"

#include <QVBoxLayout>

MaterialExpression::MaterialExpression(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
    : QWidget(parent), m_document(document), m_graph(graph), m_node(node)
{
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(4);
}

MaterialExpression::~MaterialExpression() = default;

DataNode* MaterialExpression::getDataNode() const
{
    return m_node ? m_node->getData() : nullptr;
}

bool MaterialExpression::create()
{
    release();
    return create_base();
}

void MaterialExpression::release()
{
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    section = nullptr;
}

AttrWrap* MaterialExpression::add_section(const jString& title)
{
    auto* wrap = new AttrWrap(this, title);
    m_layout->addWidget(wrap);
    return wrap;
}

bool MaterialExpression::create_base()
{
    section = add_section("Base");
    return true;
}
