#include "DialogFileEx.h"

#include "DialogAnswerer.h"

#include <QFileDialog>

DialogFileEx::DialogFileEx(QWidget* parent, Mode mode, const jString& title)
    : m_parent(parent), m_mode(mode), m_title(title)
{
}

jString DialogFileEx::nameFilter(const jString& filter)
{
    if (filter.empty())
        return "*";
    return filter[0] == '.' ? "*" + filter : filter;
}

bool DialogFileEx::show()
{
    m_selected.clear();
    if (DialogAnswerer* answerer = DialogAnswerer::installed()) {
        jString path;
        if (!answerer->answerFile(*this, path))
            return false;
        m_selected = path;
        return true;
    }
    QFileDialog dialog(m_parent, QString::fromStdString(m_title), QString::fromStdString(m_directory),
                       QString::fromStdString(nameFilter(m_filter)));
    dialog.setAcceptMode(m_mode == Mode::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(m_mode == Mode::Save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    m_selected = dialog.selectedFiles().front().toStdString();
    return true;
}
