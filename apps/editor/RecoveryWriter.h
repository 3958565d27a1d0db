#pragma once

#include "jString.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string_view>
#include <thread>

// Writes and removes recovery files on a thread of its own, in the order
// asked, so that the disk never holds up an edit. Each write is atomic (a
// temporary file beside the target, renamed over it): a program that dies
// leaves the old copy or the new one, never half of one.
class RecoveryWriter {
public:
    RecoveryWriter();
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;

    // A write still waiting for the same file is replaced by this one.
    void write(const jString& path, jString text);
    void remove(const jString& path);
    // Returns once everything asked so far is done.
    void flush();
    // Why the last write that failed did, once; empty when none did. The
    // worker does not log: the log's sinks belong to the UI thread.
    jString takeFailure();

private:
    struct Job {
        jString path;
        jString text;
        bool remove = false;
    };

    void run();
    // Empty on success, else why the job failed.
    static jString perform(const Job& job);
    static jString write_atomically(const jString& path, std::string_view text);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_busy = false;
    bool m_stopping = false;
    jString m_failure;
    std::thread m_thread;
};
