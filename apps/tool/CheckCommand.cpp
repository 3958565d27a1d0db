#include "ToolCommand.h"
#include "ToolFiles.h"

#include "DocumentChecker.h"
#include "JsonText.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <vector>

namespace {

constexpr const char* kName = "check";

// Reports the problems of material files, one line per problem on stdout:
// "PATH: node ID (TYPE): TEXT" or "PATH: TEXT". Exit 1 when there is any
// problem other than a warning (an unlinked end node input without default).
// With --json, one JSON array of the problems of all files instead, one
// element per node a problem is shown on (docs/command-line.md).
class CheckCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override
    {
        return "Report unknown blocks, broken joints, cycles, missing stage nodes, unlinked inputs and shader errors";
    }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_paths, "Material files")->required();
        command.add_option("--validator", m_validator, "GLSL compiler to run on the generated programs");
        command.add_flag("--json", m_json, "Print the problems as one JSON array");
    }

    jString firstPath() const override { return m_paths.empty() ? jString() : m_paths.front(); }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (!context.toRootRelative(kName, m_paths, relative))
            return tool::kExitUsage;
        DocumentChecker checker;
        const ShaderValidator validator(m_validator);
        checker.setValidator(validator);
        if (!validator.isAvailable()) {
            jLog::warning("%s: %s is not installed; the generated programs are not compiled", kName,
                m_validator.c_str());
            checker.setCompileShaders(false);
        }
        bool clean = true;
        for (size_t i = 0; i < m_paths.size(); ++i) {
            if (!tool::requireReadableFile(kName, m_paths[i], relative[i])) {
                clean = false;
                continue;
            }
            if (!checker.check(relative[i]))
                clean = false;
            if (m_json)
                add_json(m_paths[i], checker);
            else
                print_plain(m_paths[i], checker);
        }
        if (m_json) {
            std::printf("%s\n", m_elements.empty() ? "[]" : ("[\n" + jJoin(m_elements, ",\n") + "\n]").c_str());
            std::fflush(stdout);
        }
        return clean ? tool::kExitSuccess : tool::kExitFailed;
    }

private:
    static void print_plain(const jString& path, const DocumentChecker& checker)
    {
        for (const DocumentChecker::Problem& problem : checker.getProblems())
            std::printf("%s: %s\n", path.c_str(), DocumentChecker::describe(problem).c_str());
        std::fflush(stdout);
    }

    void add_json(const jString& path, const DocumentChecker& checker)
    {
        for (const DocumentChecker::NodeProblem& problem : checker.nodeProblems()) {
            m_elements.push_back(jFormat(
                "  {\"file\": %s, \"node\": %s, \"type\": %s, \"line\": %s, \"severity\": \"%s\", \"message\": %s}",
                JsonText::string(path).c_str(), JsonText::countOrNull(problem.nodeId).c_str(),
                JsonText::stringOrNull(problem.nodeType).c_str(), JsonText::countOrNull(problem.line).c_str(),
                problem.warning ? "warning" : "error", JsonText::string(problem.message).c_str()));
        }
    }

    bool m_json = false;
    jVector<jString> m_elements;
    std::vector<jString> m_paths;
    jString m_validator = ShaderValidator::kDefaultProgram;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new CheckCommand); });

} // namespace
