#include "ToolCommand.h"

#include "FileReader.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <optional>

namespace {

constexpr const char* kName = "format";

std::optional<jString> readWholeFile(const jString& path, jString& reason)
{
    jString text;
    if (FileReader::read(path, FileReader::kDocumentLimit, text, reason) != FileReader::Status::Read)
        return std::nullopt;
    return text;
}

// Where a rewrite goes: the file a symbolic link points to, so the link
// itself stays a link.
jString rewriteTarget(const jString& path)
{
    std::error_code ec;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, ec);
    return ec ? path : target.string();
}

void printLine(const jString& line)
{
    std::fputs(line.c_str(), stdout);
    std::fputc('\n', stdout);
}

// Rewrites package files in the canonical text form of mjl, in place;
// --check only lists the files that are not canonical.
class FormatCommand : public tool::ToolCommand {
public:
    const char* name() const override { return kName; }
    const char* description() const override
    {
        return "Rewrite package files in the canonical text form, in place";
    }

    void addOptions(CLI::App& command) override
    {
        command.add_option("PATH", m_paths, "Package files, anywhere on disk (relative to the working folder)")
            ->required();
        command.add_flag("--check", m_check, "Only list the files that are not canonical (exit 1 when there are some)");
    }

    // Formatting rewrites text only: it stores no root-relative path, so it
    // works on any file the shell names, like any formatter.
    bool usesDataRoot() const override { return false; }

    int run(const tool::ToolContext&) override
    {
        if (!requireNoEmptyPath())
            return tool::kExitUsage;
        bool allDone = true;
        for (const jString& path : m_paths) {
            if (!formatFile(path))
                allDone = false;
        }
        std::fflush(stdout);
        return allDone ? tool::kExitSuccess : tool::kExitFailed;
    }

private:
    bool requireNoEmptyPath() const
    {
        bool none = true;
        for (const jString& path : m_paths) {
            if (path.empty()) {
                jLog::error("%s: a path is empty", kName);
                none = false;
            }
        }
        return none;
    }

    // path is as the user wrote it (relative to the working folder);
    // messages and the --check list name it so. False when the file is not
    // canonical under --check or could not be read, parsed or written.
    bool formatFile(const jString& path) const
    {
        if (!jDir::exists(path)) {
            jLog::error("%s: \"%s\" does not exist", kName, path.c_str());
            return false;
        }
        if (jDir::isDirectory(path)) {
            jLog::error("%s: \"%s\" is a folder, not a package file", kName, path.c_str());
            return false;
        }
        jString reason;
        const std::optional<jString> original = readWholeFile(path, reason);
        if (!original) {
            jLog::error("%s: can't read \"%s\": %s", kName, path.c_str(), reason.c_str());
            return false;
        }
        mjl file;
        if (!file.parse(*original, path))
            return false; // mjl has logged file:line:column
        const jString canonical = mjl::toText(*file.getRoot());
        if (canonical == *original)
            return true;
        if (m_check) {
            printLine(path);
            return false;
        }
        return rewrite(path, canonical);
    }

    bool rewrite(const jString& path, const jString& canonical) const
    {
        jString error;
        if (!mjl::writeFileAtomic(rewriteTarget(path), canonical, &error)) {
            jLog::error("%s: can't write \"%s\": %s", kName, path.c_str(), error.c_str());
            return false;
        }
        jLog::message("%s: rewrote \"%s\"", kName, path.c_str());
        return true;
    }

    std::vector<jString> m_paths;
    bool m_check = false;
};

const tool::ToolCommandRegistration registration([] { return std::unique_ptr<tool::ToolCommand>(new FormatCommand); });

} // namespace
