#pragma once

#include "jString.h"

// Compiles one assembled GLSL program with an external reference compiler
// (glslangValidator by default) and returns the compiler's error lines.
// The program text goes to a temporary file named after its stage; the
// compiler runs as a child process (no shell) and the file is removed.
class ShaderValidator {
public:
    static constexpr const char* kDefaultProgram = "glslangValidator";

    explicit ShaderValidator(jString program = kDefaultProgram) : m_program(std::move(program)) {}

    // Whether the program can be found (a path with "/" or a name on $PATH).
    bool isAvailable() const;
    // Compiles text as a stage ("vert" or "frag"). True when it compiled;
    // otherwise errors holds the compiler's "ERROR: " lines, one per entry,
    // with the temporary file's name replaced by "0" so that
    // ShaderSource::translateLog can place them, or a line saying why the
    // compiler could not run.
    bool validate(const jString& text, const char* stage, jVector<jString>& errors) const;

private:
    jString m_program;
};
