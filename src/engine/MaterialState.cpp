#include "MaterialState.h"

namespace {
const jString kNoDefine;
}

int32_t MaterialState::typeFromText(const jString& text)
{
    if (text == "toggle")
        return Toggle;
    if (text == "switch")
        return Switch;
    if (text == "int")
        return Int;
    return Unknown;
}

const char* MaterialState::typeToText(int32_t type)
{
    switch (type) {
    case Toggle: return "toggle";
    case Switch: return "switch";
    case Int: return "int";
    default: return "";
    }
}

const jString& MaterialState::selectedDefine() const
{
    if (type == Int)
        return defines.empty() ? kNoDefine : defines.front();
    return value < defines.size() ? defines[value] : kNoDefine;
}

jString MaterialState::programDefine() const
{
    const jString& define = selectedDefine();
    if (type != Int || define.empty())
        return define;
    return define + "=" + std::to_string(value);
}

jVector<jString> MaterialState::programDefines(const jVector<MaterialState>& states)
{
    jVector<jString> defines;
    for (const MaterialState& state : states) {
        jString define = state.programDefine();
        if (!define.empty())
            defines.push_back(std::move(define));
    }
    return defines;
}
