#include "LineRecord.h"

#include "ShaderSource.h"

void LineRecord::assign(const jVector<jString>& entries, const jVector<int32_t>& entryNodes)
{
    m_nodes.clear();
    m_nodes.reserve(entries.size());
    const size_t unowned = entries.size() > entryNodes.size() ? entries.size() - entryNodes.size() : 0;
    for (size_t i = 0; i < entries.size(); ++i) {
        const int32_t node = i < unowned ? kNoNode : entryNodes[i - unowned];
        m_nodes.insert(m_nodes.end(), ShaderSource::physicalLineCount(entries[i]), node);
    }
}

int32_t LineRecord::nodeAt(size_t line) const
{
    return line >= 1 && line <= m_nodes.size() ? m_nodes[line - 1] : kNoNode;
}
