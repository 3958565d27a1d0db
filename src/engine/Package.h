#pragma once

#include "PackageItem.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

class PackageStore;

// A tree of named items and named sub-packages in file order, duplicates
// allowed. Lookups by name find the first entry of that name. Full-line
// comments are kept as entries so that a rewritten file keeps them.
//
// A package made by its constructor is the root of a tree and owns the
// tree's storage; sub-packages and items are made by their parent, live in
// that storage and are freed with the root, all at once. Texts are read as
// views that stay valid while the tree lives.
class Package {
public:
    enum class EntryKind : uint8_t { Item, Package, Comment };

    explicit Package(std::string_view name = {});
    ~Package();
    Package(const Package& other);
    Package& operator=(const Package& other);
    // Moving a root hands over its storage; moving a sub-package copies it.
    Package(Package&& other) noexcept;
    // The source may be a package inside this one's own tree.
    Package& operator=(Package&& other) noexcept;

    std::string_view getName() const { return m_name; }
    void setName(std::string_view name);

    // Comment written after the opening brace of this package.
    std::string_view getComment() const { return m_comment; }
    void setComment(std::string_view comment);

    // The kinds of all entries in file order. The n-th entry of a kind is
    // getItem(n), getPackage(n) or getCommentLine(n) counting only that kind.
    std::span<const EntryKind> getOrder() const { return m_order.view(); }

    size_t getItemCount() const { return m_items.size; }
    PackageItem* getItem(size_t index) const { return index < m_items.size ? m_items.data[index] : nullptr; }
    PackageItem* findItem(std::string_view name) const;
    // The first item of each name, found in one walk over the items; null
    // where there is none. found has one slot per name.
    void findItems(std::span<const std::string_view> names, std::span<const PackageItem*> found) const;

    size_t getPackageCount() const { return m_packages.size; }
    Package* getPackage(size_t index) const { return index < m_packages.size ? m_packages.data[index] : nullptr; }
    Package* findPackage(std::string_view name) const;

    size_t getCommentCount() const { return m_comments.size; }
    std::string_view getCommentLine(size_t index) const { return m_comments.data[index]; }

    // Typed reads of the first item of that name; the fallback when absent.
    bool hasItem(std::string_view name) const { return findItem(name) != nullptr; }
    std::string_view getString(std::string_view name, std::string_view fallback = {}) const;
    int getInt(std::string_view name, int fallback = 0) const;
    float getFloat(std::string_view name, float fallback = 0.0f) const;
    bool getBool(std::string_view name, bool fallback = false) const;

    // Appending entries; the texts are copied into the tree.
    PackageItem* addItem(std::string_view name, std::string_view value);
    PackageItem* addItem(std::string_view name, std::span<const std::string_view> values);
    PackageItem* addItem(std::string_view name, const jVector<jString>& values);
    Package* addPackage(std::string_view name);
    // Appends a deep copy of source (which may be in this tree).
    Package* addPackageCopy(const Package& source);
    void addCommentLine(std::string_view text);
    // Makes room for that many more entries of each kind.
    void reserve(size_t items, size_t packages, size_t comments);

    // Typed writes: set the first item of that name, or append one.
    PackageItem* setString(std::string_view name, std::string_view value);
    PackageItem* setInt(std::string_view name, int value);
    PackageItem* setFloat(std::string_view name, float value);
    PackageItem* setBool(std::string_view name, bool value);

    // Removing entries; false when the entry is not a direct child. The
    // removed entry's storage is reclaimed with the tree.
    bool removeItem(const PackageItem* item);
    bool removePackage(const Package* package);
    // Removes every item / package of that name; returns how many.
    size_t removeItems(std::string_view name);
    size_t removePackages(std::string_view name);
    // Removes every entry and the package's comment; keeps the name.
    void clear();

    // Deep comparison of names, values, comments and order.
    bool operator==(const Package& other) const;

    // The shortest text that reads back as exactly this float.
    static jString formatFloat(float value);

    static const jString kEmptyString;

    // Copies or keeps text in this tree's storage and returns a view of it
    // that lives as long as the tree: a reader builds the tree from views of
    // its text.
    std::string_view storeText(std::string_view text);
    std::string_view keepText(jString text);

    // Asks the processor to start loading the package and what the reader
    // stored right after it (its first items and their values), so that a
    // walk over many records need not wait for each in turn. Only a hint.
    void prefetch() const;

private:
    friend class PackageReader;

    // An array in the tree's storage that grows by doubling; the old array
    // is left to the storage.
    template <typename T>
    struct List {
        T* data = nullptr;
        uint32_t size = 0;
        uint32_t capacity = 0;

        std::span<const T> view() const { return { data, size }; }
        void reserve(PackageStore& store, size_t count);
        void push(PackageStore& store, T value)
        {
            if (size == capacity)
                reserve(store, size + 1);
            data[size++] = value;
        }
        void erase(size_t index);
        void assign(PackageStore& store, std::span<const T> values);
    };

    // A sub-package made in the storage of its tree; the name is stored.
    Package(PackageStore& store, std::string_view name);

    bool isRoot() const { return m_store == m_ownStore.get(); }
    PackageStore& store();
    PackageItem* newItem(std::string_view name);
    Package* newPackage(std::string_view name);
    void eraseOrderEntry(EntryKind kind, size_t index);
    void clearEntries();
    void takeTree(Package& other) noexcept;
    // Takes name, comment and entries of a package in the same storage.
    void takeEntries(Package& other) noexcept;
    // Replaces name, comment and entries by copies of source's.
    void copyFrom(const Package& source);
    void appendCopiesOf(const Package& source);
    bool sameOwnEntries(const Package& other) const;

    std::unique_ptr<PackageStore> m_ownStore;
    PackageStore* m_store = nullptr;
    std::string_view m_name;
    std::string_view m_comment;
    List<EntryKind> m_order;
    List<PackageItem*> m_items;
    List<Package*> m_packages;
    List<std::string_view> m_comments;
};
