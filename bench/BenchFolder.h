#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <stdlib.h>

// A new empty folder under the system's temporary folder, named
// prefix-XXXXXX; a benchmark that cannot make it stops.
inline std::string makeBenchFolder(const char* prefix)
{
    std::string pattern = (std::filesystem::temp_directory_path() / (std::string(prefix) + "-XXXXXX")).string();
    if (!mkdtemp(pattern.data()))
        std::abort();
    return pattern;
}
