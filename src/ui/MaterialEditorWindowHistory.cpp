// Undo and redo in the editor window: the toolbar's two buttons, their keys,
// and the canvas, panel and title following the document back and forth.
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "Button.h"
#include "ButtonBar.h"
#include "Graph.h"
#include "GraphHistoryView.h"
#include "UIEventKey.h"
#include "tr.h"

#include <QKeySequence>
#include <QShortcut>

namespace {

constexpr const char* kUndoIcon = "data/core/editor/gui/undo.dds";
constexpr const char* kRedoIcon = "data/core/editor/gui/redo.dds";
constexpr int kKeyY = 121;
constexpr int kKeyZ = 122;

void showEnabled(Button* button, bool enabled)
{
    if (!button || button->isButtonEnabled() == enabled)
        return;
    button->setIconColour(enabled ? Button::kIconColour : Button::kDisabledIconColour);
    button->setButtonEnabled(enabled);
}

} // namespace

// After the three document buttons: "undo" (Ctrl+Z) and "redo" (Ctrl+Y;
// Ctrl+Shift+Z too, through history_shortcut).
void MaterialEditorWindow::init_history()
{
    const struct {
        const char* name;
        const char* icon;
        void (MaterialEditorWindow::*callback)(const UIEvent*, QWidget*);
        uint32_t key;
    } entries[] = {
        {"undo", kUndoIcon, &MaterialEditorWindow::cb_menu_edit_undo, kKeyZ},
        {"redo", kRedoIcon, &MaterialEditorWindow::cb_menu_edit_redo, kKeyY},
    };
    for (const auto& entry : entries) {
        Button* button = toolbar->addButton(::tr(entry.name), entry.icon);
        if (!button)
            continue;
        button->getClick().add(this, entry.callback);
        button->getClick().setShortcut(entry.key, true);
    }
    const struct {
        QKeySequence sequence;
        int key;
        uint32_t modifiers;
    } keys[] = {
        {QKeySequence(Qt::CTRL | Qt::Key_Z), kKeyZ, UIEventKey::kCtrl},
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), kKeyZ, UIEventKey::kCtrl | UIEventKey::kShift},
        {QKeySequence(Qt::CTRL | Qt::Key_Y), kKeyY, UIEventKey::kCtrl},
    };
    for (const auto& entry : keys) {
        auto* shortcut = new QShortcut(entry.sequence, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        const UIEventKey key(entry.key, entry.modifiers);
        connect(shortcut, &QShortcut::activated, this, [this, key] { checkShortcut(key); });
    }
    update_history_buttons();
}

bool MaterialEditorWindow::history_shortcut(const UIEventKey& key)
{
    if (key.key == kKeyZ && key.modifiers == UIEventKey::kCtrl) {
        undo();
        return true;
    }
    if ((key.key == kKeyZ && key.modifiers == (UIEventKey::kCtrl | UIEventKey::kShift))
        || (key.key == kKeyY && key.modifiers == UIEventKey::kCtrl)) {
        redo();
        return true;
    }
    return false;
}

bool MaterialEditorWindow::undo()
{
    return step_history(&AppData::undo);
}

bool MaterialEditorWindow::redo()
{
    return step_history(&AppData::redo);
}

// The canvas follows the step item by item while it is applied; then the
// panel shows what is selected (nothing when its node went), and the
// document counts as modified unless the step led back to what was saved.
bool MaterialEditorWindow::step_history(bool (AppData::*step)())
{
    AppData& document = *AppData::get();
    if (!graph)
        return false;
    GraphHistoryView view(*graph);
    document.getHistory().setObserver(&view);
    const bool applied = (document.*step)();
    document.getHistory().setObserver(nullptr);
    if (!applied)
        return false;
    graph->refreshHighlight(-1, -1);
    update_parameters(graph->getSelectedNode());
    follow_history_step();
    set_window_modified(!document.getHistory().isAtSavedPoint());
    update_history_buttons();
    return true;
}

void MaterialEditorWindow::update_history_buttons()
{
    if (!toolbar)
        return;
    const EditHistory& history = AppData::get()->getHistory();
    showEnabled(toolbar->findButton(::tr("undo")), history.canUndo());
    showEnabled(toolbar->findButton(::tr("redo")), history.canRedo());
}

void MaterialEditorWindow::cb_menu_edit_undo(const UIEvent*, QWidget*)
{
    undo();
}

void MaterialEditorWindow::cb_menu_edit_redo(const UIEvent*, QWidget*)
{
    redo();
}
