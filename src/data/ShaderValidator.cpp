#include "ShaderValidator.h"

#include "jKit.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

extern char** environ;

namespace {

// A temporary file that holds the program while the compiler reads it.
class TemporaryShaderFile {
public:
    TemporaryShaderFile(const jString& text, const char* stage)
    {
        m_path = (std::filesystem::temp_directory_path() / "material-check-XXXXXX.").string() + stage;
        const int suffix = static_cast<int>(std::char_traits<char>::length(stage)) + 1;
        const int fd = mkstemps(m_path.data(), suffix);
        if (fd < 0) {
            m_path.clear();
            return;
        }
        const bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        ::close(fd);
        if (!written)
            remove();
    }
    ~TemporaryShaderFile() { remove(); }
    TemporaryShaderFile(const TemporaryShaderFile&) = delete;
    TemporaryShaderFile& operator=(const TemporaryShaderFile&) = delete;

    bool isOpen() const { return !m_path.empty(); }
    const jString& path() const { return m_path; }

private:
    void remove()
    {
        if (!m_path.empty())
            ::unlink(m_path.c_str());
        m_path.clear();
    }

    jString m_path;
};

// Runs program with one argument; its stdout and stderr come back in output.
// False when it could not be started or did not exit normally.
bool runCompiler(const jString& program, const jString& file, jString& output, int& exitCode)
{
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDERR_FILENO);
    char* argv[] = {const_cast<char*>(program.c_str()), const_cast<char*>(file.c_str()), nullptr};
    pid_t child = 0;
    const int spawned = posix_spawnp(&child, program.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    if (spawned == 0) {
        char buffer[4096];
        ssize_t count = 0;
        while ((count = ::read(pipeEnds[0], buffer, sizeof buffer)) > 0)
            output.append(buffer, static_cast<size_t>(count));
    }
    ::close(pipeEnds[0]);
    int status = 0;
    if (spawned != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return false;
    exitCode = WEXITSTATUS(status);
    return true;
}

// The compiler's error lines ("ERROR: 0:12: ..."; a line naming the file
// gets source string 0 instead), without its closing lines ("compilation
// terminated", "N compilation errors").
jVector<jString> errorLines(const jString& output, const jString& file)
{
    jVector<jString> errors;
    for (const jString& line : jSplit(output, '\n')) {
        if (line.rfind("ERROR: ", 0) != 0 || line.find("compilation terminated") != jString::npos
            || line.find(" compilation errors.") != jString::npos)
            continue;
        jString text = line;
        while (!text.empty() && (text.back() == ' ' || text.back() == '\r'))
            text.pop_back();
        const size_t at = text.find(file + ":");
        if (at != jString::npos)
            text = text.substr(0, at) + "0" + text.substr(at + file.size());
        errors.push_back(text);
    }
    return errors;
}

} // namespace

bool ShaderValidator::isAvailable() const
{
    if (m_program.find('/') != jString::npos)
        return access(m_program.c_str(), X_OK) == 0;
    const char* path = std::getenv("PATH");
    for (const jString& folder : jSplit(path ? path : "", ':')) {
        const jString candidate = jKit::joinPath(folder.empty() ? "." : folder, m_program);
        if (access(candidate.c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

bool ShaderValidator::validate(const jString& text, const char* stage, jVector<jString>& errors) const
{
    errors.clear();
    const TemporaryShaderFile file(text, stage);
    if (!file.isOpen()) {
        errors.push_back("can't write a temporary file for the compiler");
        return false;
    }
    jString output;
    int exitCode = 0;
    if (!runCompiler(m_program, file.path(), output, exitCode)) {
        errors.push_back("can't run " + m_program);
        return false;
    }
    errors = errorLines(output, file.path());
    if (exitCode != 0 && errors.empty())
        errors.push_back(jFormat("%s ended with exit code %d", m_program.c_str(), exitCode));
    return exitCode == 0;
}
