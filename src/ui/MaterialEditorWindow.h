#pragma once

#include "DocumentProblems.h"
#include "LivePreview.h"
#include "MsgNode.h"
#include "UIEvent.h"
#include "jString.h"

#include <QWidget>

#include <functional>
#include <vector>

class AppData;
class AssetsBrowser;
class Button;
class BlockBrowser;
class ButtonBar;
class Graph;
class GraphJoint;
class GraphNode;
class GraphScrollBox;
class MatViewport;
class MaterialEditor;
class MaterialExpression;
class Package;
class ProblemList;
class QHBoxLayout;
class QLineEdit;
class QScrollArea;
class QSplitter;
class QVBoxLayout;
class UIEventKey;
class UIRoot;
class UiMsg;

// What on_compiled_event subscribers receive after a successful compile.
class MaterialCompiledEvent : public UIEvent {
public:
    MaterialCompiledEvent(jString name, QWidget* window)
        : UIEvent(UI_EVENT_COMPILED), name(std::move(name)), window(window)
    {
    }
    jString name;
    QWidget* window;
};

// The material editor's window: toolbar, graph canvas, block browser,
// parameters column with the preview, and the asset strip, over the one
// process-wide document (AppData). It carries out the document commands
// (new, open, save, save as, compile, instance, reload, centre), keeps the
// title and the save button in step with the document, and reacts to the
// notifications the canvas, the panels and the asset strip post on the
// message bus (docs/editor-window.md has the table).
//
// The commands are public so that the host and the tests can run them; the
// toolbar and the shortcuts reach them through the cb_menu_* callbacks.
class MaterialEditorWindow : public QWidget, public MsgNode {
public:
    // Notification codes the window handles or posts.
    static constexpr int kMsgOpenMaterial = 5;
    static constexpr int kMsgLoaded = 6;
    static constexpr int kMsgScrollFromDocument = 21;
    static constexpr int kMsgInstanced = 25;
    static constexpr int kMsgLoadedInstance = 26;
    static constexpr int kMsgCompiled = 32;

    static constexpr int kGraphSize = 0x14000;
    static constexpr int kPreviewSize = 256;
    static constexpr int kBlockColumnWidth = 196;
    static constexpr int kAssetRowHeight = 110;
    static constexpr int kMargin = 5;

    static constexpr const char* kTitleBase = "MaterialEditor";
    static constexpr const char* kEditorMesh = "EditorMesh";
    static constexpr const char* kEditorMeshPath = "data/core/editor/materials/EditorMesh.mat";
    static constexpr const char* kLayoutPackage = "material_editor";

    using CompiledCallback = std::function<void()>;
    using CompiledEventCallback = std::function<void(const UIEvent*, QWidget*)>;

    MaterialEditorWindow(UIRoot* root, MaterialEditor* owner = nullptr);
    ~MaterialEditorWindow() override;

    // ---- Document commands ----
    bool load(const jString& path);
    void clear();
    void centerGraph();
    void center_nodes();
    bool compile();
    bool instance();
    bool reload();
    void new_file();
    // Save to the document's path, or through the save dialog when it has
    // none. save_as always asks for a path.
    void save();
    void save_as();
    void open();
    // Take back or redo one step of the document's history; false when
    // there is none. The canvas and the panel show the result at once.
    bool undo();
    bool redo();

    // ---- Toolbar and shortcut callbacks ----
    void cb_menu_file_new(const UIEvent* event, QWidget* sender);
    void cb_menu_file_open(const UIEvent* event, QWidget* sender);
    void cb_menu_file_save(const UIEvent* event, QWidget* sender);
    void cb_menu_file_save_as(const UIEvent* event, QWidget* sender);
    void cb_menu_file_reload(const UIEvent* event, QWidget* sender);
    void cb_menu_file_compile(const UIEvent* event, QWidget* sender);
    void cb_menu_file_instance(const UIEvent* event, QWidget* sender);
    void cb_menu_file_center(const UIEvent* event, QWidget* sender);
    void cb_menu_edit_undo(const UIEvent* event, QWidget* sender);
    void cb_menu_edit_redo(const UIEvent* event, QWidget* sender);
    // The block filter field changed.
    void cb_changed(const QString& text);

    // ---- Frame, input and messages ----
    using QWidget::update;
    void update(float dt);
    void render();
    // Ctrl+N, Ctrl+O, Ctrl+Shift+S, then the toolbar's shortcuts (Ctrl+S,
    // F7). True when the key was used.
    bool checkShortcut(const UIEventKey& key);
    void processMsg(UiMsg* msg) override;
    void onUnload();
    void release();

    // ---- Layout ----
    void readLayout(Package* pkg);
    void saveLayout(Package* pkg);

    // ---- State ----
    bool isModified() const { return modified; }
    bool isNeedReloadTexture() const { return need_reload_texture; }
    jString getCurrentBlockType() const;
    int get_num_nodes(const jString& type) const;
    void update_window_name();
    void set_window_modified(bool value);
    void udpate_menu();
    void update_scroll_by_data();
    // The title as it was last handed to the host.
    const jString& getTitle() const { return m_title; }
    // The material the preview shows ("EditorMesh" or a document path).
    const jString& getPreviewMaterial() const { return m_previewMaterial; }

