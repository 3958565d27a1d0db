#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

const std::string kCanonical = "blocks {\n\tversion 1\n\tname \"a b\"\n}\n";
const std::string kLoose = "blocks\n{\n  version   1; name \"a b\" }\n";
const std::string kUnterminated = "blocks {\n\tname \"open\n}\n";
const std::string kBadParse = "error: mjl: data/bad.mat:2:7: unterminated string\n";

// The tool runs with a temporary project as the working folder and as --data-root.
class FormatCommandTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        project.write("data/loose.mat", kLoose);
        project.write("data/fine.mat", kCanonical);
        project.write("data/bad.mat", kUnterminated);
    }

    ToolResult format(std::vector<std::string> args)
    {
        args.insert(args.begin(), {"--data-root", project.path(), "format"});
        return runTool(args, {project.path(), std::nullopt});
    }

    TempFolder project;
};

TEST_F(FormatCommandTest, RewritesLooseFilesAndReportsTheOnesItCannot)
{
    const auto fineTime = fs::last_write_time(project / "data/fine.mat");
    const ToolResult result = format({"data/none.mat", "data/bad.mat", "data", "data/loose.mat", "data/fine.mat"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: format: \"data/none.mat\" does not exist\n" + kBadParse
                              + "error: format: \"data\" is a folder, not a package file\n"
                                "format: rewrote \"data/loose.mat\"\n");
    EXPECT_EQ(project.read("data/loose.mat"), kCanonical);
    EXPECT_EQ(project.read("data/bad.mat"), kUnterminated);
    EXPECT_EQ(fs::last_write_time(project / "data/fine.mat"), fineTime);

    const ToolResult clean = format({"data/loose.mat", "data/fine.mat"});
    EXPECT_EQ(clean.exitCode, 0);
    EXPECT_EQ(clean.out + clean.err, "");
}

TEST_F(FormatCommandTest, CheckListsTheFilesThatAreNotCanonicalAndChangesNothing)
{
    const ToolResult result = format({"--check", "data/loose.mat", "data/fine.mat", "data/bad.mat"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/loose.mat\n");
    EXPECT_EQ(result.err, kBadParse);
    EXPECT_EQ(project.read("data/loose.mat"), kLoose);
}

// Formatting needs no data root: files in a folder that holds no data/,
// named absolutely or from the working folder, even with a --data-root that
// does not exist.
TEST(FormatCommandOutsideRootsTest, FormatsFilesAnywhereWithoutADataRoot)
{
    TempFolder loose;
    loose.write("tricky.pkg", kLoose);
    loose.write("fine.pkg", kCanonical);
    loose.write("bad.pkg", kUnterminated);
    const std::string absolute = loose / "tricky.pkg";
    const ToolRunOptions inLoose{loose.path(), std::nullopt};
    const std::string badParse = "error: mjl: bad.pkg:2:7: unterminated string\n";

    const ToolResult check = runTool({"format", "--check", absolute, "fine.pkg", "bad.pkg"}, inLoose);
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_EQ(check.out, absolute + "\n");
    EXPECT_EQ(check.err, badParse);
    EXPECT_EQ(loose.read("tricky.pkg"), kLoose);

    const ToolResult rewrite
        = runTool({"--data-root", loose / "none", "format", absolute, "fine.pkg", "bad.pkg"}, inLoose);
    EXPECT_EQ(rewrite.exitCode, 1);
    EXPECT_EQ(rewrite.out, "");
    EXPECT_EQ(rewrite.err, "format: rewrote \"" + absolute + "\"\n" + badParse);
    EXPECT_EQ(loose.read("tricky.pkg"), kCanonical);
    EXPECT_EQ(loose.read("bad.pkg"), kUnterminated);
}

TEST_F(FormatCommandTest, AnEmptyPathIsBadUsageAndNothingIsWritten)
{
    const ToolResult result = format({"data/loose.mat", ""});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "error: format: a path is empty\n");
    EXPECT_EQ(project.read("data/loose.mat"), kLoose);
}

TEST_F(FormatCommandTest, ASymlinkedFileIsRewrittenThroughTheLink)
{
    fs::create_symlink("loose.mat", project / "data/link.mat");
    EXPECT_EQ(format({"data/link.mat"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(project / "data/link.mat"));
    EXPECT_EQ(project.read("data/loose.mat"), kCanonical);
}

} // namespace
