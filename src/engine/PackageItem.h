#pragma once

#include "jString.h"

#include <string_view>

// One named item of a Package: a key with zero or more string values, read
// as string, integer, float or boolean.
class PackageItem {
public:
    PackageItem() = default;
    PackageItem(jString name, jString value);
    PackageItem(jString name, jVector<jString> values);

    const jString& getName() const { return m_name; }
    void setName(jString name) { m_name = std::move(name); }

    size_t getValueCount() const { return m_values.size(); }
    const jVector<jString>& getValues() const { return m_values; }
    // The value at index, or the empty string when there is none.
    const jString& getValue(size_t index = 0) const;
    int getInt(size_t index = 0) const;
    float getFloat(size_t index = 0) const;
    bool getBool(size_t index = 0) const;

    // Replaces all values by one.
    void setValue(jString value);
    void setValues(jVector<jString> values) { m_values = std::move(values); }
    void addValue(jString value) { m_values.push_back(std::move(value)); }

    // Comment written after the item on its line (without the leading marker).
    const jString& getComment() const { return m_comment; }
    void setComment(jString comment) { m_comment = std::move(comment); }

    bool operator==(const PackageItem& other) const = default;

    // The engine's readings of a value text: leading decimal number (0 when
    // there is none); true for 1, true, yes, on in any case.
    static int toInt(std::string_view text);
    static float toFloat(std::string_view text);
    static bool toBool(std::string_view text);

private:
    jString m_name;
    jVector<jString> m_values;
    jString m_comment;
};
