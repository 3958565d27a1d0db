#pragma once

#include "jString.h"

// Small path helpers on '/'-separated paths.
namespace jKit {

// "a/b/c.mat" -> "a/b"; "c.mat" -> "".
jString getDirectory(const jString& path);
// "a/b/c.mat" -> "c.mat".
jString getFileName(const jString& path);
// "a/b/c.mat" -> "c".
jString getBaseName(const jString& path);
// "a/b/c.mat" -> "mat" (without the dot); "" when there is none.
jString getExtension(const jString& path);
// Joins two parts with exactly one '/'.
jString joinPath(const jString& a, const jString& b);
// Removes "." and "a/.." segments and doubled separators.
jString normalizePath(const jString& path);

// Opens the folder holding path in the desktop's file manager (xdg-open);
// false when it could not be started.
bool openInFileManager(const jString& path);
// The same for a data-root relative path, logging an error when the file
// manager cannot be started.
bool openPath(const jString& path);
// The folder part of a file path, without a trailing '/': "a/b/c.png" -> "a/b".
jString getFileDir(const jString& path);

} // namespace jKit
