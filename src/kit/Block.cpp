#include "Block.h"

#include "ItemText.h"
#include "Package.h"
#include "jLog.h"

namespace {

const char* const kRoutine = "Block::load";

// The texts of item "usage"; any other text leaves the usage unchanged.
bool usage_from_text(const jString& text, int32_t& usage)
{
    static const char* const kTexts[] = {"vs_start", "vs_end", "ps_start", "ps_end"};
    for (int32_t i = 0; i < 4; ++i) {
        if (text == kTexts[i]) {
            usage = i;
            return true;
        }
    }
    return false;
}

} // namespace

Block::Block() = default;
Block::~Block() = default;

bool Block::load(Package* block)
{
    m_usage = BLOCK_USAGE_BLOCK;
    const PackageItem* type = block ? block->findItem("type") : nullptr;
    if (!type) {
        jLog::error("%s: can't find block type", kRoutine);
        return false;
    }
    m_type = itemText(*type);

    for (size_t i = 0; i < block->getItemCount(); ++i) {
        PackageItem* item = block->getItem(i);
        if (item->getName() != "type")
            load_item(item);
    }
    for (size_t i = 0; i < block->getPackageCount(); ++i) {
        if (!load_package(block->getPackage(i)))
            return false;
    }
    return true;
}

void Block::load_item(PackageItem* item)
{
    const std::string_view key = item->getName();
    const jString value = itemText(*item);
    if (key == "data_type")
        m_dataType = value;
    else if (key == "mat")
        m_mat = value;
    else if (key == "bind")
        m_bind = value;
    else if (key == "vertex")
        m_vertex = value;
    else if (key == "control")
        m_control = value;
    else if (key == "evaluate")
        m_evaluate = value;
    else if (key == "geometry")
        m_geometry = value;
    else if (key == "constant")
        m_constant = item->getBool();
    else if (key == "texture2D")
        m_texture2D = item->getBool();
    else if (key == "texture3D")
        m_texture3D = item->getBool();
    else if (key == "textureCube")
        m_textureCube = item->getBool();
    else if (key == "num_limit")
        m_numLimit = item->getInt();
    else if (key == "usage")
        usage_from_text(value, m_usage);
    else if (AnchorList* list = anchor_list(key)) {
        auto anchor = std::make_unique<BlockAnchor>();
        anchor->load(item);
        list->push_back(std::move(anchor));
    } else if (key == "variable") {
        auto variable = std::make_unique<BlockVariable>();
        variable->load(item);
        m_variables.push_back(std::move(variable));
    } else
        // The item's name comes first: that is how this warning has always read.
        jLog::warning("%s: unknown node \"%s\"", jString(key).c_str(), kRoutine);
}

bool Block::load_package(Package* sub)
{
    const std::string_view key = sub->getName();
    if (AnchorList* list = anchor_list(key)) {
        auto anchor = std::make_unique<BlockAnchor>();
        if (!anchor->load(sub)) {
            jLog::error("%s: can't load anchor", kRoutine);
            return false;
        }
        list->push_back(std::move(anchor));
    } else if (key == "variable") {
        auto variable = std::make_unique<BlockVariable>();
        if (!variable->load(sub)) {
            jLog::error("%s: can't load variable", kRoutine);
            return false;
        }
        m_variables.push_back(std::move(variable));
    } else if (LineList* lines = line_list(key)) {
        for (size_t i = 0; i < sub->getItemCount(); ++i)
            lines->push_back(itemText(*sub->getItem(i)));
    } else
        jLog::warning("%s: unknown node \"%s\"", kRoutine, jString(key).c_str());
    return true;
}

Block::AnchorList* Block::anchor_list(std::string_view key)
{
    if (key == "input_path")
        return &m_inputPath;
    if (key == "output_path")
        return &m_outputPath;
    if (key == "input_link")
        return &m_inputLink;
    if (key == "output_link")
        return &m_outputLink;
    return nullptr;
}

Block::LineList* Block::line_list(std::string_view key)
{
    if (key == "include")
        return &m_include;
    if (key == "function_begin")
        return &m_functionBegin;
    if (key == "function_end")
        return &m_functionEnd;
    if (key == "main_begin")
        return &m_mainBegin;
    if (key == "main_end")
        return &m_mainEnd;
    if (key == "function")
        return &m_function;
    return nullptr;
}

bool Block::findAnchorSlot(const jString& name, AnchorSlot& slot) const
{
    const size_t count = m_inputLink.size() + m_outputLink.size() + m_inputPath.size() + m_outputPath.size();
    if (count != m_indexedAnchorCount)
        index_anchors();
    const auto found = m_anchorSlots.find(name);
    if (found == m_anchorSlots.end())
        return false;
    slot = found->second;
    return true;
}

void Block::index_anchors() const
{
    m_anchorSlots.clear();
    m_indexedAnchorCount = 0;
    const std::pair<const AnchorList*, AnchorListKind> lists[] = {
        {&m_inputLink, InputLinks}, {&m_outputLink, OutputLinks}, {&m_inputPath, InputPaths}, {&m_outputPath, OutputPaths}};
    for (const auto& [list, kind] : lists) {
        for (size_t i = 0; i < list->size(); ++i)
            m_anchorSlots.emplace((*list)[i]->getName(), AnchorSlot{kind, static_cast<uint32_t>(i)});
        m_indexedAnchorCount += list->size();
    }
}
