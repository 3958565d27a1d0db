#include "CompileWorkers.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

extern char** environ;

struct CompileWorkers::Worker {
    std::vector<size_t> files; // indexes into the caller's list, in order
    std::vector<bool> reported;
    pid_t pid = -1;
    int output = -1;
    jString pending; // an incomplete line
};

CompileWorkers::CompileWorkers(jString program, jString root, bool quiet)
    : m_program(std::move(program))
    , m_root(std::move(root))
    , m_quiet(quiet)
{
}

jString CompileWorkers::currentProgram()
{
    char buffer[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return length > 0 ? jString(buffer, static_cast<size_t>(length)) : jString();
}

void CompileWorkers::run(const std::vector<jString>& files, size_t workers, const Report& report) const
{
    const size_t count = std::max<size_t>(1, std::min(workers, files.size()));
    std::vector<Worker> pool(count);
    // Round robin, so that every worker gets a mix of early and late files.
    for (size_t i = 0; i < files.size(); ++i)
        pool[i % count].files.push_back(i);
    for (Worker& worker : pool) {
        worker.reported.assign(worker.files.size(), false);
        start(worker, files);
    }
    collect(pool, report);
    for (Worker& worker : pool) {
        if (worker.pid > 0) {
            int status = 0;
            waitpid(worker.pid, &status, 0);
        }
        for (size_t i = 0; i < worker.files.size(); ++i) {
            if (!worker.reported[i])
                report(worker.files[i], Outcome::Lost);
        }
    }
}

bool CompileWorkers::start(Worker& worker, const std::vector<jString>& files) const
{
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    std::vector<jString> args = {m_program, "--data-root", m_root};
    if (m_quiet)
        args.push_back("--quiet");
    args.insert(args.end(), {"compile", "--worker", "--"});
    for (size_t file : worker.files)
        args.push_back(files[file]);
    std::vector<char*> argv;
    for (jString& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    const int spawned = posix_spawn(&worker.pid, m_program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    if (spawned != 0) {
        worker.pid = -1;
        close(pipeEnds[0]);
        return false;
    }
    worker.output = pipeEnds[0];
    return true;
}

// Reads the workers' result lines until every pipe is closed.
void CompileWorkers::collect(std::vector<Worker>& workers, const Report& report)
{
    for (;;) {
        std::vector<pollfd> fds;
        std::vector<Worker*> owners;
        for (Worker& worker : workers) {
            if (worker.output >= 0) {
                fds.push_back({worker.output, POLLIN, 0});
                owners.push_back(&worker);
            }
        }
        if (fds.empty())
            return;
        if (poll(fds.data(), fds.size(), -1) < 0)
            continue; // interrupted
        for (size_t i = 0; i < fds.size(); ++i) {
            if (!fds[i].revents)
                continue;
            Worker& worker = *owners[i];
            char buffer[4096];
            const ssize_t count = read(worker.output, buffer, sizeof buffer);
            if (count <= 0) {
                close(worker.output);
                worker.output = -1;
                continue;
            }
            worker.pending.append(buffer, static_cast<size_t>(count));
            size_t end = 0;
            while ((end = worker.pending.find('\n')) != jString::npos) {
                const jString line = worker.pending.substr(0, end);
                worker.pending.erase(0, end + 1);
                char* rest = nullptr;
                const unsigned long local = std::strtoul(line.c_str(), &rest, 10);
                if (local >= worker.files.size() || worker.reported[local] || !rest || *rest != ' ')
                    continue;
                worker.reported[local] = true;
                report(worker.files[local], rest[1] == '1' ? Outcome::Compiled : Outcome::Failed);
            }
        }
    }
}
