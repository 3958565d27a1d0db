#pragma once

#include "Material.h"

#include <map>

// GL textures of the images a material names (through TextureManager) and
// the sampler objects of its wrap, filter and anisotropy settings, kept for
// the life of the renderer. A texture that cannot be loaded is replaced by a
// white one of its kind, so a material with a missing image still draws.
class GlTextureCache {
public:
    GlTextureCache() = default;
    ~GlTextureCache();
    GlTextureCache(const GlTextureCache&) = delete;
    GlTextureCache& operator=(const GlTextureCache&) = delete;

    // Binds the texture and its sampler to the texture's unit.
    void bind(const Material::Texture& texture);
    void clear();

    static uint32_t glTarget(Material::Texture::Kind kind);

private:
    uint32_t texture(const Material::Texture& texture);
    uint32_t sampler(const Material::Texture& texture);
    uint32_t fallback(Material::Texture::Kind kind);

    std::map<std::pair<jString, int>, uint32_t> m_textures;
    std::map<jString, uint32_t> m_samplers;
    std::map<int, uint32_t> m_fallbacks;
};
