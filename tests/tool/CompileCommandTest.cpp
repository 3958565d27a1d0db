#include "ToolProjectTest.h"

using CompileCommandTest = ToolProjectTest;

TEST_F(CompileCommandTest, ProgressGoesToStderrUnlessQuietAndTheSummaryToStdout)
{
    const ToolResult result = tool({"compile", "data/rock.mat"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 compiled, 0 failed\n");
    EXPECT_EQ(result.err, "compile: [1/1] compiled \"data/rock.mat\"\n");

    const ToolResult quiet = tool({"--quiet", "compile", "data/rock.mat"});
    EXPECT_EQ(quiet.out, "1 compiled, 0 failed\n");
    EXPECT_EQ(quiet.err, "");
}

// Progress lines come in the order the workers finish.
TEST_F(CompileCommandTest, WorkersCountAFailingFileAmongGoodOnes)
{
    std::vector<std::string> args = {"compile", "--jobs", "2"};
    for (const char* name : {"m0", "m1", "broken", "m2", "m3", "m4", "missing"})
        args.push_back("data/" + std::string(name) + ".mat");
    for (int i = 0; i < 5; ++i)
        project.write("data/m" + std::to_string(i) + ".mat", materialproject::kRock);
    project.write("data/broken.mat", "blueprint {\n");

    const ToolResult result = tool(args);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "5 compiled, 2 failed\n");
    EXPECT_TRUE(contains(result.err, "error: compile: \"data/missing.mat\" does not exist\n")) << result.err;
    EXPECT_TRUE(contains(result.err, "error: mjl: data/broken.mat:1:11: unclosed '{'\n")) << result.err;
    EXPECT_TRUE(contains(result.err, "] can't compile \"data/broken.mat\"\n"));
    EXPECT_TRUE(contains(result.err, "compile: [7/7] "));
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(contains(result.err, "] compiled \"data/m" + std::to_string(i) + ".mat\"\n")) << i;
}

TEST_F(CompileCommandTest, AnEmptyPathIsBadUsageAndNothingIsWritten)
{
    const ToolResult result = tool({"compile", "data/rock.mat", ""});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: compile: a path is empty\n");
    EXPECT_EQ(project.read("data/rock.mat"), materialproject::kRock);
}
