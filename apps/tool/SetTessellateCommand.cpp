#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace {

constexpr const char* kName = "set-tessellate";

// Switches a material's tessellation option and re-saves it
// (MaterialEditor::SetTessellate).
class SetTessellateCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Switch tessellation of a material on or off"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_path, "Material file")->required();
        command.add_option("SWITCH", m_switch, "on or off")->required()->check(CLI::IsMember({"on", "off"}));
    }

    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path}, relative))
            return exitCode;
        if (!MaterialEditor::SetTessellate(relative[0], m_switch == "on")) {
            jLog::error("%s: can't update \"%s\"", kName, m_path.c_str());
            return tool::kExitFailed;
        }
        jLog::message("%s: wrote \"%s\"", kName, m_path.c_str());
        return tool::kExitSuccess;
    }

private:
    jString m_path;
    jString m_switch;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new SetTessellateCommand); });

} // namespace
