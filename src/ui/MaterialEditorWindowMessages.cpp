// The editor window's reactions to the notifications of the message bus,
// and the parameters column they drive.
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "AssetsBrowser.h"
#include "Block.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "GraphScrollBox.h"
#include "MaterialEditor.h"
#include "MatViewport.h"
#include "MsgMngr.h"
#include "UiMsg.h"
#include "jLog.h"
#include "msgBox.h"

#include <QRect>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Code : int {
    kLocateFolder = 2,
    kOpenMaterial = 5,
    kLoaded = 6,
    kNodeCreated = 7,
    kNodeChanged = 9,
    kSelectionChanged = 10,
    kNodeEdited = 11,
    kNodeMoved = 12,
    kNodeRemoved = 13,
    kScrollFromDocument = 21,
    kScrolled = 22,
    kLoadedInstance = 26,
    kStatesReset = 28,
    kNotice = 31,
};

bool marksModified(int code)
{
    switch (code) {
    case 14: case 19: case 20: case 23: case 24: case 25: case 27: case 29: case 30:
        return true;
    default:
        return false;
    }
}

bool reloadsTextures(int code)
{
    return code >= 15 && code <= 18;
}

} // namespace

void MaterialEditorWindow::processMsg(UiMsg* msg)
{
    if (!msg)
        return;
    const int code = msg->getCode();
    follow_edit(code);
    switch (code) {
    case kOpenMaterial: {
        const jString& path = msg->getText();
        if (MaterialEditor::IsMaterialCanBeEdit(path))
            load(path.empty() || path.front() == '/' ? path : data_path + path);
        else
            jLog::warning("\"%s\" can not be edit", path.c_str());
        break;
    }
    case kLoaded:
        rebuild_from_document();
        break;
    case kNodeCreated:
        set_window_modified(true);
        return;
    case kNodeChanged:
        update_parameters(static_cast<GraphNode*>(msg->getPtr()));
        set_window_modified(true);
        return;
    case kSelectionChanged:
        if (GraphNode* node = node_of(msg); node || dynamic_cast<UiMsgPTR*>(msg))
            update_parameters(node);
        return;
    case kNodeEdited:
        if (GraphNode* node = node_of(msg); node || dynamic_cast<UiMsgPTR*>(msg)) {
            update_parameters(node);
            set_window_modified(true);
        }
        return;
    case kNodeMoved:
        node_of(msg);
        set_window_modified(true);
        return;
    case kNodeRemoved:
        update_parameters(nullptr);
        if (!AppData::get()->findNodeByUsage(BLOCK_USAGE_PS_END))
            AppData::get()->clearStates();
        set_window_modified(true);
        return;
    case kScrollFromDocument:
        update_scroll_by_data();
        return;
    case kScrolled:
        graph_scroll->setHScrollPercent(AppData::get()->getHScroll());
        graph_scroll->setVScrollPercent(AppData::get()->getVScroll());
        set_window_modified(true);
        return;
    case kLoadedInstance:
        return;
    case kStatesReset:
        reset_states();
        update_parameters(nullptr);
        set_window_modified(true);
        return;
    case kNotice:
        msgBox(msg->getText(), "Warning", this);
        return;
    default:
        if (marksModified(code)) {
            set_window_modified(true);
            return;
        }
        if (reloadsTextures(code)) {
            need_reload_texture = true;
            set_window_modified(true);
            return;
        }
        break;
    }
    // What the window does not take itself goes on to its panes.
    if (assets_browser && code == kLocateFolder)
        assets_browser->processMsg(msg);
}

// The node a pointer message carries; a message without a pointer payload
// is a sender's mistake and is logged.
GraphNode* MaterialEditorWindow::node_of(UiMsg* msg)
{
    if (!dynamic_cast<UiMsgPTR*>(msg)) {
        jLog::error("%s:%s", "MaterialEditor::processMsg", "msg->getType() == UiMsgPTR");
        return nullptr;
    }
    return static_cast<GraphNode*>(msg->getPtr());
}

