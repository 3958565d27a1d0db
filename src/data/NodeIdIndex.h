#pragma once

#include "jString.h"

#include <cstdint>
#include <unordered_map>

class DataNode;

// The document's nodes by id. Ids are mostly the small numbers the document
// hands out (0, 1, 2, ...), which are kept in a table indexed by id; ids far
// above the node count (from a file) go to a hash map, so that the table
// stays within a small multiple of the number of nodes whatever the ids.
class NodeIdIndex {
public:
    DataNode* find(int32_t id) const;
    bool contains(int32_t id) const { return find(id) != nullptr; }
    // The id must be free and not negative.
    void insert(int32_t id, DataNode* node);
    void erase(int32_t id);
    void clear();
    // Room for that many nodes numbered from 0 without growing.
    void reserve(size_t count) { m_table.reserve(count); }
    size_t size() const { return m_size; }

private:
    size_t tableLimit() const;

    jVector<DataNode*> m_table;
    // Ids inserted when they were beyond the table; the table may have grown
    // over them since.
    std::unordered_map<int32_t, DataNode*> m_others;
    size_t m_size = 0;
};
