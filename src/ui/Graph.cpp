#include "Graph.h"

#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "GraphNode.h"
#include "GraphVariable.h"
#include "MsgMngr.h"
#include "UiMsg.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"
#include "tr.h"

#include <QAction>
#include <QCursor>
#include <QMenu>

#include <algorithm>
#include <cmath>
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

// What lies under a point: the topmost polygon and whose it is.
struct Graph::Hit {
    ItemId polygon = kNoItem;
    GraphNode* node = nullptr;
    GraphAnchor* anchor = nullptr;
    GraphJoint* arrow = nullptr;
};

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

// ------------------------------------------------------------------ input

bool Graph::onMouseDown(UIEventMouse& event)
{
    if (event.getType() != UI_EVENT_MOUSE)
        return false;
    const bool inside = is_inside(event);
    if (!inside && !m_focused)
        return false;
    if (!m_focused) {
        focus_canvas();
        emit pressedUnfocused(&event, this);
    } else {
        emit pressedFocused(&event, this);
    }
    m_lastMouseX = event.x;
    m_lastMouseY = event.y;
    if (event.buttons & UIEventMouse::kLeft) {
        begin_gesture();
        press_left(event);
    }
    if (!inside)
        unfocus_canvas();
    return true;
}

// What a left press starts (a drag, a link) is one undo step, however many
// changes it makes before the release.
void Graph::begin_gesture()
{
    end_gesture();
    doc().getHistory().beginGroup();
    m_gestureOpen = true;
}

void Graph::end_gesture()
{
    if (!m_gestureOpen)
        return;
    m_gestureOpen = false;
    doc().getHistory().endGroup();
}

void Graph::press_left(const UIEventMouse& event)
{
    m_leftDown = true;
    m_selectedJoint = nullptr;
    m_pressedAnchor = nullptr;
    const bool instance = doc().isInstance();
    const Point local{static_cast<float>(event.localX), static_cast<float>(event.localY)};
    const Hit hit = hit_test(local);
    if (hit.node) {
        if (!instance || isEditableInInstance(hit.node))
            selectNode(hit.node);
        else
            selectNode(nullptr);
    } else {
        selectNode(nullptr);
        if (hit.anchor) {
            if (!instance)
                m_pressedAnchor = hit.anchor;
        } else if (hit.arrow) {
            if (!instance)
                selectJoint(hit.arrow);
        } else if (hit.polygon == kNoItem && !instance) {
            if (GraphJoint* joint = find_hit_line(local))
                selectJoint(joint);
        }
    }
    apply_highlight(hit, local, true);
}

bool Graph::onMouseMove(UIEventMouse& event)
{
    if (event.getType() != UI_EVENT_MOUSE || !is_inside(event) || (event.buttons & UIEventMouse::kRight))
        return false;
    const int dx = event.x - m_lastMouseX;
    const int dy = event.y - m_lastMouseY;
    m_lastMouseX = event.x;
    m_lastMouseY = event.y;
    const bool instance = doc().isInstance();
    if (m_leftDown && m_selectedNode && !instance) {
        drag_node(dx, dy);
        return true;
    }
    if (m_leftDown && m_pressedAnchor && !instance)
        draw_link_line(event);
    const Point local{static_cast<float>(event.localX), static_cast<float>(event.localY)};
    const Hit hit = hit_test(local);
    apply_highlight(hit, local, true);
    setCursor(hit.node ? Qt::PointingHandCursor : Qt::ArrowCursor);
    return true;
}

bool Graph::drag_node(int dx, int dy)
{
    GraphNode* node = m_selectedNode;
    const float scale = doc().getScale();
    float x = static_cast<float>(node->getX()) + static_cast<float>(dx) / scale;
    float y = static_cast<float>(node->getY()) + static_cast<float>(dy) / scale;
    x = std::min(x, static_cast<float>(width()) / scale - static_cast<float>(node->getWidth()));
    y = std::min(y, static_cast<float>(height()) / scale - static_cast<float>(node->getHeight()));
    const int newX = static_cast<int>(std::max(x, 0.0f));
    const int newY = static_cast<int>(std::max(y, 0.0f));
    if (newX == node->getX() && newY == node->getY())
        return false;
    node->setPosition(newX, newY);
    refreshJoints(node);
    postPtr(kMsgNodeMoved, node);
    return true;
}

void Graph::draw_link_line(const UIEventMouse& event)
{
    const float scale = doc().getScale();
    clearLinePoints(m_linkLine);
    setItemOrder(m_linkLine, m_orderCounter);
    setLineColour(m_linkLine, m_pressedAnchor->getColour());
    addLinePoint(m_linkLine, m_pressedAnchor->getCentre());
    addLinePoint(m_linkLine, {static_cast<float>(event.localX) / scale, static_cast<float>(event.localY) / scale});
}