// Message 6: the canvas shows the document that was just loaded.
void MaterialEditorWindow::rebuild_from_document()
{
    AppData& document = *AppData::get();
    graph->clear();
    for (const auto& node : document.getNodes())
        graph->addNode(new GraphNode(node.get(), Graph::kWhite));
    for (const auto& joint : document.getJoints())
        graph->createGrahpJoint(joint.get());
    graph->setScale(document.getScale());
    bring_nodes_into_view();
    MsgMngr::instance().post(kScrollFromDocument);
    if (document.isInstance())
        MsgMngr::instance().post(kLoadedInstance);
    update_window_name();
    document.createStates();
    // The loaded document is where its history starts.
    document.getHistory().clear();
    clear_parameter();
    update_parameters(nullptr);
    problems_after_load();
}

// A document whose nodes lie away from the part of the canvas its stored
// view shows (documents written with positions about 0, or a view saved
// elsewhere) opens with its nodes moved as one block into the middle of
// that view. This is not an edit: the document stays unmodified.
void MaterialEditorWindow::bring_nodes_into_view()
{
    const std::vector<GraphNode*>& nodes = graph->getNodes();
    if (nodes.empty())
        return;
    QRect box;
    for (const GraphNode* node : nodes)
        box |= QRect(node->getX(), node->getY(), std::max(node->getWidth(), 1), std::max(node->getHeight(), 1));
    const AppData& document = *AppData::get();
    const float scale = document.getScale() > 0.0f ? document.getScale() : 1.0f;
    const QSize viewport = graph_scroll->viewport()->size().expandedTo(QSize(kPreviewSize, kPreviewSize));
    const float spanX = static_cast<float>(kGraphSize) * scale - static_cast<float>(viewport.width());
    const float spanY = static_cast<float>(kGraphSize) * scale - static_cast<float>(viewport.height());
    const QRect view(static_cast<int>((document.getHScroll() * spanX) / scale),
                     static_cast<int>((document.getVScroll() * spanY) / scale),
                     static_cast<int>(static_cast<float>(viewport.width()) / scale),
                     static_cast<int>(static_cast<float>(viewport.height()) / scale));
    if (view.intersects(box))
        return;
    const QPoint shift = view.center() - box.center();
    graph->moveAllNodes(shift.x(), shift.y());
}

// Message 28: every state back to its reset value, then the parent's and
// the output block's template values laid over it again.
void MaterialEditorWindow::reset_states()
{
    AppData& document = *AppData::get();
    const jVector<MaterialState> before = document.getStates();
    for (MaterialState& state : document.getStates())
        state.value = 0;
    if (!document.getParentPath().empty())
        document.fill_material_state_value(document.getParentPath());
    const jString templatePath = document.getTemplatePath();
    if (!templatePath.empty())
        document.fill_material_state_value(templatePath);
    document.recordStatesChange(before);
}

void MaterialEditorWindow::set_preview_material(const jString& name)
{
    m_previewMaterial = name;
    if (m_preview)
        m_preview->setMaterial(name);
}

// Without a GL context the preview never renders; after a second of frames
// it counts as ready with its plain background.
bool MaterialEditorWindow::isPreviewReady() const
{
    constexpr size_t kFramesToGiveUp = 60;
    return m_preview && (m_preview->getRenderCount() > 0 || m_previewFrames >= kFramesToGiveUp);
}

void MaterialEditorWindow::on_node_changed(GraphNode* node)
{
    update_parameters(node);
}

// Removing a node always brings a fresh global options panel back.
void MaterialEditorWindow::on_node_removed(GraphNode*)
{
    clear_parameter();
    show_global_options();
}

void MaterialEditorWindow::on_joint_changed(GraphJoint*)
{
}

void MaterialEditorWindow::on_joint_removed(GraphJoint*)
{
}
