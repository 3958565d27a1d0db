#include "ToolCommand.h"
#include "ToolFiles.h"

#include "DocumentChecker.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <vector>

namespace {

constexpr const char* kName = "check";

// Reports the problems of material files, one line per problem on stdout:
// "PATH: node ID (TYPE): TEXT" or "PATH: TEXT". Exit 1 when there is any
// problem other than a warning (an unlinked end node input without default).
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
            for (const DocumentChecker::Problem& problem : checker.getProblems())
                std::printf("%s: %s\n", m_paths[i].c_str(), DocumentChecker::describe(problem).c_str());
            std::fflush(stdout);
        }
        return clean ? tool::kExitSuccess : tool::kExitFailed;
    }

private:
    std::vector<jString> m_paths;
    jString m_validator = ShaderValidator::kDefaultProgram;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new CheckCommand); });

} // namespace
