#include "Material.h"

#include "PackageItem.h"

#include <algorithm>

namespace {

template <typename T>
T* findByName(jVector<T>& list, const jString& name)
{
    auto it = std::find_if(list.begin(), list.end(), [&](const T& entry) { return entry.name == name; });
    return it == list.end() ? nullptr : &*it;
}

} // namespace

int Material::Parameter::componentsOf(const jString& type)
{
    if (type == "float2")
        return 2;
    if (type == "float3")
        return 3;
    if (type == "float4")
        return 4;
    return 1;
}

void Material::Parameter::parseText()
{
    components = componentsOf(type);
    values = {0.0f, 0.0f, 0.0f, components == 4 ? 1.0f : 0.0f};
    const jVector<jString> parts = jSplit(text, ',');
    const size_t used = std::min(parts.size(), size_t(components));
    for (size_t i = 0; i < used; ++i)
        values[i] = isInt() ? float(PackageItem::toInt(parts[i])) : PackageItem::toFloat(parts[i]);
}

std::optional<Material::Texture::Kind> Material::Texture::kindFromText(const jString& text)
{
    if (text == "texture2D" || text == "texture")
        return Kind::Texture2D;
    if (text == "textureCube")
        return Kind::Cube;
    if (text == "texture3D")
        return Kind::Volume;
    return std::nullopt;
}

const Material::Pass* Material::findPass(const jString& name) const
{
    return const_cast<Material*>(this)->findPass(name);
}

Material::Pass* Material::findPass(const jString& name)
{
    return findByName(m_passes, name);
}

Material::State* Material::findState(const jString& name)
{
    return findByName(m_states, name);
}

const Material::State* Material::findState(const jString& name) const
{
    return const_cast<Material*>(this)->findState(name);
}

jVector<jString> Material::getSelectedDefines() const
{
    return MaterialState::programDefines(m_states);
}

Material::Parameter* Material::findParameter(const jString& name)
{
    return findByName(m_parameters, name);
}

const Material::Parameter* Material::findParameter(const jString& name) const
{
    return const_cast<Material*>(this)->findParameter(name);
}

Material::Texture* Material::findTexture(const jString& name)
{
    return findByName(m_textures, name);
}

void Material::assignTextureUnits()
{
    int unit = kFirstTextureUnit;
    for (Texture::Kind kind : {Texture::Kind::Cube, Texture::Kind::Volume, Texture::Kind::Texture2D})
        for (Texture& texture : m_textures)
            if (texture.kind == kind)
                texture.unit = unit++;
}

const char* Material::stageKey(StageKind kind)
{
    switch (kind) {
    case StageKind::Vertex: return "vertex";
    case StageKind::Fragment: return "fragment";
    case StageKind::Control: return "control";
    case StageKind::Evaluate: return "evaluate";
    case StageKind::Geometry: return "geometry";
    }
    return "";
}
