#pragma once

#include "jString.h"

#include <QLineEdit>

#include <functional>
#include <vector>

// A field for a decimal value text bound to a getter and a setter: one
// number ("0.5") or a vector of numbers separated by commas ("1,0.5,0,1"),
// as the document stores float variables. A committed edit (Enter, or the
// field losing the focus) is written when it holds as many finite numbers as
// the current value (any count from 1 to 4 when the current value is not a
// list of numbers); blanks around the numbers are allowed and dropped.
// Anything else is refused with a warning and the field shows the value it
// had, like the integer fields.
class UIFloatField : public QLineEdit {
public:
    using Getter = std::function<jString()>;
    using Setter = std::function<void(const jString&)>;

    static constexpr size_t kMaxComponents = 4;

    UIFloatField(QWidget* parent, Getter getter, Setter setter);

    void refresh();

    // The numbers of a value text; false when it is not 1 to 4 finite
    // numbers separated by commas.
    static bool parse(const jString& text, std::vector<float>& numbers);
    // The numbers in the document's form: shortest decimals that read back
    // exactly, separated by commas without blanks.
    static jString format(const std::vector<float>& numbers);

private:
    void commit();

    Getter m_getter;
    Setter m_setter;
};
