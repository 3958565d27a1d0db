#include "FileReader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Closes the descriptor when the read is over, whichever way it ends.
class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

const char* kindOf(mode_t mode)
{
    if (S_ISDIR(mode))
        return "a folder";
    if (S_ISFIFO(mode))
        return "a pipe";
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return "a device";
    if (S_ISSOCK(mode))
        return "a socket";
    return "not a file";
}

FileReader::Status failure(int error, jString& reason)
{
    if (error == ENOENT || error == ENOTDIR) {
        reason = "no such file";
        return FileReader::Status::Missing;
    }
    reason = std::strerror(error);
    return FileReader::Status::Refused;
}

// Opens the path without blocking and checks what the descriptor names (not
// what the path named a moment before). size gets the file's size.
FileReader::Status openRegular(const jString& absolutePath, uint64_t limit, int& fd, uint64_t& size, jString& reason)
{
    fd = ::open(absolutePath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return failure(errno, reason);
    struct stat info {};
    if (fstat(fd, &info) != 0)
        return failure(errno, reason);
    if (!S_ISREG(info.st_mode)) {
        reason = jFormat("%s, not a regular file", kindOf(info.st_mode));
        return FileReader::Status::Refused;
    }
    size = static_cast<uint64_t>(info.st_size);
    if (size > limit) {
        reason = jFormat("%llu bytes, over the limit of %llu bytes", static_cast<unsigned long long>(size),
            static_cast<unsigned long long>(limit));
        return FileReader::Status::Refused;
    }
    return FileReader::Status::Read;
}

} // namespace

FileReader::Status FileReader::probe(const jString& absolutePath, uint64_t limit, jString& reason)
{
    int fd = -1;
    uint64_t size = 0;
    const Status status = openRegular(absolutePath, limit, fd, size, reason);
    const Descriptor closer(fd);
    return status;
}

FileReader::Status FileReader::read(const jString& absolutePath, uint64_t limit, jString& out, jString& reason)
{
    out.clear();
    int fd = -1;
    uint64_t size = 0;
    const Status status = openRegular(absolutePath, limit, fd, size, reason);
    const Descriptor closer(fd);
    if (status != Status::Read)
        return status;
    out.resize(static_cast<size_t>(size));
    size_t filled = 0;
    while (filled < out.size()) {
        const ssize_t got = ::read(fd, out.data() + filled, out.size() - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            out.clear();
            return failure(errno, reason);
        }
        if (got == 0)
            break; // the file shrank since fstat
        filled += static_cast<size_t>(got);
    }
    out.resize(filled);
    return Status::Read;
}
