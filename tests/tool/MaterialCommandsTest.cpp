#include "MaterialProject.h"
#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <filesystem>

// duplicate, instantiate, set-tessellate, set-state, set-texture and
// can-edit, run end to end on a compiled data/rock.mat.
namespace {

class MaterialCommandsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        materialproject::write(project);
        ASSERT_EQ(tool({"compile", "data/rock.mat"}).exitCode, 0);
        compiled = project.read("data/rock.mat");
    }

    ToolResult tool(std::vector<std::string> args, const std::string& folder = "")
    {
        return runTool(args, {folder.empty() ? project.path() : folder, std::nullopt});
    }

    // Runs the tool and checks its exit code and exact standard error.
    void expectTool(const std::vector<std::string>& args, int exitCode, const std::string& err)
    {
        const ToolResult result = tool(args);
        EXPECT_EQ(result.exitCode, exitCode) << args[0] << " " << args[1];
        EXPECT_EQ(result.err, err);
    }

    bool fileHolds(const std::string& file, const std::string& part) const
    {
        return project.read(file).find(part) != std::string::npos;
    }

    bool exists(const std::string& file) const { return std::filesystem::exists(project / file); }

    TempFolder project;
    std::string compiled;
};

} // namespace

TEST_F(MaterialCommandsTest, DuplicateWritesTheCopy)
{
    const ToolResult result = tool({"duplicate", "rock.mat", "stone.mat", "--use-file-name"}, project / "data");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "duplicate: wrote \"stone.mat\"\n");
    EXPECT_TRUE(fileHolds("data/stone.mat", "\t\tname stone\n"));
    EXPECT_EQ(project.read("data/rock.mat"), compiled);
}

TEST_F(MaterialCommandsTest, DuplicateRefusesBadDestinationsAndMissingSources)
{
    project.makeFolder("data/out");
    project.write("data/engine.mat", "materials { material { } }\n");
    expectTool({"duplicate", "data/rock.mat", ""}, 2, "error: duplicate: the destination path is empty\n");
    expectTool({"duplicate", "data/rock.mat", "data/./rock.mat"}, 2,
        "error: duplicate: the destination \"data/./rock.mat\" is the source file\n");
    expectTool({"duplicate", "data/rock.mat", "data/out"}, 2, "error: duplicate: the destination \"data/out\" is a folder\n");
    expectTool({"duplicate", "data/none.mat", "data/copy.mat"}, 1, "error: duplicate: \"data/none.mat\" does not exist\n");
    expectTool({"duplicate", "data/engine.mat", "data/copy.mat"}, 1,
        "error: duplicate: can't duplicate \"data/engine.mat\" as \"data/copy.mat\"\n");
    EXPECT_FALSE(exists("data/copy.mat"));
    EXPECT_EQ(project.read("data/rock.mat"), compiled);
}

