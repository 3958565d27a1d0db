#include "RecoveryPrompt.h"

#include "AppData.h"
#include "Autosave.h"
#include "DialogAnswerer.h"
#include "EditorMainWindow.h"
#include "FileReader.h"
#include "MaterialEditor.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "Package.h"
#include "PackageReader.h"
#include "RecoveryFile.h"
#include "jLog.h"

#include <QMessageBox>

#include <memory>

bool RecoveryPrompt::offer(EditorMainWindow& window)
{
    const RecoveryFile file(AppData::get()->getPath());
    if (!file.exists() || !file.isNewerThanDocument())
        return false;
    jString text;
    jString reason;
    if (FileReader::read(file.getPath(), FileReader::kDocumentLimit, text, reason) != FileReader::Status::Read) {
        set_aside(file, reason.c_str());
        return false;
    }
    Package copy;
    const std::string_view held = copy.keepText(std::move(text));
    PackageReader reader(held, copy);
    if (!reader.run()) {
        set_aside(file, reader.error().what.c_str());
        return false;
    }
    if (!ask(file)) {
        file.remove();
        return false;
    }
    return restore(window, file, copy);
}

bool RecoveryPrompt::ask(const RecoveryFile& file)
{
    const jString& document = file.getDocumentPath();
    const QString what = document.empty() ? QStringLiteral("the untitled material")
                                           : QStringLiteral("\"%1\"").arg(QString::fromStdString(document));
    QMessageBox box(QMessageBox::Question, QStringLiteral("MaterialEditor"),
                    QStringLiteral("A recovery copy of %1, newer than the saved file, was found. Restore it?").arg(what),
                    QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    return DialogAnswerer::exec(box) == QMessageBox::Yes;
}

// The copy is read as a document of its own path (so that its states come
// from it), then takes the document's path; what it holds is not on disk.
bool RecoveryPrompt::restore(EditorMainWindow& window, const RecoveryFile& file, const Package& copy)
{
    MaterialEditorWindow& editor = *window.getEditor().getWindow();
    AppData& document = *AppData::get();
    editor.clear();
    if (!document.load_document(copy, file.getPath())) {
        set_aside(file, "not a material document");
        if (!file.getDocumentPath().empty())
            editor.load(editor.getDataPath() + file.getDocumentPath());
        return false;
    }
    MsgMngr::instance().post(MaterialEditorWindow::kMsgLoaded);
    while (MsgMngr::instance().getPendingCount() > 0)
        MsgMngr::instance().dispatch();
    {
        EditHistory::Pause notAnEdit(document.getHistory());
        document.setPath(file.getDocumentPath());
    }
    document.getHistory().clear();
    document.getHistory().forgetSavedPoint();
    editor.set_window_modified(true);
    jLog::message("material-editor: restored \"%s\" from \"%s\"", file.getDocumentPath().c_str(), file.getPath().c_str());
    return true;
}

void RecoveryPrompt::set_aside(const RecoveryFile& file, const char* why)
{
    file.setAside();
    jLog::warning("material-editor: the recovery file \"%s\" can't be restored (%s); set aside as \"%s%s\"",
                  file.getPath().c_str(), why, file.getPath().c_str(), RecoveryFile::kSetAsideSuffix);
}
