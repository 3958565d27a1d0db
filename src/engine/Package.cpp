#include "Package.h"

#include "PackageStore.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <utility>

const jString Package::kEmptyString;

template <typename T>
void Package::List<T>::reserve(PackageStore& store, size_t count)
{
    if (count <= capacity)
        return;
    const auto grown = static_cast<uint32_t>(std::max<size_t>({ count, 2 * size_t(capacity), 4 }));
    T* bigger = store.allocateArray<T>(grown);
    std::copy_n(data, size, bigger);
    data = bigger;
    capacity = grown;
}

template <typename T>
void Package::List<T>::erase(size_t index)
{
    std::copy(data + index + 1, data + size, data + index);
    --size;
}

template <typename T>
void Package::List<T>::assign(PackageStore& store, std::span<const T> values)
{
    data = values.empty() ? nullptr : store.allocateArray<T>(values.size());
    std::copy(values.begin(), values.end(), data);
    size = capacity = static_cast<uint32_t>(values.size());
}

Package::Package(std::string_view name)
{
    setName(name);
}

Package::Package(PackageStore& store, std::string_view name)
    : m_store(&store)
    , m_name(name)
{
}

// Sub-packages and items are never destroyed one by one: the root frees its
// storage with everything in it.
Package::~Package() = default;

PackageStore& Package::store()
{
    if (!m_store) {
        m_ownStore = std::make_unique<PackageStore>();
        m_store = m_ownStore.get();
    }
    return *m_store;
}

Package::Package(const Package& other)
{
    copyFrom(other);
}

Package& Package::operator=(const Package& other)
{
    if (this != &other)
        copyFrom(other);
    return *this;
}

Package::Package(Package&& other) noexcept
{
    if (other.isRoot())
        takeTree(other);
    else
        copyFrom(other);
}

Package& Package::operator=(Package&& other) noexcept
{
    if (this == &other)
        return *this;
    if (isRoot() && other.isRoot()) {
        Package old(std::move(*this));
        takeTree(other);
    } else if (isRoot() && m_store && other.m_store == m_store) {
        // A descendant replaces its root: its entries, held by pointer
        // elsewhere, stay where they are in the same storage.
        takeEntries(other);
    } else {
        copyFrom(other);
    }
    return *this;
}

void Package::takeEntries(Package& other) noexcept
{
    m_name = other.m_name;
    m_comment = other.m_comment;
    m_order = std::exchange(other.m_order, {});
    m_items = std::exchange(other.m_items, {});
    m_packages = std::exchange(other.m_packages, {});
    m_comments = std::exchange(other.m_comments, {});
}

// Takes other's storage and entries; other is left an empty root.
void Package::takeTree(Package& other) noexcept
{
    m_ownStore = std::move(other.m_ownStore);
    m_store = std::exchange(other.m_store, nullptr);
    takeEntries(other);
    other.m_name = {};
    other.m_comment = {};
}

void Package::copyFrom(const Package& source)
{
    if (source.m_store && source.m_store == m_store) {
        // Copying a package of this very tree, maybe an ancestor: take a
        // copy first so the copy does not see its own new entries.
        const Package detached(source);
        copyFrom(detached);
        return;
    }
    if (isRoot()) {
        // A root starts a fresh storage, which frees what it held before.
        Package fresh;
        fresh.setName(source.m_name);
        fresh.setComment(source.m_comment);
        fresh.appendCopiesOf(source);
        takeTree(fresh);
        return;
    }
    setName(source.m_name);
    setComment(source.m_comment);
    clearEntries();
    appendCopiesOf(source);
}

// Copies with an explicit stack, so that a deep tree costs heap, not stack.
void Package::appendCopiesOf(const Package& source)
{
    jVector<std::pair<const Package*, Package*>> pending { { &source, this } };
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        to->reserve(from->m_items.size, from->m_packages.size, from->m_comments.size);
        size_t item = 0, child = 0, comment = 0;
        for (const EntryKind kind : from->m_order.view()) {
            switch (kind) {
            case EntryKind::Item: {
                const PackageItem& original = *from->m_items.data[item++];
                PackageItem* copy = to->addItem(original.getName(), original.getValues());
                copy->setComment(original.getComment());
                break;
            }
            case EntryKind::Package: {
                const Package* original = from->m_packages.data[child++];
                Package* copy = to->addPackage(original->m_name);
                copy->setComment(original->m_comment);
                pending.push_back({ original, copy });
                break;
            }
            case EntryKind::Comment:
                to->addCommentLine(from->m_comments.data[comment++]);
                break;
            }
        }
    }
}

