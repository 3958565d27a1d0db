#include "MaterialReader.h"

#include "Package.h"
#include "jLog.h"

#include <string_view>

namespace {

constexpr const char* kRoutine = "MaterialManager::load";

// Splits at commas keeping empty entries: ",A" is {"", "A"}, so a toggle's
// define list keeps "no define" for value 0.
jVector<jString> splitKeepingEmpty(std::string_view text)
{
    jVector<jString> parts;
    size_t start = 0;
    for (;;) {
        const size_t comma = text.find(',', start);
        parts.emplace_back(text.substr(start, comma == std::string_view::npos ? comma : comma - start));
        if (comma == std::string_view::npos)
            return parts;
        start = comma + 1;
    }
}

void fillItemsAndDefines(const Package& package, Material::State& state)
{
    const PackageItem* defines = package.findItem("defines");
    switch (state.type) {
    case Material::State::Toggle:
        state.defines = defines ? splitKeepingEmpty(defines->getValue()) : jVector<jString>(2);
        break;
    case Material::State::Switch:
        state.items = splitKeepingEmpty(package.getString("items"));
        state.defines = defines ? splitKeepingEmpty(defines->getValue()) : jVector<jString>(state.items.size());
        break;
    case Material::State::Int:
        state.defines.emplace_back(defines ? defines->getValue() : std::string_view());
        break;
    }
}

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

void MaterialReader::read(const Package& material, Material& into) const
{
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
            readTexture(child, into);
    }
    into.assignTextureUnits();
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
    state.name = name;
    if (const PackageItem* type = package.findItem("type")) {
        const jString typeText(type->getValue());
        state.type = Material::State::typeFromText(typeText);
        if (state.type == Material::State::Unknown) {
            jLog::error("%s: unknown state type \"%s\" in \"%s\" material", kRoutine, typeText.c_str(), name.c_str());
            return;
        }
    }
    const PackageItem* text = package.findItem("text");
    if (!text) {
        jLog::error("%s: state no value in \"%s\" material", kRoutine, name.c_str());
        return;
    }
    state.value = uint8_t(text->getInt());
    fillItemsAndDefines(package, state);
    readBool(package, "editable", state.editable);
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
        const jVector<jString> factors = splitKeepingEmpty(blend->getValue());
        into.blendSrc = factors[0];
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

void MaterialReader::readTexture(const Package& package, Material& into) const
{
    const jString name(package.getString("name"));
    if (name.empty())
        return;
    Material::Texture* texture = into.findTexture(name);
    if (!texture) {
        const jString typeText(package.getString("type"));
        const std::optional<Material::Texture::Kind> kind = Material::Texture::kindFromText(typeText);
        if (!kind) {
            jLog::error("%s: unknown texture type \"%s\" of \"%s\" in \"%s\"", kRoutine, typeText.c_str(), name.c_str(),
                m_path.c_str());
            return;
        }
        into.getTextures().emplace_back();
        texture = &into.getTextures().back();
        texture->name = name;
        texture->kind = *kind;
    }
    readString(package, "text", texture->path);
    readInt(package, "sampler", texture->sampler);
    readString(package, "wrap", texture->wrap);
    readString(package, "filter", texture->filter);
    readInt(package, "anisotropy", texture->anisotropy);
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
