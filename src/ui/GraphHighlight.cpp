// The graph canvas's colours: the hover, selection and link tints laid over
// the resting colours of nodes, anchors and links.
#include "Graph.h"

#include "AppData.h"
#include "DataNode.h"
#include "DocumentProblems.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "GraphNode.h"

void Graph::highlightLinks(GraphNode* node)
{
    if (node == m_linksNode)
        return;
    m_linksNode = node;
    // Recolour without a pointer: the previous node's links go back to
    // their resting colour.
    apply_highlight(Hit{}, Point{}, false);
}

void Graph::tint_links(GraphNode* node)
{
    if (!node)
        return;
    for (GraphJoint* joint : node->getJoints()) {
        joint->setColour(kLinkHighlight);
        m_tintedJoints.push_back(joint);
    }
}

UICanvas::Colour Graph::nodeBaseColour(const GraphNode* node, bool instance) const
{
    return instance && !isEditableInInstance(node) ? kDimmed : kWhite;
}

// A node's resting look: its base colour, with the red frame of a node that
// has a problem (hover and selection tints go over it and come off again).
void Graph::rest_node(GraphNode* node, bool instance)
{
    node->setColour(nodeBaseColour(node, instance));
    if (m_problems && node->getData() && m_problems->hasNode(node->getData()->getId()))
        node->setFrameColour(kProblem);
}

void Graph::refreshHighlight(int x, int y)
{
    const bool valid = !(x == -1 && y == -1);
    const Point local{static_cast<float>(x), static_cast<float>(y)};
    apply_highlight(valid ? hit_test(local) : Hit{}, local, valid);
}

void Graph::apply_highlight(const Hit& hit, Point local, bool pointerValid)
{
    const bool instance = doc().isInstance();
    if (!m_tintsValid || instance != m_tintsInstance)
        reset_all_colours(instance);
    else
        reset_tinted(instance);
    if (pointerValid) {
        if (hit.node) {
            hit.node->setFrameColour(kHovered);
            m_tintedNodes.push_back(hit.node);
        } else if (hit.anchor) {
            hit.anchor->setHighlightColour(kCyan);
            m_tintedAnchors.push_back(hit.anchor);
        } else if (hit.polygon == kNoItem) {
            if (GraphJoint* joint = find_hit_line(local)) {
                joint->setColour(kCyan);
                m_tintedJoints.push_back(joint);
            }
        }
    }
    if (m_selectedNode) {
        m_selectedNode->setFrameColour(kYellow);
        m_tintedNodes.push_back(m_selectedNode);
    }
    tint_links(m_linksNode);
    if (m_selectedJoint) {
        m_selectedJoint->setColour(kYellow);
        m_tintedJoints.push_back(m_selectedJoint);
    }
}

void Graph::reset_tinted(bool instance)
{
    for (GraphNode* node : m_tintedNodes)
        rest_node(node, instance);
    for (GraphAnchor* anchor : m_tintedAnchors)
        anchor->setHighlightColour(kNoHighlight);
    const Colour jointColour = instance ? kDimmed : kWhite;
    for (GraphJoint* joint : m_tintedJoints)
        joint->setColour(jointColour);
    m_tintedNodes.clear();
    m_tintedAnchors.clear();
    m_tintedJoints.clear();
}

void Graph::reset_all_colours(bool instance)
{
    for (GraphNode* node : m_nodes) {
        rest_node(node, instance);
        for (size_t i = 0; i < node->getAnchorCount(); ++i)
            node->getAnchorAt(i)->setHighlightColour(kNoHighlight);
    }
    const Colour jointColour = instance ? kDimmed : kWhite;
    for (GraphJoint* joint : m_joints)
        joint->setColour(jointColour);
    m_tintedNodes.clear();
    m_tintedAnchors.clear();
    m_tintedJoints.clear();
    m_tintsValid = true;
    m_tintsInstance = instance;
}
