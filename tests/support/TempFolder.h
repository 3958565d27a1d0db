#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A fresh folder under the system's temporary folder, removed with
// everything in it when the object goes. Its path is symlink-free, so tests
// can compare it with paths the code under test derives from getcwd().
class TempFolder {
public:
    TempFolder()
    {
        const std::filesystem::path base = std::filesystem::temp_directory_path() / "material-test-XXXXXX";
        std::string pattern = base.string();
        if (!mkdtemp(pattern.data()))
            std::abort();
        m_path = std::filesystem::canonical(pattern).string();
    }
    ~TempFolder()
    {
        std::error_code ec;
        std::filesystem::remove_all(m_path, ec);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return m_path; }
    std::string operator/(const std::string& relative) const { return m_path + "/" + relative; }

    // Writes a file (creating its folders) and returns its absolute path.
    std::string write(const std::string& relative, const std::string& text) const
    {
        const std::filesystem::path file = *this / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }
    std::string makeFolder(const std::string& relative) const
    {
        std::filesystem::create_directories(*this / relative);
        return *this / relative;
    }
    std::string read(const std::string& relative) const
    {
        std::ifstream in(*this / relative, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

private:
    std::string m_path;
};
