#pragma once

#include "jLog.h"
#include "jString.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include <charconv>
#include <functional>
#include <limits>
#include <string>
#include <utility>

// An integer field bound to a value: refresh() shows the getter's value; a
// committed edit (Enter, or the field losing the focus) is handed to the
// setter at once when it is a number of T's range. Anything else is refused
// with a warning and the field shows the value it had.
template <typename T>
class UIIntBase : public QLineEdit {
public:
    using Getter = std::function<T()>;
    using Setter = std::function<void(T)>;

    UIIntBase(QWidget* parent, Getter getter, Setter setter)
        : QLineEdit(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
    {
        refresh();
        QObject::connect(this, &QLineEdit::editingFinished, this, [this] { commit(); });
    }

    void refresh()
    {
        const QSignalBlocker quiet(this);
        setText(m_getter ? QString::number(m_getter()) : QString());
    }

    // The whole text (spaces around it aside) as a number of type T.
    static bool parse(const jString& text, T& value)
    {
        const size_t first = text.find_first_not_of(" \t");
        if (first == jString::npos)
            return false;
        const size_t last = text.find_last_not_of(" \t");
        const char* begin = text.data() + first;
        const char* end = text.data() + last + 1;
        if (*begin == '+')
            ++begin;
        auto [stop, error] = std::from_chars(begin, end, value);
        return error == std::errc() && stop == end;
    }

private:
    void commit()
    {
        if (isReadOnly() || !m_setter)
            return;
        const jString typed = text().toStdString();
        T value{};
        if (!parse(typed, value)) {
            jLog::warning("%s: \"%s\" is not a whole number from %s to %s, the value stays %s", "UIIntBase::commit",
                          typed.c_str(), std::to_string(+std::numeric_limits<T>::min()).c_str(),
                          std::to_string(+std::numeric_limits<T>::max()).c_str(), text_of_current().c_str());
            refresh();
            return;
        }
        if (!m_getter || m_getter() != value)
            m_setter(value);
        refresh();
    }

    jString text_of_current() const { return m_getter ? std::to_string(m_getter()) : jString(); }

    Getter m_getter;
    Setter m_setter;
};
