#pragma once

// A DialogAnswerer for tests: records every message box and file dialog it
// is asked, answers file dialogs from a queue (an empty queue cancels) and
// hands other dialogs to a function of the test (none rejects them).

#include "DialogAnswerer.h"
#include "DialogFileEx.h"

#include <QDialog>

#include <deque>
#include <functional>
#include <ostream>
#include <vector>

struct AskedMessage {
    jString text;
    jString title;
    bool operator==(const AskedMessage&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const AskedMessage& m)
{
    return out << "{\"" << m.text << "\", \"" << m.title << "\"}";
}

struct AskedFile {
    DialogFileEx::Mode mode;
    jString title;
    jString filter;
    jString directory;
    bool operator==(const AskedFile&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const AskedFile& f)
{
    return out << "{" << (f.mode == DialogFileEx::Mode::Save ? "save" : "open") << ", \"" << f.title << "\", \""
               << f.filter << "\", \"" << f.directory << "\"}";
}

class DialogRecorder : public DialogAnswerer {
public:
    DialogRecorder() : m_scope(*this) {}

    void answerMessage(const jString& text, const jString& title) override { messages.push_back({text, title}); }

    bool answerFile(const DialogFileEx& dialog, jString& path) override
    {
        files.push_back({dialog.getMode(), dialog.getTitle(), dialog.getFilter(), dialog.getDirectory()});
        if (filePaths.empty())
            return false;
        path = filePaths.front();
        filePaths.pop_front();
        return true;
    }

    int answerDialog(QDialog& dialog) override
    {
        ++dialogs;
        return dialogHandler ? dialogHandler(dialog) : int(QDialog::Rejected);
    }

    std::vector<AskedMessage> messages;
    std::vector<AskedFile> files;
    std::deque<jString> filePaths;
    std::function<int(QDialog&)> dialogHandler;
    int dialogs = 0;

private:
    Scope m_scope;
};
