#pragma once

#include "MaterialState.h"
#include "jString.h"

#include <array>
#include <cstdint>
#include <optional>

// The engine's view of one compiled material file: its passes with their
// stage programs, its shader switches (states), options, render settings,
// parameters and textures. MaterialManager builds it; the renderer reads it.
// An instance file is resolved against its parent at load, so a Material is
// always complete.
class Material {
public:
    enum class StageKind : int { Vertex, Fragment, Control, Evaluate, Geometry };
    static constexpr int kStageCount = 5;

    // One stage of a pass: either generated lines or a shader file name.
    struct Stage {
        bool present = false;
        jVector<jString> lines; // the "i" lines, in order
        jString file;           // a shader file name when there are no lines
        bool hasLines() const { return !lines.empty(); }
    };

    // A pass's fixed-function settings, as file keywords.
    struct RenderSettings {
        jString bufferMask = "BUFFER_ALL";
        jString depthFunc = "DEPTH_LEQUAL";
        jString blendOp = "add";
        jString blendSrc = "none"; // "none" for both factors: no blending
        jString blendDst = "none";
        bool operator==(const RenderSettings&) const = default;
    };

    struct Pass {
        jString name;
        std::array<Stage, kStageCount> stages;
        jVector<jString> textures; // the "textures" list of the pass
        RenderSettings settings;
        const Stage& stage(StageKind kind) const { return stages[size_t(kind)]; }
    };

    // A shader switch; the define its value selects goes into the program.
    using State = MaterialState;

    struct Options {
        int32_t renderOrder = 0;
        int32_t depthOffset = 0;
        int32_t mask = 0;
        bool twoSided = false;
        bool postScattering = false;
        bool postFog = false;
        bool postTaa = false;
        bool tessellate = false;
    };

    // A constant of the generated constant buffer, with its value parsed
    // into four components by the rules of the material file.
    struct Parameter {
        jString name;
        jString type; // "float", "float2".."float4", "int"
        jString text;
        std::array<float, 4> values{};
        int components = 1;
        bool isInt() const { return type == "int"; }
        // Parses text by type: missing components are 0 (alpha 1 for a
        // four-component value), extra ones are ignored.
        void parseText();
        static int componentsOf(const jString& type);
    };

    struct Texture {
        enum class Kind { Texture2D, Cube, Volume };
        jString name;
        Kind kind = Kind::Texture2D;
        jString path;
        int sampler = 0;
        jString wrap = "repeat";
        jString filter = "bilinear";
        int anisotropy = 1;
        int unit = 0; // the texture unit the generated program reads it from
        static std::optional<Kind> kindFromText(const jString& text);
    };

    // The first texture unit of the generator's slot layout.
    static constexpr int kFirstTextureUnit = 15;

    const jString& getPath() const { return m_path; }
    void setPath(jString path) { m_path = std::move(path); }
    const jString& getName() const { return m_name; }
    void setName(jString name) { m_name = std::move(name); }
    const jString& getParentPath() const { return m_parentPath; }
    void setParentPath(jString path) { m_parentPath = std::move(path); }
    const jString& getBind() const { return m_bind; }
    void setBind(jString bind) { m_bind = std::move(bind); }

    jVector<Pass>& getPasses() { return m_passes; }
    const jVector<Pass>& getPasses() const { return m_passes; }
    const Pass* findPass(const jString& name) const;
    Pass* findPass(const jString& name);

    jVector<State>& getStates() { return m_states; }
    const jVector<State>& getStates() const { return m_states; }
    // First state of that exact name; null when absent.
    State* findState(const jString& name);
    const State* findState(const jString& name) const;
    // The defines the current state values select, in state order, empty
    // ones left out (MaterialState::programDefines).
    jVector<jString> getSelectedDefines() const;

    Options& getOptions() { return m_options; }
    const Options& getOptions() const { return m_options; }

    jVector<Parameter>& getParameters() { return m_parameters; }
    const jVector<Parameter>& getParameters() const { return m_parameters; }
    Parameter* findParameter(const jString& name);
    const Parameter* findParameter(const jString& name) const;

    jVector<Texture>& getTextures() { return m_textures; }
    const jVector<Texture>& getTextures() const { return m_textures; }
    Texture* findTexture(const jString& name);
    // Gives every texture its unit: cube textures from the first unit, then
    // volumes, then 2D textures, each kind in document order.
    void assignTextureUnits();

    // A number unique to this loaded copy; a reload gives a new one.
    uint64_t getSerial() const { return m_serial; }
    void setSerial(uint64_t serial) { m_serial = serial; }

    static const char* stageKey(StageKind kind);

private:
    jString m_path;
    jString m_name;
    jString m_parentPath;
    jString m_bind;
    jVector<Pass> m_passes;
    jVector<State> m_states;
    Options m_options;
    jVector<Parameter> m_parameters;
    jVector<Texture> m_textures;
    uint64_t m_serial = 0;
};
