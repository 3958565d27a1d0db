#pragma once

#include "jString.h"

#include <QLineEdit>

#include <functional>

// A one-line text field bound to a string: refresh() shows the getter's
// value; an edit is handed to the setter as soon as it is committed
// (Enter, or the field losing the focus).
class UIString : public QLineEdit {
public:
    using Getter = std::function<jString()>;
    using Setter = std::function<void(const jString&)>;

    UIString(QWidget* parent, Getter getter, Setter setter);

    void refresh();

private:
    void commit();

    Getter m_getter;
    Setter m_setter;
};
