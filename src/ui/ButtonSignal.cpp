#include "ButtonSignal.h"

#include <algorithm>

bool ButtonSignal::add(Function function)
{
    return add_entry(identity(function), function);
}

bool ButtonSignal::remove(Function function)
{
    return remove_entry(identity(function));
}

bool ButtonSignal::contains(Function function) const
{
    return find_entry(identity(function)) != nullptr;
}

bool ButtonSignal::add_entry(std::string identity, Callback callback)
{
    if (find_entry(identity))
        return false;
    m_callbacks.push_back({std::move(identity), std::move(callback)});
    return true;
}

bool ButtonSignal::remove_entry(const std::string& identity)
{
    auto it = std::find_if(m_callbacks.begin(), m_callbacks.end(),
                           [&](const Entry& entry) { return entry.identity == identity; });
    if (it == m_callbacks.end())
        return false;
    m_callbacks.erase(it);
    return true;
}

const ButtonSignal::Entry* ButtonSignal::find_entry(const std::string& identity) const
{
    for (const Entry& entry : m_callbacks)
        if (entry.identity == identity)
            return &entry;
    return nullptr;
}

void ButtonSignal::fire(const UIEvent* event, QWidget* sender) const
{
    // A callback may add or remove callbacks; it works on a copy of the list.
    const std::vector<Entry> callbacks = m_callbacks;
    for (const Entry& entry : callbacks)
        entry.callback(event, sender);
}

void ButtonSignal::setShortcut(uint32_t key, bool ctrl, bool shift, bool alt)
{
    m_key = key;
    m_ctrl = ctrl;
    m_shift = shift;
    m_alt = alt;
}

bool ButtonSignal::matches(const UIEventKey& key) const
{
    return m_key != 0 && static_cast<uint32_t>(key.key) == m_key && key.hasCtrl() == m_ctrl
           && key.hasShift() == m_shift && key.hasAlt() == m_alt;
}
