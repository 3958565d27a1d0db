// Render states and options of the document: read from the material
// template, the parent material and the document's own file, in that order.
#include "AppData.h"

#include "Block.h"
#include "BlockManager.h"
#include "DataNode.h"
#include "MaterialReader.h"
#include "MaterialStateReader.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <unordered_map>

namespace {

const Package* findMaterial(const mjl& file)
{
    return file.isOpen() ? MaterialReader::findMaterial(*file.getRoot()) : nullptr;
}

// Options: ints with an integer read, booleans with a boolean read.
int32_t readOptionValue(const PackageItem& item)
{
    return PackageItem::toBool(item.getValue()) ? 1 : item.getInt();
}

} // namespace

const jVector<const char*>& AppData::optionKeys()
{
    static const jVector<const char*> keys = {"render_order", "depth_offset", "mask", "two_sided",
        "post_scattering", "post_fog", "post_taa", "tessellate"};
    return keys;
}

int32_t AppData::getOptionValue(const jString& key) const
{
    if (key == "render_order")
        return m_renderOrder;
    if (key == "depth_offset")
        return m_depthOffset;
    if (key == "mask")
        return m_mask;
    if (key == "two_sided")
        return m_twoSided;
    if (key == "post_scattering")
        return m_postScattering;
    if (key == "post_fog")
        return m_postFog;
    if (key == "post_taa")
        return m_postTaa;
    if (key == "tessellate")
        return m_tessellate;
    return 0;
}

jString AppData::getTemplatePath() const
{
    const DataNode* output = findNodeByUsage(BLOCK_USAGE_PS_END);
    return output ? output->getBlock()->getMat() : jString();
}

bool AppData::build_states()
{
    m_states.clear();
    const jString templatePath = getTemplatePath();
    if (templatePath.empty())
        return false;

    if (!jDir::checkStoredPath("AppData::createStates", BlockManager::kBlockFile, "the template", templatePath))
        return true;
    {
        mjl file;
        file.open(templatePath, false);
        const Package* material = findMaterial(file);
        const MaterialStateReader reader("AppData::createStates");
        for (size_t i = 0; material && i < material->getPackageCount(); ++i) {
            const Package* child = material->getPackage(i);
            MaterialState state;
            if (child->getName() == "state" && reader.readDeclaration(*child, state))
                m_states.push_back(std::move(state));
        }
    }
    if (m_states.empty())
        return true;

    if (!m_parentPath.empty())
        fill_material_state_value(m_parentPath);
    if (!m_path.empty())
        fill_material_state_value(m_path);
    for (MaterialState& state : m_states) {
        state.source = MaterialState::FromDocument;
        state.inherited = true;
    }
    if (!m_parentPath.empty())
        fill_material_state_value_type(m_parentPath, MaterialState::FromParent);
    fill_material_state_value_type(templatePath, MaterialState::FromTemplate);
    return true;
}

template <typename Apply>
bool AppData::walk_state_values(const jString& path, const char* routine, Apply apply)
{
    mjl file;
    if (!file.open(path, false))
        return false;
    const Package* material = findMaterial(file);
    if (!material)
        return false;
    // The first state of each name, as findState would give it, so that a
    // file with many states costs one pass.
    std::unordered_map<jString, MaterialState*> byName;
    byName.reserve(m_states.size());
    for (MaterialState& state : m_states)
        byName.emplace(state.name, &state);
    for (size_t i = 0; i < material->getPackageCount(); ++i) {
        const Package* child = material->getPackage(i);
        if (child->getName() != "state")
            continue;
        const PackageItem* editable = child->findItem("editable");
        if (editable && !editable->getBool())
            continue;
        const jString name(child->getString("name"));
        if (name.empty())
            continue;
        const PackageItem* text = child->findItem("text");
        if (!text) {
            jLog::error("%s: state no value in \"%s\" material", routine, name.c_str());
            continue;
        }
        if (const auto found = byName.find(name); found != byName.end())
            apply(*found->second, static_cast<uint8_t>(text->getInt()));
    }
    return true;
}

