#pragma once

#include "RecoveryWriter.h"
#include "jString.h"

#include <QObject>
#include <QTimer>

class MaterialEditorWindow;

// Writes a recovery copy of the document every period while it is
// modified (docs/recovery.md). The copy is built on the UI thread between
// two frames and written by a worker, so an edit never waits for the disk.
// A document that is no longer modified (saved, New, another one opened)
// has no copy, and a clean quit removes it.
class Autosave : public QObject {
public:
    static constexpr int kDefaultSeconds = 30;

    // seconds 0 turns the timer off.
    Autosave(MaterialEditorWindow& editor, int seconds);

    // One period: writes the copy when the document is modified and changed
    // since the last copy.
    void tick();
    // The window's title changed: the modified mark may have gone.
    void documentChanged();
    // The window closes normally: the copy goes.
    void cleanQuit();
    // A copy this session did not write is the document's (it was restored
    // from it): it goes when the document is saved.
    void adopt(const jString& path) { m_written = path; }

    RecoveryWriter& getWriter() { return m_writer; }
    const jString& getWrittenPath() const { return m_written; }

private:
    void drop_copy();

    MaterialEditorWindow& m_editor;
    QTimer m_timer;
    RecoveryWriter m_writer;
    jString m_written;
    jString m_lastText;
};
