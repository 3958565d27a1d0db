#include "UIString.h"

#include <QSignalBlocker>

UIString::UIString(QWidget* parent, Getter getter, Setter setter)
    : QLineEdit(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
{
    refresh();
    connect(this, &QLineEdit::editingFinished, this, [this] { commit(); });
}

void UIString::refresh()
{
    const QSignalBlocker quiet(this);
    setText(m_getter ? QString::fromStdString(m_getter()) : QString());
}

void UIString::commit()
{
    if (isReadOnly() || !m_setter)
        return;
    const jString value = text().toStdString();
    if (m_getter && m_getter() == value)
        return;
    m_setter(value);
}
