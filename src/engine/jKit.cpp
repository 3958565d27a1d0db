#include "jKit.h"

#include "jDir.h"
#include "jLog.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace jKit {
namespace {

size_t fileNameStart(const jString& path)
{
    const size_t slash = path.rfind('/');
    return slash == jString::npos ? 0 : slash + 1;
}

// Position of the extension's dot inside path, or npos. A leading dot of the
// file name (".hidden") starts no extension.
size_t extensionDot(const jString& path)
{
    const size_t start = fileNameStart(path);
    const size_t dot = path.rfind('.');
    if (dot == jString::npos || dot <= start)
        return jString::npos;
    return dot;
}

jVector<jString> splitSegments(const jString& path)
{
    jVector<jString> segments;
    size_t begin = 0;
    while (begin <= path.size()) {
        size_t end = path.find('/', begin);
        if (end == jString::npos)
            end = path.size();
        if (end > begin)
            segments.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return segments;
}

jVector<jString> collapseDotSegments(const jVector<jString>& segments, bool absolute)
{
    jVector<jString> kept;
    for (const jString& segment : segments) {
        if (segment == ".")
            continue;
        if (segment == "..") {
            if (!kept.empty() && kept.back() != "..")
                kept.pop_back();
            else if (!absolute)
                kept.push_back(segment);
            continue;
        }
        kept.push_back(segment);
    }
    return kept;
}

// The folder a file manager should show for path: the path itself when it
// is a folder, else the folder holding it.
jString folderToShow(const jString& path)
{
    const jString absolute = jDir::resolveRead(path);
    if (jDir::isDirectory(absolute))
        return absolute;
    const jString parent = getDirectory(absolute);
    return parent.empty() ? jString(".") : parent;
}

// Starts program with one argument, detached: an intermediate child spawns it
// and exits at once, so the opener is never a zombie of this process and a
// file manager that stays in the foreground does not block the caller.
bool spawnDetached(const char* program, const jString& argument)
{
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        setsid();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        char* argv[] = {const_cast<char*>(program), const_cast<char*>(argument.c_str()), nullptr};
        pid_t opener = 0;
        const int rc = posix_spawnp(&opener, program, &actions, nullptr, argv, environ);
        _exit(rc == 0 ? 0 : 127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

jString getDirectory(const jString& path)
{
    const size_t slash = path.rfind('/');
    if (slash == jString::npos)
        return {};
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

jString getFileName(const jString& path)
{
    return path.substr(fileNameStart(path));
}

jString getBaseName(const jString& path)
{
    const size_t start = fileNameStart(path);
    const size_t dot = extensionDot(path);
    return dot == jString::npos ? path.substr(start) : path.substr(start, dot - start);
}

jString getExtension(const jString& path)
{
    const size_t dot = extensionDot(path);
    return dot == jString::npos ? jString() : path.substr(dot + 1);
}

jString joinPath(const jString& a, const jString& b)
{
    if (a.empty())
        return b;
    if (b.empty())
        return a;
    const size_t aEnd = a.find_last_not_of('/');
    const size_t bBegin = b.find_first_not_of('/');
    const jString head = aEnd == jString::npos ? jString() : a.substr(0, aEnd + 1);
    const jString tail = bBegin == jString::npos ? jString() : b.substr(bBegin);
    return head + "/" + tail;
}

jString normalizePath(const jString& path)
{
    if (path.empty())
        return {};
    const bool absolute = path.front() == '/';
    const jVector<jString> segments = collapseDotSegments(splitSegments(path), absolute);
    jString result = absolute ? "/" : "";
    for (size_t i = 0; i < segments.size(); ++i) {
        if (i > 0)
            result += '/';
        result += segments[i];
    }
    return result.empty() ? jString(".") : result;
}

bool openInFileManager(const jString& path)
{
    return spawnDetached("xdg-open", folderToShow(path));
}

bool openPath(const jString& path)
{
    if (openInFileManager(path))
        return true;
    jLog::error("%s: can't open \"%s\" in the file manager", "jKit::openPath", path.c_str());
    return false;
}

jString getFileDir(const jString& path)
{
    return getDirectory(path);
}

} // namespace jKit
