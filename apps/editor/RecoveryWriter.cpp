#include "RecoveryWriter.h"

#include "jString.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

RecoveryWriter::RecoveryWriter()
    : m_thread([this] { run(); })
{
}

RecoveryWriter::~RecoveryWriter()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void RecoveryWriter::write(const jString& path, jString text)
{
    {
        std::lock_guard lock(m_mutex);
        if (!m_jobs.empty() && !m_jobs.back().remove && m_jobs.back().path == path)
            m_jobs.back().text = std::move(text);
        else
            m_jobs.push_back({path, std::move(text), false});
    }
    m_changed.notify_all();
}

void RecoveryWriter::remove(const jString& path)
{
    {
        std::lock_guard lock(m_mutex);
        m_jobs.push_back({path, {}, true});
    }
    m_changed.notify_all();
}

void RecoveryWriter::flush()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_jobs.empty() && !m_busy; });
}

void RecoveryWriter::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_busy = true;
        lock.unlock();
        jString failure = perform(job);
        lock.lock();
        if (!failure.empty())
            m_failure = std::move(failure);
        m_busy = false;
        m_changed.notify_all();
    }
}

jString RecoveryWriter::takeFailure()
{
    std::lock_guard lock(m_mutex);
    return std::exchange(m_failure, jString());
}

jString RecoveryWriter::perform(const Job& job)
{
    std::error_code error;
    if (job.remove) {
        std::filesystem::remove(std::filesystem::path(job.path), error);
        return {};
    }
    std::filesystem::create_directories(std::filesystem::path(job.path).parent_path(), error);
    return write_atomically(job.path, job.text);
}

// A temporary file beside the target, renamed over it once written. Not
// flushed to the disk: the copy guards against the program dying, which
// leaves the kernel's pages intact, and flushing would cost more than
// building the copy. A copy cut short by a power loss does not parse and is
// set aside at the next start.
jString RecoveryWriter::write_atomically(const jString& path, std::string_view text)
{
    jString temporary = path + ".tmp-XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0)
        return jFormat("can't create a file beside \"%s\": %s", path.c_str(), std::strerror(errno));
    bool written = true;
    for (size_t done = 0; written && done < text.size();) {
        const ssize_t wrote = ::write(fd, text.data() + done, text.size() - done);
        if (wrote < 0 && errno == EINTR)
            continue;
        written = wrote > 0;
        done += written ? static_cast<size_t>(wrote) : 0;
    }
    const int cause = errno;
    written = ::close(fd) == 0 && written;
    if (!written || ::rename(temporary.c_str(), path.c_str()) != 0) {
        const int failure = written ? errno : cause;
        ::unlink(temporary.c_str());
        return jFormat("can't write the recovery file \"%s\": %s", path.c_str(), std::strerror(failure));
    }
    return {};
}
