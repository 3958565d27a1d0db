#pragma once

#include "Block.h"
#include "jString.h"

#include <unordered_map>

// The registry of blocks: every Block of the running editor in load order
// (the vector's elements, owned and deleted by the manager) and the global
// code lines of the block configuration. One manager is current at a time;
// the document creates it and publishes it (see docs/block-library.md).
class BlockManager : public jVector<Block*> {
public:
    // The fixed block configuration, relative to the data root.
    static constexpr const char* kBlockFile = "data/core/materials/generate/block.cfg";

    BlockManager() = default;
    ~BlockManager();
    BlockManager(const BlockManager&) = delete;
    BlockManager& operator=(const BlockManager&) = delete;

    // Loads kBlockFile; on failure logs "BlockManager::init: can't load blocks".
    bool init();
    // Reads the code lists and the blocks of a configuration file. True only
    // when every block was read and added; blocks added before a failure stay.
    bool loadBlocks(const jString& path);
    // Appends and takes ownership of the block unless its type is already
    // registered; a refused block stays the caller's.
    bool addBlock(Block* block);
    // The first block, in load order, of exactly that type (case-sensitive),
    // or null.
    Block* getBlock(const jString& type) const;

    size_t getBlockCount() const { return size(); }
    Block* getBlockAt(size_t index) const { return index < size() ? (*this)[index] : nullptr; }

    const jVector<jString>& getCodeInclude() const { return m_codeInclude; }
    const jVector<jString>& getCodeBegin() const { return m_codeBegin; }
    const jVector<jString>& getCodeEnd() const { return m_codeEnd; }

    // The process-wide current manager (null when none is published).
    static BlockManager* get();
    // Publishes a manager; a manager unpublishes itself when destroyed.
    static void setCurrent(BlockManager* manager);

private:
    bool load_block(Package* package, const jString& path);
    // Brings the type index up to date with the vector: blocks put into it
    // through the vector's own interface are indexed on the next lookup,
    // the first of a type winning as in a scan in load order.
    void sync_index() const;

    // Type -> first block of that type, so that creating nodes does not scan
    // the library; m_indexed is the number of elements it covers.
    mutable std::unordered_map<jString, Block*> m_byType;
    mutable size_t m_indexed = 0;
    jVector<jString> m_codeInclude;
    jVector<jString> m_codeBegin;
    jVector<jString> m_codeEnd;
};
