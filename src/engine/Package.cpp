#include "Package.h"

#include <algorithm>
#include <charconv>

const jString Package::kEmptyString;

Package::Package(jString name)
    : m_name(std::move(name))
{
}

Package::~Package()
{
    releaseSubPackages();
}

// Destroys the sub-tree level by level, so that a deep tree does not recurse
// once per level through the destructors.
void Package::releaseSubPackages()
{
    if (m_packages.empty())
        return;
    jVector<std::unique_ptr<Package>> pending = std::move(m_packages);
    m_packages.clear();
    while (!pending.empty()) {
        std::unique_ptr<Package> package = std::move(pending.back());
        pending.pop_back();
        for (auto& child : package->m_packages)
            pending.push_back(std::move(child));
        package->m_packages.clear();
    }
}

void Package::copyOwnEntries(const Package& other)
{
    m_name = other.m_name;
    m_comment = other.m_comment;
    m_order = other.m_order;
    m_comments = other.m_comments;
    m_items.reserve(other.m_items.size());
    for (const auto& item : other.m_items)
        m_items.push_back(std::make_unique<PackageItem>(*item));
}

// Copies with an explicit stack for the same reason as the destructor.
Package::Package(const Package& other)
{
    copyOwnEntries(other);
    jVector<std::pair<const Package*, Package*>> pending { { &other, this } };
    while (!pending.empty()) {
        const auto [source, target] = pending.back();
        pending.pop_back();
        target->m_packages.reserve(source->m_packages.size());
        for (const auto& child : source->m_packages) {
            auto copy = std::make_unique<Package>();
            copy->copyOwnEntries(*child);
            pending.push_back({ child.get(), copy.get() });
            target->m_packages.push_back(std::move(copy));
        }
    }
}

Package& Package::operator=(const Package& other)
{
    if (this != &other) {
        Package copy(other);
        *this = std::move(copy);
    }
    return *this;
}

// The source is taken out before the old entries go, since releasing them
// would otherwise destroy a source that lives inside this package's tree.
Package& Package::operator=(Package&& other) noexcept
{
    if (this == &other)
        return *this;
    Package taken(std::move(other));
    std::swap(m_name, taken.m_name);
    std::swap(m_comment, taken.m_comment);
    std::swap(m_order, taken.m_order);
    std::swap(m_items, taken.m_items);
    std::swap(m_packages, taken.m_packages);
    std::swap(m_comments, taken.m_comments);
    return *this;
}

PackageItem* Package::getItem(size_t index) const
{
    return index < m_items.size() ? m_items[index].get() : nullptr;
}

PackageItem* Package::findItem(std::string_view name) const
{
    for (const auto& item : m_items)
        if (item->getName() == name)
            return item.get();
    return nullptr;
}

Package* Package::getPackage(size_t index) const
{
    return index < m_packages.size() ? m_packages[index].get() : nullptr;
}

Package* Package::findPackage(std::string_view name) const
{
    for (const auto& package : m_packages)
        if (package->getName() == name)
            return package.get();
    return nullptr;
}

const jString& Package::getString(std::string_view name, const jString& fallback) const
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

PackageItem* Package::addItem(jString name, jString value)
{
    return addItem(std::make_unique<PackageItem>(std::move(name), std::move(value)));
}

PackageItem* Package::addItem(jString name, jVector<jString> values)
{
    return addItem(std::make_unique<PackageItem>(std::move(name), std::move(values)));
}

PackageItem* Package::addItem(std::unique_ptr<PackageItem> item)
{
    m_order.push_back(EntryKind::Item);
    m_items.push_back(std::move(item));
    return m_items.back().get();
}

Package* Package::addPackage(jString name)
{
    return addPackage(std::make_unique<Package>(std::move(name)));
}

Package* Package::addPackage(std::unique_ptr<Package> package)
{
    m_order.push_back(EntryKind::Package);
    m_packages.push_back(std::move(package));
    return m_packages.back().get();
}

void Package::addCommentLine(jString text)
{
    m_order.push_back(EntryKind::Comment);
    m_comments.push_back(std::move(text));
}

void Package::reserve(size_t items, size_t packages, size_t comments)
{
    m_items.reserve(m_items.size() + items);
    m_packages.reserve(m_packages.size() + packages);
    m_comments.reserve(m_comments.size() + comments);
    m_order.reserve(m_order.size() + items + packages + comments);
}

PackageItem* Package::setString(std::string_view name, jString value)
{
    if (PackageItem* item = findItem(name)) {
        item->setValue(std::move(value));
        return item;
    }
    return addItem(jString(name), std::move(value));
}

PackageItem* Package::setInt(std::string_view name, int value)
{
    return setString(name, std::to_string(value));
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
    for (auto it = m_order.begin(); it != m_order.end(); ++it) {
        if (*it != kind)
            continue;
        if (seen++ == index) {
            m_order.erase(it);
            return;
        }
    }
}

bool Package::removeItem(const PackageItem* item)
{
    auto it = std::find_if(m_items.begin(), m_items.end(), [&](const auto& p) { return p.get() == item; });
    if (it == m_items.end())
        return false;
    eraseOrderEntry(EntryKind::Item, static_cast<size_t>(it - m_items.begin()));
    m_items.erase(it);
    return true;
}

bool Package::removePackage(const Package* package)
{
    auto it = std::find_if(m_packages.begin(), m_packages.end(), [&](const auto& p) { return p.get() == package; });
    if (it == m_packages.end())
        return false;
    eraseOrderEntry(EntryKind::Package, static_cast<size_t>(it - m_packages.begin()));
    m_packages.erase(it);
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

void Package::clear()
{
    m_order.clear();
    m_items.clear();
    releaseSubPackages();
    m_comments.clear();
    m_comment.clear();
}

bool Package::sameOwnEntries(const Package& other) const
{
    if (m_name != other.m_name || m_comment != other.m_comment || m_order != other.m_order
        || m_comments != other.m_comments || m_items.size() != other.m_items.size()
        || m_packages.size() != other.m_packages.size())
        return false;
    for (size_t i = 0; i < m_items.size(); ++i)
        if (!(*m_items[i] == *other.m_items[i]))
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
        for (size_t i = 0; i < left->m_packages.size(); ++i)
            pending.push_back({ left->m_packages[i].get(), right->m_packages[i].get() });
    }
    return true;
}

jString Package::formatFloat(float value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return jString(buffer, result.ptr);
}
