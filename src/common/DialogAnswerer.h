#pragma once

#include "jString.h"

class DialogFileEx;
class QDialog;

// The one seam between the editor's modal windows and tests. While an
// answerer is installed, msgBox, DialogFileEx and every modal dialog run
// through DialogAnswerer::exec ask it instead of showing anything, so a
// test answers them (and records what was asked) without a modal loop.
class DialogAnswerer {
public:
    virtual ~DialogAnswerer() = default;

    // A message box with its title ("Warning", "Error", ...).
    virtual void answerMessage(const jString& text, const jString& title) = 0;
    // A file dialog: true and a path to accept it, false to cancel.
    virtual bool answerFile(const DialogFileEx& dialog, jString& path) = 0;
    // Any other modal dialog, built and ready: the answerer may work its
    // widgets, then returns the dialog's result (QDialog::Accepted or
    // QDialog::Rejected).
    virtual int answerDialog(QDialog& dialog) = 0;

    // The answerer in use, or null: dialogs are shown to the user.
    static DialogAnswerer* installed();

    // Runs a modal dialog: the installed answerer answers it, else exec().
    static int exec(QDialog& dialog);

    // Installs an answerer while it lives; the previous one comes back.
    class Scope {
    public:
        explicit Scope(DialogAnswerer& answerer);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        DialogAnswerer* m_previous;
    };

private:
    static DialogAnswerer*& current();
};
