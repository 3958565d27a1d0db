#include "Graph.h"

#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataNode.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "GraphNode.h"
#include "MsgMngr.h"
#include "jLog.h"
#include "tr.h"

#include <QMenu>

#include <algorithm>
#include <memory>

namespace {

void post(int code)
{
    MsgMngr::instance().post(code);
}

void postPtr(int code, void* ptr)
{
    MsgMngr::instance().postPtr(code, ptr);
}

template <typename T>
void eraseAll(std::vector<T*>& items, const T* item)
{
    items.erase(std::remove(items.begin(), items.end(), item), items.end());
}

// Drops one registration; true when it was the last, so the object can go.
template <typename T>
bool dropRef(std::unordered_map<const T*, int>& refs, const T* item)
{
    const auto it = refs.find(item);
    if (it == refs.end())
        return true;
    if (--it->second > 0)
        return false;
    refs.erase(it);
    return true;
}

} // namespace

Graph::Graph(QWidget* parent, int width, int height)
    : UICanvas(parent)
{
    setFixedSize(width, height);
    setBackgroundColour(kBackground);
    setBackgroundTexture(kSpriteSheet);
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    m_linkLine = addLine(kWhite);
}

Graph::~Graph()
{
    clear();
    delete m_contextMenu.data();
}

AppData& Graph::doc()
{
    return *AppData::get();
}

void Graph::update(float dt)
{
    m_keyTimer -= dt;
    if (m_keyTimer <= 0.0f)
        m_lastKey = -1;
}

// ---------------------------------------------------------------- registry

void Graph::addNode(GraphNode* node)
{
    if (!node)
        return;
    if (m_nodeRefs.count(node))
        jLog::error("Graph::addNode(): node is already defined");
    node->attach(this);
    m_orderCounter = node->raise(m_orderCounter);
    node->genUI();
    m_nodes.push_back(node);
    ++m_nodeRefs[node];
    index_node(node);
    m_tintedNodes.push_back(node);
    postPtr(kMsgNodeAdded, node);
}

void Graph::removeNode(GraphNode* node)
{
    const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
    if (found == m_nodes.end())
        jLog::error("Graph::removeNode(): can't find node");
    // Joints touching the node, last first.
    for (size_t i = m_joints.size(); i-- > 0;) {
        GraphJoint* joint = m_joints[i];
        if (joint->getFrom()->getNode() != node && joint->getTo()->getNode() != node)
            continue;
        m_joints[i] = nullptr;
        destroy_joint(joint);
        post(kMsgJointRemoved);
    }
    eraseAll<GraphJoint>(m_joints, nullptr);

    if (node)
        doc().destroyNode(node->getData());
    bool last = true;
    if (found != m_nodes.end()) {
        m_nodes.erase(found);
        last = dropRef(m_nodeRefs, static_cast<const GraphNode*>(node));
    }
    if (last)
        forget_node(node);
    MsgMngr::instance().notifyNow(kMsgNodeRemoved);
    if (node && node == m_selectedNode && last)
        selectNode(nullptr);
    if (last)
        delete node;
}

// Drops every reference the graph keeps to a node that goes away.
void Graph::forget_node(GraphNode* node)
{
    if (!node)
        return;
    unindex_node(node);
    if (m_linksNode == node)
        m_linksNode = nullptr;
    eraseAll(m_tintedNodes, node);
    std::erase_if(m_tintedAnchors, [node](const GraphAnchor* anchor) { return anchor->getNode() == node; });
    if (m_pressedAnchor && m_pressedAnchor->getNode() == node)
        m_pressedAnchor = nullptr;
}

void Graph::addJoint(GraphJoint* joint)
{
    if (!joint || !joint->getFrom() || !joint->getTo())
        return;
    if (m_jointRefs.count(joint))
        jLog::error("Graph::addJoint(): joint is already defined");
    joint->attach(this);
    m_orderCounter = joint->raise(m_orderCounter);
    m_joints.push_back(joint);
    ++m_jointRefs[joint];
    index_joint(joint);
    m_tintedJoints.push_back(joint);
    joint->update();
}

void Graph::removeJoint(GraphJoint* joint)
{
    const auto found = std::find(m_joints.begin(), m_joints.end(), joint);
    if (found == m_joints.end())
        jLog::error("Graph::removeJoint(): can't find node");
    else
        m_joints.erase(found);
    destroy_joint(joint);
    post(kMsgJointRemoved);
}

