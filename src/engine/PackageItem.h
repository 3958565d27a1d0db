#pragma once

#include "jString.h"

#include <cstdint>
#include <span>
#include <string_view>

class PackageStore;

// One named item of a Package: a key with zero or more string values, read
// as string, integer, float or boolean. Items live in their tree's storage:
// Package makes them, and views of their texts stay valid while the tree
// lives, even after the item is changed or removed.
class PackageItem {
public:
    PackageItem(const PackageItem&) = delete;
    PackageItem& operator=(const PackageItem&) = delete;

    std::string_view getName() const { return m_name; }
    void setName(std::string_view name);

    size_t getValueCount() const { return m_valueCount; }
    std::span<const std::string_view> getValues() const { return { m_values, m_valueCount }; }
    // The value at index, or the empty text when there is none.
    std::string_view getValue(size_t index = 0) const { return index < m_valueCount ? m_values[index] : std::string_view(); }
    int getInt(size_t index = 0) const { return toInt(getValue(index)); }
    float getFloat(size_t index = 0) const { return toFloat(getValue(index)); }
    bool getBool(size_t index = 0) const { return toBool(getValue(index)); }

    // Replaces all values by one.
    void setValue(std::string_view value);
    void setValues(std::span<const std::string_view> values);
    void setValues(const jVector<jString>& values);
    void addValue(std::string_view value);

    // Comment written after the item on its line (without the leading marker).
    std::string_view getComment() const { return m_comment; }
    void setComment(std::string_view comment);

    // Same name, values and comment.
    bool operator==(const PackageItem& other) const;

    // The engine's readings of a value text: leading decimal number (0 when
    // there is none); true for 1, true, yes, on in any case.
    static int toInt(std::string_view text);
    static float toFloat(std::string_view text);
    static bool toBool(std::string_view text);

private:
    friend class Package;
    friend class PackageReader;

    // The texts must already be held by the store.
    PackageItem(PackageStore& store, std::string_view name, std::string_view comment)
        : m_store(&store)
        , m_name(name)
        , m_comment(comment)
    {
    }
    // Takes an array of stored values from the store.
    void adoptValues(std::string_view* values, uint32_t count)
    {
        m_values = values;
        m_valueCount = m_valueCapacity = count;
    }
    void reserveValues(size_t count);
    template <typename Texts>
    void storeValues(const Texts& values);

    PackageStore* m_store;
    std::string_view m_name;
    std::string_view m_comment;
    std::string_view* m_values = nullptr;
    uint32_t m_valueCount = 0;
    uint32_t m_valueCapacity = 0;
};
