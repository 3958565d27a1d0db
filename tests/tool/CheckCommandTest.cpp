#include "MaterialProject.h"
#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class CheckCommandTest : public ::testing::Test {
protected:
    void SetUp() override { materialproject::write(project); }

    // Writes data/graph.mat and checks it with the given further arguments.
    ToolResult check(const std::string& blueprint, std::vector<std::string> args = {})
    {
        project.write("data/graph.mat", "blueprint {\n" + blueprint + "}\n");
        args.insert(args.begin(), {"check", "data/graph.mat"});
        return runTool(args, {project.path(), std::nullopt});
    }

    TempFolder project;
};

const std::string kStartAndEnd = "\tnode { id 0; type PixelInput }\n\tnode { id 1; type PixelOutput }\n";
const std::string kBrokenCall =
    kStartAndEnd + "\tnode { id 8; type Broken.Call }\n\tjoint { node_0 8; node_1 1; anchor_0 out; anchor_1 color }\n";
const std::string kNoCompiler = "/nonexistent/glslangValidator";
const std::string kUnlinkedColor = "node 1 (PixelOutput): warning: input \"color\" is not linked and has no default; "
                                   "the program uses vec3_zero\n";

} // namespace

TEST_F(CheckCommandTest, ReportsEachProblemOnStdoutAndExitsOneOnErrorsOnly)
{
    const ToolResult valid = runTool({"check", "data/rock.mat"}, {project.path(), std::nullopt});
    EXPECT_EQ(valid.exitCode, 0) << valid.out << valid.err;
    EXPECT_EQ(valid.out, "");

    const ToolResult result = check("\tnode { id 0; type PixelInput }\n"
                                    "\tnode { id 5; type Math.Add }\n\tnode { id 6; type Math.Add }\n"
                                    "\tnode { id 7; type Nope.Block }\n\tnode { id 8 }\n"
                                    "\tnode { id 8; type Math.Add }\n\tnode { id 9; type Math.Add }\n"
                                    "\tjoint { node_0 5; node_1 6; anchor_0 out; anchor_1 a }\n"
                                    "\tjoint { node_0 6; node_1 5; anchor_0 out; anchor_1 a }\n"
                                    "\tjoint { node_0 4; node_1 5; anchor_0 out; anchor_1 b }\n"
                                    "\tjoint { node_0 0; node_1 6; anchor_0 uvx; anchor_1 b }\n"
                                    "\tjoint { node_0 9; node_1 9; anchor_0 out; anchor_1 a }\n"
                                    "\tjoint { node_0 0; anchor_0 uv; anchor_1 a }\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/graph.mat: node 7 (Nope.Block): unknown block type \"Nope.Block\"\n"
                          "data/graph.mat: node 8: no block type\n"
                          "data/graph.mat: node id 8 is used by more than one node\n"
                          "data/graph.mat: joint 3: node 4 does not exist\n"
                          "data/graph.mat: node 0 (PixelInput): joint 4: no anchor \"uvx\"\n"
                          "data/graph.mat: joint 6: no \"node_0\" or \"node_1\" item\n"
                          "data/graph.mat: cycle through nodes 5, 6\n"
                          "data/graph.mat: cycle through nodes 9\n"
                          "data/graph.mat: no pixel end node (a block of usage ps_end)\n");

    const ToolResult noStart = check("\tnode { id 1; type PixelOutput }\n");
    EXPECT_EQ(noStart.exitCode, 1);
    EXPECT_EQ(noStart.out, "data/graph.mat: no pixel start node (a block of usage ps_start)\n"
                           "data/graph.mat: " + kUnlinkedColor);

    project.write("data/engine.mat", "materials { material { parent_path data/none.mat } }\n");
    const ToolResult files = runTool({"check", "data/engine.mat", "data/none.mat"}, {project.path(), std::nullopt});
    EXPECT_EQ(files.exitCode, 1);
    EXPECT_EQ(files.out, "data/engine.mat: can't read the parent \"data/none.mat\"\n");
    EXPECT_EQ(files.err, "error: check: \"data/none.mat\" does not exist\n");
}

TEST_F(CheckCommandTest, ReportsShaderErrorsWithTheirGeneratedLine)
{
    if (access("/usr/bin/glslangValidator", X_OK) != 0)
        GTEST_SKIP() << "glslangValidator is not installed";
    const ToolResult result = check(kBrokenCall);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/graph.mat: pixel program: generated:16: 'undefined_function' : no matching "
                          "overloaded function found\n"
                          "data/graph.mat: pixel program: generated:16: 'assign' :  cannot convert from ' const "
                          "float' to ' temp 3-component vector of float'\n");
}

