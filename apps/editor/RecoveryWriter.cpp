#include "RecoveryWriter.h"

#include "jString.h"
#include "mjl.h"

#include <filesystem>
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
    jString reason;
    if (!mjl::writeFileAtomic(job.path, job.text, &reason))
        return jFormat("can't write the recovery file \"%s\": %s", job.path.c_str(), reason.c_str());
    return {};
}
