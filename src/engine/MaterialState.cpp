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
