#include "GraphHistoryView.h"

#include "DataJoint.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"

void GraphHistoryView::nodeAdded(DataNode* node)
{
    m_graph.addNode(new GraphNode(node, Graph::kWhite));
}

void GraphHistoryView::nodeRemoving(DataNode* node)
{
    if (GraphNode* shown = m_graph.findNode(node->getId()))
        m_graph.dropNodeView(shown);
}

void GraphHistoryView::jointAdded(DataJoint* joint)
{
    m_graph.createGrahpJoint(joint);
}

void GraphHistoryView::jointRemoving(DataJoint* joint)
{
    if (GraphJoint* shown = m_graph.findJointByLink(joint))
        m_graph.dropJointView(shown);
}

void GraphHistoryView::nodeMoved(DataNode* node)
{
    if (GraphNode* shown = m_graph.findNode(node->getId())) {
        shown->setPosition(node->getPosX(), node->getPosY());
        m_graph.refreshJoints(shown);
    }
}

// A new value changes the node's labels, and with them its size and the
// places of its anchors.
void GraphHistoryView::nodeChanged(DataNode* node)
{
    if (GraphNode* shown = m_graph.findNode(node->getId())) {
        shown->genUI();
        m_graph.refreshJoints(shown);
    }
}
