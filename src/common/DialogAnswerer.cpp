#include "DialogAnswerer.h"

#include <QDialog>

DialogAnswerer*& DialogAnswerer::current()
{
    static DialogAnswerer* answerer = nullptr;
    return answerer;
}

DialogAnswerer* DialogAnswerer::installed()
{
    return current();
}

int DialogAnswerer::exec(QDialog& dialog)
{
    if (DialogAnswerer* answerer = current())
        return answerer->answerDialog(dialog);
    return dialog.exec();
}

DialogAnswerer::Scope::Scope(DialogAnswerer& answerer) : m_previous(current())
{
    current() = &answerer;
}

DialogAnswerer::Scope::~Scope()
{
    current() = m_previous;
}
