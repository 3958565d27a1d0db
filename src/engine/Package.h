#pragma once

#include "PackageItem.h"

#include <cstdint>
#include <memory>
#include <string_view>

// A tree of named items and named sub-packages in file order, duplicates
// allowed. Lookups by name find the first entry of that name. Full-line
// comments are kept as entries so that a rewritten file keeps them.
class Package {
public:
    enum class EntryKind : uint8_t { Item, Package, Comment };

    explicit Package(jString name = {});
    ~Package();
    Package(const Package& other);
    Package& operator=(const Package& other);
    Package(Package&&) noexcept = default;
    // The source may be a package inside this one's own tree.
    Package& operator=(Package&& other) noexcept;

    const jString& getName() const { return m_name; }
    void setName(jString name) { m_name = std::move(name); }

    // Comment written after the opening brace of this package.
    const jString& getComment() const { return m_comment; }
    void setComment(jString comment) { m_comment = std::move(comment); }

    // The kinds of all entries in file order. The n-th entry of a kind is
    // getItem(n), getPackage(n) or getCommentLine(n) counting only that kind.
    const jVector<EntryKind>& getOrder() const { return m_order; }

    size_t getItemCount() const { return m_items.size(); }
    PackageItem* getItem(size_t index) const;
    PackageItem* findItem(std::string_view name) const;

    size_t getPackageCount() const { return m_packages.size(); }
    Package* getPackage(size_t index) const;
    Package* findPackage(std::string_view name) const;

    size_t getCommentCount() const { return m_comments.size(); }
    const jString& getCommentLine(size_t index) const { return m_comments[index]; }

    // Typed reads of the first item of that name; the fallback when absent.
    bool hasItem(std::string_view name) const { return findItem(name) != nullptr; }
    const jString& getString(std::string_view name, const jString& fallback = kEmptyString) const;
    int getInt(std::string_view name, int fallback = 0) const;
    float getFloat(std::string_view name, float fallback = 0.0f) const;
    bool getBool(std::string_view name, bool fallback = false) const;

    // Appending entries.
    PackageItem* addItem(jString name, jString value);
    PackageItem* addItem(jString name, jVector<jString> values);
    PackageItem* addItem(std::unique_ptr<PackageItem> item);
    Package* addPackage(jString name);
    Package* addPackage(std::unique_ptr<Package> package);
    void addCommentLine(jString text);
    // Makes room for that many more entries of each kind.
    void reserve(size_t items, size_t packages, size_t comments);

    // Typed writes: set the first item of that name, or append one.
    PackageItem* setString(std::string_view name, jString value);
    PackageItem* setInt(std::string_view name, int value);
    PackageItem* setFloat(std::string_view name, float value);
    PackageItem* setBool(std::string_view name, bool value);

    // Removing entries; false when the entry is not a direct child.
    bool removeItem(const PackageItem* item);
    bool removePackage(const Package* package);
    // Removes every item / package of that name; returns how many.
    size_t removeItems(std::string_view name);
    size_t removePackages(std::string_view name);
    void clear();

    // Deep comparison of names, values, comments and order.
    bool operator==(const Package& other) const;

    // The shortest text that reads back as exactly this float.
    static jString formatFloat(float value);

    static const jString kEmptyString;

private:
    void eraseOrderEntry(EntryKind kind, size_t index);
    void releaseSubPackages();
    // Name, comments, order and items; not the sub-packages.
    void copyOwnEntries(const Package& other);
    bool sameOwnEntries(const Package& other) const;

    jString m_name;
    jString m_comment;
    jVector<EntryKind> m_order;
    jVector<std::unique_ptr<PackageItem>> m_items;
    jVector<std::unique_ptr<Package>> m_packages;
    jVector<jString> m_comments;
};
