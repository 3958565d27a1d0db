#include "ToolCommand.h"
#include "ToolFiles.h"

#include "AppData.h"
#include "XMatComplier.h"
#include "jLog.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <vector>

namespace {

constexpr const char* kName = "generate";

// Loads a material and prints the generated program of one stage, one
// stored line per line (a line holding "\n" prints as it is).
class GenerateCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override { return "Print the generated program lines of one stage of a material"; }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_path, "Material file, relative to the working folder")->required();
        command.add_option("--stage", m_stage, "ps (pixel program, the default) or vs (vertex program)")
            ->check(CLI::IsMember({"ps", "vs"}));
    }

    jString firstPath() const override { return m_path; }

    int run(const tool::ToolContext& context) override
    {
        std::vector<jString> relative;
        if (const int exitCode = tool::prepareInputs(context, kName, {m_path}, relative))
            return exitCode;
        AppData* document = AppData::get();
        if (!document->init())
            return tool::kExitFailed; // the block library has logged why
        if (!document->load(relative[0])) {
            jLog::error("%s: can't load \"%s\"", kName, m_path.c_str());
            return tool::kExitFailed;
        }
        XMatComplier generator;
        jVector<jString> lines;
        const bool generated = m_stage == "vs" ? generator.generate_vs(lines) : generator.generate_ps(lines);
        for (const jString& line : lines) {
            std::fputs(line.c_str(), stdout);
            std::fputc('\n', stdout);
        }
        std::fflush(stdout);
        return generated ? tool::kExitSuccess : tool::kExitFailed;
    }

private:
    jString m_path;
    jString m_stage = "ps";
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new GenerateCommand); });

} // namespace
