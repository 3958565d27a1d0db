#pragma once

#include "jString.h"

#include <string_view>

// The few items of a material file that the asset strip shows: its engine
// name and its parent. They are written at the top of "materials/material",
// before the states and the generated programs, so only the beginning of
// the file is read and scanned, without building the package tree.
struct MaterialHeader {
    // Bytes read from the start of a file; items further down are not seen.
    static constexpr size_t kScanLimit = 64 * 1024;

    jString name;       // the "name" item, empty when the file has none
    jString parentPath; // the "parent_path" item (else "parent"): set for instances

    bool isInstance() const { return !parentPath.empty(); }

    // Reads the start of a regular file and scans it. False with a reason
    // when the file cannot be read; a file that is not a package simply
    // yields an empty header.
    static bool read(const jString& absolutePath, MaterialHeader& out, jString& reason);
    // Scans package text for the items of the first "materials/material".
    static MaterialHeader scan(std::string_view text);
};
