#pragma once

#include "OrbitCamera.h"
#include "PreviewPass.h"
#include "Render.h"

#include <memory>
#include <vector>

// The material preview as the editor and the command line show it: the
// material on the preview sphere over the editor's sky ("EditorSky.mat" on
// the sphere surface), lit by the direct light and the sky's environment
// coefficients, through the preview pass, seen by the orbit camera.
class PreviewRenderer {
public:
    static constexpr const char* kSkyMaterial = "data/core/editor/materials/EditorSky.mat";
    static constexpr const char* kSkyTexture = "data/core/textures/environment/sky.dds";

    // Null when there is no GL context (reason says why). A missing sky is
    // logged and the preview draws over black with no environment light.
    static std::unique_ptr<PreviewRenderer> create(int width, int height, jString& reason);

    OrbitCamera& getCamera() { return m_camera; }
    Render& getRender() { return *m_render; }
    const EnvironmentCoefficients& getSkyCoefficients() const { return m_skyCoefficients; }
    PreviewPass::Values& getPassValues() { return m_values; }

    // One preview frame of the material; false when it has no program.
    bool renderFrame(Material& material);
    // A frame read back as RGBA8 rows from the top.
    bool renderPixels(Material& material, std::vector<uint8_t>& rgba);

private:
    PreviewRenderer() = default;

    std::unique_ptr<Render> m_render;
    OrbitCamera m_camera;
    std::shared_ptr<Material> m_sky;
    EnvironmentCoefficients m_skyCoefficients{};
    PreviewPass::Values m_values;
};