void Package::setName(std::string_view name)
{
    m_name = name.empty() ? std::string_view() : store().copyText(name);
}

void Package::setComment(std::string_view comment)
{
    m_comment = comment.empty() ? std::string_view() : store().copyText(comment);
}

std::string_view Package::storeText(std::string_view text)
{
    return store().copyText(text);
}

std::string_view Package::keepText(jString text)
{
    return store().adoptText(std::move(text));
}

namespace {

// Entry names are short: comparing them in place is cheaper than a call to
// memcmp, and most differ in length or in their first byte.
inline bool sameName(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return false;
    return true;
}

} // namespace

void Package::prefetch() const
{
    // The reader makes a package and then its entries in one run of its
    // storage: 1 KiB covers a typical record of a few items.
    constexpr size_t kLine = 64;
    constexpr size_t kBytes = 1024;
    const char* start = reinterpret_cast<const char*>(this);
    for (size_t offset = 0; offset < kBytes; offset += kLine)
        __builtin_prefetch(start + offset);
}

PackageItem* Package::findItem(std::string_view name) const
{
    for (PackageItem* item : m_items.view())
        if (sameName(item->getName(), name))
            return item;
    return nullptr;
}

void Package::findItems(std::span<const std::string_view> names, std::span<const PackageItem*> found) const
{
    std::fill(found.begin(), found.end(), nullptr);
    for (const PackageItem* item : m_items.view()) {
        const std::string_view itemName = item->getName();
        for (size_t i = 0; i < names.size(); ++i) {
            if (sameName(itemName, names[i])) {
                if (!found[i])
                    found[i] = item;
                break;
            }
        }
    }
}

Package* Package::findPackage(std::string_view name) const
{
    for (Package* package : m_packages.view())
        if (sameName(package->m_name, name))
            return package;
    return nullptr;
}

std::string_view Package::getString(std::string_view name, std::string_view fallback) const
{
    const PackageItem* item = findItem(name);
    return item ? item->getValue() : fallback;
}

int Package::getInt(std::string_view name, int fallback) const
{
    const PackageItem* item = findItem(name);
    return item ? item->getInt() : fallback;
}

float Package::getFloat(std::string_view name, float fallback) const
{
    const PackageItem* item = findItem(name);
    return item ? item->getFloat() : fallback;
}

bool Package::getBool(std::string_view name, bool fallback) const
{
    const PackageItem* item = findItem(name);
    return item ? item->getBool() : fallback;
}

PackageItem* Package::newItem(std::string_view name)
{
    PackageStore& storage = store();
    auto* item = new (storage.allocate(sizeof(PackageItem))) PackageItem(storage, storage.copyText(name), {});
    m_order.push(storage, EntryKind::Item);
    m_items.push(storage, item);
    return item;
}

PackageItem* Package::addItem(std::string_view name, std::string_view value)
{
    PackageItem* item = newItem(name);
    item->setValue(value);
    return item;
}

PackageItem* Package::addItem(std::string_view name, std::span<const std::string_view> values)
{
    PackageItem* item = newItem(name);
    item->setValues(values);
    return item;
}

PackageItem* Package::addItem(std::string_view name, const jVector<jString>& values)
{
    PackageItem* item = newItem(name);
    item->setValues(values);
    return item;
}

Package* Package::newPackage(std::string_view name)
{
    PackageStore& storage = store();
    auto* package = new (storage.allocate(sizeof(Package))) Package(storage, storage.copyText(name));
    m_order.push(storage, EntryKind::Package);
    m_packages.push(storage, package);
    return package;
}

Package* Package::addPackage(std::string_view name) { return newPackage(name); }

Package* Package::addPackageCopy(const Package& source)
{
    if (source.m_store && source.m_store == m_store) {
        const Package detached(source);
        return addPackageCopy(detached);
    }
    Package* copy = newPackage(source.m_name);
    copy->setComment(source.m_comment);
    copy->appendCopiesOf(source);
    return copy;
}

