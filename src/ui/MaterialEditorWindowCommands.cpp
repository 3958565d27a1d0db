// The document commands of the editor window: load, open, save, save as,
// compile, instance, reload, new, clear and centre.
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "AssetsBrowser.h"
#include "DialogFileEx.h"
#include "Block.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "GraphScrollBox.h"
#include "MaterialEditor.h"
#include "MaterialManager.h"
#include "MsgMngr.h"
#include "jKit.h"
#include "jLog.h"
#include "msgBox.h"

namespace {

constexpr const char* kMatExtension = ".mat";

bool contains(const jString& text, const jString& part)
{
    return text.find(part) != jString::npos;
}

// "a/b/x.mat" -> "a/b/x": the directory part joined with the base name.
jString withoutExtension(const jString& path)
{
    const jString directory = jKit::getDirectory(path);
    const jString base = jKit::getBaseName(path);
    return directory.empty() ? base : directory + "/" + base;
}

bool isScrollCentred(float fraction)
{
    return fraction == 0.5f;
}

} // namespace

bool MaterialEditorWindow::load(const jString& path)
{
    static constexpr const char* kRoutine = "MaterialEditor::load";
    if (path.empty() || path.compare(0, data_path.size(), data_path) != 0) {
        jLog::warning("%s: Invalid path \"%s\"", kRoutine, path.c_str());
        return false;
    }
    if (!contains(path, kMatExtension)) {
        jLog::warning("%s: Invalid file \"%s\"", kRoutine, path.c_str());
        return false;
    }
    const jString relative = path.substr(data_path.size());
    if (relative.empty())
        return false;

    clear();
    set_preview_material(kEditorMesh);
    if (AppData::get()->load(relative)) {
        if (MaterialManager::get().load(relative))
            set_preview_material(relative);
        MsgMngr::instance().post(kMsgLoaded);
    }
    last_dir = jKit::getDirectory(relative);
    // The asset strip follows the document to its folder.
    if (assets_browser && !last_dir.empty())
        assets_browser->showFolder(last_dir);
    return true;
}

void MaterialEditorWindow::open()
{
    const AppData& document = *AppData::get();
    DialogFileEx dialog(this, DialogFileEx::Mode::Open);
    dialog.setFilter(kMatExtension);
    dialog.setDirectory(document.getPath().empty() ? data_path
                                                   : jKit::getDirectory(data_path + document.getPath()));
    if (dialog.show())
        load(dialog.getSelectedPath());
}

void MaterialEditorWindow::save()
{
    const jString& path = AppData::get()->getPath();
    if (!path.empty()) {
        save_to(path);
        return;
    }
    save_as();
}

void MaterialEditorWindow::save_as()
{
    const jString relative = ask_save_path();
    if (!relative.empty())
        save_to(relative);
}

jString MaterialEditorWindow::ask_save_path()
{
    DialogFileEx dialog(this, DialogFileEx::Mode::Save, "Save");
    dialog.setFilter(kMatExtension);
    dialog.setDirectory(data_path);
    if (!dialog.show())
        return jString();
    jString path = dialog.getSelectedPath();
    if (path.empty() || path.compare(0, data_path.size(), data_path) != 0) {
        jLog::warning("%s: Invalid path \"%s\"", "MaterialEditor::cb_menu_file_save", path.c_str());
        return jString();
    }
    if (contains(path, kMatExtension))
        path = withoutExtension(path);
    jString relative = path.substr(data_path.size());
    if (relative.empty())
        return jString();
    return relative + kMatExtension;
}

// A failed write keeps the document marked modified: the work is not on disk.
void MaterialEditorWindow::save_to(const jString& relativePath)
{
    if (AppData::get()->save(relativePath)) {
        set_window_modified(false);
        problems_after_save();
    } else {
        update_window_name();
    }
}

bool MaterialEditorWindow::compile()
{
    AppData& document = *AppData::get();
    if (document.getNodeCount() == 0)
        return false;
    if (modified && !document.getPath().empty())
        save_to(document.getPath());

    const jString name = document.getPath();
    set_preview_material(kEditorMesh);
    if (name.empty() || !document.save(name))
        return false;
    problems_after_apply();
    MaterialManager& materials = MaterialManager::get();
    if (!materials.load(name))
        return false;
    if (!materials.reload(name)) {
        materials.remove(name);
        return false;
    }
    set_preview_material(name);
    for (const CompiledCallback& callback : on_compiled)
        callback();
    const MaterialCompiledEvent event(name, this);
    for (const CompiledEventCallback& callback : on_compiled_event)
        callback(&event, this);
    MsgMngr::instance().postStr(kMsgCompiled, name);
    return true;
}

