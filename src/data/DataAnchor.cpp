#include "DataAnchor.h"

#include "BlockAnchor.h"
#include "Package.h"

DataAnchor::DataAnchor(BlockAnchor* definition, DataNode* node, int32_t direction)
    : m_definition(definition)
    , m_node(node)
    , m_direction(direction)
{
}

const jString& DataAnchor::getName() const
{
    return m_definition ? m_definition->getName() : Package::kEmptyString;
}
