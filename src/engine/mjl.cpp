#include "mjl.h"

#include "FileReader.h"
#include "PackageReader.h"
#include "PackageWriter.h"
#include "PackageStore.h"
#include "PackageSyntax.h"
#include "jDir.h"
#include "jLog.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace PackageSyntax;

struct Location {
    size_t line = 1;
    size_t column = 1;
};

Location locate(std::string_view text, size_t offset)
{
    Location location;
    size_t lineStart = 0;
    for (size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++location.line;
            lineStart = i + 1;
        }
    }
    location.column = offset - lineStart + 1;
    return location;
}

size_t treeDepth(const Package& root)
{
    size_t deepest = 0;
    jVector<std::pair<const Package*, size_t>> pending { { &root, 0 } };
    while (!pending.empty()) {
        const auto [package, depth] = pending.back();
        pending.pop_back();
        deepest = std::max(deepest, depth);
        for (size_t i = 0; i < package->getPackageCount(); ++i)
            pending.push_back({ package->getPackage(i), depth + 1 });
    }
    return deepest;
}

// ---------------------------------------------------------------------------
// Files

bool writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

jString directoryOf(const jString& path)
{
    const size_t slash = path.rfind('/');
    if (slash == jString::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Creates a new file beside target with a name no one else uses.
int createTempBeside(const jString& target, jString& tempPath)
{
    static std::atomic<unsigned> counter { 0 };
    const size_t slash = target.rfind('/');
    const jString dir = slash == jString::npos ? jString() : target.substr(0, slash + 1);
    const jString base = slash == jString::npos ? target : target.substr(slash + 1);
    for (int attempt = 0; attempt < 100; ++attempt) {
        tempPath = jFormat("%s.%s.%d.%u.tmp", dir.c_str(), base.c_str(), static_cast<int>(getpid()), counter++);
        const int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// The replacement keeps the permissions of the file it replaces.
void copyModeOf(const jString& target, int fd)
{
    struct stat info {};
    if (stat(target.c_str(), &info) == 0)
        fchmod(fd, info.st_mode & 07777);
}

void syncDirectory(const jString& path)
{
    const int fd = ::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        fsync(fd);
        ::close(fd);
    }
}

} // namespace

// ---------------------------------------------------------------------------

mjl::mjl() = default;
mjl::~mjl() = default;

bool mjl::open(const jString& path, bool writable)
{
    close();
    m_error.clear();
    // A writable open reads what the reader would see (possibly the bundled
    // file) and saves to the project root.
    const jString readPath = jDir::resolveRead(path);
    jString text;
    jString reason;
    const FileReader::Status status = FileReader::read(readPath, FileReader::kDocumentLimit, text, reason);
    if (status != FileReader::Status::Read) {
        if (status == FileReader::Status::Missing && writable) {
            m_root = std::make_unique<Package>();
            m_path = jDir::resolveWrite(path);
            m_writable = true;
            return true;
        }
        m_error = jFormat("mjl: %s: %s", path.c_str(), reason.c_str());
        if (status != FileReader::Status::Missing)
            jLog::error("%s", m_error.c_str());
        return false;
    }
    auto root = std::make_unique<Package>();
    const std::string_view held = root->keepText(std::move(text));
    if (!parseInto(std::move(root), held, path))
        return false;
    m_path = writable ? jDir::resolveWrite(path) : readPath;
    m_writable = writable;
    return true;
}

bool mjl::parse(std::string_view text, const jString& name)
{
    auto root = std::make_unique<Package>();
    const std::string_view held = root->storeText(text);
    return parseInto(std::move(root), held, name);
}

// The tree views the text it is read from, so the root's storage holds it.
bool mjl::parseInto(std::unique_ptr<Package> root, std::string_view text, const jString& name)
{
    close();
    m_error.clear();
    if (text.starts_with(kBom))
        text.remove_prefix(kBom.size());
    PackageReader reader(text, *root);
    if (!reader.run()) {
        const Location at = locate(text, reader.error().offset);
        m_error = jFormat("mjl: %s:%zu:%zu: %s", name.c_str(), at.line, at.column, reader.error().what.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    m_root = std::move(root);
    return true;
}

void mjl::close()
{
    m_root.reset();
    m_path.clear();
    m_writable = false;
}

bool mjl::save()
{
    if (!m_root || !m_writable || m_path.empty()) {
        m_error = jFormat("mjl: %s: not open for writing", m_path.empty() ? "<memory>" : m_path.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    if (treeDepth(*m_root) > static_cast<size_t>(kMaxDepth)) {
        m_error = jFormat("mjl: %s: nesting deeper than %d levels", m_path.c_str(), kMaxDepth);
        jLog::error("%s", m_error.c_str());
        return false;
    }
    return writeFileAtomic(m_path, toText(*m_root), &m_error);
}

bool mjl::saveAs(const jString& path)
{
    if (!m_root) {
        m_error = jFormat("mjl: %s: nothing is open", path.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    m_path = jDir::resolveWrite(path);
    m_writable = true;
    return save();
}

jString mjl::toText(const Package& root)
{
    return PackageWriter::toText(root);
}

bool mjl::writeFileAtomic(const jString& absolutePath, std::string_view text, jString* error)
{
    jString tempPath;
    const int fd = createTempBeside(absolutePath, tempPath);
    bool ok = fd >= 0;
    const char* step = "can't create a temporary file";
    if (ok) {
        copyModeOf(absolutePath, fd);
        ok = writeAll(fd, text);
        step = "can't write";
        if (ok) {
            ok = fsync(fd) == 0;
            step = "can't flush";
        }
        const int savedErrno = errno;
        if (::close(fd) != 0 && ok) {
            ok = false;
            step = "can't close";
        } else {
            errno = savedErrno;
        }
        if (ok) {
            ok = ::rename(tempPath.c_str(), absolutePath.c_str()) == 0;
            step = "can't replace the file";
        }
        if (!ok) {
            const int cause = errno;
            ::unlink(tempPath.c_str());
            errno = cause;
        }
    }
    if (!ok) {
        const jString message = jFormat("mjl: %s: %s: %s", absolutePath.c_str(), step, strerror(errno));
        jLog::error("%s", message.c_str());
        if (error)
            *error = message;
        return false;
    }
    syncDirectory(absolutePath);
    return true;
}
