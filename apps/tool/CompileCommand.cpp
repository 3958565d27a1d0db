#include "CompileWorkers.h"
#include "ToolCommand.h"
#include "ToolFiles.h"

#include "MaterialEditor.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <vector>

namespace {

constexpr const char* kName = "compile";

// Counts results and logs one progress line per file on stderr.
class CompileProgress {
public:
    explicit CompileProgress(size_t total) : m_total(total) {}

    void report(const jString& shown, bool compiled)
    {
        const size_t done = m_compiled + m_failed + 1;
        if (compiled) {
            ++m_compiled;
            jLog::message("%s: [%zu/%zu] compiled \"%s\"", kName, done, m_total, shown.c_str());
        } else {
            ++m_failed;
            jLog::error("%s: [%zu/%zu] can't compile \"%s\"", kName, done, m_total, shown.c_str());
        }
    }

    size_t failed() const { return m_failed; }
    // The summary goes to stdout, also under --quiet.
    void printSummary() const
    {
        std::printf("%zu compiled, %zu failed\n", m_compiled, m_failed);
        std::fflush(stdout);
    }

private:
    size_t m_total;
    size_t m_compiled = 0;
    size_t m_failed = 0;
};

// Compiles material files (MaterialEditor::Compile): reset, load, states,
// save in place. With --jobs N the files are shared out to N worker
// processes (CompileWorkers).
class CompileCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Compile material files: generate their shaders and save them"; }

    void addOptions(CLI::App& command) override
    {
        m_command = &command;
        command.add_option("PATH", m_paths, "Material files")->required();
        command.add_option("--jobs,-j", m_jobs, "Number of worker processes")->check(CLI::PositiveNumber);
        // Internal: the parent's worker protocol (see CompileWorkers).
        command.add_flag("--worker", m_worker)->group("");
    }

    jString firstPath() const override { return m_paths.empty() ? jString() : m_paths.front(); }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (!context.toRootRelative(kName, m_paths, relative))
            return tool::kExitUsage;
        if (m_worker)
            return runWorker(relative);
        CompileProgress progress(m_paths.size());
        std::vector<size_t> readable;
        for (size_t i = 0; i < m_paths.size(); ++i) {
            if (tool::requireReadableFile(kName, m_paths[i], relative[i]))
                readable.push_back(i);
            else
                progress.report(m_paths[i], false);
        }
        if (m_jobs > 1 && readable.size() > 1)
            compileInWorkers(context, relative, readable, progress);
        else
            for (size_t i : readable)
                progress.report(m_paths[i], MaterialEditor::Compile(relative[i]));
        progress.printSummary();
        return progress.failed() ? tool::kExitFailed : tool::kExitSuccess;
    }

private:
    void compileInWorkers(const tool::ToolContext& context, const std::vector<jString>& relative,
        const std::vector<size_t>& readable, CompileProgress& progress) const
    {
        // Absolute paths: the workers' root-relative forms come out the same.
        std::vector<jString> files;
        for (size_t i : readable)
            files.push_back(context.projectFile(relative[i]));
        const CompileWorkers workers(CompileWorkers::currentProgram(), context.getRoot(), isQuiet());
        workers.run(files, static_cast<size_t>(m_jobs), [&](size_t file, CompileWorkers::Outcome outcome) {
            const jString& shown = m_paths[readable[file]];
            if (outcome == CompileWorkers::Outcome::Lost)
                jLog::error("%s: the worker process for \"%s\" ended early", kName, shown.c_str());
            progress.report(shown, outcome == CompileWorkers::Outcome::Compiled);
        });
    }

    // The global --quiet, passed on to the workers.
    bool isQuiet() const
    {
        const CLI::App* app = m_command ? m_command->get_parent() : nullptr;
        return app && app->get_option("--quiet")->count() > 0;
    }

    // One result line per file on stdout, for the parent.
    static int runWorker(const std::vector<jString>& relative)
    {
        for (size_t i = 0; i < relative.size(); ++i) {
            const bool compiled = MaterialEditor::Compile(relative[i]);
            std::printf("%zu %d\n", i, compiled ? 1 : 0);
            std::fflush(stdout);
        }
        return tool::kExitSuccess;
    }

    CLI::App* m_command = nullptr;
    std::vector<jString> m_paths;
    int m_jobs = 1;
    bool m_worker = false;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new CompileCommand); });

} // namespace
