#pragma once

#include "jString.h"

#include <cstdint>

class BlockAnchor;
class DataNode;

// One end of a joint: an anchor of a document node, made from the block
// anchor that declares it. Link anchors carry a value text.
class DataAnchor {
public:
    // Inputs (link and path) have direction 1, outputs direction 2.
    static constexpr int32_t kInput = 1;
    static constexpr int32_t kOutput = 2;

    DataAnchor(BlockAnchor* definition, DataNode* node, int32_t direction);
    DataAnchor(const DataAnchor&) = delete;
    DataAnchor& operator=(const DataAnchor&) = delete;

    // Virtual operations, in this order.
    virtual BlockAnchor* getDefinition() const { return m_definition; }
    virtual DataNode* getNode() const { return m_node; }
    virtual int32_t getDirection() const { return m_direction; }
    virtual const jString& getSecondText() const { return m_secondText; }
    virtual const jString& getLinkValue() const { return m_linkValue; }
    virtual void setLinkValue(const jString& value) { m_linkValue = value; }

    virtual ~DataAnchor() = default;

    // The definition's name.
    const jString& getName() const;

private:
    BlockAnchor* m_definition;
    DataNode* m_node;
    int32_t m_direction;
    jString m_secondText;
    jString m_linkValue;
};
