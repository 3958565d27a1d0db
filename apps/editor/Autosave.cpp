#include "Autosave.h"

#include "AppData.h"
#include "MaterialEditorWindow.h"
#include "Package.h"
#include "RecoveryFile.h"
#include "jLog.h"
#include "mjl.h"

Autosave::Autosave(MaterialEditorWindow& editor, int seconds)
    : m_editor(editor)
{
    connect(&m_timer, &QTimer::timeout, this, &Autosave::tick);
    if (seconds > 0)
        m_timer.start(seconds * 1000);
}

void Autosave::tick()
{
    if (const jString failure = m_writer.takeFailure(); !failure.empty())
        jLog::warning("material-editor: %s", failure.c_str());
    if (!m_editor.isModified())
        return;
    AppData& document = *AppData::get();
    Package root;
    if (!document.writeRecovery(root))
        return;
    jString text = mjl::toText(root);
    const jString path = RecoveryFile(document.getPath()).getPath();
    if (path == m_written && text == m_lastText)
        return;
    if (!m_written.empty() && m_written != path)
        m_writer.remove(m_written);
    m_lastText = text;
    m_writer.write(path, std::move(text));
    m_written = path;
}

void Autosave::documentChanged()
{
    if (!m_editor.isModified())
        drop_copy();
}

void Autosave::cleanQuit()
{
    m_timer.stop();
    drop_copy();
    m_writer.flush();
}

void Autosave::drop_copy()
{
    if (m_written.empty())
        return;
    m_writer.remove(m_written);
    m_written.clear();
    m_lastText.clear();
}
