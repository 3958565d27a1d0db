#include "MaterialStateReader.h"

#include "Package.h"
#include "jLog.h"

bool MaterialStateReader::readDeclaration(const Package& package, MaterialState& state) const
{
    state.name = package.getString("name");
    if (state.name.empty())
        return false;
    if (const PackageItem* type = package.findItem("type")) {
        const jString typeText(type->getValue());
        state.type = MaterialState::typeFromText(typeText);
        if (state.type == MaterialState::Unknown) {
            jLog::error("%s: unknown state type \"%s\" in \"%s\" material", m_routine, typeText.c_str(),
                state.name.c_str());
            return false;
        }
    }
    const PackageItem* text = package.findItem("text");
    if (!text) {
        jLog::error("%s: state no value in \"%s\" material", m_routine, state.name.c_str());
        return false;
    }
    state.value = static_cast<uint8_t>(text->getInt());
    readItemsAndDefines(package, state);
    if (const PackageItem* editable = package.findItem("editable"))
        state.editable = editable->getBool();
    return true;
}

void MaterialStateReader::readItemsAndDefines(const Package& package, MaterialState& state)
{
    const PackageItem* defines = package.findItem("defines");
    switch (state.type) {
    case MaterialState::Switch:
        state.items = splitList(package.getString("items"));
        if (defines)
            state.defines = splitList(defines->getValue());
        else
            state.defines.assign(state.items.size(), jString());
        break;
    case MaterialState::Int:
        state.defines.emplace_back(defines ? defines->getValue() : std::string_view());
        break;
    default:
        if (defines)
            state.defines = splitList(defines->getValue());
        else
            state.defines.assign(2, jString());
        break;
    }
}

jVector<jString> MaterialStateReader::splitList(std::string_view text)
{
    jVector<jString> parts;
    if (text.empty())
        return parts;
    size_t start = 0;
    for (;;) {
        const size_t comma = text.find(',', start);
        parts.emplace_back(text.substr(start, comma == std::string_view::npos ? comma : comma - start));
        if (comma == std::string_view::npos)
            return parts;
        start = comma + 1;
    }
}
