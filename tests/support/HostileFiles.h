#pragma once

#include "TempFolder.h"

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// Files no reader may read to the end, made under data/ as "<kind>-<name>":
// a pipe without a writer, a link to /dev/zero, a folder, and a sparse file
// one byte over limit. Each comes with the reason FileReader gives.
inline std::vector<std::pair<std::string, std::string>> makeHostileFiles(
    const TempFolder& root, const std::string& name, uint64_t limit)
{
    const std::string pipe = "data/pipe-" + name, zero = "data/zero-" + name;
    const std::string folder = "data/folder-" + name, huge = "data/huge-" + name;
    root.makeFolder(folder);
    mkfifo((root / pipe).c_str(), 0600);
    std::filesystem::create_symlink("/dev/zero", root / zero);
    std::filesystem::resize_file(root.write(huge, ""), limit + 1);
    return {{pipe, "a pipe, not a regular file"}, {zero, "a device, not a regular file"},
        {folder, "a folder, not a regular file"},
        {huge, std::to_string(limit + 1) + " bytes, over the limit of " + std::to_string(limit) + " bytes"}};
}
