#pragma once

#include "jString.h"

#include <vector>

// Checks shared by the commands that read and write material files. Each
// logs its own error, naming the path as it was typed, and returns false.
namespace tool {

class ToolContext;

// The prologue of the commands that read a material file: makes the
// command-line paths root-relative (kExitUsage when one is empty or outside
// the root), then requires the first `readable` of them to be readable
// files (kExitFailed otherwise). kExitSuccess when the command may go on.
int prepareInputs(const ToolContext& context, const char* command, const std::vector<jString>& shellPaths,
    std::vector<jString>& relative, size_t readable = 1);

// The root-relative path names an existing, readable regular file (in the
// project root or the bundled root) of a size a document may have.
bool requireReadableFile(const char* command, const jString& shown, const jString& relative);
// A path argument is not the empty string.
bool requireNonEmpty(const char* command, const char* role, const jString& shown);
// The destination is neither the source nor an existing folder.
bool requireDestination(const char* command, const jString& shownDestination, const jString& relativeSource,
    const jString& relativeDestination);

} // namespace tool
