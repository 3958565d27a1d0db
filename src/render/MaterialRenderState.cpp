#include "MaterialRenderState.h"

#include "jLog.h"

#include <epoxy/gl.h>

#include <optional>
#include <utility>

namespace {

template <size_t N>
std::optional<GLenum> lookup(const std::pair<const char*, GLenum> (&table)[N], const jString& keyword)
{
    for (const auto& [name, value] : table)
        if (keyword == name)
            return value;
    return std::nullopt;
}

constexpr std::pair<const char*, GLenum> kDepthFunctions[] = {
    {"DEPTH_LEQUAL", GL_LEQUAL}, {"DEPTH_ALWAYS", GL_ALWAYS}, {"DEPTH_LESS", GL_LESS},
    {"DEPTH_EQUAL", GL_EQUAL}, {"DEPTH_GEQUAL", GL_GEQUAL}, {"DEPTH_GREATER", GL_GREATER},
    {"DEPTH_NOTEQUAL", GL_NOTEQUAL}, {"DEPTH_NEVER", GL_NEVER},
};

constexpr std::pair<const char*, GLenum> kBlendOperations[] = {
    {"add", GL_FUNC_ADD}, {"sub", GL_FUNC_SUBTRACT}, {"reverse_sub", GL_FUNC_REVERSE_SUBTRACT},
    {"min", GL_MIN}, {"max", GL_MAX},
};

constexpr std::pair<const char*, GLenum> kBlendFactors[] = {
    {"none", GL_ONE}, {"zero", GL_ZERO}, {"one", GL_ONE}, {"src_color", GL_SRC_COLOR},
    {"one_minus_src_color", GL_ONE_MINUS_SRC_COLOR}, {"src_alpha", GL_SRC_ALPHA},
    {"one_minus_src_alpha", GL_ONE_MINUS_SRC_ALPHA}, {"dest_color", GL_DST_COLOR},
    {"one_minus_dest_color", GL_ONE_MINUS_DST_COLOR}, {"dest_alpha", GL_DST_ALPHA},
    {"one_minus_dest_alpha", GL_ONE_MINUS_DST_ALPHA},
};

bool isBufferMask(const jString& mask)
{
    return mask == "BUFFER_ALL" || mask == "BUFFER_COLOR" || mask == "BUFFER_DEPTH";
}

bool blendingEnabled(const Material::RenderSettings& settings)
{
    return !(settings.blendSrc == "none" && settings.blendDst == "none");
}

void reportUnknown(const Material& material, const char* what, const jString& keyword)
{
    jLog::error("Render::applyState: \"%s\" has an unknown %s \"%s\"", material.getPath().c_str(), what,
        keyword.c_str());
}

} // namespace

bool MaterialRenderState::check(const Material& material, const Material::Pass& pass)
{
    const Material::RenderSettings& s = pass.settings;
    bool ok = true;
    if (!lookup(kDepthFunctions, s.depthFunc))
        reportUnknown(material, "depth function", s.depthFunc), ok = false;
    if (!isBufferMask(s.bufferMask))
        reportUnknown(material, "buffer mask", s.bufferMask), ok = false;
    if (!lookup(kBlendOperations, s.blendOp))
        reportUnknown(material, "blend op", s.blendOp), ok = false;
    for (const jString* factor : {&s.blendSrc, &s.blendDst})
        if (!lookup(kBlendFactors, *factor))
            reportUnknown(material, "blend type", *factor), ok = false;
    return ok;
}

void MaterialRenderState::apply(const Material& material, const Material::Pass& pass)
{
    const Material::RenderSettings& s = pass.settings;
    if (blendingEnabled(s)) {
        glEnable(GL_BLEND);
        glBlendEquation(lookup(kBlendOperations, s.blendOp).value_or(GL_FUNC_ADD));
        glBlendFunc(lookup(kBlendFactors, s.blendSrc).value_or(GL_ONE), lookup(kBlendFactors, s.blendDst).value_or(GL_ZERO));
    } else {
        glDisable(GL_BLEND);
    }
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(lookup(kDepthFunctions, s.depthFunc).value_or(GL_LEQUAL));
    const bool colour = s.bufferMask != "BUFFER_DEPTH";
    const bool depth = s.bufferMask != "BUFFER_COLOR";
    glColorMask(colour, colour, colour, colour);
    glDepthMask(depth);
    if (material.getOptions().twoSided) {
        glDisable(GL_CULL_FACE);
    } else {
        glEnable(GL_CULL_FACE);
        glCullFace(GL_BACK);
    }
    const int offset = material.getOptions().depthOffset;
    if (offset != 0) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(0.0f, -float(offset));
    } else {
        glDisable(GL_POLYGON_OFFSET_FILL);
    }
}

void MaterialRenderState::applyDefaults()
{
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glDisable(GL_POLYGON_OFFSET_FILL);
}
