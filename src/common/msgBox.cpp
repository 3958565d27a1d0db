#include "msgBox.h"

#include "DialogAnswerer.h"

#include <QApplication>
#include <QMessageBox>

namespace {

QMessageBox::Icon iconOf(const jString& title)
{
    if (title == "Warning")
        return QMessageBox::Warning;
    if (title == "Error")
        return QMessageBox::Critical;
    return QMessageBox::Information;
}

} // namespace

void msgBox(const jString& text, const jString& title, QWidget* parent)
{
    if (DialogAnswerer* answerer = DialogAnswerer::installed()) {
        answerer->answerMessage(text, title);
        return;
    }
    QMessageBox box(iconOf(title), QString::fromStdString(title), QString::fromStdString(text), QMessageBox::Ok,
                    parent ? parent : QApplication::activeWindow());
    box.exec();
}
