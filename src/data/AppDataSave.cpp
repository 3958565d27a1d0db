// The compiled material: the engine material with its generated shaders,
// written together with the editor packages; for an instance only what it
// overrides of its parent.
#include "AppData.h"

#include "Block.h"
#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "DataSampler.h"
#include "DataVariable.h"
#include "MaterialReader.h"
#include "XMatComplier.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"
#include "mjl.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_map>

namespace {

const char* const kSave = "AppData::save";

// The stages a pass may take from the ambient pass besides vertex and fragment.
constexpr std::array<const char*, 3> kOptionalStages = {"control", "evaluate", "geometry"};

// Passes that reuse the ambient pass's programs through "@ambient".
bool reusesAmbientPrograms(const jString& pass)
{
    static const char* const kPasses[] = {"outline", "pre_depth", "light_world", "light_omni", "light_point",
        "light_proj", "shadow", "refraction", "deferred", "auxiliary"};
    return std::any_of(std::begin(kPasses), std::end(kPasses), [&](const char* p) { return pass == p; });
}

bool hasEntry(const Package& pass, const char* name)
{
    return pass.findItem(name) || pass.findPackage(name);
}

void removeEntries(Package& pass, const char* name)
{
    pass.removeItems(name);
    pass.removePackages(name);
}

bool isConstantNode(const DataNode& node)
{
    return node.getBlock()->getType().find("Constant") != jString::npos;
}

bool isSupportedOverrideType(const jString& type)
{
    return type == "float" || type == "int";
}

// Sub values of a parameter are written for the plain value types.
bool isSupportedSubType(const jString& type)
{
    return type.empty() || type == "float" || type == "int" || type == "slider" || type == "color"
        || type == "tag" || type == "string";
}

struct TextureLists {
    jVector<const DataVariable*> t2;
    jVector<const DataVariable*> t3;
    jVector<const DataVariable*> tc;
};

TextureLists gatherTextures(const AppData::NodeList& nodes)
{
    TextureLists lists;
    for (const auto& node : nodes)
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            const DataVariable* variable = node->getVariable(i);
            const jString& type = variable->getDefinition()->getType();
            if (type == "texture2D")
                lists.t2.push_back(variable);
            else if (type == "texture3D")
                lists.t3.push_back(variable);
            else if (type == "textureCube")
                lists.tc.push_back(variable);
        }
    return lists;
}

void appendNames(jVector<jString>& names, const jVector<const DataVariable*>& variables)
{
    for (const DataVariable* variable : variables)
        names.push_back(variable->getParameterName());
}

// The template's "textures" text followed by the texture parameter names,
// 2D, then 3D, then cube.
jString texturesText(std::string_view templateText, const TextureLists& textures)
{
    jVector<jString> parts;
    if (!templateText.empty())
        parts.emplace_back(templateText);
    appendNames(parts, textures.t2);
    appendNames(parts, textures.t3);
    appendNames(parts, textures.tc);
    return jJoin(parts, ",");
}

void addLines(Package& pass, const char* stage, const jVector<jString>& lines)
{
    Package* program = pass.addPackage(stage);
    for (const jString& line : lines)
        program->addItem("i", line);
}

// The variable values recorded in the parent's blueprint, by parameter name
// (variable name followed by node id).
std::unordered_map<jString, jString> recordedValues(const Package& parentRoot)
{
    std::unordered_map<jString, jString> values;
    const Package* blueprint = parentRoot.findPackage("blueprint");
    for (size_t n = 0; blueprint && n < blueprint->getPackageCount(); ++n) {
        const Package& node = *blueprint->getPackage(n);
        const Package* variables = node.getName() == "node" ? node.findPackage("variable") : nullptr;
        if (!variables)
            continue;
        const jString id = std::to_string(node.getInt("id"));
        for (size_t i = 0; i < variables->getItemCount(); ++i) {
            const PackageItem& item = *variables->getItem(i);
            if (item.getName() == "i")
                values.emplace(jString(item.getValue(0)) + id, item.getValue(1));
        }
        for (size_t i = 0; i < variables->getPackageCount(); ++i) {
            const Package& record = *variables->getPackage(i);
            if (record.getName() == "i")
                values.emplace(jString(record.getString("name")) + id, record.getString("value"));
        }
    }
    return values;
}

