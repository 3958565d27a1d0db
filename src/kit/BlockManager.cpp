#include "BlockManager.h"

#include "ItemText.h"
#include "Package.h"
#include "jLog.h"
#include "mjl.h"

#include <memory>

namespace {

BlockManager* g_current = nullptr;

void append_lines(const Package* root, const char* name, jVector<jString>& lines)
{
    const Package* list = root->findPackage(name);
    if (!list)
        return;
    for (size_t i = 0; i < list->getItemCount(); ++i)
        lines.push_back(itemText(*list->getItem(i)));
}

} // namespace

BlockManager::~BlockManager()
{
    if (g_current == this)
        g_current = nullptr;
    for (Block* block : *this)
        delete block;
}

BlockManager* BlockManager::get()
{
    return g_current;
}

void BlockManager::setCurrent(BlockManager* manager)
{
    g_current = manager;
}

bool BlockManager::init()
{
    if (loadBlocks(kBlockFile))
        return true;
    jLog::error("%s: can't load blocks", "BlockManager::init");
    return false;
}

bool BlockManager::loadBlocks(const jString& path)
{
    mjl file;
    if (!file.open(path, false))
        return false;
    const Package* root = file.getRoot();
    append_lines(root, "code_include", m_codeInclude);
    append_lines(root, "code_begin", m_codeBegin);
    append_lines(root, "code_end", m_codeEnd);

    const Package* blocks = root->findPackage("blocks");
    if (!blocks || blocks->getInt("version") == 0)
        return false;
    for (size_t i = 0; i < blocks->getPackageCount(); ++i) {
        Package* package = blocks->getPackage(i);
        if (package->getName() != "block") {
            // Names the file, not the package: the message has always read so.
            jLog::error("Schemer::loadBlocks(): unknown node \"%s\"", path.c_str());
            continue;
        }
        if (!load_block(package, path))
            return false;
    }
    return true;
}

bool BlockManager::load_block(Package* package, const jString& path)
{
    auto block = std::make_unique<Block>();
    if (!block->load(package)) {
        jLog::error("Schemer::loadBlocks(): can't load block from \"%s\" file", path.c_str());
        return false;
    }
    if (!addBlock(block.get())) {
        jLog::error("Schemer::loadBlocks(): can't add block");
        return false;
    }
    block.release();
    return true;
}

bool BlockManager::addBlock(Block* block)
{
    if (!block)
        return false;
    sync_index();
    if (!m_byType.emplace(block->getType(), block).second) {
        jLog::error("Schemer::addBlock(): \"%s\" block is already defined", block->getType().c_str());
        return false;
    }
    // The registry grows as the engine's vectors do: room for five, then
    // twice the room each time it is full.
    if (size() == capacity())
        reserve(capacity() == 0 ? 5 : capacity() * 2);
    push_back(block);
    m_indexed = size();
    return true;
}

Block* BlockManager::getBlock(const jString& type) const
{
    sync_index();
    const auto found = m_byType.find(type);
    return found == m_byType.end() ? nullptr : found->second;
}

void BlockManager::sync_index() const
{
    if (m_indexed == size())
        return;
    m_byType.clear();
    for (Block* block : *this)
        if (block)
            m_byType.emplace(block->getType(), block);
    m_indexed = size();
}
