#include "RecoveryFile.h"

#include "jDir.h"

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

RecoveryFile::RecoveryFile(const jString& documentPath)
    : m_document(documentPath)
    , m_path(folder() + "/" + nameFor(documentPath))
{
}

jString RecoveryFile::folder()
{
    const char* state = std::getenv("XDG_STATE_HOME");
    jString base;
    if (state && *state == '/') {
        base = state;
    } else {
        const char* home = std::getenv("HOME");
        base = jString(home ? home : "") + "/.local/state";
    }
    return base + "/material-editor/recovery";
}

jString RecoveryFile::nameFor(const jString& documentPath)
{
    if (documentPath.empty())
        return kUntitled;
    jString name;
    name.reserve(documentPath.size() + 16);
    for (char c : documentPath) {
        if (c == '%')
            name += "%25";
        else if (c == '/')
            name += "%2F";
        else
            name += c;
    }
    return name;
}

bool RecoveryFile::exists() const
{
    std::error_code error;
    return fs::is_regular_file(fs::path(m_path), error);
}

bool RecoveryFile::isNewerThanDocument() const
{
    std::error_code error;
    const auto written = fs::last_write_time(fs::path(m_path), error);
    if (error)
        return false;
    if (m_document.empty())
        return true;
    const auto saved = fs::last_write_time(fs::path(jDir::resolveRead(m_document)), error);
    return error || written > saved;
}

void RecoveryFile::remove() const
{
    std::error_code error;
    fs::remove(fs::path(m_path), error);
}

void RecoveryFile::setAside() const
{
    std::error_code error;
    fs::rename(fs::path(m_path), fs::path(m_path + kSetAsideSuffix), error);
}
