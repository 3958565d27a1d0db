#include "RenderStateKeywords.h"

#include "jLog.h"

namespace {

using Entry = RenderStateKeywords::Entry;

constexpr Entry kDepthFunctions[] = {
    {"LessEqaul", "DEPTH_LEQUAL"},
    {"Always", "DEPTH_ALWAYS"},
    {"Less", "DEPTH_LESS"},
    {"Eqaul", "DEPTH_EQUAL"},
    {"GreaterEqaul", "DEPTH_GEQUAL"},
    {"Greater", "DEPTH_GREATER"},
    {"NotEqaul", "DEPTH_NOTEQUAL"},
    {"Never", "DEPTH_NEVER"},
};

constexpr Entry kBufferMasks[] = {
    {"All", "BUFFER_ALL"},
    {"Color", "BUFFER_COLOR"},
    {"Depth", "BUFFER_DEPTH"},
};

constexpr Entry kBlendOperations[] = {
    {"Add", "add"},
    {"Sub", "sub"},
    {"ReverseSub", "reverse_sub"},
    {"Min", "min"},
    {"Max", "max"},
};

constexpr Entry kBlendFactors[] = {
    {"None", "none"},
    {"Zero", "zero"},
    {"One", "one"},
    {"SrcColor", "src_color"},
    {"OneMinusSrcColor", "one_minus_src_color"},
    {"SrcAlpha", "src_alpha"},
    {"OneMinusSrcAlpha", "one_minus_src_alpha"},
    {"DstColor", "dest_color"},
    {"OneMinusDstColor", "one_minus_dest_color"},
    {"DstAlpha", "dest_alpha"},
    {"OneMinusDstAlpha", "one_minus_dest_alpha"},
};

constexpr Entry kTransparentTypes[] = {
    {"Opacity", "opacity"},
    {"AlphaTest", "alpha_test"},
};

const char* findKeyword(std::span<const Entry> table, const jString& display)
{
    for (const Entry& e : table)
        if (display == e.display)
            return e.keyword;
    return nullptr;
}

const char* findDisplay(std::span<const Entry> table, const jString& keyword)
{
    for (const Entry& e : table)
        if (keyword == e.keyword)
            return e.display;
    return nullptr;
}

jString keywordOrLog(std::span<const Entry> table, const jString& display, const char* routine, const char* message)
{
    if (const char* keyword = findKeyword(table, display))
        return keyword;
    jLog::error(message, routine, display.c_str());
    return {};
}

jString displayOrEmpty(std::span<const Entry> table, const jString& keyword)
{
    const char* display = findDisplay(table, keyword);
    return display ? display : "";
}

constexpr const char* kUnknownTransparentType = "%s:Unknown transparent_type \"%s\"";

} // namespace

std::span<const Entry> RenderStateKeywords::depthFunctions() { return kDepthFunctions; }
std::span<const Entry> RenderStateKeywords::bufferMasks() { return kBufferMasks; }
std::span<const Entry> RenderStateKeywords::blendOperations() { return kBlendOperations; }
std::span<const Entry> RenderStateKeywords::blendFactors() { return kBlendFactors; }
std::span<const Entry> RenderStateKeywords::transparentTypes() { return kTransparentTypes; }

jString RenderStateKeywords::depthFunctionKeyword(const jString& display, const char* routine)
{
    return keywordOrLog(kDepthFunctions, display, routine, "%s:Unknown depth function \"%s\"");
}

jString RenderStateKeywords::bufferMaskKeyword(const jString& display, const char* routine)
{
    return keywordOrLog(kBufferMasks, display, routine, "%s:Unknown buffer mask \"%s\"");
}

jString RenderStateKeywords::blendOperationKeyword(const jString& display, const char* routine)
{
    return keywordOrLog(kBlendOperations, display, routine, "%s:Unknown blend op \"%s\"");
}

jString RenderStateKeywords::blendFactorKeyword(const jString& display, const char* routine)
{
    return keywordOrLog(kBlendFactors, display, routine, "%s:Unknown blend type \"%s\"");
}

jString RenderStateKeywords::transparentTypeKeyword(const jString& display, const char* routine)
{
    return keywordOrLog(kTransparentTypes, display, routine, kUnknownTransparentType);
}

jString RenderStateKeywords::depthFunctionDisplay(const jString& keyword)
{
    return displayOrEmpty(kDepthFunctions, keyword);
}

jString RenderStateKeywords::bufferMaskDisplay(const jString& keyword)
{
    return displayOrEmpty(kBufferMasks, keyword);
}

jString RenderStateKeywords::blendOperationDisplay(const jString& keyword)
{
    return displayOrEmpty(kBlendOperations, keyword);
}

jString RenderStateKeywords::blendFactorDisplay(const jString& keyword)
{
    return displayOrEmpty(kBlendFactors, keyword);
}

jString RenderStateKeywords::transparentTypeDisplay(const jString& keyword, const char* routine)
{
    if (const char* display = findDisplay(kTransparentTypes, keyword))
        return display;
    jLog::error(kUnknownTransparentType, routine, keyword.c_str());
    return {};
}