void Graph::destroy_joint(GraphJoint* joint)
{
    if (!joint)
        return;
    doc().destroyJoint(joint->getLink());
    release_joint(joint);
}

void Graph::release_joint(GraphJoint* joint)
{
    if (!dropRef(m_jointRefs, static_cast<const GraphJoint*>(joint)))
        return;
    unindex_joint(joint);
    eraseAll(m_tintedJoints, joint);
    if (m_selectedJoint == joint)
        m_selectedJoint = nullptr;
    delete joint;
}

void Graph::dropNodeView(GraphNode* node)
{
    const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
    if (found == m_nodes.end())
        return;
    for (GraphJoint* joint : std::vector<GraphJoint*>(node->getJoints()))
        dropJointView(joint);
    if (m_selectedNode == node)
        selectNode(nullptr);
    m_nodes.erase(found);
    if (dropRef(m_nodeRefs, static_cast<const GraphNode*>(node))) {
        forget_node(node);
        delete node;
    }
}

void Graph::dropJointView(GraphJoint* joint)
{
    const auto found = std::find(m_joints.begin(), m_joints.end(), joint);
    if (found == m_joints.end())
        return;
    m_joints.erase(found);
    release_joint(joint);
}

GraphJoint* Graph::findJointByLink(const DataJoint* link) const
{
    for (GraphJoint* joint : m_joints) {
        if (joint->getLink() == link)
            return joint;
    }
    return nullptr;
}

GraphJoint* Graph::createGrahpJoint(DataJoint* link)
{
    GraphNode* p0 = link && link->node0 ? findNode(link->node0->getId()) : nullptr;
    GraphNode* p1 = link && link->node1 ? findNode(link->node1->getId()) : nullptr;
    if (!p0 || !p1) {
        jLog::error("%s:%s", "Graph::createGrahpJoint", "p0&&p1");
        return nullptr;
    }
    GraphAnchor* from = link->anchor0 ? p0->getAnchor(link->anchor0->getName()) : nullptr;
    GraphAnchor* to = link->anchor1 ? p1->getAnchor(link->anchor1->getName()) : nullptr;
    if (!from || !to)
        return nullptr;
    auto* joint = new GraphJoint(from, to, link);
    addJoint(joint);
    return joint;
}

GraphNode* Graph::create_node(const jString& type, int x, int y)
{
    AppData& document = doc();
    BlockManager* blocks = document.getBlockManager();
    Block* block = blocks ? blocks->getBlock(type) : nullptr;
    if (!block)
        return nullptr;
    const int32_t limit = block->getNumLimit();
    if (limit > 0 && document.getNodeCountByType(type) >= limit) {
        MsgMngr::instance().postStr(kMsgNotice, jFormat("\"%s\" is num limited to %d", type.c_str(), limit));
        return nullptr;
    }
    EditHistory::Group group(document.getHistory());
    DataNode* data = document.createNode(type);
    if (!data)
        return nullptr;
    document.createStates();
    auto* node = new GraphNode(data, kWhite);
    addNode(node);
    const float inverse = 1.0f / document.getScale();
    node->setPosition(static_cast<int>(static_cast<float>(x) * inverse), static_cast<int>(static_cast<float>(y) * inverse));
    if (!m_focused)
        focus_canvas();
    selectNode(node);
    postPtr(kMsgNodeCreated, data);
    return node;
}

void Graph::clear()
{
    setScale(1.0f);
    for (GraphJoint* joint : m_joints) {
        if (dropRef(m_jointRefs, static_cast<const GraphJoint*>(joint)))
            delete joint;
    }
    for (GraphNode* node : m_nodes) {
        if (dropRef(m_nodeRefs, static_cast<const GraphNode*>(node)))
            delete node;
    }
    m_joints.clear();
    m_nodes.clear();
    m_nodeRefs.clear();
    m_jointRefs.clear();
    m_nodeById.clear();
    m_polygonOwners.clear();
    m_tintedNodes.clear();
    m_tintedAnchors.clear();
    m_tintedJoints.clear();
    m_selectedNode = nullptr;
    m_selectedJoint = nullptr;
    m_linksNode = nullptr;
    m_pressedAnchor = nullptr;
    m_copiedNodeId = kNoCopy;
    m_leftDown = false;
    clearLinePoints(m_linkLine);
}

