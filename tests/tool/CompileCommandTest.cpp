#include "MaterialProject.h"
#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

namespace {

class CompileCommandTest : public ::testing::Test {
protected:
    void SetUp() override { materialproject::write(project); }

    ToolResult tool(std::vector<std::string> args)
    {
        return runTool(args, {project.path(), std::nullopt});
    }

    static bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

    TempFolder project;
};

} // namespace

TEST_F(CompileCommandTest, CompilesInPlaceWithProgressOnStderrAndTheSummaryOnStdout)
{
    const std::string editorOnly = project.read("data/rock.mat");
    const ToolResult result = tool({"compile", "data/rock.mat"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 compiled, 0 failed\n");
    EXPECT_EQ(result.err, "compile: [1/1] compiled \"data/rock.mat\"\n");
    EXPECT_EQ(project.read("data/rock.mat").rfind("materials {\n", 0), 0u);
    EXPECT_TRUE(holds(project.read("data/rock.mat"), "\t\t\t\ti \"frag_color = vec4(rgb2, 1.0);\"\n"));

    const ToolResult quiet = tool({"--quiet", "compile", "data/rock.mat"});
    EXPECT_EQ(quiet.out, "1 compiled, 0 failed\n");
    EXPECT_EQ(quiet.err, "");
}

TEST_F(CompileCommandTest, WorkersCountAFailingFileAmongGoodOnes)
{
    std::vector<std::string> args = {"compile", "--jobs", "2"};
    for (int i = 0; i < 5; ++i) {
        project.write("data/m" + std::to_string(i) + ".mat", materialproject::kRock);
        args.push_back("data/m" + std::to_string(i) + ".mat");
    }
    project.write("data/broken.mat", "blueprint {\n");
    args.insert(args.begin() + 5, "data/broken.mat");
    args.push_back("data/missing.mat");

    const ToolResult result = tool(args);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "5 compiled, 2 failed\n");
    EXPECT_TRUE(holds(result.err, "error: compile: \"data/missing.mat\" does not exist\n")) << result.err;
    EXPECT_TRUE(holds(result.err, "error: mjl: data/broken.mat:1:11: unclosed '{'\n")) << result.err;
    EXPECT_TRUE(holds(result.err, "] can't compile \"data/broken.mat\"\n"));
    EXPECT_TRUE(holds(result.err, "compile: [7/7] "));
    for (int i = 0; i < 5; ++i) {
        const std::string name = "data/m" + std::to_string(i) + ".mat";
        EXPECT_TRUE(holds(result.err, "] compiled \"" + name + "\"\n")) << name;
        EXPECT_TRUE(holds(project.read(name), "\t\tshader {\n")) << name;
    }
}

TEST_F(CompileCommandTest, BadUsageExitsWithTwo)
{
    const ToolResult outside = tool({"compile", "data/rock.mat", "/etc/passwd"});
    EXPECT_EQ(outside.exitCode, 2);
    EXPECT_EQ(outside.err, "error: compile: \"/etc/passwd\" is outside the data root \"" + project.path() + "\"\n");
    EXPECT_EQ(project.read("data/rock.mat"), materialproject::kRock);

    const ToolResult empty = tool({"compile", "data/rock.mat", ""});
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_EQ(empty.err, "error: compile: a path is empty\n");
    EXPECT_EQ(empty.out, "");

    EXPECT_EQ(tool({"compile", "--jobs", "0", "data/rock.mat"}).exitCode, 2);
    EXPECT_EQ(tool({"compile"}).exitCode, 2);
}
