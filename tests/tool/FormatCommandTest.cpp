#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

const std::string kCanonical = "blocks {\n"
                               "\tversion 1\n"
                               "\tblock {\n"
                               "\t\ttype Math.Add\n"
                               "\t\tname \"a b\"\n"
                               "\t}\n"
                               "}\n";
const std::string kLoose = "blocks\n{\n  version   1\n  block { type Math.Add; name \"a b\" }\n}\n";
const std::string kCrlfWithBom = "\xEF\xBB\xBF" "blocks {\r\n version 1\r\n block {\r\n  type Math.Add\r\n  name \"a b\"\r\n }\r\n}\r\n";
const std::string kUnterminated = "blocks {\n\tname \"open\n}\n";

// A project root in a temporary folder; the tool runs with it as the working
// folder and as --data-root.
class FormatCommandTest : public ::testing::Test {
protected:
    ToolResult format(std::vector<std::string> args)
    {
        args.insert(args.begin(), {"--data-root", project.path(), "format"});
        return runTool(args, {project.path(), std::nullopt});
    }

    TempFolder project;
};

TEST_F(FormatCommandTest, RewritesLooseFilesInPlaceAndLeavesCanonicalOnesAlone)
{
    project.write("data/loose.mat", kLoose);
    project.write("data/crlf.mat", kCrlfWithBom);
    project.write("data/fine.mat", kCanonical);
    const auto fineTime = fs::last_write_time(project / "data/fine.mat");

    const ToolResult result = format({"data/loose.mat", "data/fine.mat", "data/crlf.mat"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "format: rewrote \"data/loose.mat\"\nformat: rewrote \"data/crlf.mat\"\n");
    EXPECT_EQ(project.read("data/loose.mat"), kCanonical);
    EXPECT_EQ(project.read("data/crlf.mat"), kCanonical);
    EXPECT_EQ(project.read("data/fine.mat"), kCanonical);
    EXPECT_EQ(fs::last_write_time(project / "data/fine.mat"), fineTime);
}

TEST_F(FormatCommandTest, CheckListsTheFilesThatAreNotCanonicalChangesNothingAndPassesWhenAllAre)
{
    project.write("data/b.mat", kLoose);
    project.write("data/a.mat", kCanonical);
    project.write("data/c.mat", kCrlfWithBom);

    const ToolResult result = format({"--check", "data/b.mat", "data/a.mat", "data/c.mat"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/b.mat\ndata/c.mat\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(project.read("data/b.mat"), kLoose);
    EXPECT_EQ(project.read("data/c.mat"), kCrlfWithBom);

    // It passes, silently, when every file is canonical (an empty one is).
    project.write("data/empty.cfg", "");
    const ToolResult pass = format({"data/a.mat", "data/empty.cfg", "--check"});
    EXPECT_EQ(pass.exitCode, 0);
    EXPECT_EQ(pass.out + pass.err, "");
}

TEST_F(FormatCommandTest, AFileThatDoesNotParseIsReportedWithItsPositionAndLeftUntouched)
{
    project.write("data/bad.mat", kUnterminated);
    project.write("data/loose.mat", kLoose);

    const ToolResult result = format({"data/bad.mat", "data/loose.mat"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: mjl: data/bad.mat:2:7: unterminated string\n"
                          "format: rewrote \"data/loose.mat\"\n");
    EXPECT_EQ(project.read("data/bad.mat"), kUnterminated);
    EXPECT_EQ(project.read("data/loose.mat"), kCanonical);

    const ToolResult check = format({"--check", "data/bad.mat"});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_EQ(check.out, "");
    EXPECT_EQ(check.err, "error: mjl: data/bad.mat:2:7: unterminated string\n");
}

TEST_F(FormatCommandTest, MissingFilesAndFoldersFailTheOperation)
{
    project.write("data/loose.mat", kLoose);
    const ToolResult result = format({"data/none.mat", "data", "data/loose.mat"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: format: \"data/none.mat\" does not exist\n"
                          "error: format: \"data\" is a folder, not a package file\n"
                          "format: rewrote \"data/loose.mat\"\n");
    EXPECT_EQ(project.read("data/loose.mat"), kCanonical);
}

TEST_F(FormatCommandTest, PathsOutsideTheRootAreBadUsageAndNothingIsWritten)
{
    project.write("data/loose.mat", kLoose);
    TempFolder elsewhere;
    const std::string outside = elsewhere.write("x.mat", kLoose);

    const ToolResult result = format({"data/loose.mat", outside, "data/../../x.mat"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: format: \"" + outside + "\" is outside the data root \"" + project.path()
                              + "\"\n"
                                "error: format: \"data/../../x.mat\" is outside the data root \""
                              + project.path() + "\"\n");
    EXPECT_EQ(project.read("data/loose.mat"), kLoose);
    EXPECT_EQ(elsewhere.read("x.mat"), kLoose);
}

TEST_F(FormatCommandTest, ASymlinkedFileIsRewrittenThroughTheLink)
{
    project.write("data/real.mat", kLoose);
    fs::create_symlink("real.mat", project / "data/link.mat");
    const ToolResult result = format({"data/link.mat"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(project / "data/link.mat"));
    EXPECT_EQ(project.read("data/real.mat"), kCanonical);
}

} // namespace
