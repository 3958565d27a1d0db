#pragma once

#include "jString.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <functional>
#include <utility>
#include <vector>

// A combo box of (label, value) entries bound to a value: refresh() selects
// the entry whose value equals the getter's (none when no entry does);
// choosing an entry hands its value to the setter at once. Get is what the
// getter returns: T, or const T& for values the owner keeps.
template <typename T, typename Get>
class UIEnumBox : public QComboBox {
public:
    using Getter = std::function<Get()>;
    using Setter = std::function<void(const T&)>;

    UIEnumBox(QWidget* parent, Getter getter, Setter setter)
        : QComboBox(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
    {
        QObject::connect(this, &QComboBox::currentIndexChanged, this, [this](int index) { chosen(index); });
    }

    // Entries are listed in the order added; the label is shown as given.
    void addEntry(const jString& label, T value)
    {
        const QSignalBlocker quiet(this);
        m_values.push_back(std::move(value));
        addItem(QString::fromStdString(label));
        setCurrentIndex(-1);
    }
    size_t getEntryCount() const { return m_values.size(); }
    const T& getEntryValue(size_t index) const { return m_values[index]; }

    void refresh()
    {
        const QSignalBlocker quiet(this);
        setCurrentIndex(index_of_current());
    }

private:
    int index_of_current() const
    {
        if (!m_getter)
            return -1;
        const T& current = m_getter();
        for (size_t i = 0; i < m_values.size(); ++i)
            if (m_values[i] == current)
                return static_cast<int>(i);
        return -1;
    }

    void chosen(int index)
    {
        if (index < 0 || static_cast<size_t>(index) >= m_values.size() || !m_setter)
            return;
        m_setter(m_values[static_cast<size_t>(index)]);
    }

    Getter m_getter;
    Setter m_setter;
    std::vector<T> m_values;
};
