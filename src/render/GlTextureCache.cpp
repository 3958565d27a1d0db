#include "GlTextureCache.h"

#include "TextureManager.h"
#include "jLog.h"

#include <epoxy/gl.h>

namespace {

bool kindMatches(const jImage& image, Material::Texture::Kind kind)
{
    switch (kind) {
    case Material::Texture::Kind::Cube: return image.getType() == jImage::Type::Cube;
    case Material::Texture::Kind::Volume: return image.getType() == jImage::Type::Volume;
    case Material::Texture::Kind::Texture2D: return image.getType() == jImage::Type::Texture2D;
    }
    return false;
}

void uploadLevel(GLenum target, int face, int level, GLenum internalFormat, const jImage& image)
{
    const void* pixels = image.getPixels(face, level);
    const int w = image.getLevelWidth(level), h = image.getLevelHeight(level), d = image.getLevelDepth(level);
    if (target == GL_TEXTURE_3D)
        glTexImage3D(target, level, GLint(internalFormat), w, h, d, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    else if (target == GL_TEXTURE_CUBE_MAP)
        glTexImage2D(GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face), level, GLint(internalFormat), w, h, 0, GL_RGBA,
            GL_UNSIGNED_BYTE, pixels);
    else
        glTexImage2D(target, level, GLint(internalFormat), w, h, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

GLuint upload(const jImage& image, GLenum target)
{
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(target, id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    const GLenum internalFormat = image.isSrgb() ? GL_SRGB8_ALPHA8 : GL_RGBA8;
    for (int face = 0; face < image.getFaces(); ++face)
        for (int level = 0; level < image.getMipLevels(); ++level)
            uploadLevel(target, face, level, internalFormat, image);
    // Only the stored levels: the texture is complete with any filter.
    glTexParameteri(target, GL_TEXTURE_MAX_LEVEL, image.getMipLevels() - 1);
    return id;
}

GLint wrapMode(const jString& wrap)
{
    if (wrap == "clamp")
        return GL_CLAMP_TO_EDGE;
    if (wrap == "mirror")
        return GL_MIRRORED_REPEAT;
    if (wrap == "border")
        return GL_CLAMP_TO_BORDER;
    return GL_REPEAT;
}

void filterModes(const jString& filter, GLint& minFilter, GLint& magFilter)
{
    magFilter = filter == "point" ? GL_NEAREST : GL_LINEAR;
    if (filter == "point")
        minFilter = GL_NEAREST_MIPMAP_NEAREST;
    else if (filter == "bilinear")
        minFilter = GL_LINEAR_MIPMAP_NEAREST;
    else
        minFilter = GL_LINEAR_MIPMAP_LINEAR;
}

} // namespace

GlTextureCache::~GlTextureCache()
{
    clear();
}

void GlTextureCache::clear()
{
    for (auto& [key, id] : m_textures)
        glDeleteTextures(1, &id);
    for (auto& [kind, id] : m_fallbacks)
        glDeleteTextures(1, &id);
    for (auto& [key, id] : m_samplers)
        glDeleteSamplers(1, &id);
    m_textures.clear();
    m_fallbacks.clear();
    m_samplers.clear();
}

uint32_t GlTextureCache::glTarget(Material::Texture::Kind kind)
{
    switch (kind) {
    case Material::Texture::Kind::Cube: return GL_TEXTURE_CUBE_MAP;
    case Material::Texture::Kind::Volume: return GL_TEXTURE_3D;
    case Material::Texture::Kind::Texture2D: return GL_TEXTURE_2D;
    }
    return GL_TEXTURE_2D;
}

uint32_t GlTextureCache::fallback(Material::Texture::Kind kind)
{
    auto it = m_fallbacks.find(int(kind));
    if (it != m_fallbacks.end())
        return it->second;
    jImage white;
    const bool cube = kind == Material::Texture::Kind::Cube;
    white.create(1, 1, 1, cube ? jImage::CubeFaces : 1, 1);
    for (int face = 0; face < white.getFaces(); ++face)
        std::fill_n(white.getPixels(face, 0), 4, uint8_t(255));
    return m_fallbacks[int(kind)] = upload(white, glTarget(kind));
}

uint32_t GlTextureCache::texture(const Material::Texture& texture)
{
    const auto key = std::make_pair(TextureManager::makeKey(texture.path), int(texture.kind));
    if (auto it = m_textures.find(key); it != m_textures.end())
        return it->second;
    TextureManager::ImagePtr image = TextureManager::get().load(texture.path);
    if (!image)
        return fallback(texture.kind);
    if (!kindMatches(*image, texture.kind)) {
        jLog::error("Render::bindTexture: \"%s\" of texture \"%s\" is not of the texture's kind", texture.path.c_str(),
            texture.name.c_str());
        return fallback(texture.kind);
    }
    return m_textures[key] = upload(*image, glTarget(texture.kind));
}

uint32_t GlTextureCache::sampler(const Material::Texture& texture)
{
    const jString key = jFormat("%s/%s/%d", texture.wrap.c_str(), texture.filter.c_str(), texture.anisotropy);
    if (auto it = m_samplers.find(key); it != m_samplers.end())
        return it->second;
    GLuint id = 0;
    glGenSamplers(1, &id);
    const GLint wrap = wrapMode(texture.wrap);
    for (GLenum axis : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R})
        glSamplerParameteri(id, axis, wrap);
    GLint minFilter = 0, magFilter = 0;
    filterModes(texture.filter, minFilter, magFilter);
    glSamplerParameteri(id, GL_TEXTURE_MIN_FILTER, minFilter);
    glSamplerParameteri(id, GL_TEXTURE_MAG_FILTER, magFilter);
    if (texture.anisotropy > 1 && epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic"))
        glSamplerParameterf(id, GL_TEXTURE_MAX_ANISOTROPY_EXT, float(texture.anisotropy));
    return m_samplers[key] = id;
}

void GlTextureCache::bind(const Material::Texture& material)
{
    glActiveTexture(GLenum(GL_TEXTURE0 + material.unit));
    glBindTexture(glTarget(material.kind), texture(material));
    glBindSampler(GLuint(material.unit), sampler(material));
}
