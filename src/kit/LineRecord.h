#pragma once

#include "jString.h"

#include <cstdint>

// Which node wrote each physical line of one generated stage program. The
// generator records an owner per entry it adds (XMatComplier::getLineNodes);
// an entry may hold several physical lines, and compilers count physical
// lines, numbered from 1 as `material-tool generate` prints them and as
// ShaderSource names them ("generated:<line>").
class LineRecord {
public:
    static constexpr int32_t kNoNode = -1;

    // entryNodes holds the owners of the last entryNodes.size() entries;
    // earlier entries belong to no node.
    void assign(const jVector<jString>& entries, const jVector<int32_t>& entryNodes);
    void clear() { m_nodes.clear(); }

    // The node of physical line `line` (from 1); kNoNode for a frame line or
    // a line out of range.
    int32_t nodeAt(size_t line) const;
    size_t getLineCount() const { return m_nodes.size(); }

private:
    jVector<int32_t> m_nodes;
};
