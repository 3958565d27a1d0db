#pragma once

#include "jString.h"

#include <vector>

// Reads the folders of the data root for the asset strip. A root-relative
// folder is read from the project root and from the bundled root, as every
// read of the engine resolves (the project's entries win on equal names),
// so a project without its own data/core still shows the bundled one.
// Nothing outside the roots is ever listed: hidden entries (".name") are
// left out, and so are links that lead out of the roots.
class AssetFolderReader {
public:
    struct Entry {
        jString name;
        bool folder = false;
    };

    // Lists folder: folders first, then files, each in name order
    // (lessByName). False with a reason (and out empty) when the folder is
    // missing, is not a folder, lies outside the roots or cannot be read.
    static bool list(const jString& folder, std::vector<Entry>& out, jString& reason);

    // Natural order, ignoring case: "tex2" before "Tex10"; names equal but
    // for case fall back to byte order so the order is total.
    static bool lessByName(const jString& a, const jString& b);

    // Makes a folder path as messages carry it root-relative: a relative
    // path, or an absolute one inside the project or bundled root, with or
    // without a trailing '/'. False when it lies outside the roots.
    static bool toRootRelative(const jString& text, jString& out);
};
