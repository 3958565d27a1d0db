#pragma once

#include "jString.h"

// Checks shared by the commands that read and write material files. Each
// logs its own error, naming the path as it was typed, and returns false.
namespace tool {

// The root-relative path names an existing, readable file (in the project
// root or the bundled root).
bool requireReadableFile(const char* command, const jString& shown, const jString& relative);
// A path argument is not the empty string.
bool requireNonEmpty(const char* command, const char* role, const jString& shown);
// The destination is neither the source nor an existing folder.
bool requireDestination(const char* command, const jString& shownDestination, const jString& relativeSource,
    const jString& relativeDestination);

} // namespace tool
