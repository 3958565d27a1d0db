// The main of the editor test programs: a QApplication on the offscreen
// platform (unless the environment names another), then every test. A modal
// window that a test did not expect fails that test instead of waiting for
// a user who never comes.
#include "DialogAnswerer.h"
#include "DialogFileEx.h"

#include <QApplication>
#include <QDialog>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class UnexpectedDialogs : public DialogAnswerer {
public:
    void answerMessage(const jString& text, const jString& title) override
    {
        ADD_FAILURE() << "unexpected message box \"" << title << "\": " << text;
    }
    bool answerFile(const DialogFileEx& dialog, jString&) override
    {
        ADD_FAILURE() << "unexpected file dialog \"" << dialog.getTitle() << "\"";
        return false;
    }
    int answerDialog(QDialog& dialog) override
    {
        ADD_FAILURE() << "unexpected dialog \"" << dialog.windowTitle().toStdString() << "\"";
        return QDialog::Rejected;
    }
};

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    UnexpectedDialogs unexpected;
    DialogAnswerer::Scope noModalWindows(unexpected);
    return RUN_ALL_TESTS();
}
