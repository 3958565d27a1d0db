// The graph canvas's input: pointer presses, moves and releases over
// nodes, anchors and links, the context menu, the keys, and drops from the
// block browser. Each turns into a document edit and a notification.
#include "Graph.h"

#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "GraphNode.h"
#include "MsgMngr.h"
#include "UiMsg.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"
#include "tr.h"

#include <QAction>
#include <QMenu>

#include <algorithm>
#include <cstddef>
#include <memory>

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
    MsgMngr::instance().postPtr(kMsgNodeMoved, node);
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
        std::erase(m_joints, existing);
        destroy_joint(existing);
        MsgMngr::instance().postPtr(kMsgJointRemoved, existing);
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
        MsgMngr::instance().postPtr(kMsgLinkMade, joint);
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
        MsgMngr::instance().postPtr(kMsgJointRemoved, joint);
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
