#pragma once

#include "UIEvent.h"
#include "UIEventKey.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

class QWidget;

// What a button or a button bar fires: a list of callbacks, each present
// once, called with the event that caused it (null for a shortcut) and the
// sender; and one keyboard shortcut (key code plus the three modifier
// states) that fires it too.
//
// A callback is known by the function (or object and member function) it
// calls, so adding the same one twice keeps one entry.
class ButtonSignal {
public:
    using Function = void (*)(const UIEvent*, QWidget*);
    using Callback = std::function<void(const UIEvent*, QWidget*)>;

    // False when that callback is already in the list.
    bool add(Function function);
    template <typename T>
    bool add(T* object, void (T::*member)(const UIEvent*, QWidget*))
    {
        return add_entry(identity(object, member), [object, member](const UIEvent* e, QWidget* s) {
            (object->*member)(e, s);
        });
    }
    bool remove(Function function);
    template <typename T>
    bool remove(T* object, void (T::*member)(const UIEvent*, QWidget*))
    {
        return remove_entry(identity(object, member));
    }
    bool contains(Function function) const;
    template <typename T>
    bool contains(T* object, void (T::*member)(const UIEvent*, QWidget*)) const
    {
        return find_entry(identity(object, member)) != nullptr;
    }
    size_t size() const { return m_callbacks.size(); }
    void clear() { m_callbacks.clear(); }

    // Calls every callback in the order added.
    void fire(const UIEvent* event, QWidget* sender) const;

    // Key code 0 means no shortcut.
    void setShortcut(uint32_t key, bool ctrl = false, bool shift = false, bool alt = false);
    uint32_t getShortcutKey() const { return m_key; }
    bool getShortcutCtrl() const { return m_ctrl; }
    bool getShortcutShift() const { return m_shift; }
    bool getShortcutAlt() const { return m_alt; }
    // The key code and all three modifier states equal the shortcut's.
    bool matches(const UIEventKey& key) const;

private:
    struct Entry {
        std::string identity;
        Callback callback;
    };

    template <typename... Parts>
    static std::string identity(const Parts&... parts)
    {
        std::string bytes;
        (bytes.append(reinterpret_cast<const char*>(&parts), sizeof(parts)), ...);
        return bytes;
    }

    bool add_entry(std::string identity, Callback callback);
    bool remove_entry(const std::string& identity);
    const Entry* find_entry(const std::string& identity) const;

    std::vector<Entry> m_callbacks;
    uint32_t m_key = 0;
    bool m_ctrl = false;
    bool m_shift = false;
    bool m_alt = false;
};
