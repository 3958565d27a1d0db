#include "MaterialReader.h"

#include "MaterialStateReader.h"
#include "Package.h"
#include "jDir.h"
#include "jLog.h"

#include <string_view>

namespace {

constexpr const char* kRoutine = "MaterialManager::load";

template <typename T>
void readInt(const Package& package, const char* key, T& into)
{
    if (const PackageItem* item = package.findItem(key))
        into = item->getInt();
}

void readBool(const Package& package, const char* key, bool& into)
{
    if (const PackageItem* item = package.findItem(key))
        into = item->getBool();
}

void readString(const Package& package, const char* key, jString& into)
{
    if (const PackageItem* item = package.findItem(key))
        into = item->getValue();
}

} // namespace

const Package* MaterialReader::findMaterial(const Package& root)
{
    const Package* materials = root.findPackage("materials");
    return materials ? materials->findPackage("material") : nullptr;
}

bool MaterialReader::read(const Package& material, Material& into) const
{
    bool pathsInside = true;
    if (const PackageItem* bind = material.findItem("bind"))
        into.setBind(jString(bind->getValue()));
    if (const PackageItem* name = material.findItem("name"))
        into.setName(jString(name->getValue()));
    for (size_t i = 0; i < material.getPackageCount(); ++i) {
        const Package& child = *material.getPackage(i);
        const std::string_view kind = child.getName();
        if (kind == "state")
            readState(child, into);
        else if (kind == "options")
            readOptions(child, into.getOptions());
        else if (kind == "shader")
            readPass(child, into);
        else if (kind == "parameter")
            readParameter(child, into);
        else if (kind == "texture")
            pathsInside = readTexture(child, into) && pathsInside;
    }
    into.assignTextureUnits();
    return pathsInside;
}

void MaterialReader::readState(const Package& package, Material& into) const
{
    const jString name(package.getString("name"));
    if (name.empty())
        return;
    if (Material::State* existing = into.findState(name)) {
        // An instance states only the value it overrides.
        readInt(package, "text", existing->value);
        readBool(package, "editable", existing->editable);
        return;
    }
    Material::State state;
    if (MaterialStateReader(kRoutine).readDeclaration(package, state))
        into.getStates().push_back(std::move(state));
}

void MaterialReader::readOptions(const Package& options, Material::Options& into)
{
    readInt(options, "render_order", into.renderOrder);
    readInt(options, "depth_offset", into.depthOffset);
    readInt(options, "mask", into.mask);
    readBool(options, "two_sided", into.twoSided);
    readBool(options, "post_scattering", into.postScattering);
    readBool(options, "post_fog", into.postFog);
    readBool(options, "post_taa", into.postTaa);
    readBool(options, "tessellate", into.tessellate);
}

void MaterialReader::readPass(const Package& package, Material& into) const
{
    const PackageItem* passName = package.findItem("pass");
    if (!passName)
        return;
    Material::Pass* pass = into.findPass(jString(passName->getValue()));
    if (!pass) {
        into.getPasses().emplace_back();
        pass = &into.getPasses().back();
        pass->name = passName->getValue();
    }
    for (int kind = 0; kind < Material::kStageCount; ++kind)
        readStage(package, Material::StageKind(kind), pass->stages[size_t(kind)]);
    if (const PackageItem* textures = package.findItem("textures"))
        pass->textures = jSplit(textures->getValue(), ',');
    readRenderSettings(package, pass->settings);
}

void MaterialReader::readStage(const Package& pass, Material::StageKind kind, Material::Stage& into)
{
    const char* key = Material::stageKey(kind);
    if (const Package* lines = pass.findPackage(key)) {
        into = Material::Stage{};
        into.present = true;
        into.lines.reserve(lines->getItemCount());
        for (size_t i = 0; i < lines->getItemCount(); ++i)
            if (const PackageItem* line = lines->getItem(i); line->getName() == "i")
                into.lines.emplace_back(line->getValue());
    } else if (const PackageItem* file = pass.findItem(key)) {
        into = Material::Stage{};
        into.present = true;
        into.file = file->getValue();
    }
}

void MaterialReader::readRenderSettings(const Package& pass, Material::RenderSettings& into)
{
    readString(pass, "buffer_mask", into.bufferMask);
    readString(pass, "depth_func", into.depthFunc);
    readString(pass, "blend_op", into.blendOp);
    if (const PackageItem* blend = pass.findItem("blend_func")) {
        const jVector<jString> factors = MaterialStateReader::splitList(blend->getValue());
        into.blendSrc = factors.empty() ? jString("none") : factors[0];
        into.blendDst = factors.size() > 1 ? factors[1] : jString("none");
    }
}

void MaterialReader::readParameter(const Package& package, Material& into)
{
    const jString name(package.getString("name"));
    if (name.empty())
        return;
    Material::Parameter* parameter = into.findParameter(name);
    if (!parameter) {
        into.getParameters().emplace_back();
        parameter = &into.getParameters().back();
        parameter->name = name;
        parameter->type = "float";
    }
    readString(package, "type", parameter->type);
    readString(package, "text", parameter->text);
    parameter->parseText();
}

bool MaterialReader::readTexture(const Package& package, Material& into) const
{
    const jString name(package.getString("name"));
    if (name.empty())
        return true;
    Material::Texture* texture = into.findTexture(name);
    if (!texture) {
        const jString typeText(package.getString("type"));
        const std::optional<Material::Texture::Kind> kind = Material::Texture::kindFromText(typeText);
        if (!kind) {
            jLog::error("%s: unknown texture type \"%s\" of \"%s\" in \"%s\"", kRoutine, typeText.c_str(), name.c_str(),
                m_path.c_str());
            return true;
        }
        into.getTextures().emplace_back();
        texture = &into.getTextures().back();
        texture->name = name;
        texture->kind = *kind;
    }
    readString(package, "text", texture->path);
    if (!jDir::checkStoredPath(kRoutine, m_path, "the texture", texture->path))
        return false;
    readInt(package, "sampler", texture->sampler);
    readString(package, "wrap", texture->wrap);
    readString(package, "filter", texture->filter);
    readInt(package, "anisotropy", texture->anisotropy);
    return true;
}

void MaterialReader::resolveAmbientReferences(Material& material) const
{
    const Material::Pass* ambient = material.findPass("ambient");
    for (Material::Pass& pass : material.getPasses()) {
        if (&pass == ambient)
            continue;
        for (int kind = 0; kind < Material::kStageCount; ++kind) {
            Material::Stage& stage = pass.stages[size_t(kind)];
            if (!stage.present || stage.file != kAmbientReference)
                continue;
            const Material::Stage* source = ambient ? &ambient->stages[size_t(kind)] : nullptr;
            if (source && source->present) {
                stage = *source;
                continue;
            }
            jLog::warning("%s: \"%s\" pass \"%s\" refers to the ambient %s stage, which it has not", kRoutine,
                m_path.c_str(), pass.name.c_str(), Material::stageKey(Material::StageKind(kind)));
            stage = Material::Stage{};
        }
    }
}
