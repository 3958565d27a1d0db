#pragma once

#include "jString.h"

#include <cstdint>

class AppData;
class BlockAnchor;
class DataNode;
struct DataJoint;

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

    // The joints that use this anchor as their first or their second
    // anchor, oldest first. The document keeps them.
    const jVector<DataJoint*>& getJointsAsFirst() const { return m_asFirst; }
    const jVector<DataJoint*>& getJointsAsSecond() const { return m_asSecond; }

private:
    friend class AppData;

    BlockAnchor* m_definition;
    DataNode* m_node;
    int32_t m_direction;
    jString m_secondText;
    jString m_linkValue;
    jVector<DataJoint*> m_asFirst;
    jVector<DataJoint*> m_asSecond;
};