// The value a variable has in the parent: its record, or its block default
// when the parent has none.
const jString& parentValue(const std::unordered_map<jString, jString>& recorded, const DataVariable& variable)
{
    const auto found = recorded.find(variable.getParameterName());
    return found != recorded.end() ? found->second : variable.getDefinition()->getDefault();
}

// A "sub" package (name, text) per sub value of a plain value type.
void writeSubValues(Package& record, const DataVariable& variable)
{
    for (size_t s = 0; s < variable.getSubValueCount(); ++s) {
        const DataVariable::Value& value = *variable.getSubValue(s);
        const jString& type = value.getDefinition()->getType();
        if (!isSupportedSubType(type)) {
            jLog::error("%s: sub variable type not support \"%s\"", kSave, type.c_str());
            continue;
        }
        Package& sub = *record.addPackage("sub");
        sub.addItem("name", value.getName());
        sub.addItem("text", value.getValue());
    }
}

} // namespace

bool AppData::save(const jString& path)
{
    // Saving may build the states; that is not an edit.
    EditHistory::Pause pause(m_history);
    if (m_nodes.empty()) {
        jLog::warning("%s:current scene is empty, save is ignored", kSave);
        return false;
    }
    Package root;
    if (!fillMaterial(root, path))
        return false;
    m_path = path;
    const jString target = jDir::resolveWrite(path);
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(target).parent_path(), ignored);
    if (!mjl::writeFileAtomic(target, mjl::toText(root)))
        return false;
    m_history.markSaved();
    return true;
}

bool AppData::writeRecovery(Package& root)
{
    EditHistory::Pause pause(m_history);
    if (isInstance())
        return fill_instance(root, jKit::getBaseName(m_path));
    Package& material = *root.addPackage("materials")->addPackage("material");
    write_states(material);
    write_options(material);
    Package& pass = *material.addPackage("shader");
    pass.addItem("pass", "ambient");
    write_render_settings(pass);
    write_editor(root);
    write_blueprint(root);
    return true;
}

bool AppData::fillMaterial(Package& root, const jString& path)
{
    // A document whose states were never built (loaded and saved without
    // the editor) still carries the values of its file and its parent.
    if (m_states.empty())
        createStates();
    const jString name = jKit::getBaseName(path);
    return isInstance() ? fill_instance(root, name) : fill_plain(root, name);
}

bool AppData::fill_plain(Package& root, const jString& name)
{
    const DataNode* output = findNodeByUsage(BLOCK_USAGE_PS_END);
    mjl templateFile;
    if (output && !jDir::checkStoredPath(kSave, BlockManager::kBlockFile, "the template", output->getBlock()->getMat()))
        return false;
    if (output && !templateFile.open(output->getBlock()->getMat(), false))
        jLog::error("%s:mat gen \"%s\" can not be open", kSave, output->getBlock()->getMat().c_str());

    if (templateFile.isOpen()) {
        const Package* templateMaterials = templateFile.getRoot()->findPackage("materials");
        if (!templateMaterials || !MaterialReader::findMaterial(*templateFile.getRoot())) {
            jLog::error("%s:%s", kSave, "pkg_mat_ret");
            return false;
        }
        Package* materials = root.addPackageCopy(*templateMaterials);
        Package& material = *materials->findPackage("material");
        if (!output->getBlock()->getBind().empty())
            material.setString("bind", output->getBlock()->getBind());
        if (isUseFileNameAsMaterialName())
            material.setString("name", name);

        const TextureLists textures = gatherTextures(m_nodes);
        bool ambientStages[3] = {false, false, false};
        for (size_t i = 0; i < material.getPackageCount(); ++i) {
            Package& pass = *material.getPackage(i);
            const PackageItem* passItem = pass.getName() == "shader" ? pass.findItem("pass") : nullptr;
            if (!passItem)
                continue;
            const jString passName(passItem->getValue());
            if (passName != "wireframe") {
                const jString text = texturesText(pass.getString("textures"), textures);
                if (!text.empty() || pass.hasItem("textures"))
                    pass.setString("textures", text);
            }
            if (reusesAmbientPrograms(passName)) {
                for (const char* stage : {"vertex", "fragment"})
                    if (!hasEntry(pass, stage))
                        pass.addItem(stage, "@ambient");
                for (size_t s = 0; s < kOptionalStages.size(); ++s)
                    if (ambientStages[s] && !hasEntry(pass, kOptionalStages[s]))
                        pass.addItem(kOptionalStages[s], "@ambient");
            } else if (passName == "wireframe") {
                pass.addItem("vertex", "@ambient");
            } else if (passName == "ambient") {
                if (!fill_ambient_pass(pass, ambientStages))
                    return false;
            }
        }
        write_states(material);
        write_options(material);
        write_parameters(material);
    }
    write_editor(root);
    write_blueprint(root);
    return true;
}

