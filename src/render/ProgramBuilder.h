#pragma once

#include "GlProgram.h"
#include "Material.h"

#include <memory>
#include <vector>

// Builds the GL program of one pass of a material: each present stage is
// assembled by ShaderSource (version line, the defines of the material's
// states, "__MATERAIL_EDITOR__" in editor mode, the stored lines with their
// includes), compiled and linked. Compiler and linker messages are logged
// one line each, with the material's path, the pass and the stage, and the
// line references turned into "<file>:<line>" of the stored lines
// ("generated") or of the included file:
//
//   error: Render::buildProgram: "data/materials/rock.mat" ambient fragment: generated:3(5): error: ...
class ProgramBuilder {
public:
    static constexpr const char* kRoutine = "Render::buildProgram";
    // Folder of the shader files a stage item names without a folder.
    static constexpr const char* kShaderFolder = "data/core/shaders/";

    // One message of a failed build: the stage ("vertex", "fragment", ...;
    // "link" for the linker), the physical line of the stage's stored lines
    // it names (-1 when it names none or a line of an included file), and
    // the driver's text after the line reference.
    struct Error {
        jString stage;
        int32_t line = -1;
        jString message;
    };

    // Null (after logging) when a stage is missing or does not compile, or
    // the program does not link; errors, when given, receive the messages.
    static std::unique_ptr<GlProgram> build(const Material& material, const jString& passName, bool editor,
        std::vector<Error>* errors = nullptr);

    // The lines of a stage: its stored lines, or an include of its file.
    static jVector<jString> stageLines(const Material::Stage& stage);
};
