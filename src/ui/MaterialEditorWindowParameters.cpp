// The parameters column of the editor window: the property panel of the
// selected node, or the material's global options while nothing is
// selected.
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "Block.h"
#include "BlockBrowser.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "MEConstant.h"
#include "METexture2D.h"
#include "METexture3D.h"
#include "METextureCube.h"
#include "MaterialExpressionGlobal.h"

#include <QTreeWidgetItem>
#include <QVBoxLayout>

void MaterialEditorWindow::update_parameters(GraphNode* node)
{
    if (refresh_shown_panel(node))
        return;
    clear_parameter();
    if (graph)
        graph->highlightLinks(node);
    MaterialExpression* panel = node ? make_node_panel(node)
                                     : new MaterialExpressionGlobal(parameters_list->parentWidget(), AppData::get(), graph);
    panel->create();
    add_expr_helper(panel);
}

namespace {

// Rows built inside a shown panel are shown one by one, each with its own
// show events and layout; built hidden, the panel shows them all at once
// (a panel of 20 rows refreshes in a third of the time).
bool rebuild(MaterialExpression* panel)
{
    const bool shown = panel->isVisible();
    if (shown)
        panel->hide();
    const bool built = panel->create();
    if (shown)
        panel->show();
    return built;
}

} // namespace

// The panel already shown for node (or the global options for no node) is
// rebuilt in place with the document's current values.
bool MaterialEditorWindow::refresh_shown_panel(GraphNode* node)
{
    for (MaterialExpression* panel : expressions) {
        if (node && panel->getNode() == node) {
            graph->selectNode(node);
            if (rebuild(panel))
                return true;
        } else if (!node && panel->getKind() == MaterialExpression::KIND_GLOBAL) {
            rebuild(panel);
            return true;
        }
    }
    return false;
}

// The panel a node's block asks for; a block that is both a texture and a
// constant gets the texture panel.
MaterialExpression* MaterialEditorWindow::make_node_panel(GraphNode* node)
{
    QWidget* parent = parameters_list->parentWidget();
    AppData* document = AppData::get();
    const Block* block = node->getData() ? node->getData()->getBlock() : nullptr;
    if (block && block->isTexture2D())
        return new METexture2D(parent, document, graph, node);
    if (block && block->isTextureCube())
        return new METextureCube(parent, document, graph, node);
    if (block && block->isTexture3D())
        return new METexture3D(parent, document, graph, node);
    if (block && block->isConstant())
        return new MEConstant(parent, document, graph, node);
    return new MaterialExpression(parent, document, graph, node);
}

void MaterialEditorWindow::clear_parameter()
{
    for (MaterialExpression* panel : expressions) {
        panel->release();
        if (parameters_list)
            parameters_list->removeWidget(panel);
        delete panel;
    }
    expressions.clear();
}

// New and node removal: the global options, refreshed when they are shown.
void MaterialEditorWindow::show_global_options()
{
    for (MaterialExpression* panel : expressions) {
        if (panel->getKind() == MaterialExpression::KIND_GLOBAL) {
            rebuild(panel);
            return;
        }
    }
    clear_parameter();
    auto* panel = new MaterialExpressionGlobal(parameters_list->parentWidget(), AppData::get(), graph);
    panel->create();
    add_expr_helper(panel);
}

// Appends a built panel below the others (above the list's closing stretch).
void MaterialEditorWindow::add_expr_helper(MaterialExpression* expr)
{
    if (expressions.capacity() == 0)
        expressions.reserve(5);
    expressions.push_back(expr);
    expr->getLayout()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    parameters_list->insertWidget(parameters_list->count() - 1, expr);
    // Shown at once rather than from the event loop, so that the frame that
    // built the panel (and a grab of it) shows it.
    expr->show();
}

jString MaterialEditorWindow::get_hierarchy(const jString& separator) const
{
    const QTreeWidgetItem* item = block_browser ? block_browser->currentItem() : nullptr;
    if (!item)
        return {};
    jString path = item->text(0).toStdString();
    for (const QTreeWidgetItem* parent = item->parent(); parent; parent = parent->parent())
        path = parent->text(0).toStdString() + separator + path;
    return path;
}
