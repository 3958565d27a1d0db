#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Runs the built material-tool as a child process and collects what it
// printed and its exit code.
struct ToolResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

struct ToolRunOptions {
    // The child's working folder; the test's own when empty.
    std::string workingFolder;
    // The child's $MATERIAL_EDITOR_ROOT; unset when empty.
    std::optional<std::string> rootVariable;
};

namespace toolrun {

inline std::string makeCaptureFile()
{
    std::string pattern = "/tmp/material-tool-capture-XXXXXX";
    const int fd = mkstemp(pattern.data());
    if (fd < 0)
        std::abort();
    close(fd);
    return pattern;
}

inline std::string takeFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    unlink(path.c_str());
    return text.str();
}

[[noreturn]] inline void execTool(const std::vector<std::string>& args, const ToolRunOptions& options,
                                  const std::string& outFile, const std::string& errFile)
{
    if (!options.workingFolder.empty() && chdir(options.workingFolder.c_str()) != 0)
        _exit(126);
    if (options.rootVariable)
        setenv("MATERIAL_EDITOR_ROOT", options.rootVariable->c_str(), 1);
    else
        unsetenv("MATERIAL_EDITOR_ROOT");
    const int out = open(outFile.c_str(), O_WRONLY | O_TRUNC);
    const int err = open(errFile.c_str(), O_WRONLY | O_TRUNC);
    if (out < 0 || err < 0 || dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0)
        _exit(126);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(MATERIAL_TOOL_PATH));
    for (const std::string& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(MATERIAL_TOOL_PATH, argv.data());
    _exit(127);
}

} // namespace toolrun

inline ToolResult runTool(const std::vector<std::string>& args, const ToolRunOptions& options = {})
{
    const std::string outFile = toolrun::makeCaptureFile();
    const std::string errFile = toolrun::makeCaptureFile();
    const pid_t child = fork();
    if (child == 0)
        toolrun::execTool(args, options, outFile, errFile);
    ToolResult result;
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    result.out = toolrun::takeFile(outFile);
    result.err = toolrun::takeFile(errFile);
    return result;
}
