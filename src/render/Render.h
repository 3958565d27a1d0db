#pragma once

#include "GlTextureCache.h"
#include "Material.h"
#include "Math3D.h"
#include "ProgramBuilder.h"
#include "RenderContext.h"
#include "RenderTarget.h"
#include "SphericalHarmonics.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

class GlProgram;
class MeshBuffer;
class OrbitCamera;
class jImage;

// The preview renderer: draws a material on the preview sphere, over a sky,
// into a multisampled offscreen frame and reads the frame back as RGBA.
//
// Programs are built per material, state defines and editor flag (programs
// are assembled for the editor while MaterialManager's editor mode is on),
// and kept.
// When a material's program fails to build, the error is logged once and
// the last program that built for the same material path keeps drawing, so
// a broken edit leaves the previous material on screen.
class Render {
public:
    // The sky is drawn as a sphere of this radius around the eye.
    static constexpr float kSkyRadius = 50.0f;
    static constexpr const char* kAmbientPass = "ambient";

    // Null when no GL context can be made; reason says why.
    static std::unique_ptr<Render> create(int width, int height, jString& reason);
    ~Render();
    Render(const Render&) = delete;
    Render& operator=(const Render&) = delete;

    bool resize(int width, int height);
    int getWidth() const { return m_target.getWidth(); }
    int getHeight() const { return m_target.getHeight(); }
    const jString& getDescription() const { return m_context->getDescription(); }

    void setCamera(const OrbitCamera& camera);
    const EnvironmentCoefficients& getEnvironmentCoefficients() const { return m_environment; }
    void setEnvironmentCoefficients(const EnvironmentCoefficients& coefficients) { m_environment = coefficients; }
    // Seconds on the clock the shaders read (g_time, g_editor_time).
    void setTime(float seconds) { m_time = seconds; }
    // Exposure in stops (g_exposure); 0 leaves colours as they are.
    void setExposure(float stops) { m_exposure = stops; }
    // The direct light: direction towards the light, and its colour.
    void setLight(const math3d::Vec3& direction, const math3d::Vec3& colour);

    // Clears the frame, draws the sky material (when given) behind
    // everything, then the object material's ambient pass on the sphere.
    // False when the object has no program to draw with.
    bool renderFrame(const Material& object, const Material* sky);
    // Whether a program of the last frame reads the clock (g_time or
    // g_editor_time): its picture changes with the time alone.
    bool lastFrameReadsTime() const { return m_frameReadsTime; }
    // The frame, resolved, as RGBA8 rows from the top.
    void readPixels(std::vector<uint8_t>& rgba) const;
    bool readImage(jImage& image) const;

    // Projects the cube map at path (through TextureManager) onto the nine
    // coefficients; false (logged) when it cannot be read or is no cube map.
    static bool calculateEnvironmentCoefficients(const jString& path, EnvironmentCoefficients& out);
    static bool calculateEnvironmentCoefficients(const jImage& cube, EnvironmentCoefficients& out);
    // Writes RGBA8 rows (top first) as a PNG file; false (logged) on failure.
    static bool writePng(const jString& path, int width, int height, const std::vector<uint8_t>& rgba);

    // The outcome of the last program build for a material path: the copy
    // (serial) it was for, whether it built, and the driver's messages.
    struct BuildResult {
        uint64_t serial = 0;
        bool built = false;
        std::vector<ProgramBuilder::Error> errors;
    };
    // Null before any build for that path.
    const BuildResult* getLastBuild(const jString& path) const;

    // Number of programs built so far, and kept now (for tests and benchmarks).
    size_t getProgramBuildCount() const { return m_buildCount; }
    size_t getProgramCount() const { return m_programs.size(); }

private:
    Render() = default;

    GlProgram* programFor(const Material& material);
    // A new copy of a material built: the programs of its earlier copies go
    // (an editor reloads a material on every compile).
    void dropOtherCopies(const jString& pathKey, uint64_t serial);
    void setFrameUniforms(GlProgram& program, const math3d::Mat4& model);
    void setMaterialUniforms(GlProgram& program, const Material& material);
    void drawSky(const Material& sky);
    bool drawObject(const Material& object);

    std::unique_ptr<RenderContext> m_context;
    RenderTarget m_target;
    std::unique_ptr<MeshBuffer> m_sphere;
    GlTextureCache m_textures;
    // Keyed by path, serial, defines and editor flag.
    std::map<jString, std::unique_ptr<GlProgram>> m_programs;
    std::set<jString> m_failed;
    // The last program that built, by material path.
    std::map<jString, GlProgram*> m_lastGood;
    std::map<jString, BuildResult> m_lastBuild;
    size_t m_buildCount = 0;

    math3d::Mat4 m_view;
    math3d::Mat4 m_projection;
    math3d::Vec3 m_eye;
    math3d::Vec3 m_lightDirection{0.4f, -0.6f, 0.7f};
    math3d::Vec3 m_lightColour{1.0f, 1.0f, 1.0f};
    EnvironmentCoefficients m_environment{};
    float m_time = 0.0f;
    float m_exposure = 0.0f;
    bool m_frameReadsTime = false;
};
