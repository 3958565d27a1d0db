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
    EXPECT_NE(help.out.find("Usage: material-tool [OPTIONS] SUBCOMMAND"), std::string::npos) << help.out;
    EXPECT_NE(help.out.find("--data-root"), std::string::npos);
    EXPECT_NE(help.out.find("--quiet"), std::string::npos);
    EXPECT_NE(help.out.find("  format "), std::string::npos);

    const ToolResult formatHelp = runTool({"format", "--help"});
    EXPECT_EQ(formatHelp.exitCode, 0);
    EXPECT_NE(formatHelp.out.find("Usage: material-tool format [OPTIONS] PATH..."), std::string::npos)
        << formatHelp.out;
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

TEST(ToolOptions, ADataRootThatIsNotAFolderIsBadUsage)
{
    TempFolder temp;
    temp.write("file", "");
    const ToolResult missing = runTool({"--data-root", temp / "missing", "format", "x.mat"});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_EQ(missing.err, "error: material-tool: the data root \"" + temp / "missing" + "\" is not a folder\n");

    const ToolResult file = runTool({"format", "x.mat"}, {temp.path(), temp / "file"});
    EXPECT_EQ(file.exitCode, 2);
    EXPECT_EQ(file.err, "error: material-tool: the data root \"" + temp / "file" + "\" is not a folder\n");
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

// The data root is named in the error for a path outside it, which shows
// which root the tool chose.
class ToolRootDiscovery : public ::testing::Test {
protected:
    void SetUp() override
    {
        temp.write("outside.mat", kLoose);
        temp.write("project/data/m/a.mat", kLoose);
        temp.makeFolder("other/data");
    }
    std::string outsideError(const std::string& shownPath, const std::string& root) const
    {
        return "error: format: \"" + shownPath + "\" is outside the data root \"" + root + "\"\n";
    }

    TempFolder temp;
};

TEST_F(ToolRootDiscovery, TheFirstPathsAncestorHoldingDataIsTheRoot)
{
    const ToolResult result = runTool({"format", "project/data/m/a.mat", "outside.mat"}, {temp.path(), std::nullopt});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, outsideError("outside.mat", temp / "project"));
}

TEST_F(ToolRootDiscovery, TheWorkingFoldersAncestorServesWhenTheFirstPathHasNone)
{
    temp.write("project/data/m/b.mat", kLoose);
    const ToolResult result = runTool({"format", "b.mat"}, {temp / "project/data/m", std::nullopt});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "format: rewrote \"b.mat\"\n");
}

TEST_F(ToolRootDiscovery, TheEnvironmentVariableBeatsThePathAndTheOptionBeatsBoth)
{
    const ToolResult fromVariable =
        runTool({"format", "project/data/m/a.mat"}, {temp.path(), temp / "other"});
    EXPECT_EQ(fromVariable.exitCode, 2);
    EXPECT_EQ(fromVariable.err, outsideError("project/data/m/a.mat", temp / "other"));

    const ToolResult fromOption = runTool({"--data-root", "other/data", "format", "project/data/m/a.mat"},
                                          {temp.path(), temp / "project"});
    EXPECT_EQ(fromOption.exitCode, 2);
    EXPECT_EQ(fromOption.err, outsideError("project/data/m/a.mat", temp / "other/data"));
    EXPECT_EQ(temp.read("project/data/m/a.mat"), kLoose);
}

} // namespace
