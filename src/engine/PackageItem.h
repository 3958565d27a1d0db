#pragma once

#include "jString.h"

#include <cstdint>
#include <memory>
#include <string_view>

// One named item of a Package: a key with zero or more string values, read
// as string, integer, float or boolean.
//
// Most items hold one value, kept in the item itself; a value list is only
// allocated for more. getValues() makes that list on its first call (so it
// must not race with other calls on the same item), and the item keeps its
// values there from then on.
class PackageItem {
public:
    PackageItem() = default;
    PackageItem(jString name, jString value);
    PackageItem(jString name, jVector<jString> values);
    PackageItem(const PackageItem& other);
    PackageItem& operator=(const PackageItem& other);
    PackageItem(PackageItem&&) noexcept = default;
    PackageItem& operator=(PackageItem&&) noexcept = default;
    ~PackageItem();

    const jString& getName() const { return m_name; }
    void setName(jString name) { m_name = std::move(name); }

    size_t getValueCount() const;
    const jVector<jString>& getValues() const;
    // The value at index, or the empty string when there is none.
    const jString& getValue(size_t index = 0) const;
    int getInt(size_t index = 0) const;
    float getFloat(size_t index = 0) const;
    bool getBool(size_t index = 0) const;

    // Replaces all values by one.
    void setValue(jString value);
    void setValues(jVector<jString> values);
    void addValue(jString value);

    // Comment written after the item on its line (without the leading marker).
    const jString& getComment() const { return m_comment ? *m_comment : kNoComment; }
    void setComment(jString comment);

    bool operator==(const PackageItem& other) const;

    // The engine's readings of a value text: leading decimal number (0 when
    // there is none); true for 1, true, yes, on in any case.
    static int toInt(std::string_view text);
    static float toFloat(std::string_view text);
    static bool toBool(std::string_view text);

private:
    // Where the values are: none, the one in m_first, or all in m_values.
    enum class Storage : uint8_t { None, First, List };

    static const jString kNoComment;

    jString m_name;
    jString m_first;
    mutable jVector<jString> m_values;
    mutable Storage m_storage = Storage::None;
    // Few items have a comment: the others keep only a null pointer.
    std::unique_ptr<jString> m_comment;
};
