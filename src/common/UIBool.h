#pragma once

#include <QCheckBox>

#include <functional>

// A check box bound to a boolean: refresh() shows the getter's value, a
// click hands the new value to the setter at once.
class UIBool : public QCheckBox {
public:
    using Getter = std::function<bool()>;
    using Setter = std::function<void(bool)>;

    UIBool(QWidget* parent, Getter getter, Setter setter);

    void refresh();

private:
    Getter m_getter;
    Setter m_setter;
};