bool AppData::fill_ambient_pass(Package& pass, bool stages[3])
{
    const DataNode* start = findNodeByUsage(BLOCK_USAGE_PS_START);
    if (!start) {
        jLog::warning("%s:PS Start node not found, ignore compile", kSave);
    } else {
        jVector<jString> vertexLines;
        jVector<jString> pixelLines;
        XMatComplier vertexGenerator(false, this);
        const bool hasVertexProgram = vertexGenerator.generate_vs(vertexLines);
        if (vertexGenerator.wasRefused())
            return false;
        XMatComplier pixelGenerator(false, this);
        pixelGenerator.generate_ps(pixelLines);
        if (pixelGenerator.wasRefused())
            return false;

        const Block& block = *start->getBlock();
        removeEntries(pass, "vertex");
        removeEntries(pass, "fragment");
        // No vertex stage in the graph (or nothing generated for it): the
        // start block names the vertex shader to use.
        if (!hasVertexProgram || vertexLines.empty())
            pass.addItem("vertex", block.getVertex());
        else
            addLines(pass, "vertex", vertexLines);
        if (!pixelLines.empty())
            addLines(pass, "fragment", pixelLines);
        const jString* stageShaders[3] = {&block.getControl(), &block.getEvaluate(), &block.getGeometry()};
        for (size_t s = 0; s < kOptionalStages.size(); ++s)
            if (!stageShaders[s]->empty()) {
                pass.setString(kOptionalStages[s], *stageShaders[s]);
                stages[s] = true;
            }
    }
    write_render_settings(pass);
    return true;
}

void AppData::write_render_settings(Package& pass) const
{
    if (getBufferMask() != "BUFFER_ALL")
        pass.setString("buffer_mask", getBufferMask());
    if (getDepthFunc() != "DEPTH_LEQUAL")
        pass.setString("depth_func", getDepthFunc());
    if (getBlendOp() != "add")
        pass.setString("blend_op", getBlendOp());
    if (getBlendSrc() != "none" || getBlendDst() != "none")
        pass.setString("blend_func", getBlendSrc() + "," + getBlendDst());
}

void AppData::write_states(Package& material) const
{
    for (const MaterialState& state : m_states) {
        Package* declaration = const_cast<Package*>(findStatePackage(&material, state.name));
        if (!declaration) {
            declaration = material.addPackage("state");
            declaration->addItem("name", state.name);
            declaration->addItem("type", MaterialState::typeToText(state.type));
        }
        declaration->setString("text", std::to_string(state.value));
    }
}

void AppData::write_options(Package& material) const
{
    Package* options = material.findPackage("options");
    if (!options)
        options = material.addPackage("options");
    const jVector<const char*>& keys = optionKeys();
    for (size_t k = 0; k < keys.size(); ++k) {
        const int32_t value = getOptionValue(keys[k]);
        // The first three options are numbers, the rest switches.
        options->setString(keys[k], k < 3 ? std::to_string(value) : (value ? "true" : "false"));
    }
}

void AppData::write_parameters(Package& material) const
{
    for (const auto& node : m_nodes) {
        const bool constant = isConstantNode(*node);
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            const DataVariable& variable = *node->getVariable(i);
            const bool texture = variable.isTexture();
            if (!constant && !texture)
                continue;
            Package& record = *material.addPackage(texture ? "texture" : "parameter");
            record.addItem("name", variable.getParameterName());
            record.addItem("type", texture ? variable.getDefinition()->getType() : node->getBlock()->getDataType());
            record.addItem("text", variable.getValue());
            if (texture && variable.getSampler()) {
                const DataSampler& sampler = *variable.getSampler();
                record.addItem("sampler", std::to_string(sampler.getIndex()));
                record.addItem("wrap", sampler.getWrap());
                record.addItem("filter", sampler.getFilter());
                record.addItem("anisotropy", std::to_string(sampler.getAnisotropy()));
            }
            writeSubValues(record, variable);
        }
    }
}

