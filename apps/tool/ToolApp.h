#pragma once

#include "ToolCommand.h"

#include <memory>
#include <vector>

namespace CLI {
class ParseError;
}

// material-tool's command line: the global options, one sub-command per
// registered ToolCommand, the choice of the data root, and the exit code.
class ToolApp {
public:
    ToolApp();
    int run(int argc, char** argv);

private:
    int reportParseEnd(CLI::App& app, const CLI::ParseError& e) const;
    void declareOptions(CLI::App& app);
    // Chooses the data root for the command and makes it jDir's project
    // root; false (logged) when it is not a folder.
    bool installRoot(const tool::ToolCommand& command) const;
    tool::ToolCommand* selectedCommand() const;

    std::vector<std::unique_ptr<tool::ToolCommand>> m_commands;
    std::vector<CLI::App*> m_subApps;
    jString m_dataRoot;
    bool m_quiet = false;
};