// ----------------------------------------------------------------- indexes

Graph::PolygonOwner* Graph::owner_slot(ItemId polygon)
{
    if (polygon < 0)
        return nullptr;
    const auto index = static_cast<size_t>(polygon);
    if (index >= m_polygonOwners.size())
        m_polygonOwners.resize(std::max(index + 1, m_polygonOwners.size() * 2));
    return &m_polygonOwners[index];
}

const Graph::PolygonOwner* Graph::find_owner(ItemId polygon) const
{
    if (polygon < 0 || static_cast<size_t>(polygon) >= m_polygonOwners.size())
        return nullptr;
    return &m_polygonOwners[static_cast<size_t>(polygon)];
}

void Graph::index_node(GraphNode* node)
{
    if (node->getData())
        m_nodeById.emplace(node->getData()->getId(), node);
    const auto own = [this, node](ItemId polygon) {
        if (PolygonOwner* slot = owner_slot(polygon); slot && !slot->node)
            slot->node = node;
    };
    for (size_t i = 0; i < GraphNode::kPolygonCount; ++i)
        own(node->getPolygonId(i));
    for (size_t i = 0; i < node->getVarCount(); ++i)
        own(node->getVarAt(i)->getPolygonId());
    for (size_t i = 0; i < node->getAnchorCount(); ++i) {
        GraphAnchor* anchor = node->getAnchorAt(i);
        for (ItemId polygon : {anchor->getSquareId(), anchor->getHighlightId()}) {
            if (PolygonOwner* slot = owner_slot(polygon); slot && !slot->anchor)
                slot->anchor = anchor;
        }
    }
}

void Graph::unindex_node(GraphNode* node)
{
    if (node->getData()) {
        const int32_t id = node->getData()->getId();
        const auto it = m_nodeById.find(id);
        if (it != m_nodeById.end() && it->second == node) {
            m_nodeById.erase(it);
            // Another node registered with the same id takes over.
            for (GraphNode* other : m_nodes) {
                if (other != node && other->getData() && other->getData()->getId() == id) {
                    m_nodeById.emplace(id, other);
                    break;
                }
            }
        }
    }
    const auto disown = [this, node](ItemId polygon) {
        if (PolygonOwner* slot = owner_slot(polygon); slot && slot->node == node)
            slot->node = nullptr;
    };
    for (size_t i = 0; i < GraphNode::kPolygonCount; ++i)
        disown(node->getPolygonId(i));
    for (size_t i = 0; i < node->getVarCount(); ++i)
        disown(node->getVarAt(i)->getPolygonId());
    for (size_t i = 0; i < node->getAnchorCount(); ++i) {
        const GraphAnchor* anchor = node->getAnchorAt(i);
        for (ItemId polygon : {anchor->getSquareId(), anchor->getHighlightId()}) {
            if (PolygonOwner* slot = owner_slot(polygon); slot && slot->anchor == anchor)
                slot->anchor = nullptr;
        }
    }
}

void Graph::index_joint(GraphJoint* joint)
{
    if (PolygonOwner* slot = owner_slot(joint->getArrowId()); slot && !slot->arrow)
        slot->arrow = joint;
    GraphNode* from = joint->getFrom()->getNode();
    GraphNode* to = joint->getTo()->getNode();
    if (from)
        from->addJoint(joint);
    if (to && to != from)
        to->addJoint(joint);
}

void Graph::unindex_joint(GraphJoint* joint)
{
    if (PolygonOwner* slot = owner_slot(joint->getArrowId()); slot && slot->arrow == joint)
        slot->arrow = nullptr;
    // The nodes may be gone already when a node's removal takes its joints.
    GraphNode* from = joint->getFrom()->getNode();
    GraphNode* to = joint->getTo()->getNode();
    if (from)
        from->removeJoint(joint);
    if (to && to != from)
        to->removeJoint(joint);
}

GraphNode* Graph::findNode(int32_t id) const
{
    const auto it = m_nodeById.find(id);
    return it == m_nodeById.end() ? nullptr : it->second;
}

GraphNode* Graph::findNodeByPolygon(ItemId polygon) const
{
    const PolygonOwner* owner = find_owner(polygon);
    return owner ? owner->node : nullptr;
}

