#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace {

constexpr const char* kName = "duplicate";

// Loads SRC and saves it as DST (MaterialEditor::Duplicate).
class DuplicateCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Save a copy of a material under another path"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("SRC", m_source, "Material file to copy")->required();
        command.add_option("DST", m_destination, "Material file to write")->required();
        command.add_flag("--use-file-name", m_useFileName, "Name the material after DST's file name");
    }

    jString firstPath() const override { return m_source; }

    int run(const tool::ToolContext& context) override
    {
        if (!tool::requireNonEmpty(kName, "source", m_source)
            || !tool::requireNonEmpty(kName, "destination", m_destination))
            return tool::kExitUsage;
        std::vector<jString> relative;
        if (!context.toRootRelative(kName, {m_source, m_destination}, relative)
            || !tool::requireDestination(kName, m_destination, relative[0], relative[1]))
            return tool::kExitUsage;
        if (!tool::requireReadableFile(kName, m_source, relative[0]))
            return tool::kExitFailed;
        if (!MaterialEditor::Duplicate(relative[0], relative[1], m_useFileName)) {
            jLog::error("%s: can't duplicate \"%s\" as \"%s\"", kName, m_source.c_str(), m_destination.c_str());
            return tool::kExitFailed;
        }
        jLog::message("%s: wrote \"%s\"", kName, m_destination.c_str());
        return tool::kExitSuccess;
    }

private:
    jString m_source;
    jString m_destination;
    bool m_useFileName = false;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new DuplicateCommand); });

} // namespace
