#include "ToolFiles.h"

#include "ToolCommand.h"

#include "FileReader.h"
#include "jDir.h"
#include "jLog.h"

#include <filesystem>

namespace tool {
namespace {

// Resolves symbolic links so that two names of one file compare equal.
std::filesystem::path canonicalForm(const jString& absolute)
{
    std::error_code ec;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(absolute, ec);
    return ec ? std::filesystem::path(absolute) : resolved;
}

} // namespace

int prepareInputs(const ToolContext& context, const char* command, const std::vector<jString>& shellPaths,
    std::vector<jString>& relative, size_t readable)
{
    if (!context.toRootRelative(command, shellPaths, relative))
        return kExitUsage;
    for (size_t i = 0; i < readable && i < shellPaths.size(); ++i) {
        if (!requireReadableFile(command, shellPaths[i], relative[i]))
            return kExitFailed;
    }
    return kExitSuccess;
}

bool requireReadableFile(const char* command, const jString& shown, const jString& relative)
{
    const jString absolute = jDir::resolveRead(relative);
    if (!jDir::exists(absolute)) {
        jLog::error("%s: \"%s\" does not exist", command, shown.c_str());
        return false;
    }
    if (jDir::isDirectory(absolute)) {
        jLog::error("%s: \"%s\" is a folder, not a material file", command, shown.c_str());
        return false;
    }
    jString reason;
    if (FileReader::probe(absolute, FileReader::kDocumentLimit, reason) != FileReader::Status::Read) {
        jLog::error("%s: can't read \"%s\": %s", command, shown.c_str(), reason.c_str());
        return false;
    }
    return true;
}

bool requireNonEmpty(const char* command, const char* role, const jString& shown)
{
    if (!shown.empty())
        return true;
    jLog::error("%s: the %s path is empty", command, role);
    return false;
}

bool requireDestination(const char* command, const jString& shownDestination, const jString& relativeSource,
    const jString& relativeDestination)
{
    const jString destination = jDir::resolveWrite(relativeDestination);
    if (canonicalForm(jDir::resolveRead(relativeSource)) == canonicalForm(destination)) {
        jLog::error("%s: the destination \"%s\" is the source file", command, shownDestination.c_str());
        return false;
    }
    if (jDir::isDirectory(destination)) {
        jLog::error("%s: the destination \"%s\" is a folder", command, shownDestination.c_str());
        return false;
    }
    return true;
}

} // namespace tool
