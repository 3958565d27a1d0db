// The editor window's live preview: the "live" toolbar toggle, edits that
// restart the quiet period, the in-memory rebuild when it ends, and the
// driver's messages of that build on the nodes (docs/live-preview.md).
#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "Button.h"
#include "ButtonBar.h"
#include "Graph.h"
#include "MatViewport.h"
#include "Package.h"
#include "tr.h"

namespace {

constexpr const char* kLiveIcon = "data/core/editor/gui/live.dds";
constexpr const char* kLiveLayoutItem = "live";

// Notifications after which the material may look different: nodes,
// links, variables, textures, options and states. Moves, scrolling and
// zoom change only the view.
bool changesMaterial(int code)
{
    switch (code) {
    case 7: case 9: case 11: case 13: case 14: case 15: case 16: case 17: case 18: case 19: case 20:
    case 25: case 27: case 28: case 29: case 30:
        return true;
    default:
        return false;
    }
}

} // namespace

void MaterialEditorWindow::init_live_toggle()
{
    m_liveButton = toolbar->addButton(::tr("live"), kLiveIcon);
    if (m_liveButton)
        m_liveButton->getClick().add(this, &MaterialEditorWindow::cb_menu_live);
    show_live_state();
}

void MaterialEditorWindow::cb_menu_live(const UIEvent*, QWidget*)
{
    setLivePreview(!m_live.isEnabled());
}

void MaterialEditorWindow::setLivePreview(bool on)
{
    m_live.setEnabled(on);
    show_live_state();
}

// Off, the toggle's icon is grey.
void MaterialEditorWindow::show_live_state()
{
    if (m_liveButton)
        m_liveButton->setGreyMode(!m_live.isEnabled());
}

void MaterialEditorWindow::follow_edit(int code)
{
    problems_after_message(code);
    if (changesMaterial(code))
        m_live.noteEdit();
}

// An undo or redo may change anything an edit can: the structure problems
// are found again and the preview follows as after an edit.
void MaterialEditorWindow::follow_history_step()
{
    m_problems.afterEdit(*AppData::get());
    show_problems();
    m_live.noteEdit();
}

void MaterialEditorWindow::update_live_preview(float dt)
{
    collect_live_problems();
    if (!m_live.advance(dt))
        return;
    // A graph with a cycle or without its stage nodes cannot be generated;
    // its problems are on the nodes already, and the last image stays.
    if (m_problems.hasStructureErrors())
        return;
    AppData& document = *AppData::get();
    if (!m_live.build(document))
        return;
    const jString path = LivePreview::previewPath(document);
    if (m_previewMaterial != path)
        set_preview_material(path);
}

// Once the preview has built the copy made last, its driver messages
// replace the shader problems.
void MaterialEditorWindow::collect_live_problems()
{
    if (m_live.getBuiltSerial() == m_liveCollected || !m_preview || !m_preview->getRender())
        return;
    const AppData& document = *AppData::get();
    const Render::BuildResult* result = m_preview->getRender()->getLastBuild(LivePreview::previewPath(document));
    jVector<DocumentProblems::Entry> problems;
    if (!m_live.collectProblems(result, document, problems))
        return;
    m_liveCollected = m_live.getBuiltSerial();
    m_problems.setShaderProblems(std::move(problems));
    show_problems();
}

void MaterialEditorWindow::read_live_layout(const Package* layout)
{
    if (layout && layout->hasItem(kLiveLayoutItem))
        setLivePreview(layout->getBool(kLiveLayoutItem, true));
}

void MaterialEditorWindow::save_live_layout(Package& layout) const
{
    layout.setString(kLiveLayoutItem, m_live.isEnabled() ? "true" : "false");
}
