#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

const std::string kLoose = "a  1\n";

TEST(ToolOptions, VersionAndHelpSucceed)
{
    const ToolResult version = runTool({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(std::regex_match(version.out, std::regex("material-tool [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.out;

    const ToolResult help = runTool({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* part : {"Usage: material-tool [OPTIONS] SUBCOMMAND", "--data-root", "--quiet", "  format "})
        EXPECT_NE(help.out.find(part), std::string::npos) << part << "\n" << help.out;
}

TEST(ToolOptions, BadUsageExitsWithTwo)
{
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, "A subcommand is required\n"},
        {{"frobnicate"}, "material-tool: unknown command \"frobnicate\"\n"},
        {{"format", "--fast", "a.mat"}, "The following argument was not expected: --fast\n"},
        {{"format"}, "PATH is required\n"},
    };
    for (const auto& [args, reason] : cases) {
        const ToolResult result = runTool(args);
        EXPECT_EQ(result.exitCode, 2) << reason;
        EXPECT_EQ(result.err, reason + "Run with --help for more information.\n");
    }
}

TEST(ToolOptions, GlobalOptionsMayFollowTheCommand)
{
    TempFolder project;
    project.write("data/a.mat", kLoose);
    const ToolResult result = runTool({"format", "data/a.mat", "--quiet", "--data-root", project.path()},
                                      {project.path(), std::nullopt});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(project.read("data/a.mat"), "a 1\n");
}

// The root comes from --data-root, else $MATERIAL_EDITOR_ROOT, else the first
// path's ancestor holding data/, else the working folder's; the error for a
// path outside it names the root the tool chose. (format is the one command
// that uses no root; check stands for the others.)
TEST(ToolOptions, TheDataRootIsChosenInOrder)
{
    TempFolder temp;
    temp.write("outside.mat", kLoose);
    temp.write("file", "");
    temp.write("project/data/m/a.mat", kLoose);
    temp.write("project/data/m/b.mat", kLoose);
    temp.makeFolder("other/data");
    const auto outside = [&](const std::string& path, const std::string& root) {
        return "error: check: \"" + path + "\" is outside the data root \"" + temp / root + "\"\n";
    };
    const auto notFolder = [&](const std::string& root) {
        return "error: material-tool: the data root \"" + temp / root + "\" is not a folder\n";
    };
    const struct {
        std::vector<std::string> args;
        std::string folder;
        std::optional<std::string> variable;
        int exitCode;
        std::string err;
    } cases[] = {
        {{"check", "project/data/m/a.mat", "outside.mat"}, "", {}, 2, outside("outside.mat", "project")},
        {{"check", "b.mat"}, "project/data/m", {}, 1, ""},
        {{"check", "project/data/m/a.mat"}, "", temp / "other", 2, outside("project/data/m/a.mat", "other")},
        {{"--data-root", "other/data", "check", "project/data/m/a.mat"}, "", temp / "project", 2,
            outside("project/data/m/a.mat", "other/data")},
        {{"--data-root", temp / "missing", "check", "x.mat"}, "", {}, 2, notFolder("missing")},
        {{"check", "x.mat"}, "", temp / "file", 2, notFolder("file")},
    };
    for (const auto& c : cases) {
        const ToolResult result = runTool(c.args, {temp / c.folder, c.variable});
        EXPECT_EQ(result.exitCode, c.exitCode) << c.err;
        EXPECT_EQ(result.err, c.err);
    }
}

} // namespace
