#include "ProgramBuilder.h"

#include "ShaderSource.h"
#include "jLog.h"

#include <epoxy/gl.h>

#include <sstream>

namespace {

struct StageInfo {
    Material::StageKind kind;
    GLenum type;
    bool required;
};

constexpr StageInfo kStages[] = {
    {Material::StageKind::Vertex, GL_VERTEX_SHADER, true},
    {Material::StageKind::Control, GL_TESS_CONTROL_SHADER, false},
    {Material::StageKind::Evaluate, GL_TESS_EVALUATION_SHADER, false},
    {Material::StageKind::Geometry, GL_GEOMETRY_SHADER, false},
    {Material::StageKind::Fragment, GL_FRAGMENT_SHADER, true},
};

jString infoLog(GLuint object, bool program)
{
    GLint length = 0;
    program ? glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length) : glGetShaderiv(object, GL_INFO_LOG_LENGTH, &length);
    jString log(size_t(std::max(length, 1)), '\0');
    GLsizei written = 0;
    program ? glGetProgramInfoLog(object, length, &written, log.data())
            : glGetShaderInfoLog(object, length, &written, log.data());
    log.resize(size_t(written));
    return log;
}

bool isWarning(const jString& line)
{
    return line.find("warning") != jString::npos && line.find("error") == jString::npos;
}

// One error line per non-empty log line, behind the given prefix. Warnings
// are left out: Mesa warns about "__MATERAIL_EDITOR__" in every editor
// program, and a failed build is about its errors.
void logLines(const jString& prefix, const jString& log)
{
    std::istringstream in(log);
    jString line;
    bool any = false;
    while (std::getline(in, line)) {
        if (line.find_first_not_of(" \t\r") == jString::npos || isWarning(line))
            continue;
        jLog::error("%s: %s", prefix.c_str(), line.c_str());
        any = true;
    }
    if (!any)
        jLog::error("%s: failed without a message", prefix.c_str());
}

// The driver's error lines, placed in the stored lines where they can be.
void collectErrors(const char* stage, const jString& log, const ShaderSource* source,
    std::vector<ProgramBuilder::Error>& errors)
{
    std::istringstream in(log);
    jString line;
    while (std::getline(in, line)) {
        if (line.find_first_not_of(" \t\r") == jString::npos || isWarning(line))
            continue;
        ProgramBuilder::Error error{stage, -1, line};
        size_t number = 0;
        jString message;
        if (source && ShaderSource::parseLogLine(line, number, message)) {
            error.message = message;
            const ShaderSource::Origin* origin = source->origin(number);
            if (origin && origin->file == ShaderSource::kGenerated)
                error.line = static_cast<int32_t>(origin->line);
        }
        errors.push_back(std::move(error));
    }
}

GLuint compileStage(const Material& material, const Material::Pass& pass, const StageInfo& info, bool editor,
    std::vector<ProgramBuilder::Error>* errors)
{
    const char* stageName = Material::stageKey(info.kind);
    const jString prefix = jFormat("%s: \"%s\" %s %s", ProgramBuilder::kRoutine, material.getPath().c_str(),
        pass.name.c_str(), stageName);
    ShaderSource source;
    if (!source.assemble(ProgramBuilder::stageLines(pass.stage(info.kind)), material.getSelectedDefines(), editor)) {
        jLog::error("%s: %s", prefix.c_str(), source.getError().c_str());
        if (errors)
            errors->push_back({stageName, -1, source.getError()});
        return 0;
    }
    const GLuint shader = glCreateShader(info.type);
    const char* text = source.getText().c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (!ok) {
        const jString log = infoLog(shader, false);
        logLines(prefix, source.translateLog(log));
        if (errors)
            collectErrors(stageName, log, &source, *errors);
        glDeleteShader(shader);
        return 0;
    }
    return shader;
}

} // namespace

jVector<jString> ProgramBuilder::stageLines(const Material::Stage& stage)
{
    if (stage.hasLines())
        return stage.lines;
    const jString path = stage.file.find('/') == jString::npos ? kShaderFolder + stage.file : stage.file;
    return {jFormat("#include \"%s\"", path.c_str())};
}

std::unique_ptr<GlProgram> ProgramBuilder::build(const Material& material, const jString& passName, bool editor,
    std::vector<Error>* errors)
{
    const Material::Pass* pass = material.findPass(passName);
    if (!pass) {
        jLog::error("%s: \"%s\" has no %s pass", kRoutine, material.getPath().c_str(), passName.c_str());
        return nullptr;
    }
    const GLuint program = glCreateProgram();
    jVector<GLuint> shaders;
    bool ok = true;
    for (const StageInfo& info : kStages) {
        if (!pass->stage(info.kind).present) {
            if (info.required) {
                jLog::error("%s: \"%s\" %s pass has no %s stage", kRoutine, material.getPath().c_str(),
                    passName.c_str(), Material::stageKey(info.kind));
                ok = false;
            }
            continue;
        }
        const GLuint shader = compileStage(material, *pass, info, editor, errors);
        ok = ok && shader != 0;
        if (shader) {
            glAttachShader(program, shader);
            shaders.push_back(shader);
        }
    }
    if (ok) {
        glLinkProgram(program);
        GLint linked = GL_FALSE;
        glGetProgramiv(program, GL_LINK_STATUS, &linked);
        if (!linked) {
            const jString log = infoLog(program, true);
            logLines(jFormat("%s: \"%s\" %s link", kRoutine, material.getPath().c_str(), passName.c_str()), log);
            if (errors)
                collectErrors("link", log, nullptr, *errors);
            ok = false;
        }
    }
    for (GLuint shader : shaders)
        glDeleteShader(shader);
    if (!ok) {
        glDeleteProgram(program);
        return nullptr;
    }
    return std::make_unique<GlProgram>(program);
}
