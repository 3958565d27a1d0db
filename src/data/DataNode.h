#pragma once

#include "DataAnchor.h"
#include "DataVariable.h"
#include "EditRecord.h"
#include "FixedArray.h"
#include "jString.h"

#include <cstdint>
#include <optional>
#include <span>

class AppData;
class Block;
class Package;
class PackageItem;

// One instance of a block placed in the document: one DataVariable per
// block variable and one DataAnchor per block anchor, in block order.
// Created only by AppData::createNode, which also hands out its id.
class DataNode {
public:
    DataNode(const DataNode&) = delete;
    DataNode& operator=(const DataNode&) = delete;

    // Virtual operations, in this order.
    virtual int32_t getPosX() const { return m_posX; }
    virtual void setPosX(int32_t x);
    virtual int32_t getPosY() const { return m_posY; }
    virtual void setPosY(int32_t y);
    virtual const jString& getName() const { return m_name; }
    virtual void setName(const jString& name);

    // Reads the node's "node" package of the editor file: id, name,
    // position, variables and link values.
    virtual void read(const Package& node);
    // Appends the node's "node" package to a "blueprint" package.
    virtual void write(Package& blueprint) const;

    virtual ~DataNode();

    // Unique within the document; changed only through AppData::setNodeId.
    // The id of a node made while a graph is read, until it takes one.
    static constexpr int32_t kPendingId = -1;
    int32_t getId() const { return m_id; }
    Block* getBlock() const { return m_block; }
    AppData* getDocument() const { return m_document; }

    size_t getInputLinkCount() const { return m_inputLinks.size(); }
    DataAnchor* getInputLink(size_t index) const { return at(m_inputLinks, index); }
    size_t getOutputLinkCount() const { return m_outputLinks.size(); }
    DataAnchor* getOutputLink(size_t index) const { return at(m_outputLinks, index); }
    size_t getInputPathCount() const { return m_inputPaths.size(); }
    DataAnchor* getInputPath(size_t index) const { return at(m_inputPaths, index); }
    size_t getOutputPathCount() const { return m_outputPaths.size(); }
    DataAnchor* getOutputPath(size_t index) const { return at(m_outputPaths, index); }

    size_t getVariableCount() const { return m_vars.size(); }
    DataVariable* getVariable(size_t index) const { return m_vars.at(index); }

    // Position of the first variable whose definition has that name, or -1.
    int getVariableIndex(const jString& name) const;
    // The first variable whose definition has that name, or null.
    DataVariable* findVariable(const jString& name) const;
    // Its value text; a missing variable logs and gives "".
    jString getVariableValue(const jString& name) const;

    // Sets value, format and wrap/filter (when not empty), anisotropy, the
    // shared sampler for them, and the asynchronous flag. An index of -1
    // (a failed lookup) or out of range logs and returns false.
    bool setVariableValue(int index, const jString& value, const jString& format, const jString& wrap,
        const jString& filter, uint32_t anisotropy, bool asyn);
    // Sets only the value text.
    bool setVariableValueOnly(int index, const jString& value);
    // Sets the text of one sub value of a variable; false (with a log) when
    // either index is out of range.
    bool setSubValue(int index, size_t subIndex, const jString& value);
    // Both coordinates as one edit.
    void setPosition(int32_t x, int32_t y);

    // Edits of the variables and the position are recorded in the
    // document's history (see AppData::getHistory).

    // Link value of the first anchor of that name in the input (output)
    // link list; a missing anchor logs and gives "".
    jString getInputLinkValue(const jString& name) const;
    jString getOutputLinkValue(const jString& name) const;
    // Assigns the link value only when it differs; a missing anchor logs.
    void setInputLinkValue(const jString& name, const jString& value);
    void setOutputLinkValue(const jString& name, const jString& value);

    // The first anchor of that name, searched in the input link anchors,
    // the output link anchors, the input path and the output path anchors.
    DataAnchor* findAnchor(const jString& name) const;

    // Detaches and deletes the variables and anchors.
    void release();

private:
    friend class AppData;
    // A node's anchors of one kind: a run of m_anchors.
    using AnchorList = std::span<DataAnchor>;

    DataNode(AppData* document, int32_t id, Block* block);

    static DataAnchor* at(AnchorList list, size_t index) { return index < list.size() ? &list[index] : nullptr; }
    static DataAnchor* find_in(AnchorList list, const jString& name);

    void read_variable_item(const PackageItem& item);
    void read_variable_package(const Package& package);
    void write_variable(Package& variables, const DataVariable& variable) const;
    void make_variables();
    void make_anchors();
    bool check_index(int index, const char* routine) const;


    int32_t m_id;
    Block* m_block;
    int32_t m_posX = 0;
    int32_t m_posY = 0;
    jString m_name;
    // Every anchor, in one allocation: input links, output links, input
    // paths, output paths, each in block order.
    FixedArray<DataAnchor> m_anchors;
    AnchorList m_inputLinks;
    AnchorList m_outputLinks;
    AnchorList m_inputPaths;
    AnchorList m_outputPaths;
    FixedArray<DataVariable> m_vars;
    AppData* m_document;
};
