#include "LayoutFile.h"

#include "jLog.h"
#include "mjl.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

jString LayoutFile::defaultPath()
{
    const char* config = std::getenv("XDG_CONFIG_HOME");
    jString folder;
    if (config && *config) {
        folder = config;
    } else {
        const char* home = std::getenv("HOME");
        folder = jString(home && *home ? home : ".") + "/.config";
    }
    return folder + "/material-editor/layout.cfg";
}

LayoutFile::LayoutFile(jString path)
    : m_path(std::move(path))
{
}

void LayoutFile::read()
{
    m_package.clear();
    m_warning.clear();
    std::ifstream in(m_path, std::ios::binary);
    if (!in) {
        m_warning = jFormat("material-editor: no layout file \"%s\" yet, the default layout is used", m_path.c_str());
        return;
    }
    std::ostringstream text;
    text << in.rdbuf();
    mjl file;
    {
        // The reader's own error goes into the one warning below.
        jLog::Capture quiet;
        if (file.parse(text.str(), m_path)) {
            m_package = std::move(*file.getRoot());
            return;
        }
    }
    m_warning = jFormat("material-editor: the layout file \"%s\" cannot be read (%s), the default layout is used",
                        m_path.c_str(), file.getError().c_str());
}

bool LayoutFile::write() const
{
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(m_path).parent_path(), error);
    jString reason;
    if (!mjl::writeFileAtomic(m_path, mjl::toText(m_package), &reason)) {
        jLog::error("material-editor: can't write the layout file \"%s\": %s", m_path.c_str(), reason.c_str());
        return false;
    }
    return true;
}

jString LayoutFile::takeWarning()
{
    jString warning;
    warning.swap(m_warning);
    return warning;
}
