#pragma once

#include "jString.h"

#include <memory>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

// The exit codes of every sub-command.
enum ExitCode : int {
    kExitSuccess = 0,
    kExitFailed = 1, // the operation returned false
    kExitUsage = 2,  // bad usage, or a path outside the data root
};

// What a sub-command gets when it runs: the data root has been chosen and
// installed as jDir's project root (empty for a command that uses none).
class ToolContext {
public:
    explicit ToolContext(jString root) : m_root(std::move(root)) {}

    const jString& getRoot() const { return m_root; }

    // Makes command-line paths root-relative. Logs every path outside the
    // root as "<command>: "<path>" is outside the data root "<root>"" and
    // every empty one as "<command>: a path is empty", and returns false
    // when there was one.
    bool toRootRelative(const char* command, const std::vector<jString>& shellPaths,
                        std::vector<jString>& rootRelative) const;
    // The absolute path of a root-relative one, for reading and writing the
    // project's own file.
    jString projectFile(const jString& rootRelative) const;

private:
    jString m_root;
};

// One sub-command of material-tool. A command lives in a file of its own
// and registers itself with one line:
//
//   static const tool::ToolCommandRegistration registration(
//       [] { return std::unique_ptr<tool::ToolCommand>(new BlocksCommand); });
class ToolCommand {
public:
    virtual ~ToolCommand() = default;

    virtual const char* name() const = 0;
    // One line for --help.
    virtual const char* description() const = 0;
    // Declares the command's arguments and options on its CLI11 sub-app.
    virtual void addOptions(CLI::App& command) = 0;
    // The first path argument after parsing; the data root is searched from
    // it when neither --data-root nor $MATERIAL_EDITOR_ROOT names one.
    virtual jString firstPath() const { return {}; }
    // Whether the command works inside a data root. A command that only
    // rewrites the text of the files it is given takes any path and runs
    // without choosing or checking a root.
    virtual bool usesDataRoot() const { return true; }
    // Runs the command; returns one of the exit codes.
    virtual int run(const ToolContext& context) = 0;
};

using ToolCommandFactory = std::unique_ptr<ToolCommand> (*)();

// Adds a factory to the list of sub-commands at static initialisation.
class ToolCommandRegistration {
public:
    explicit ToolCommandRegistration(ToolCommandFactory factory);
};

// One instance of every registered command, sorted by name.
std::vector<std::unique_ptr<ToolCommand>> createToolCommands();

} // namespace tool
