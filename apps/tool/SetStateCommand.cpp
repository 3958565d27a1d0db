#include "ToolCommand.h"
#include "ToolFiles.h"

#include "AppData.h"
#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <vector>

namespace {

constexpr const char* kName = "set-state";

bool hasEditableState(const AppData& document, const jString& name)
{
    const auto& states = document.getStates();
    return std::any_of(states.begin(), states.end(),
        [&](const MaterialState& state) { return state.editable && state.name == name; });
}

// Sets one shader state of a material and re-saves it
// (MaterialEditor::SetStateValueByName).
class SetStateCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Set the value of a material's shader state"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_path, "Material file")->required();
        command.add_option("NAME", m_state, "State name (exact)")->required();
        command.add_option("VALUE", m_value, "Integer value, stored in 8 bits")->required();
    }

    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path}, relative))
            return exitCode;
        if (m_value < 0 || m_value > 255)
            jLog::warning("%s: %d is stored as %d (8 bits)", kName, m_value, static_cast<int>(static_cast<uint8_t>(m_value)));
        if (!MaterialEditor::SetStateValueByName(relative[0], m_state, m_value)) {
            jLog::error("%s: can't update \"%s\"", kName, m_path.c_str());
            return tool::kExitFailed;
        }
        // The operation leaves the file loaded, so the states can be asked.
        if (!hasEditableState(*AppData::get(), m_state))
            jLog::warning("%s: \"%s\" has no editable state \"%s\"; its states are unchanged", kName, m_path.c_str(),
                m_state.c_str());
        jLog::message("%s: wrote \"%s\"", kName, m_path.c_str());
        return tool::kExitSuccess;
    }

private:
    jString m_path;
    jString m_state;
    int m_value = 0;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new SetStateCommand); });

} // namespace