bool AppData::fill_instance(Package& root, const jString& name)
{
    Package& material = *root.addPackage("materials")->addPackage("material");
    if (isForceName()) {
        material.addItem("name", name);
        material.addItem("force_name", "true");
    }
    material.addItem("parent", m_parentPath);
    material.addItem("parent_path", m_parentPath);

    mjl parentFile;
    if (!parentFile.open(m_parentPath, false)) {
        jLog::error("%s:parent mat \"%s\" not found", kSave, m_parentPath.c_str());
        return false;
    }
    const Package* parent = MaterialReader::findMaterial(*parentFile.getRoot());
    if (!parent) {
        jLog::error("%s:%s", kSave, "pkg_mat_parent");
        return false;
    }

    // Render settings that differ from the parent's ambient pass.
    const Package* parentPass = find_shader_pass(parent);
    auto parentSetting = [&](const char* key, const char* fallback) {
        const PackageItem* item = parentPass ? parentPass->findItem(key) : nullptr;
        return item ? item->getValue() : std::string_view(fallback);
    };
    const jString blend = getBlendSrc() + "," + getBlendDst();
    const std::pair<const char*, jString> settings[] = {
        {"buffer_mask", getBufferMask()},
        {"depth_func", getDepthFunc()},
        {"blend_op", getBlendOp()},
        {"blend_func", blend},
    };
    const char* const defaults[] = {"BUFFER_ALL", "DEPTH_LEQUAL", "add", "none,none"};
    for (size_t i = 0; i < std::size(settings); ++i) {
        jString inherited(parentSetting(settings[i].first, defaults[i]));
        if (i == 3)
            inherited = jJoin(jSplit(inherited, ','), ",");
        if (settings[i].second != inherited)
            find_shader_pass(&material, true)->addItem(settings[i].first, settings[i].second);
    }

    // States and options that differ from the parent.
    for (const MaterialState& state : m_states) {
        bool found = false;
        if (compareState(parent, state, found))
            continue;
        Package& record = *material.addPackage("state");
        record.addItem("name", state.name);
        record.addItem("text", std::to_string(state.value));
    }
    Package* options = nullptr;
    const jVector<const char*>& keys = optionKeys();
    for (size_t k = 0; k < keys.size(); ++k) {
        const int32_t value = getOptionValue(keys[k]);
        bool found = false;
        const bool equal = compareOption(parent, keys[k], value, found);
        if (found ? equal : value == 0)
            continue;
        if (!options)
            options = material.addPackage("options");
        options->addItem(keys[k], k < 3 ? std::to_string(value) : (value ? "true" : "false"));
    }

    // Constant overrides, and the textures whose path differs from the parent's.
    const std::unordered_map<jString, jString> recorded = recordedValues(*parentFile.getRoot());
    for (const auto& node : m_nodes) {
        if (isConstantNode(*node)) {
            if (node->getVariableCount() == 0)
                jLog::error("%s:Data node has no variable", kSave);
            for (size_t i = 0; i < node->getVariableCount(); ++i) {
                const DataVariable& variable = *node->getVariable(i);
                const jString& type = variable.getDefinition()->getType();
                if (!isSupportedOverrideType(type)) {
                    jLog::error("%s:DataVariable type \"%s\" is not supported", kSave, type.c_str());
                    continue;
                }
                Package& record = *material.addPackage("parameter");
                record.addItem("name", variable.getParameterName());
                record.addItem("text", variable.getValue());
                writeSubValues(record, variable);
            }
            continue;
        }
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            const DataVariable& variable = *node->getVariable(i);
            if (!variable.isTexture() || variable.getValue() == parentValue(recorded, variable))
                continue;
            Package& record = *material.addPackage("texture");
            record.addItem("name", variable.getParameterName());
            record.addItem("text", variable.getValue());
        }
    }
    return true;
}