bool Graph::onMouseUp(UIEventMouse& event)
{
    if (event.getType() != UI_EVENT_MOUSE)
        return false;
    const bool inside = is_inside(event);
    if (!inside && !m_focused)
        return false;
    m_lastMouseX = event.x;
    m_lastMouseY = event.y;
    if (event.buttons & UIEventMouse::kLeft) {
        m_leftDown = false;
        clearLinePoints(m_linkLine);
        if (m_pressedAnchor) {
            const ItemId polygon = hitPolygon({static_cast<float>(event.localX), static_cast<float>(event.localY)});
            GraphAnchor* target = findAnchorByPolygon(polygon);
            if (target && target != m_pressedAnchor)
                link_anchors(m_pressedAnchor, target);
        }
        end_gesture();
    }
    emit released(&event, this);
    if (inside) {
        emit clicked(&event, this);
        if (event.buttons & UIEventMouse::kRight) {
            if (QMenu* menu = make_context_menu(event))
                menu->popup(mapToGlobal(QPoint(event.localX, event.localY)));
        }
    } else {
        unfocus_canvas();
    }
    return true;
}

GraphJoint* Graph::find_joint_between(const GraphAnchor* a, const GraphAnchor* b) const
{
    for (GraphJoint* joint : a->getNode()->getJoints()) {
        if ((joint->getFrom() == a && joint->getTo() == b) || (joint->getFrom() == b && joint->getTo() == a))
            return joint;
    }
    return nullptr;
}

void Graph::link_anchors(GraphAnchor* pressed, GraphAnchor* target)
{
    if (doc().isInstance())
        return;
    DataAnchor* source = pressed->getData();
    DataAnchor* input = target->getData();
    if (!source || !input || source->getDirection() == input->getDirection())
        return;
    if (GraphJoint* existing = find_joint_between(pressed, target)) {
        eraseAll(m_joints, existing);
        destroy_joint(existing);
        postPtr(kMsgJointRemoved, existing);
        return;
    }
    if (pressed->getNode() == target->getNode())
        return;
    if (input->getDirection() != DataAnchor::kInput)
        return;
    if (pressed->getType() != target->getType())
        return;
    replace_links_into(target);
    DataJoint* link = doc().createJoint(source, input);
    if (GraphJoint* joint = createGrahpJoint(link))
        postPtr(kMsgLinkMade, joint);
}

// An input holds one link. The scan moves on after a removal, so of two
// adjacent joints into the target the second stays; that is intended.
void Graph::replace_links_into(const GraphAnchor* target)
{
    for (size_t i = 0; i < m_joints.size(); ++i) {
        GraphJoint* joint = m_joints[i];
        if (joint->getTo() != target)
            continue;
        m_joints.erase(m_joints.begin() + static_cast<std::ptrdiff_t>(i));
        destroy_joint(joint);
        postPtr(kMsgJointRemoved, joint);
    }
}

