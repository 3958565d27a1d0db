#pragma once

#include "Material.h"

// Turns a pass's render settings and the material's options into GL state:
// blending ("none" for both factors: off), blend operation, depth function,
// buffer mask (colour and/or depth writes), two-sided (no back-face
// culling) and depth offset (polygon offset in depth-bias steps, a positive
// offset pulling the surface towards the eye).
class MaterialRenderState {
public:
    // Logs every keyword the settings hold that GL state cannot express;
    // such a setting falls back to its default when applied.
    static bool check(const Material& material, const Material::Pass& pass);
    static void apply(const Material& material, const Material::Pass& pass);
    // Blending off, depth test less-or-equal with writes, back faces culled.
    static void applyDefaults();
};
