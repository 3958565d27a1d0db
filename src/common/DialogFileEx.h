#pragma once

#include "jString.h"

class QWidget;

// The file dialog of the editor: choose a file to open or a file name to
// save to, limited to one extension (".mat") and starting in a folder.
//
//   DialogFileEx dialog(window, DialogFileEx::Mode::Open);
//   dialog.setFilter(".mat");
//   dialog.setDirectory(dataRoot);
//   if (dialog.show()) load(dialog.getSelectedPath());
//
// With a DialogAnswerer installed, the answerer picks the path.
class DialogFileEx {
public:
    enum class Mode { Open, Save };

    DialogFileEx(QWidget* parent, Mode mode, const jString& title = {});

    Mode getMode() const { return m_mode; }
    const jString& getTitle() const { return m_title; }
    // An extension with its dot (".mat"); empty for every file.
    void setFilter(const jString& filter) { m_filter = filter; }
    const jString& getFilter() const { return m_filter; }
    void setDirectory(const jString& directory) { m_directory = directory; }
    const jString& getDirectory() const { return m_directory; }

    // Modal; true when the user accepted a path.
    bool show();
    // The accepted path (absolute), empty until then.
    const jString& getSelectedPath() const { return m_selected; }

    // The dialog's name filter for an extension: ".mat" -> "*.mat".
    static jString nameFilter(const jString& filter);

private:
    QWidget* m_parent;
    Mode m_mode;
    jString m_title;
    jString m_filter;
    jString m_directory;
    jString m_selected;
};