bool MaterialEditorWindow::instance()
{
    AppData& document = *AppData::get();
    if (document.getNodeCount() == 0) {
        msgBox("Current scene is empty.", "Error", this);
        return false;
    }
    if (modified || document.getPath().empty()) {
        msgBox("You should save current scene first.", "Warning", this);
        return false;
    }
    if (document.isInstance()) {
        msgBox("Instance can not generate instance.", "Warning", this);
        return false;
    }
    EditHistory::Group command(document.getHistory());
    document.setParentPath(document.getPath());
    document.setPath(jString());
    document.setInstance(true);
    MsgMngr::instance().post(kMsgInstanced);
    // The shown panel follows at once: an instance's sampler rows are
    // disabled, and the global options show the parent's buttons.
    update_parameters(graph ? graph->getSelectedNode() : nullptr);
    return true;
}

bool MaterialEditorWindow::reload()
{
    clear();
    if (!AppData::get()->reload()) {
        jLog::error("%s: reload failed!", "MaterialEditor::reload");
        return false;
    }
    MsgMngr::instance().post(kMsgLoaded);
    return true;
}

void MaterialEditorWindow::new_file()
{
    AppData::get()->init();
    clear();
    set_preview_material(kEditorMesh);
    update_window_name();
    show_global_options();
}

void MaterialEditorWindow::clear()
{
    if (!graph)
        return;
    AppData::get()->setScale(1.0f);
    clear_parameter();
    graph->clear();
    clear_problems();
    graph_scroll->updateGeometry();
    centerGraph();
    set_preview_material(kEditorMesh);
    set_window_modified(false);
}

void MaterialEditorWindow::centerGraph()
{
    AppData& document = *AppData::get();
    bool changed = false;
    if (!isScrollCentred(document.getHScroll()) || !isScrollCentred(graph_scroll->getHScrollPercent())) {
        document.setHScroll(0.5f);
        graph_scroll->setHScrollPercent(0.5f);
        changed = true;
    }
    if (!isScrollCentred(document.getVScroll()) || !isScrollCentred(graph_scroll->getVScrollPercent())) {
        document.setVScroll(0.5f);
        graph_scroll->setVScrollPercent(0.5f);
        changed = true;
    }
    if (changed)
        MsgMngr::instance().post(kMsgScrollFromDocument);
}

void MaterialEditorWindow::center_nodes()
{
    centerGraph();
    graph->centerGraph();
}

void MaterialEditorWindow::update_scroll_by_data()
{
    const AppData& document = *AppData::get();
    if (graph_scroll->getHScrollPercent() != document.getHScroll()
        || graph_scroll->getVScrollPercent() != document.getVScroll()) {
        graph_scroll->setHScrollPercent(document.getHScroll());
        graph_scroll->setVScrollPercent(document.getVScroll());
    }
}

int MaterialEditorWindow::get_num_nodes(const jString& type) const
{
    int count = 0;
    for (const GraphNode* node : graph->getNodes()) {
        if (node->getData() && node->getData()->getBlock()->getType() == type)
            ++count;
    }
    return count;
}

// ---- Callbacks ----

void MaterialEditorWindow::cb_menu_file_new(const UIEvent*, QWidget*)
{
    new_file();
}

void MaterialEditorWindow::cb_menu_file_open(const UIEvent*, QWidget*)
{
    open();
}

void MaterialEditorWindow::cb_menu_file_save(const UIEvent*, QWidget*)
{
    save();
}

void MaterialEditorWindow::cb_menu_file_save_as(const UIEvent*, QWidget*)
{
    save_as();
}

void MaterialEditorWindow::cb_menu_file_reload(const UIEvent*, QWidget*)
{
    reload();
}

void MaterialEditorWindow::cb_menu_file_compile(const UIEvent*, QWidget*)
{
    compile();
}

void MaterialEditorWindow::cb_menu_file_instance(const UIEvent*, QWidget*)
{
    instance();
}

void MaterialEditorWindow::cb_menu_file_center(const UIEvent*, QWidget*)
{
    center_nodes();
}
