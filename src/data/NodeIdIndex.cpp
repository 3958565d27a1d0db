#include "NodeIdIndex.h"

#include <algorithm>

namespace {

// Ids below this always fit the table, whatever the node count.
constexpr size_t kSmallTable = 1024;

} // namespace

DataNode* NodeIdIndex::find(int32_t id) const
{
    const auto index = static_cast<size_t>(id);
    if (id >= 0 && index < m_table.size() && m_table[index])
        return m_table[index];
    if (m_others.empty())
        return nullptr;
    const auto found = m_others.find(id);
    return found == m_others.end() ? nullptr : found->second;
}

size_t NodeIdIndex::tableLimit() const
{
    return std::max(kSmallTable, 2 * (m_size + 1));
}

void NodeIdIndex::insert(int32_t id, DataNode* node)
{
    const auto index = static_cast<size_t>(id);
    if (index >= m_table.size() && index < tableLimit())
        m_table.resize(std::min(tableLimit(), std::max(index + 1, 2 * m_table.size())), nullptr);
    if (index < m_table.size())
        m_table[index] = node;
    else
        m_others.emplace(id, node);
    ++m_size;
}

void NodeIdIndex::erase(int32_t id)
{
    const auto index = static_cast<size_t>(id);
    if (id >= 0 && index < m_table.size() && m_table[index]) {
        m_table[index] = nullptr;
        --m_size;
    } else if (m_others.erase(id) > 0) {
        --m_size;
    }
}

void NodeIdIndex::clear()
{
    m_table.clear();
    m_others.clear();
    m_size = 0;
}
