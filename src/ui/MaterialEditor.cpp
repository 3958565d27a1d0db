// The window half of the exported MaterialEditor: it owns the window
// widget until a host takes it into its own window, and forwards the frame,
// input, message and layout entry points to it.
#include "MaterialEditor.h"

#include "MaterialEditorWindow.h"

MaterialEditor::MaterialEditor(UIRoot* root)
    : m_window(new MaterialEditorWindow(root, this))
{
}

MaterialEditor::~MaterialEditor()
{
    // The widget tells this object when Qt destroys it first (with the host's
    // window); otherwise it still belongs here.
    delete m_window;
}

QWidget* MaterialEditor::getWidget() const
{
    return m_window;
}

void MaterialEditor::readLayout(Package* pkg)
{
    if (m_window)
        m_window->readLayout(pkg);
}

void MaterialEditor::saveLayout(Package* pkg)
{
    if (m_window)
        m_window->saveLayout(pkg);
}

bool MaterialEditor::load(const jString& path)
{
    return m_window && m_window->load(path);
}

void MaterialEditor::clear()
{
    if (m_window)
        m_window->clear();
}

void MaterialEditor::centerGraph()
{
    if (m_window)
        m_window->centerGraph();
}

jString MaterialEditor::getCurrentBlockType() const
{
    return m_window ? m_window->getCurrentBlockType() : jString();
}

bool MaterialEditor::isModified() const
{
    return m_window && m_window->isModified();
}

bool MaterialEditor::isNeedReloadTexture() const
{
    return m_window && m_window->isNeedReloadTexture();
}

void MaterialEditor::update(float dt)
{
    if (m_window)
        m_window->update(dt);
}

void MaterialEditor::render()
{
    if (m_window)
        m_window->render();
}

bool MaterialEditor::checkShortcut(const UIEventKey& key)
{
    return m_window && m_window->checkShortcut(key);
}

void MaterialEditor::processMsg(UiMsg* msg)
{
    if (m_window)
        m_window->processMsg(msg);
}

void MaterialEditor::onUnload()
{
    if (m_window)
        m_window->onUnload();
}

void MaterialEditor::release()
{
    if (m_window)
        m_window->release();
}
