#include "UIBool.h"

#include <QSignalBlocker>

UIBool::UIBool(QWidget* parent, Getter getter, Setter setter)
    : QCheckBox(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
{
    refresh();
    connect(this, &QCheckBox::toggled, this, [this](bool checked) {
        if (m_setter)
            m_setter(checked);
    });
}

void UIBool::refresh()
{
    const QSignalBlocker quiet(this);
    setChecked(m_getter && m_getter());
}