bool AppData::fill_material_state_value(const jString& path)
{
    return walk_state_values(path, "AppData::fill_material_state_value",
        [](MaterialState& state, uint8_t value) { state.value = value; });
}

bool AppData::fill_material_state_value_type(const jString& path, int32_t marker)
{
    return walk_state_values(path, "AppData::fill_material_state_value_type",
        [marker](MaterialState& state, uint8_t value) {
            if (value != state.value || !state.inherited)
                state.inherited = false;
            else
                state.source = marker;
        });
}

void AppData::load_operations(const Package* pass)
{
    if (!pass)
        return;
    if (const PackageItem* item = pass->findItem("buffer_mask"))
        setBufferMask(jString(item->getValue()));
    if (const PackageItem* item = pass->findItem("depth_func"))
        setDepthFunc(jString(item->getValue()));
    if (const PackageItem* item = pass->findItem("blend_op"))
        setBlendOp(jString(item->getValue()));
    if (const PackageItem* item = pass->findItem("blend_func")) {
        const jVector<jString> factors = jSplit(item->getValue(), ',');
        if (factors.size() == 2) {
            setBlendSrc(factors[0]);
            setBlendDst(factors[1]);
        } else {
            jLog::error("%s:material blend_func \"%s\" invalid", "AppData::load_operations",
                jString(item->getValue()).c_str());
        }
    }
}

const Package* AppData::find_shader_pass(const Package* material)
{
    for (size_t i = 0; material && i < material->getPackageCount(); ++i) {
        const Package* child = material->getPackage(i);
        if (!child) {
            jLog::error("%s:%s", "AppData::find_shader_pass", "pp");
            return nullptr;
        }
        if (child->getName() == "shader" && child->getString("pass") == "ambient")
            return child;
    }
    return nullptr;
}

Package* AppData::find_shader_pass(Package* material, bool create)
{
    if (!material)
        return nullptr;
    if (const Package* found = find_shader_pass(static_cast<const Package*>(material)))
        return const_cast<Package*>(found);
    if (!create)
        return nullptr;
    Package* pass = material->addPackage("shader");
    pass->addItem("pass", "ambient");
    return pass;
}

void AppData::load_options(const Package* material)
{
    if (!material)
        return;
    int32_t* const ints[] = {&m_renderOrder, &m_depthOffset, &m_mask};
    bool* const bools[] = {&m_twoSided, &m_postScattering, &m_postFog, &m_postTaa, &m_tessellate};
    const jVector<const char*>& keys = optionKeys();
    for (size_t k = 0; k < keys.size(); ++k) {
        const Package* options = material->findPackage("options");
        const PackageItem* item = options ? options->findItem(keys[k]) : nullptr;
        if (!item)
            continue;
        if (k < std::size(ints))
            *ints[k] = item->getInt();
        else
            *bools[k - std::size(ints)] = item->getBool();
    }
}

MaterialState* AppData::findState(const jString& name)
{
    for (MaterialState& state : m_states)
        if (state.name == name)
            return &state;
    return nullptr;
}

const Package* AppData::findStatePackage(const Package* material, const jString& name)
{
    for (size_t i = 0; material && i < material->getPackageCount(); ++i) {
        const Package* child = material->getPackage(i);
        if (child->getName() == "state" && child->getString("name") == name)
            return child;
    }
    return nullptr;
}

bool AppData::compareState(const Package* material, const MaterialState& state, bool& found)
{
    const Package* declaration = findStatePackage(material, state.name);
    const PackageItem* text = declaration ? declaration->findItem("text") : nullptr;
    found = text != nullptr;
    return found && static_cast<uint8_t>(text->getInt()) == state.value;
}

bool AppData::compareOption(const Package* material, const char* key, int32_t value, bool& found)
{
    const Package* options = material ? material->findPackage("options") : nullptr;
    const PackageItem* item = options ? options->findItem(key) : nullptr;
    found = item != nullptr;
    return found && readOptionValue(*item) == value;
}
