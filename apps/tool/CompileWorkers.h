#pragma once

#include "jString.h"

#include <functional>
#include <vector>

// Compiles material files in worker processes: each worker is material-tool
// itself ("compile --worker FILE..."), started with posix_spawn, compiling
// every N-th file in its own process-wide document. A worker writes one line
// "<index> <1|0>" to its stdout (a pipe) per file as it finishes; its engine
// log goes straight to the shared stderr. No threads: the document is
// process-wide, so parallel work needs processes.
class CompileWorkers {
public:
    enum class Outcome { Compiled, Failed, Lost };
    // Called in the parent as results arrive; Lost when the worker ended
    // before reporting the file (crashed or could not start).
    using Report = std::function<void(size_t file, Outcome outcome)>;

    // program: the tool's executable; root: the data root to pass on.
    CompileWorkers(jString program, jString root, bool quiet);

    // Compiles absolute paths in `workers` processes (at most one per file);
    // every file is reported exactly once.
    void run(const std::vector<jString>& files, size_t workers, const Report& report) const;

    // The running executable (/proc/self/exe); empty when it can't be read.
    static jString currentProgram();

private:
    struct Worker;

    bool start(Worker& worker, const std::vector<jString>& files) const;
    static void collect(std::vector<Worker>& workers, const Report& report);

    jString m_program;
    jString m_root;
    bool m_quiet;
};