TEST_F(MaterialCommandsTest, InstantiateWritesAnInstanceWithTexturesByTag)
{
    const ToolResult result = tool({"instantiate", "data/rock.mat", "data/red.mat", "--texture", "albedo=data/red.dds",
        "--texture", "albedo=./data/red2.dds"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "instantiate: wrote \"data/red.mat\"\n");
    EXPECT_TRUE(fileHolds("data/red.mat", "\t\tparent data/rock.mat\n\t\tparent_path data/rock.mat\n"));
    EXPECT_TRUE(fileHolds("data/red.mat", "\t\t\ttext data/red2.dds\n"));
    EXPECT_EQ(tool({"can-edit", "data/red.mat"}).exitCode, 0);

    ASSERT_EQ(tool({"instantiate", "data/rock.mat", "data/plain.mat"}).exitCode, 0);
    EXPECT_FALSE(fileHolds("data/plain.mat", "texture {"));
}

TEST_F(MaterialCommandsTest, InstantiateRefusesBadArguments)
{
    expectTool({"instantiate", "data/rock.mat", "data/red.mat", "--texture", "albedo"}, 2,
        "error: instantiate: --texture \"albedo\" is not TAG=TEXTURE\n");
    expectTool({"instantiate", "data/rock.mat", "data/red.mat", "--texture", "a=/tmp/x.dds"}, 2,
        "error: instantiate: \"/tmp/x.dds\" is outside the data root \"" + project.path() + "\"\n");
    expectTool({"instantiate", "data/rock.mat", "./data/rock.mat"}, 2,
        "error: instantiate: the destination \"./data/rock.mat\" is the source file\n");
    expectTool({"instantiate", "data/rock.mat", ""}, 2, "error: instantiate: the destination path is empty\n");
    expectTool({"instantiate", "data/none.mat", "data/red.mat"}, 1,
        "error: instantiate: \"data/none.mat\" does not exist\n");
    EXPECT_FALSE(exists("data/red.mat"));
    EXPECT_EQ(project.read("data/rock.mat"), compiled);
}

TEST_F(MaterialCommandsTest, SetTessellateAndSetStateRewriteTheMaterial)
{
    EXPECT_EQ(tool({"set-tessellate", "data/rock.mat", "on"}).exitCode, 0);
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttessellate true\n"));
    EXPECT_EQ(tool({"set-tessellate", "data/rock.mat", "yes"}).exitCode, 2);

    expectTool({"set-state", "data/rock.mat", "Mode", "300"}, 0,
        "warning: set-state: 300 is stored as 44 (8 bits)\nset-state: wrote \"data/rock.mat\"\n");
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\tname Mode\n\t\t\ttype int\n\t\t\ttext 44\n"));
    // Tessellation survived the state edit.
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttessellate true\n"));

    expectTool({"set-state", "data/rock.mat", "Locked", "1"}, 0, "warning: set-state: \"data/rock.mat\" has no editable state \"Locked\"; its states are "
                           "unchanged\nset-state: wrote \"data/rock.mat\"\n");
    EXPECT_EQ(tool({"set-state", "data/rock.mat", "Mode", "x"}).exitCode, 2);
    EXPECT_EQ(tool({"set-state", "data/none.mat", "Mode", "1"}).exitCode, 1);
    expectTool({"set-tessellate", "", "on"}, 2, "error: set-tessellate: a path is empty\n");
}

TEST_F(MaterialCommandsTest, SetTextureChangesTheTaggedNodeOrWritesNothing)
{
    EXPECT_EQ(tool({"set-state", "data/rock.mat", "Quality", "2"}).exitCode, 0);
    const ToolResult result = tool({"set-texture", "data/rock.mat", "albedo", "data/red.dds"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttext data/red.dds\n"));
    // The file's own state value is kept, not the template's.
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\tname Quality\n\t\t\ttype switch\n\t\t\ttext 2\n"));

    const std::string before = project.read("data/rock.mat");
    expectTool({"set-texture", "data/rock.mat", "Albedo", "data/blue.dds"}, 1, "error: set-texture: \"data/rock.mat\" has no texture node named \"Albedo\"\n");
    EXPECT_EQ(project.read("data/rock.mat"), before);
}

TEST_F(MaterialCommandsTest, CanEditAnswersWithTheExitCode)
{
    project.write("data/engine.mat", "materials { material { parent_path data/rock.mat } }\n");
    const ToolResult yes = tool({"can-edit", "data/rock.mat"});
    EXPECT_EQ(yes.exitCode, 0);
    EXPECT_EQ(yes.out + yes.err, "");
    EXPECT_EQ(tool({"can-edit", "data/engine.mat"}).exitCode, 1);
    project.makeFolder("data/folder.mat");
    expectTool({"can-edit", "data/none.mat"}, 1, "error: can-edit: \"data/none.mat\" does not exist\n");
    expectTool({"can-edit", "data/folder.mat"}, 1, "error: can-edit: \"data/folder.mat\" is a folder, not a material file\n");
    expectTool({"can-edit", ""}, 2, "error: can-edit: a path is empty\n");
    EXPECT_EQ(tool({"can-edit", "../outside.mat"}).exitCode, 2);
}
