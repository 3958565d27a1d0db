#include "Render.h"

#include "GlProgram.h"
#include "MaterialManager.h"
#include "MaterialRenderState.h"
#include "MeshBuffer.h"
#include "OrbitCamera.h"
#include "ProgramBuilder.h"
#include "TextureManager.h"
#include "jImage.h"
#include "jKit.h"
#include "jLog.h"
#include "mjl.h"

#include <epoxy/gl.h>
#include <stb_image_write.h>

#include <algorithm>
#include <cstring>

using math3d::Mat4;
using math3d::Vec3;

namespace {

// The host uniforms of the shader library (data/core/shaders/globals.h).
namespace uniform {
constexpr const char* kWorld = "g_world";
constexpr const char* kViewProjection = "g_view_proj";
constexpr const char* kCameraPosition = "g_camera_position";
constexpr const char* kTime = "g_time";
constexpr const char* kEditorTime = "g_editor_time";
constexpr const char* kScreenSize = "g_screen_size";
constexpr const char* kEditorViewport = "g_editor_viewport";
constexpr const char* kLightDirection = "g_light_direction";
constexpr const char* kLightColour = "g_light_color";
constexpr const char* kEnvironment = "g_environment_sh";
constexpr const char* kExposure = "g_exposure";
} // namespace uniform

// The texture groups of the generated programs, by texture kind.
constexpr std::pair<Material::Texture::Kind, const char*> kTextureGroups[] = {
    {Material::Texture::Kind::Texture2D, "BASE_2D"},
    {Material::Texture::Kind::Cube, "BASE_CUBE"},
    {Material::Texture::Kind::Volume, "BASE_3D"},
};

constexpr int kSphereSegments = 64;
constexpr int kSphereRings = 32;

Mat4 translateScale(const Vec3& at, float scale)
{
    Mat4 m;
    m.at(0, 0) = m.at(1, 1) = m.at(2, 2) = scale;
    m.at(0, 3) = at.x;
    m.at(1, 3) = at.y;
    m.at(2, 3) = at.z;
    return m;
}

jString programKey(const Material& material, bool editor)
{
    return jFormat("%s|%llu|%d|", jKit::normalizePath(material.getPath()).c_str(),
               static_cast<unsigned long long>(material.getSerial()), int(editor))
        + jJoin(material.getSelectedDefines(), ",");
}

bool startsWith(const jString& text, const jString& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

const jString& keyOf(const jString& key)
{
    return key;
}

template <typename Value>
const jString& keyOf(const std::pair<const jString, Value>& entry)
{
    return entry.first;
}

bool readsTime(const GlProgram& program)
{
    return program.hasUniform(uniform::kTime) || program.hasUniform(uniform::kEditorTime);
}

} // namespace

std::unique_ptr<Render> Render::create(int width, int height, jString& reason)
{
    std::unique_ptr<RenderContext> context = RenderContext::create(reason);
    if (!context)
        return nullptr;
    std::unique_ptr<Render> render(new Render);
    render->m_context = std::move(context);
    if (!render->resize(width, height)) {
        reason = jFormat("no %dx%d multisampled framebuffer", width, height);
        return nullptr;
    }
    render->m_sphere = std::make_unique<MeshBuffer>(SphereMesh::create(kSphereSegments, kSphereRings));
    glEnable(GL_TEXTURE_CUBE_MAP_SEAMLESS);
    glEnable(GL_MULTISAMPLE);
    render->setCamera(OrbitCamera());
    return render;
}

Render::~Render()
{
    // GL objects go while the context is still current.
    if (m_context)
        m_context->makeCurrent();
    m_lastGood.clear();
    m_programs.clear();
    m_textures.clear();
    m_sphere.reset();
}

bool Render::resize(int width, int height)
{
    if (width <= 0 || height <= 0)
        return false;
    m_context->makeCurrent();
    return m_target.create(width, height);
}

void Render::setCamera(const OrbitCamera& camera)
{
    m_view = camera.getViewMatrix();
    m_projection = camera.getProjectionMatrix(float(std::max(getWidth(), 1)) / float(std::max(getHeight(), 1)));
    m_eye = camera.getPosition();
}

void Render::setLight(const Vec3& direction, const Vec3& colour)
{
    m_lightDirection = direction.normalized();
    m_lightColour = colour;
}

const Render::BuildResult* Render::getLastBuild(const jString& path) const
{
    const auto found = m_lastBuild.find(jKit::normalizePath(path));
    return found == m_lastBuild.end() ? nullptr : &found->second;
}

GlProgram* Render::programFor(const Material& material)
{
    const bool editor = MaterialManager::get().isEditorMode();
    const jString key = programKey(material, editor);
    if (auto it = m_programs.find(key); it != m_programs.end())
        return it->second.get();
    const jString pathKey = jKit::normalizePath(material.getPath());
    if (!m_failed.count(key)) {
        const Material::Pass* pass = material.findPass(kAmbientPass);
        if (pass)
            MaterialRenderState::check(material, *pass);
        ++m_buildCount;
        BuildResult& result = m_lastBuild[pathKey];
        result = {material.getSerial(), false, {}};
        std::unique_ptr<GlProgram> program = ProgramBuilder::build(material, kAmbientPass, editor, &result.errors);
        if (program) {
            result.built = true;
            GlProgram* built = program.get();
            dropOtherCopies(pathKey, material.getSerial());
            m_programs[key] = std::move(program);
            m_lastGood[pathKey] = built;
            return built;
        }
        m_failed.insert(key);
    }
    auto last = m_lastGood.find(pathKey);
    return last == m_lastGood.end() ? nullptr : last->second;
}

namespace {

// Erases the entries keyed "path|serial|..." whose serial is not the one kept.
template <typename Keyed>
void eraseOtherSerials(Keyed& keyed, const jString& path, uint64_t serial)
{
    const jString prefix = path + "|";
    const jString kept = prefix + std::to_string(serial) + "|";
    for (auto it = keyed.lower_bound(prefix); it != keyed.end() && startsWith(keyOf(*it), prefix);) {
        if (startsWith(keyOf(*it), kept))
            ++it;
        else
            it = keyed.erase(it);
    }
}

} // namespace

void Render::dropOtherCopies(const jString& pathKey, uint64_t serial)
{
    eraseOtherSerials(m_programs, pathKey, serial);
    eraseOtherSerials(m_failed, pathKey, serial);
}

void Render::setFrameUniforms(GlProgram& program, const Mat4& model)
{
    const Mat4 viewProjection = m_projection * m_view;
    const float size[2] = {float(getWidth()), float(getHeight())};
    program.setFloats(uniform::kWorld, model.data(), 16);
    program.setFloats(uniform::kViewProjection, viewProjection.data(), 16);
    program.setFloats(uniform::kCameraPosition, &m_eye.x, 3);
    program.setFloats(uniform::kTime, &m_time, 1);
    program.setFloats(uniform::kEditorTime, &m_time, 1);
    program.setFloats(uniform::kScreenSize, size, 2);
    program.setFloats(uniform::kEditorViewport, size, 2);
    program.setFloats(uniform::kExposure, &m_exposure, 1);
    program.setFloats(uniform::kLightDirection, &m_lightDirection.x, 3);
    program.setFloats(uniform::kLightColour, &m_lightColour.x, 3);
    program.setFloats(uniform::kEnvironment, &m_environment[0].x, 3, int(m_environment.size()));
}

void Render::setMaterialUniforms(GlProgram& program, const Material& material)
{
    for (const Material::Parameter& parameter : material.getParameters()) {
        if (parameter.isInt()) {
            const int value = int(parameter.values[0]);
            program.setInts(parameter.name, &value, 1);
        } else {
            program.setFloats(parameter.name, parameter.values.data(), parameter.components);
        }
    }
    for (const auto& [kind, group] : kTextureGroups) {
        std::vector<int> units;
        for (const Material::Texture& texture : material.getTextures())
            if (texture.kind == kind)
                units.push_back(texture.unit);
        std::sort(units.begin(), units.end());
        if (!units.empty())
            program.setInts(group, units.data(), int(units.size()));
    }
    for (const Material::Texture& texture : material.getTextures())
        m_textures.bind(texture);
}

void Render::drawSky(const Material& sky)
{
    GlProgram* program = programFor(sky);
    const Material::Pass* pass = sky.findPass(kAmbientPass);
    if (!program || !pass)
        return;
    m_frameReadsTime = m_frameReadsTime || readsTime(*program);
    MaterialRenderState::apply(sky, *pass);
    // Seen from inside, behind everything, writing no depth.
    glDisable(GL_CULL_FACE);
    glDepthFunc(GL_ALWAYS);
    glDepthMask(GL_FALSE);
    setFrameUniforms(*program, translateScale(m_eye, kSkyRadius));
    setMaterialUniforms(*program, sky);
    program->use();
    m_sphere->draw();
}

bool Render::drawObject(const Material& object)
{
    GlProgram* program = programFor(object);
    const Material::Pass* pass = object.findPass(kAmbientPass);
    if (!program || !pass)
        return false;
    m_frameReadsTime = m_frameReadsTime || readsTime(*program);
    MaterialRenderState::apply(object, *pass);
    setFrameUniforms(*program, Mat4());
    setMaterialUniforms(*program, object);
    program->use();
    m_sphere->draw();
    return true;
}

bool Render::renderFrame(const Material& object, const Material* sky)
{
    m_context->makeCurrent();
    m_target.bind();
    m_frameReadsTime = false;
    MaterialRenderState::applyDefaults();
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (sky)
        drawSky(*sky);
    const bool drawn = drawObject(object);
    MaterialRenderState::applyDefaults();
    return drawn;
}

void Render::readPixels(std::vector<uint8_t>& rgba) const
{
    m_context->makeCurrent();
    m_target.readPixels(rgba);
}

bool Render::readImage(jImage& image) const
{
    std::vector<uint8_t> rgba;
    readPixels(rgba);
    if (!image.create(getWidth(), getHeight(), 1, 1, 1))
        return false;
    std::memcpy(image.getPixels(0, 0), rgba.data(), rgba.size());
    image.setSourceFormat("RGBA8");
    return true;
}

bool Render::calculateEnvironmentCoefficients(const jString& path, EnvironmentCoefficients& out)
{
    TextureManager::ImagePtr image = TextureManager::get().load(path);
    if (!image)
        return false; // TextureManager has said why
    if (!calculateEnvironmentCoefficients(*image, out)) {
        jLog::error("Render::calculateEnvironmentCoefficients: \"%s\" is not a cube map", path.c_str());
        return false;
    }
    return true;
}

bool Render::calculateEnvironmentCoefficients(const jImage& cube, EnvironmentCoefficients& out)
{
    return SphericalHarmonics::project(cube, out);
}

bool Render::writePng(const jString& path, int width, int height, const std::vector<uint8_t>& rgba)
{
    if (width <= 0 || height <= 0 || rgba.size() != size_t(width) * size_t(height) * 4) {
        jLog::error("Render::writePng: \"%s\": the pixels do not match %dx%d", path.c_str(), width, height);
        return false;
    }
    jString encoded;
    const auto append = [](void* context, void* data, int size) {
        static_cast<jString*>(context)->append(static_cast<const char*>(data), size_t(size));
    };
    jString error;
    if (!stbi_write_png_to_func(append, &encoded, width, height, 4, rgba.data(), width * 4)
        || !mjl::writeFileAtomic(path, encoded, &error)) {
        jLog::error("Render::writePng: can't write \"%s\"%s%s", path.c_str(), error.empty() ? "" : ": ", error.c_str());
        return false;
    }
    return true;
}
