#include "Package.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <type_traits>

const jString Package::kEmptyString;

// ---------------------------------------------------------------------------
// EntryList: a singly linked list of blocks of raw slots.

template <typename T>
struct Package::EntryList<T>::Block {
    Block* next;
    size_t capacity;
    size_t used;

    static constexpr size_t kSlotsOffset = (sizeof(Block) + alignof(T) - 1) / alignof(T) * alignof(T);
    static constexpr size_t kSlotSize = sizeof(T) > sizeof(void*) ? sizeof(T) : sizeof(void*);

    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    static Block* create(size_t capacity, Block* next)
    {
        return new (::operator new(kSlotsOffset + capacity * kSlotSize)) Block { next, capacity, 0 };
    }
    static void destroy(Block* block) { ::operator delete(block); }
    void* slot(size_t index) { return reinterpret_cast<char*>(this) + kSlotsOffset + index * kSlotSize; }
};

template <typename T>
Package::EntryList<T>::EntryList(EntryList&& other) noexcept
{
    swap(other);
}

template <typename T>
Package::EntryList<T>& Package::EntryList<T>::operator=(EntryList&& other) noexcept
{
    EntryList old(std::move(*this));
    swap(other);
    return *this;
}

template <typename T>
void Package::EntryList<T>::swap(EntryList& other) noexcept
{
    m_index.swap(other.m_index);
    std::swap(m_blocks, other.m_blocks);
    std::swap(m_freeSlots, other.m_freeSlots);
}

template <typename T>
T* Package::EntryList<T>::add(T&& entry)
{
    m_index.push_back(nullptr);
    void* slot;
    try {
        slot = takeSlot();
    } catch (...) {
        m_index.pop_back();
        throw;
    }
    static_assert(std::is_nothrow_move_constructible_v<T>);
    m_index.back() = new (slot) T(std::move(entry));
    return m_index.back();
}

template <typename T>
void* Package::EntryList<T>::takeSlot()
{
    if (m_freeSlots) {
        void* slot = m_freeSlots;
        m_freeSlots = *static_cast<void**>(slot);
        return slot;
    }
    if (!m_blocks || m_blocks->used == m_blocks->capacity)
        m_blocks = Block::create(m_blocks ? 2 * m_blocks->capacity : 1, m_blocks);
    return m_blocks->slot(m_blocks->used++);
}

template <typename T>
void Package::EntryList<T>::releaseSlot(void* slot)
{
    *static_cast<void**>(slot) = m_freeSlots;
    m_freeSlots = slot;
}

template <typename T>
void Package::EntryList<T>::reserve(size_t more)
{
    if (more == 0)
        return;
    m_index.reserve(m_index.size() + more);
    if (!m_blocks || m_blocks->capacity - m_blocks->used < more)
        m_blocks = Block::create(more, m_blocks);
}

template <typename T>
std::optional<size_t> Package::EntryList<T>::remove(const T* entry)
{
    const auto it = std::find(m_index.begin(), m_index.end(), entry);
    if (it == m_index.end())
        return std::nullopt;
    const size_t index = static_cast<size_t>(it - m_index.begin());
    T* removed = *it;
    m_index.erase(it);
    removed->~T();
    releaseSlot(removed);
    return index;
}

template <typename T>
void Package::EntryList<T>::clear()
{
    for (T* entry : m_index)
        entry->~T();
    m_index.clear();
    m_freeSlots = nullptr;
    while (m_blocks) {
        Block* next = m_blocks->next;
        Block::destroy(m_blocks);
        m_blocks = next;
    }
}

template class Package::EntryList<PackageItem>;
template class Package::EntryList<Package>;

// ---------------------------------------------------------------------------

Package::Package(jString name)
    : m_name(std::move(name))
{
}

Package::~Package()
{
    releaseSubPackages();
}

// Destroys the sub-tree level by level, so that a deep tree does not recurse
// once per level through the destructors: each list's packages hand over
// their own sub-packages before the list is destroyed.
void Package::releaseSubPackages()
{
    if (m_packages.empty())
        return;
    jVector<EntryList<Package>> pending;
    pending.push_back(std::move(m_packages));
    while (!pending.empty()) {
        EntryList<Package> list = std::move(pending.back());
        pending.pop_back();
        for (Package* package : list)
            if (!package->m_packages.empty())
                pending.push_back(std::move(package->m_packages));
    }
}

void Package::copyOwnEntries(const Package& other)
{
    m_name = other.m_name;
    m_comment = other.m_comment;
    m_order = other.m_order;
    m_comments = other.m_comments;
    m_items.reserve(other.m_items.size());
    for (const PackageItem* item : other.m_items)
        m_items.add(PackageItem(*item));
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
        for (const Package* child : source->m_packages) {
            Package* copy = target->m_packages.add(Package());
            copy->copyOwnEntries(*child);
            pending.push_back({ child, copy });
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

PackageItem* Package::getItem(size_t index) const
{
    return index < m_items.size() ? m_items[index] : nullptr;
}

PackageItem* Package::findItem(std::string_view name) const
{
    for (PackageItem* item : m_items)
        if (item->getName() == name)
            return item;
    return nullptr;
}

Package* Package::getPackage(size_t index) const
{
    return index < m_packages.size() ? m_packages[index] : nullptr;
}

Package* Package::findPackage(std::string_view name) const
{
    for (Package* package : m_packages)
        if (package->getName() == name)
            return package;
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
    m_order.push_back(EntryKind::Item);
    return m_items.add(PackageItem(std::move(name), std::move(value)));
}

PackageItem* Package::addItem(jString name, jVector<jString> values)
{
    m_order.push_back(EntryKind::Item);
    return m_items.add(PackageItem(std::move(name), std::move(values)));
}

PackageItem* Package::addItem(std::unique_ptr<PackageItem> item)
{
    m_order.push_back(EntryKind::Item);
    return m_items.add(std::move(*item));
}

Package* Package::addPackage(jString name)
{
    m_order.push_back(EntryKind::Package);
    return m_packages.add(Package(std::move(name)));
}

Package* Package::addPackage(std::unique_ptr<Package> package)
{
    m_order.push_back(EntryKind::Package);
    return m_packages.add(std::move(*package));
}

void Package::addCommentLine(jString text)
{
    m_order.push_back(EntryKind::Comment);
    m_comments.push_back(std::move(text));
}

void Package::reserve(size_t items, size_t packages, size_t comments)
{
    m_items.reserve(items);
    m_packages.reserve(packages);
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
    const std::optional<size_t> index = m_items.remove(item);
    if (!index)
        return false;
    eraseOrderEntry(EntryKind::Item, *index);
    return true;
}

bool Package::removePackage(const Package* package)
{
    const std::optional<size_t> index = m_packages.remove(package);
    if (!index)
        return false;
    eraseOrderEntry(EntryKind::Package, *index);
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
            pending.push_back({ left->m_packages[i], right->m_packages[i] });
    }
    return true;
}

jString Package::formatFloat(float value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return jString(buffer, result.ptr);
}
