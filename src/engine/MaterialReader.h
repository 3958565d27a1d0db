#pragma once

#include "Material.h"

class Package;

// Lays the entries of one "material" package over a Material: a plain
// material is read into an empty record, an instance over a copy of its
// parent. Entries are matched by name (states, passes, parameters,
// textures); what the package does not mention stays as it was.
class MaterialReader {
public:
    // path names the material in messages.
    explicit MaterialReader(jString path) : m_path(std::move(path)) {}

    // False when a stored path (a texture) lies outside the data root; that
    // is logged, and the rest is read all the same.
    bool read(const Package& material, Material& into) const;

    // The "materials" -> "material" package of a material file's root; null
    // when either is missing.
    static const Package* findMaterial(const Package& root);

    // Replaces every "@ambient" stage of the other passes by the ambient
    // pass's program of that stage.
    void resolveAmbientReferences(Material& material) const;

    static constexpr const char* kAmbientReference = "@ambient";

private:
    void readState(const Package& package, Material& into) const;
    static void readOptions(const Package& options, Material::Options& into);
    void readPass(const Package& package, Material& into) const;
    static void readStage(const Package& pass, Material::StageKind kind, Material::Stage& into);
    static void readRenderSettings(const Package& pass, Material::RenderSettings& into);
    static void readParameter(const Package& package, Material& into);
    bool readTexture(const Package& package, Material& into) const;

    jString m_path;
};
