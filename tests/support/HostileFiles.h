#pragma once

#include "TempFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// Files no reader may read to the end: a pipe without a writer (a blocking
// open waits for ever), a link to /dev/zero (reading never ends), a folder,
// and a sparse file one byte over a size limit (no disk space used).
namespace hostilefiles {

struct Case {
    std::string path;   // root-relative
    std::string reason; // what FileReader says of it
};

// Makes the four under folder (root-relative, e.g. "data"); name is the
// file name they share, before the kind ("x.mat" gives "pipe-x.mat" ...).
inline std::vector<Case> make(const TempFolder& root, const std::string& folder, const std::string& name,
    uint64_t limit)
{
    const std::string base = folder + "/";
    std::filesystem::create_directories(root / folder);
    mkfifo((root / (base + "pipe-" + name)).c_str(), 0600);
    std::filesystem::create_symlink("/dev/zero", root / (base + "zero-" + name));
    std::filesystem::create_directories(root / (base + "folder-" + name));
    root.write(base + "huge-" + name, "");
    std::filesystem::resize_file(root / (base + "huge-" + name), limit + 1);
    return {
        {base + "pipe-" + name, "a pipe, not a regular file"},
        {base + "zero-" + name, "a device, not a regular file"},
        {base + "folder-" + name, "a folder, not a regular file"},
        {base + "huge-" + name,
            std::to_string(limit + 1) + " bytes, over the limit of " + std::to_string(limit) + " bytes"},
    };
}

} // namespace hostilefiles
