#pragma once

#include "Material.h"
#include "SphericalHarmonics.h"

#include <optional>

class Render;

// The state of one preview frame, set up by the constructor and undone by
// the destructor: the material's "EDITOR_MODE" state is 1 and its
// "LightModulation" and "Environment" states take the preview's values
// (absent states are skipped), the renderer's environment coefficients are
// the sky's, and programs are assembled for the editor (MaterialManager's
// editor mode). Everything is put back as it was, so
// the rest of the engine never sees the preview's settings.
class PreviewPass {
public:
    // The values the preview gives the states; an empty one leaves the
    // material's own value. LightModulation is kept by default so that an
    // unlit material stays unlit; Environment uses all nine coefficients.
    struct Values {
        std::optional<uint8_t> lightModulation;
        std::optional<uint8_t> environment = 3;
    };

    static constexpr const char* kEditorModeState = "EDITOR_MODE";
    static constexpr const char* kLightModulationState = "LightModulation";
    static constexpr const char* kEnvironmentState = "Environment";

    PreviewPass(Material& material, Render& render, const EnvironmentCoefficients& sky, const Values& values);
    ~PreviewPass();
    PreviewPass(const PreviewPass&) = delete;
    PreviewPass& operator=(const PreviewPass&) = delete;

private:
    struct SavedState {
        const char* name = nullptr;
        uint8_t value = 0;
    };

    void override(const char* name, std::optional<uint8_t> value);

    Material& m_material;
    Render& m_render;
    EnvironmentCoefficients m_savedEnvironment;
    bool m_savedManagerEditorMode;
    jVector<SavedState> m_saved;
};