// One array over all files, one element per node a problem is shown on:
// a cycle on each of its nodes, a compiler error on the node whose code it
// is, with the line of the generated program.
TEST_F(CheckCommandTest, JsonListsEveryProblemOnItsNode)
{
    if (access("/usr/bin/glslangValidator", X_OK) != 0)
        GTEST_SKIP() << "glslangValidator is not installed";
    project.write("data/cycle.mat", "blueprint {\n" + kStartAndEnd +
        "\tnode { id 5; type Math.Add }\n\tnode { id 6; type Math.Add }\n"
        "\tjoint { node_0 5; node_1 6; anchor_0 out; anchor_1 a }\n"
        "\tjoint { node_0 6; node_1 5; anchor_0 out; anchor_1 a }\n"
        "\tjoint { node_0 0; node_1 6; anchor_0 uvx; anchor_1 b }\n}\n");
    const ToolResult result = check(kBrokenCall, {"data/cycle.mat", "data/rock.mat", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out,
        "[\n"
        "  {\"file\": \"data/graph.mat\", \"node\": 8, \"type\": \"Broken.Call\", \"line\": 16, \"severity\": \"error\", "
        "\"message\": \"pixel program: 'undefined_function' : no matching overloaded function found\"},\n"
        "  {\"file\": \"data/graph.mat\", \"node\": 8, \"type\": \"Broken.Call\", \"line\": 16, \"severity\": \"error\", "
        "\"message\": \"pixel program: 'assign' :  cannot convert from ' const float' to ' temp 3-component vector of "
        "float'\"},\n"
        "  {\"file\": \"data/cycle.mat\", \"node\": 0, \"type\": \"PixelInput\", \"line\": null, \"severity\": \"error\", "
        "\"message\": \"joint 3: no anchor \\\"uvx\\\"\"},\n"
        "  {\"file\": \"data/cycle.mat\", \"node\": 5, \"type\": \"Math.Add\", \"line\": null, \"severity\": \"error\", "
        "\"message\": \"cycle through nodes 5, 6\"},\n"
        "  {\"file\": \"data/cycle.mat\", \"node\": 6, \"type\": \"Math.Add\", \"line\": null, \"severity\": \"error\", "
        "\"message\": \"cycle through nodes 5, 6\"},\n"
        "  {\"file\": \"data/cycle.mat\", \"node\": 1, \"type\": \"PixelOutput\", \"line\": null, \"severity\": "
        "\"warning\", \"message\": \"input \\\"color\\\" is not linked and has no default; the program uses vec3_zero\"}\n"
        "]\n");

    const ToolResult clean = runTool({"check", "data/rock.mat", "--json"}, {project.path(), std::nullopt});
    EXPECT_EQ(clean.exitCode, 0);
    EXPECT_EQ(clean.out, "[]\n");
}

TEST_F(CheckCommandTest, WithoutTheCompilerItSaysSoOnceAndChecksTheRest)
{
    project.write("data/other.mat", "blueprint {\n" + kStartAndEnd + "}\n");
    const ToolResult result = check(kBrokenCall, {"data/other.mat", "--validator", kNoCompiler});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "data/other.mat: " + kUnlinkedColor);
    EXPECT_EQ(result.err, "warning: check: " + kNoCompiler + " is not installed; the generated programs are not "
                                                             "compiled\n");
}

// A library that failed to load is not half kept for the next file.
TEST_F(CheckCommandTest, EveryFileFailsAfterABrokenBlockLibrary)
{
    std::string blocks = materialproject::kBlocks;
    blocks.insert(blocks.rfind('}'), "\tblock { }\n");
    project.write(materialproject::kBlockPath, blocks);
    const ToolResult result = runTool({"check", "data/rock.mat", "data/rock.mat"}, {project.path(), std::nullopt});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/rock.mat: can't load the block library\ndata/rock.mat: can't load the block library\n");
    EXPECT_EQ(result.err.substr(0, result.err.size() / 2), result.err.substr(result.err.size() / 2));
}

// A compiler that reports each define it is given: the checker compiles the
// variant the renderer builds, an empty toggle entry selecting no define
// and an int state carrying its value.
TEST_F(CheckCommandTest, ValidatesTheDefinesTheRendererSelects)
{
    project.write(materialproject::kTemplatePath, "materials { material {\n"
                                                  "\tstate { name Editor; type toggle; text 1; defines \",EDITOR\" }\n"
                                                  "\tstate { name Off; type toggle; text 0; defines \",OFF\" }\n"
                                                  "\tstate { name Mode; type int; text 3; defines MODE }\n"
                                                  "} }\n");
    const std::string validator = project.write("defines.sh", "#!/bin/sh\n"
                                                              "head -4 \"$1\" | grep -n '^#define [A-Z_]' | sed 's/^\\([0-9]*\\):/ERROR: 0:\\1: /'\n"
                                                              "exit 1\n");
    ASSERT_EQ(chmod(validator.c_str(), 0700), 0);
    const ToolResult result = runTool({"check", "data/rock.mat", "--validator", validator}, {project.path(), std::nullopt});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "data/rock.mat: pixel program: prelude:2: #define EDITOR\n"
                          "data/rock.mat: pixel program: prelude:3: #define MODE 3\n"
                          "data/rock.mat: pixel program (editor): prelude:4: #define __MATERAIL_EDITOR__\n");
}
