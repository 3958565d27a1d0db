#include "ToolApp.h"

#include "jDir.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <cstdio>

#ifndef MATERIAL_VERSION
#define MATERIAL_VERSION "0.0.0"
#endif

namespace {

constexpr const char* kProgram = "material-tool";

} // namespace

ToolApp::ToolApp()
    : m_commands(tool::createToolCommands())
{
}

int ToolApp::run(int argc, char** argv)
{
    CLI::App app("Headless operations of the material editor on package and material files.", kProgram);
    declareOptions(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return reportParseEnd(app, e);
    }
    jLog::setStderrQuiet(m_quiet);
    tool::ToolCommand* command = selectedCommand();
    if (!command)
        return tool::kExitUsage;
    if (!command->usesDataRoot())
        return command->run(tool::ToolContext(jString()));
    if (!installRoot(*command))
        return tool::kExitUsage;
    return command->run(tool::ToolContext(jDir::getProjectRoot()));
}

void ToolApp::declareOptions(CLI::App& app)
{
    app.set_version_flag("--version", jString(kProgram) + " " + MATERIAL_VERSION);
    app.add_option("--data-root", m_dataRoot,
                   "The folder that holds data/ (default: found from the paths, see docs/data-root.md)");
    app.add_flag("--quiet", m_quiet, "Print only errors of the engine log");
    app.require_subcommand(1);
    // Global options may also follow the sub-command.
    app.fallthrough();
    for (const auto& command : m_commands) {
        CLI::App* sub = app.add_subcommand(command->name(), command->description());
        command->addOptions(*sub);
        m_subApps.push_back(sub);
    }
}

bool ToolApp::installRoot(const tool::ToolCommand& command) const
{
    const jString root = jDir::discoverRoot(m_dataRoot, command.firstPath());
    if (!jDir::isDirectory(root)) {
        jLog::error("%s: the data root \"%s\" is not a folder", kProgram, root.c_str());
        return false;
    }
    jDir::setProjectRoot(root);
    return true;
}

// CLI11 prints help, the version, or the error with a hint; an unknown
// command word would read "A subcommand is required", so it gets its own text.
int ToolApp::reportParseEnd(CLI::App& app, const CLI::ParseError& e) const
{
    if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        app.exit(e);
        return tool::kExitSuccess;
    }
    const std::vector<std::string> unparsed = app.remaining();
    if (app.get_subcommands().empty() && !unparsed.empty()) {
        std::fprintf(stderr, "%s: unknown command \"%s\"\nRun with --help for more information.\n", kProgram,
                     unparsed.front().c_str());
        return tool::kExitUsage;
    }
    app.exit(e);
    return tool::kExitUsage;
}

tool::ToolCommand* ToolApp::selectedCommand() const
{
    for (size_t i = 0; i < m_subApps.size(); ++i) {
        if (m_subApps[i]->parsed())
            return m_commands[i].get();
    }
    return nullptr;
}
