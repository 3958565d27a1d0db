#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialEditor.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace {

constexpr const char* kName = "can-edit";

// Exit 0 when the editor can open the file as a graph (an editor document
// or an instance), 1 when not (MaterialEditor::IsMaterialCanBeEdit). Prints
// nothing for a file it could read: the exit code is the answer. A missing,
// folder or unreadable file is also 1, with the shared error naming it.
class CanEditCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Exit 0 when the material can be edited, 1 when not"; }
    void addOptions(CLI::App& command) override { command.add_option("PATH", m_path, "Material file")->required(); }
    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path}, relative))
            return exitCode;
        return MaterialEditor::IsMaterialCanBeEdit(relative[0]) ? tool::kExitSuccess : tool::kExitFailed;
    }

private:
    jString m_path;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new CanEditCommand); });

} // namespace