GraphAnchor* Graph::findAnchorByPolygon(ItemId polygon) const
{
    const PolygonOwner* owner = find_owner(polygon);
    return owner ? owner->anchor : nullptr;
}

GraphJoint* Graph::findJointByArrow(ItemId polygon) const
{
    const PolygonOwner* owner = find_owner(polygon);
    return owner ? owner->arrow : nullptr;
}

// ------------------------------------------------------ view and selection

void Graph::setScale(float s)
{
    setCanvasTransform(Transform::scale(s));
}

void Graph::selectNode(GraphNode* node)
{
    if (node == m_selectedNode)
        return;
    if (node) {
        m_orderCounter = node->raise(m_orderCounter);
        for (GraphJoint* joint : node->getJoints())
            m_orderCounter = joint->raise(m_orderCounter);
    }
    m_selectedNode = node;
    postPtr(kMsgSelectionChanged, node);
}

void Graph::selectJoint(GraphJoint* joint)
{
    if (joint == m_selectedJoint)
        return;
    m_selectedJoint = joint;
    if (joint)
        m_orderCounter = joint->raise(m_orderCounter);
}

// A move of the whole view, not an edit: undo works on offsets, so the
// steps recorded before it still apply after it.
void Graph::moveAllNodes(int dx, int dy)
{
    EditHistory::Pause pause(doc().getHistory());
    for (GraphNode* node : m_nodes)
        node->setPosition(node->getX() + dx, node->getY() + dy);
    // Every joint touches a moved node.
    for (GraphJoint* joint : m_joints)
        joint->update();
}

void Graph::refreshJoints(GraphNode* node)
{
    for (GraphJoint* joint : node->getJoints())
        joint->update();
}

void Graph::centerGraph()
{
    if (m_nodes.empty())
        return;
    int64_t sumX = 0;
    int64_t sumY = 0;
    for (const GraphNode* node : m_nodes) {
        sumX += node->getX();
        sumY += node->getY();
    }
    const auto count = static_cast<int64_t>(m_nodes.size());
    const auto meanX = static_cast<int>(sumX / count);
    const auto meanY = static_cast<int>(sumY / count);
    const float inverse = 1.0f / doc().getScale();
    const int dx = static_cast<int>(static_cast<float>(width()) * inverse * 0.5f) - meanX;
    const int dy = static_cast<int>(static_cast<float>(height()) * inverse * 0.5f) - meanY;
    if (dx == 0 && dy == 0)
        return;
    moveAllNodes(dx, dy);
    post(kMsgCentred);
}

// ---------------------------------------------------------------- focus

void Graph::focus_canvas()
{
    m_focused = true;
    setFocus(Qt::MouseFocusReason);
}

void Graph::unfocus_canvas()
{
    m_focused = false;
    clearFocus();
}

void Graph::focusInEvent(QFocusEvent* event)
{
    m_focused = true;
    UICanvas::focusInEvent(event);
}

void Graph::focusOutEvent(QFocusEvent* event)
{
    m_focused = false;
    UICanvas::focusOutEvent(event);
}

// ------------------------------------------------------------- hit tests

bool Graph::is_inside(const UIEventMouse& event) const
{
    return rect().contains(event.localX, event.localY);
}

UICanvas::Point Graph::window_to_local(int x, int y) const
{
    const QPoint local = mapFrom(window(), QPoint(x, y));
    return {static_cast<float>(local.x()), static_cast<float>(local.y())};
}

Graph::Hit Graph::hit_test(Point local) const
{
    Hit hit;
    hit.polygon = hitPolygon(local);
    if (hit.polygon == kNoItem)
        return hit;
    hit.node = findNodeByPolygon(hit.polygon);
    if (!hit.node)
        hit.anchor = findAnchorByPolygon(hit.polygon);
    if (!hit.node && !hit.anchor)
        hit.arrow = findJointByArrow(hit.polygon);
    return hit;
}

GraphJoint* Graph::find_hit_line(Point local) const
{
    for (GraphJoint* joint : m_joints) {
        if (joint->isLineHit(local, kLineHitDistance))
            return joint;
    }
    return nullptr;
}

bool Graph::isEditableInInstance(const GraphNode* node)
{
    const Block* block = node && node->getData() ? node->getData()->getBlock() : nullptr;
    return block && (block->isConstant() || block->isTexture2D() || block->isTexture3D() || block->isTextureCube());
}
