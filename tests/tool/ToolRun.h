#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// Runs the built material-tool through the shell and collects what it
// printed and its exit code.
struct ToolResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

struct ToolRunOptions {
    std::string workingFolder;               // the test's own when empty
    std::optional<std::string> rootVariable; // $MATERIAL_EDITOR_ROOT; unset when empty
};

namespace toolrun {

inline std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

inline std::string take(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    unlink(path.c_str());
    return text.str();
}

} // namespace toolrun

inline ToolResult runTool(const std::vector<std::string>& args, const ToolRunOptions& options = {})
{
    const std::string capture = "/tmp/material-tool-" + std::to_string(getpid()) + "-";
    std::string command = options.workingFolder.empty() ? "" : "cd " + toolrun::quoted(options.workingFolder) + " && ";
    command += options.rootVariable ? "MATERIAL_EDITOR_ROOT=" + toolrun::quoted(*options.rootVariable)
                                    : std::string("env -u MATERIAL_EDITOR_ROOT");
    command += " " + toolrun::quoted(MATERIAL_TOOL_PATH);
    for (const std::string& arg : args)
        command += " " + toolrun::quoted(arg);
    command += " >" + capture + "out 2>" + capture + "err </dev/null";
    const int status = std::system(command.c_str());
    ToolResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = toolrun::take(capture + "out");
    result.err = toolrun::take(capture + "err");
    return result;
}
