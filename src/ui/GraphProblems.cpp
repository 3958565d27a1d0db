// The graph canvas's view of the document's problem list: red frames and
// badges on the nodes with a problem, and their messages as tooltip. What
// the problems are is decided by DocumentProblems; this only shows them.
#include "Graph.h"

#include "DataNode.h"
#include "DocumentProblems.h"
#include "GraphNode.h"

#include <QHelpEvent>
#include <QToolTip>

void Graph::refreshProblems()
{
    for (GraphNode* node : m_nodes) {
        const bool shown = m_problems && node->getData() && m_problems->hasNode(node->getData()->getId());
        node->setBadge(shown);
    }
    // Every node's resting colour may have changed.
    m_tintsValid = false;
    refreshHighlight(-1, -1);
}

jString Graph::problemTextAt(int x, int y)
{
    if (!m_problems)
        return {};
    const GraphNode* node = findNodeByPolygon(hitPolygon({static_cast<float>(x), static_cast<float>(y)}));
    if (!node || !node->getData())
        return {};
    return m_problems->messagesOf(node->getData()->getId());
}

bool Graph::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return UICanvas::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const jString text = problemTextAt(help->pos().x(), help->pos().y());
    if (text.empty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), QString::fromStdString(text), this);
    return true;
}