void Graph::checkCursor(UIEventMouse& event)
{
    if (event.getType() != UI_EVENT_MOUSE || !is_inside(event))
        return;
    const ItemId polygon = hitPolygon({static_cast<float>(event.localX), static_cast<float>(event.localY)});
    setCursor(findNodeByPolygon(polygon) ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

QMenu* Graph::make_context_menu(UIEvent& event)
{
    if (event.getType() != UI_EVENT_MOUSE) {
        jLog::error("%s:%s", "Graph::make_context_menu", "e->getType() == UI_EVENT_MOUSE");
        return nullptr;
    }
    const auto& mouse = static_cast<const UIEventMouse&>(event);
    if (!(mouse.buttons & UIEventMouse::kRight))
        return nullptr;
    const GraphNode* node = findNodeByPolygon(hitPolygon({static_cast<float>(mouse.localX), static_cast<float>(mouse.localY)}));
    const Block* block = node && node->getData() ? node->getData()->getBlock() : nullptr;
    if (!block || !(block->isTexture2D() || block->isTextureCube() || block->isTexture3D()))
        return nullptr;
    jString path;
    for (size_t i = 0; i < node->getVarCount() && path.empty(); ++i) {
        const jString& value = node->getVarAt(i)->getVariable()->getValue();
        if (!value.empty() && jDir::exists(jDir::resolveRead(value)))
            path = value;
    }
    if (path.empty())
        return nullptr;

    delete m_contextMenu.data();
    m_contextMenu = new QMenu(window());
    m_contextMenu->setTitle(QString::fromStdString(jDir::resolveRead(path)));
    QWidget* root = window();
    connect(m_contextMenu->addAction(QString::fromStdString(::tr("locate_in_assets_browser"))), &QAction::triggered, this,
        [root, path]() {
            MsgMngr::instance().post(std::make_unique<UiMsg>(kMsgLocateInAssets, jKit::getFileDir(path) + "/", root));
        });
    connect(m_contextMenu->addAction(QString::fromStdString(::tr("show_in_explorer"))), &QAction::triggered, this,
        [path]() { jKit::openPath(path); });
    m_contextMenu->addAction(QString::fromStdString(::tr("help")));
    return m_contextMenu.data();
}

bool Graph::onKeyPress(UIEventKey& event)
{
    if (event.getType() != UI_EVENT_KEY || !event.down || !m_focused)
        return false;
    if (m_keyTimer > 0.0f && event.key == m_lastKey)
        return false;
    m_keyTimer = kKeyRepeatDelay;
    m_lastKey = event.key;
    if (event.key == UIEventKey::kDelete)
        return key_delete();
    if (event.key == kKeyC && event.hasCtrl())
        return key_copy();
    if (event.key == kKeyV && event.hasCtrl())
        return key_paste();
    return false;
}

bool Graph::key_delete()
{
    EditHistory::Group group(doc().getHistory());
    if (!doc().isInstance()) {
        if (m_selectedNode) {
            removeNode(m_selectedNode);
            selectNode(nullptr);
        } else if (m_selectedJoint) {
            removeJoint(m_selectedJoint);
            m_selectedJoint = nullptr;
        }
    }
    refreshHighlight(-1, -1);
    return true;
}

bool Graph::key_copy()
{
    if (doc().isInstance())
        return true;
    if (m_selectedNode && m_selectedNode->getData()) {
        m_copiedNodeId = static_cast<uint32_t>(m_selectedNode->getData()->getId());
        return false;
    }
    m_copiedNodeId = kNoCopy;
    return true;
}

bool Graph::key_paste()
{
    if (doc().isInstance() || m_copiedNodeId == kNoCopy)
        return false;
    const auto id = static_cast<int32_t>(m_copiedNodeId);
    m_copiedNodeId = kNoCopy;
    const DataNode* copied = doc().findNode(id);
    if (!copied || !copied->getBlock())
        return false;
    const Point local = window_to_local(m_lastMouseX, m_lastMouseY);
    return create_node(copied->getBlock()->getType(), static_cast<int>(local.x), static_cast<int>(local.y)) != nullptr;
}

bool Graph::onDropFinish(UIEventDrop& event)
{
    if (event.getType() != UI_EVENT_DROP || !rect().contains(event.localX, event.localY))
        return false;
    if (event.dragType != UIEventDrop::kDragTreeItem || event.sourceType != UIEventDrop::kSourceTreeBox
        || event.sourceIsButton)
        return true;
    if (event.text.empty()) {
        jLog::warning("%s:can not create node in instance mode", "Graph::onDropFinish");
        return false;
    }
    AppData& document = doc();
    if (document.isInstance())
        return false;
    BlockManager* blocks = document.getBlockManager();
    if (!blocks) {
        jLog::error("%s:%s", "Graph::onDropFinish", "bm");
        return false;
    }
    const Block* block = blocks->getBlock(event.text);
    if (!block || !drop_allowed(*block))
        return false;
    return create_node(event.text, event.localX, event.localY) != nullptr;
}

bool Graph::drop_allowed(const Block& block) const
{
    const AppData& document = doc();
    const int32_t usage = block.getUsage();
    if ((usage == BLOCK_USAGE_PS_END && document.findNodeByUsage(BLOCK_USAGE_PS_END))
        || (usage == BLOCK_USAGE_PS_START && document.findNodeByUsage(BLOCK_USAGE_PS_START))) {
        jLog::warning("%s:can not create multi ps output/input nodes", "Graph::onDropFinish");
        return false;
    }
    if ((usage == BLOCK_USAGE_VS_END && document.findNodeByUsage(BLOCK_USAGE_VS_END))
        || (usage == BLOCK_USAGE_VS_START && document.findNodeByUsage(BLOCK_USAGE_VS_START))) {
        jLog::warning("%s:can not create multi vs output/input nodes", "Graph::onDropFinish");
        return false;
    }
    const jString& bind = block.getBind();
    if (bind.empty())
        return true;
    for (const auto& node : document.getNodes()) {
        const jString& other = node->getBlock() ? node->getBlock()->getBind() : bind;
        if (!other.empty() && other != bind) {
            jLog::warning("%s:this node can not be created ,because its bind \"%s\" not compatible with the current scene",
                "Graph::onDropFinish", bind.c_str());
            return false;
        }
    }
    return true;
}

// -------------------------------------------------------------- highlight

UICanvas::Colour Graph::nodeBaseColour(const GraphNode* node, bool instance) const
{
    return instance && !isEditableInInstance(node) ? kDimmed : kWhite;
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
    tint_problem_nodes();
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
        node->setColour(nodeBaseColour(node, instance));
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
        node->setColour(nodeBaseColour(node, instance));
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
