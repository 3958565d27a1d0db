#include "AssetFolderReader.h"

#include "jDir.h"
#include "jKit.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <unordered_set>

namespace fs = std::filesystem;

namespace {

// The project root, then the bundled root when it is another folder.
std::vector<jString> roots()
{
    std::vector<jString> list{jDir::getProjectRoot()};
    if (jDir::getBundledRoot() != list.front())
        list.push_back(jDir::getBundledRoot());
    return list;
}

bool isWithin(const fs::path& path, const fs::path& folder)
{
    auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end();
}

// Whether a path, with its links followed, still lies inside one of the roots.
bool leadsIntoRoots(const fs::path& path)
{
    std::error_code ec;
    const fs::path target = fs::weakly_canonical(path, ec);
    if (ec)
        return false;
    for (const jString& root : roots()) {
        const fs::path canonicalRoot = fs::weakly_canonical(fs::path(root), ec);
        if (!ec && isWithin(target, canonicalRoot))
            return true;
    }
    return false;
}

bool isDigit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// Compares the digit runs starting at i and j; advances both past them.
int compareNumbers(const jString& a, size_t& i, const jString& b, size_t& j)
{
    while (i < a.size() && a[i] == '0' && i + 1 < a.size() && isDigit(a[i + 1]))
        ++i;
    while (j < b.size() && b[j] == '0' && j + 1 < b.size() && isDigit(b[j + 1]))
        ++j;
    const size_t startA = i, startB = j;
    while (i < a.size() && isDigit(a[i]))
        ++i;
    while (j < b.size() && isDigit(b[j]))
        ++j;
    const size_t lengthA = i - startA, lengthB = j - startB;
    if (lengthA != lengthB)
        return lengthA < lengthB ? -1 : 1;
    return a.compare(startA, lengthA, b, startB, lengthB);
}

// Reads one root's copy of the folder into out, skipping names already seen.
bool readRoot(const fs::path& folder, std::vector<AssetFolderReader::Entry>& out,
              std::unordered_set<jString>& seen, jString& reason)
{
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        const fs::directory_entry& entry = *it;
        jString name = entry.path().filename().string();
        if (name.empty() || name[0] == '.' || seen.count(name))
            continue;
        std::error_code statError;
        if (entry.is_symlink(statError) && !leadsIntoRoots(entry.path()))
            continue;
        const bool isFolder = entry.is_directory(statError);
        seen.insert(name);
        out.push_back({std::move(name), isFolder});
    }
    if (ec) {
        reason = ec.message();
        return false;
    }
    return true;
}

} // namespace

bool AssetFolderReader::lessByName(const jString& a, const jString& b)
{
    size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            if (const int order = compareNumbers(a, i, b, j))
                return order < 0;
            continue;
        }
        const int ca = std::tolower(static_cast<unsigned char>(a[i]));
        const int cb = std::tolower(static_cast<unsigned char>(b[j]));
        if (ca != cb)
            return ca < cb;
        ++i, ++j;
    }
    if ((i < a.size()) != (j < b.size()))
        return j < b.size();
    return a < b;
}

bool AssetFolderReader::toRootRelative(const jString& text, jString& out)
{
    jString path = jKit::normalizePath(text);
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    // "/" alone is what a locate request for a file at the root carries.
    if (path == "/" || path == "." || path.empty()) {
        out.clear();
        return true;
    }
    if (path[0] != '/') {
        if (!jDir::isInsideRoot(path))
            return false;
        out = path == "." ? jString() : path;
        return true;
    }
    for (const jString& root : roots()) {
        const fs::path relative = fs::path(path).lexically_relative(fs::path(root));
        const jString text = relative.generic_string();
        if (!relative.empty() && text != ".." && !text.starts_with("../")) {
            out = text == "." ? jString() : text;
            return true;
        }
    }
    return false;
}

bool AssetFolderReader::list(const jString& folder, std::vector<Entry>& out, jString& reason)
{
    out.clear();
    reason.clear();
    if (!folder.empty() && !jDir::isInsideRoot(folder)) {
        reason = "outside the data root";
        return false;
    }
    std::unordered_set<jString> seen;
    bool found = false;
    for (const jString& root : roots()) {
        const fs::path path = folder.empty() ? fs::path(root) : fs::path(root) / folder;
        std::error_code ec;
        const fs::file_status status = fs::status(path, ec);
        if (!fs::exists(status))
            continue;
        if (!fs::is_directory(status)) {
            if (!found)
                reason = "not a folder";
            continue;
        }
        if (!leadsIntoRoots(path)) {
            reason = "outside the data root";
            out.clear();
            return false;
        }
        found = true;
        if (!readRoot(path, out, seen, reason)) {
            out.clear();
            return false;
        }
    }
    if (!found) {
        if (reason.empty())
            reason = "no such folder";
        return false;
    }
    std::sort(out.begin(), out.end(), [](const Entry& a, const Entry& b) {
        if (a.folder != b.folder)
            return a.folder;
        return lessByName(a.name, b.name);
    });
    reason.clear();
    return true;
}
