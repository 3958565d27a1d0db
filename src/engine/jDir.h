#pragma once

#include "jString.h"

// The data root: the folder that holds data/. Every path stored in a
// document is relative to it. Reading a relative path looks in the project
// root first, then in the bundled root (the repository's own folder, or the
// install prefix's share folder); writing always goes to the project root.
class jDir {
public:
    // The project root in use; defaults to the bundled root.
    static const jString& getProjectRoot();
    static void setProjectRoot(const jString& absolutePath);
    // The root that ships with the program.
    static const jString& getBundledRoot();

    // Chooses the project root in the design's order: the explicit option,
    // then $MATERIAL_EDITOR_ROOT, then the nearest ancestor of firstPath (or
    // of the working directory when firstPath is empty) that holds data/,
    // else the bundled root.
    static jString discoverRoot(const jString& option, const jString& firstPath);

    // Absolute path for reading: the project root's file when it exists,
    // else the bundled root's when that exists, else the project root's.
    // Absolute paths are returned unchanged.
    static jString resolveRead(const jString& path);
    // Absolute path for writing: always under the project root.
    static jString resolveWrite(const jString& path);

    // Turns a command-line path (relative to the working directory, or
    // absolute) into a root-relative one. False when it lies outside the
    // project root.
    static bool toRootRelative(const jString& shellPath, jString& rootRelative);

    // Whether a path stored in a document (a parent, a texture, an include,
    // a template) may be followed: relative, and its ".." never climbing
    // above the root ("data/../data/a.mat" may, "data/../../a" may not).
    // The test is lexical; what a link inside the root leads to is left to
    // the reader, which reads regular files only.
    static bool isInsideRoot(const jString& storedPath);
    // isInsideRoot, and when it is not, logs "<routine>: "<document>" names
    // <what> "<storedPath>" outside the data root" and gives false.
    static bool checkStoredPath(const char* routine, const jString& document, const char* what,
        const jString& storedPath);

    static bool exists(const jString& absolutePath);
    static bool isDirectory(const jString& absolutePath);
};
