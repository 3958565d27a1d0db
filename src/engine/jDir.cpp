#include "jDir.h"

#include "jKit.h"
#include "jLog.h"

#include <cstdlib>
#include <filesystem>
#include <optional>

#ifndef MATERIAL_BUNDLED_ROOT
#error "MATERIAL_BUNDLED_ROOT must name the folder that holds the bundled data/"
#endif

namespace fs = std::filesystem;

namespace {

constexpr const char* kRootEnvironmentVariable = "MATERIAL_EDITOR_ROOT";
constexpr const char* kInstalledShareFolder = "../share/material-editor";

jString currentDirectory()
{
    std::error_code ec;
    const fs::path cwd = fs::current_path(ec);
    return ec ? jString("/") : cwd.string();
}

bool isAbsolute(const jString& path)
{
    return !path.empty() && path.front() == '/';
}

// Lexically normalised absolute form of path, taken relative to the working
// directory when it is relative.
jString toAbsolute(const jString& path)
{
    if (isAbsolute(path))
        return jKit::normalizePath(path);
    return jKit::normalizePath(jKit::joinPath(currentDirectory(), path));
}

bool holdsData(const jString& folder)
{
    return jDir::isDirectory(jKit::joinPath(folder, "data"));
}

jString executableDirectory()
{
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? jString() : exe.parent_path().string();
}

// The share folder of an installed program: <exe dir>/../share/material-editor.
jString installedShareRoot()
{
    const jString exeDir = executableDirectory();
    return exeDir.empty() ? jString() : jKit::normalizePath(jKit::joinPath(exeDir, kInstalledShareFolder));
}

jString computeBundledRoot()
{
    const jString compiledIn = toAbsolute(MATERIAL_BUNDLED_ROOT);
    if (holdsData(compiledIn))
        return compiledIn;
    const jString installed = installedShareRoot();
    if (!installed.empty() && holdsData(installed))
        return installed;
    return compiledIn;
}

std::optional<jString> nearestAncestorHoldingData(const jString& absoluteStart)
{
    jString folder = jDir::isDirectory(absoluteStart) ? absoluteStart : jKit::getDirectory(absoluteStart);
    while (!folder.empty()) {
        if (holdsData(folder))
            return folder;
        if (folder == "/")
            break;
        folder = jKit::getDirectory(folder);
    }
    return std::nullopt;
}

// Path of absolutePath below base (both normalised and absolute); "." for
// base itself; nullopt when it is not inside base.
std::optional<jString> relativeInside(const jString& base, const jString& absolutePath)
{
    if (absolutePath == base)
        return jString(".");
    const jString prefix = base == "/" ? base : base + "/";
    if (absolutePath.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    return absolutePath.substr(prefix.size());
}

std::optional<jString> canonicalPath(const jString& path)
{
    std::error_code ec;
    const fs::path canonical = fs::weakly_canonical(path, ec);
    if (ec)
        return std::nullopt;
    return jKit::normalizePath(canonical.string());
}

jString underRoot(const jString& root, const jString& relativePath)
{
    const jString normal = jKit::normalizePath(relativePath);
    return normal == "." ? root : jKit::joinPath(root, normal);
}

struct RootState {
    jString project;
};

RootState& rootState()
{
    static RootState state;
    return state;
}

} // namespace

const jString& jDir::getBundledRoot()
{
    static const jString bundled = computeBundledRoot();
    return bundled;
}

const jString& jDir::getProjectRoot()
{
    const RootState& state = rootState();
    return state.project.empty() ? getBundledRoot() : state.project;
}

void jDir::setProjectRoot(const jString& absolutePath)
{
    rootState().project = absolutePath.empty() ? jString() : toAbsolute(absolutePath);
}

jString jDir::discoverRoot(const jString& option, const jString& firstPath)
{
    if (!option.empty())
        return toAbsolute(option);
    const char* fromEnvironment = std::getenv(kRootEnvironmentVariable);
    if (fromEnvironment && *fromEnvironment)
        return toAbsolute(fromEnvironment);
    const jString start = firstPath.empty() ? currentDirectory() : toAbsolute(firstPath);
    if (std::optional<jString> found = nearestAncestorHoldingData(start))
        return *found;
    return getBundledRoot();
}

jString jDir::resolveRead(const jString& path)
{
    if (isAbsolute(path))
        return path;
    const jString inProject = underRoot(getProjectRoot(), path);
    if (exists(inProject))
        return inProject;
    const jString inBundle = underRoot(getBundledRoot(), path);
    if (exists(inBundle))
        return inBundle;
    return inProject;
}

jString jDir::resolveWrite(const jString& path)
{
    if (isAbsolute(path))
        return path;
    return underRoot(getProjectRoot(), path);
}

// The symlink-resolved path decides whether the path is inside the root, so
// a link inside the project that points elsewhere is refused. The lexical
// form is returned when it is inside too, so that links keep their names.
bool jDir::toRootRelative(const jString& shellPath, jString& rootRelative)
{
    if (shellPath.empty())
        return false;
    const jString lexical = toAbsolute(shellPath);
    const jString& root = getProjectRoot();
    const std::optional<jString> real = canonicalPath(lexical);
    const std::optional<jString> realRoot = canonicalPath(root);
    if (!real || !realRoot)
        return false;
    const std::optional<jString> realRelative = relativeInside(*realRoot, *real);
    if (!realRelative)
        return false;
    const std::optional<jString> lexicalRelative = relativeInside(root, lexical);
    rootRelative = lexicalRelative ? *lexicalRelative : *realRelative;
    return true;
}

bool jDir::isInsideRoot(const jString& storedPath)
{
    if (isAbsolute(storedPath))
        return false;
    const jString normal = jKit::normalizePath(storedPath);
    return normal != ".." && normal.compare(0, 3, "../") != 0;
}

bool jDir::checkStoredPath(const char* routine, const jString& document, const char* what, const jString& storedPath)
{
    if (isInsideRoot(storedPath))
        return true;
    jLog::error("%s: \"%s\" names %s \"%s\" outside the data root", routine, document.c_str(), what,
        storedPath.c_str());
    return false;
}

bool jDir::exists(const jString& absolutePath)
{
    std::error_code ec;
    return fs::exists(absolutePath, ec);
}

bool jDir::isDirectory(const jString& absolutePath)
{
    std::error_code ec;
    return fs::is_directory(absolutePath, ec);
}