void Package::addCommentLine(std::string_view text)
{
    PackageStore& storage = store();
    m_order.push(storage, EntryKind::Comment);
    m_comments.push(storage, storage.copyText(text));
}

void Package::reserve(size_t items, size_t packages, size_t comments)
{
    PackageStore& storage = store();
    m_items.reserve(storage, m_items.size + items);
    m_packages.reserve(storage, m_packages.size + packages);
    m_comments.reserve(storage, m_comments.size + comments);
    m_order.reserve(storage, m_order.size + items + packages + comments);
}

PackageItem* Package::setString(std::string_view name, std::string_view value)
{
    if (PackageItem* item = findItem(name)) {
        item->setValue(value);
        return item;
    }
    return addItem(name, value);
}

PackageItem* Package::setInt(std::string_view name, int value)
{
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return setString(name, std::string_view(buffer, result.ptr));
}

PackageItem* Package::setFloat(std::string_view name, float value)
{
    return setString(name, formatFloat(value));
}

PackageItem* Package::setBool(std::string_view name, bool value)
{
    return setString(name, value ? "true" : "false");
}

void Package::eraseOrderEntry(EntryKind kind, size_t index)
{
    size_t seen = 0;
    for (size_t i = 0; i < m_order.size; ++i) {
        if (m_order.data[i] == kind && seen++ == index) {
            m_order.erase(i);
            return;
        }
    }
}

bool Package::removeItem(const PackageItem* item)
{
    const auto entries = m_items.view();
    const auto it = std::find(entries.begin(), entries.end(), item);
    if (it == entries.end())
        return false;
    const auto index = static_cast<size_t>(it - entries.begin());
    eraseOrderEntry(EntryKind::Item, index);
    m_items.erase(index);
    return true;
}

bool Package::removePackage(const Package* package)
{
    const auto entries = m_packages.view();
    const auto it = std::find(entries.begin(), entries.end(), package);
    if (it == entries.end())
        return false;
    const auto index = static_cast<size_t>(it - entries.begin());
    eraseOrderEntry(EntryKind::Package, index);
    m_packages.erase(index);
    return true;
}

size_t Package::removeItems(std::string_view name)
{
    size_t removed = 0;
    while (PackageItem* item = findItem(name)) {
        removeItem(item);
        ++removed;
    }
    return removed;
}

size_t Package::removePackages(std::string_view name)
{
    size_t removed = 0;
    while (Package* package = findPackage(name)) {
        removePackage(package);
        ++removed;
    }
    return removed;
}

void Package::clearEntries()
{
    m_order = {};
    m_items = {};
    m_packages = {};
    m_comments = {};
}

void Package::clear()
{
    if (isRoot() && m_store) {
        // A root lets go of its whole storage.
        Package fresh(m_name);
        takeTree(fresh);
        return;
    }
    m_comment = {};
    clearEntries();
}

bool Package::sameOwnEntries(const Package& other) const
{
    const auto same = [](auto left, auto right) { return std::equal(left.begin(), left.end(), right.begin(), right.end()); };
    if (m_name != other.m_name || m_comment != other.m_comment || !same(m_order.view(), other.m_order.view())
        || !same(m_comments.view(), other.m_comments.view()) || m_items.size != other.m_items.size
        || m_packages.size != other.m_packages.size)
        return false;
    for (size_t i = 0; i < m_items.size; ++i)
        if (!(*m_items.data[i] == *other.m_items.data[i]))
            return false;
    return true;
}

bool Package::operator==(const Package& other) const
{
    jVector<std::pair<const Package*, const Package*>> pending { { this, &other } };
    while (!pending.empty()) {
        const auto [left, right] = pending.back();
        pending.pop_back();
        if (!left->sameOwnEntries(*right))
            return false;
        for (size_t i = 0; i < left->m_packages.size; ++i)
            pending.push_back({ left->m_packages.data[i], right->m_packages.data[i] });
    }
    return true;
}

jString Package::formatFloat(float value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return jString(buffer, result.ptr);
}

template struct Package::List<Package::EntryKind>;
template struct Package::List<PackageItem*>;
template struct Package::List<Package*>;
template struct Package::List<std::string_view>;