    Graph* getGraph() const { return graph; }
    GraphScrollBox* getGraphScroll() const { return graph_scroll; }
    ButtonBar* getToolbar() const { return toolbar; }
    BlockBrowser* getBlockBrowser() const { return block_browser; }
    QLineEdit* getBlockFilter() const { return m_blockFilter; }
    AssetsBrowser* getAssetsBrowser() const { return assets_browser; }
    MatViewport* getPreview() const { return m_preview; }
    // Whether the preview has shown its first frame (or cannot show any).
    bool isPreviewReady() const;
    QVBoxLayout* getParametersList() const { return parameters_list; }
    // The property panels shown in the parameters column, in order.
    const std::vector<MaterialExpression*>& getExpressions() const { return expressions; }
    // The path of the block browser's current item, its parents first,
    // joined by separator; empty when there is no current item.
    jString get_hierarchy(const jString& separator) const;
    QSplitter* getSplitter() const { return m_splitter; }
    UIRoot* getRoot() const { return m_root; }
    const jString& getDataPath() const { return data_path; }
    const jString& getLastDir() const { return last_dir; }

    std::vector<CompiledCallback>& getOnCompiled() { return on_compiled; }
    std::vector<CompiledEventCallback>& getOnCompiledEvent() { return on_compiled_event; }
    // A window (a dialog) destroyed at the start of the next frame.
    void deferDestroy(QWidget* window) { deferred_windows.push_back(window); }

    // The document's problems, shown on the canvas and in the problem list
    // under it (MaterialEditorWindowProblems.cpp).
    const DocumentProblems& getProblems() const { return m_problems; }
    ProblemList* getProblemList() const { return m_problemList; }
    // Selects the node and scrolls the canvas to it (a problem row clicked).
    void show_problem_node(int32_t id);

    // The live preview (MaterialEditorWindowLive.cpp): on by default, the
    // "live" toolbar toggle, remembered in the layout.
    bool isLivePreview() const { return m_live.isEnabled(); }
    void setLivePreview(bool on);
    const LivePreview& getLive() const { return m_live; }
    Button* getLiveButton() const { return m_liveButton; }
    void cb_menu_live(const UIEvent* event, QWidget* sender);

    // Graph notifications.
    void on_node_changed(GraphNode* node);
    void on_node_removed(GraphNode* node);
    void on_joint_changed(GraphJoint* joint);
    void on_joint_removed(GraphJoint* joint);

private:
    void init_menu_bar();
    void init_layout();
    void init_parameters_ui();
    void init_graph_ui();
    void init_blocks();
    void init_assets();
    void init_shortcuts();
    void init_problems_ui(QVBoxLayout* column);
    void problems_after_load();
    void problems_after_message(int code);
    void problems_after_apply();
    void problems_after_save();
    void clear_problems();
    void show_problems();
    void init_live_toggle();
    void show_live_state();
    void follow_edit(int code);
    void follow_history_step();
    void update_live_preview(float dt);
    void collect_live_problems();
    void read_live_layout(const Package* layout);
    void save_live_layout(Package& layout) const;
    void init_history();
    bool history_shortcut(const UIEventKey& key);
    bool step_history(bool (AppData::*step)());
    // Undo and redo greyed when there is nothing to take back or redo.
    void update_history_buttons();

    void update_parameters(GraphNode* node);
    void clear_parameter();
    void show_global_options();
    void add_expr_helper(MaterialExpression* expr);
    bool refresh_shown_panel(GraphNode* node);
    MaterialExpression* make_node_panel(GraphNode* node);
    void set_preview_material(const jString& name);

    // The save dialog's path rules: the root-relative ".mat" path of what
    // the user chose, or empty (after a warning for a path outside the root).
    jString ask_save_path();
    void save_to(const jString& relativePath);
    void rebuild_from_document();
    void bring_nodes_into_view();
    void reset_states();
    GraphNode* node_of(UiMsg* msg);

    MaterialEditor* m_owner;
    UIRoot* m_root;

    // The preview object's material: what every assignment to it names.
    jString m_previewMaterial;
    Graph* graph = nullptr;
    ButtonBar* toolbar = nullptr;
    QWidget* top_strip = nullptr;
    QWidget* main_row = nullptr;
    QWidget* bottom_row = nullptr;
    QWidget* parameters_column = nullptr;
    BlockBrowser* block_browser = nullptr;
    QWidget* graph_column = nullptr;
    GraphScrollBox* graph_scroll = nullptr;
    QVBoxLayout* parameters_list = nullptr;
    QScrollArea* parameters_scroll = nullptr;
    std::vector<MaterialExpression*> expressions;
    AssetsBrowser* assets_browser = nullptr;
    MatViewport* m_preview = nullptr;
    size_t m_previewFrames = 0;
    QLineEdit* m_blockFilter = nullptr;
    QSplitter* m_splitter = nullptr;
    QVBoxLayout* m_layout = nullptr;
    QHBoxLayout* m_mainLayout = nullptr;
    QHBoxLayout* m_bottomLayout = nullptr;

    jString data_path;
    jString last_dir;
    jString m_title;
    bool modified = false;
    bool need_reload_texture = false;
    std::vector<QWidget*> deferred_windows;
    Package* layout_package = nullptr;
    std::vector<CompiledCallback> on_compiled;
    std::vector<CompiledEventCallback> on_compiled_event;
    DocumentProblems m_problems;
    ProblemList* m_problemList = nullptr;
    LivePreview m_live;
    Button* m_liveButton = nullptr;
    uint64_t m_liveCollected = 0;
};
