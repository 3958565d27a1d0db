// The editor window's part in showing the document's problems: when the
// problem list is found again (load, edits, save, apply), and what the
// canvas and the "Problems" list under it show of it.
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "Graph.h"
#include "GraphNode.h"
#include "GraphScrollBox.h"
#include "ProblemList.h"
#include "ShaderValidator.h"

#include <QScrollBar>
#include <QVBoxLayout>

namespace {

// Notifications after which the graph's structure may differ: a node
// created or removed, a link made or removed.
bool changesStructure(int code)
{
    return code == Graph::kMsgNodeCreated || code == Graph::kMsgNodeRemoved || code == Graph::kMsgLinkMade
        || code == Graph::kMsgJointRemoved;
}

} // namespace

void MaterialEditorWindow::init_problems_ui(QVBoxLayout* column)
{
    graph->setProblems(&m_problems);
    m_problemList = new ProblemList(graph_column);
    m_problemList->setProblems(&m_problems);
    column->addWidget(m_problemList);
    // The canvas takes the height; the list only what its rows need.
    column->setStretchFactor(graph_scroll, 1);
    QObject::connect(m_problemList, &ProblemList::nodeActivated, this, [this](int id) { show_problem_node(id); });
}

void MaterialEditorWindow::problems_after_load()
{
    const AppData& document = *AppData::get();
    m_problems.afterLoad(document.getPath(), document);
    show_problems();
}

void MaterialEditorWindow::problems_after_message(int code)
{
    if (!changesStructure(code))
        return;
    m_problems.afterEdit(*AppData::get());
    show_problems();
}

void MaterialEditorWindow::problems_after_save()
{
    m_problems.afterSave(*AppData::get());
    show_problems();
}

// The compile of an apply is checked by the reference compiler when it is
// installed; the preview's own driver reports through the live preview.
void MaterialEditorWindow::problems_after_apply()
{
    const AppData& document = *AppData::get();
    m_problems.afterSave(document);
    const ShaderValidator validator;
    if (validator.isAvailable())
        m_problems.compile(document, validator);
    show_problems();
}

// The document is closed: its problems go, and so does its live copy.
void MaterialEditorWindow::clear_problems()
{
    m_live.discard();
    m_problems.clear();
    show_problems();
}

void MaterialEditorWindow::show_problems()
{
    if (graph)
        graph->refreshProblems();
    if (m_problemList)
        m_problemList->refresh();
}

void MaterialEditorWindow::show_problem_node(int32_t id)
{
    GraphNode* node = graph ? graph->findNode(id) : nullptr;
    if (!node)
        return;
    graph->selectNode(node);
    graph->refreshHighlight(-1, -1);
    const float scale = AppData::get()->getScale();
    const int x = static_cast<int>(static_cast<float>(node->getX() + node->getWidth() / 2) * scale);
    const int y = static_cast<int>(static_cast<float>(node->getY() + node->getHeight() / 2) * scale);
    const QSize view = graph_scroll->viewport()->size();
    graph_scroll->ensureVisible(x, y, view.width() / 2, view.height() / 2);
}
