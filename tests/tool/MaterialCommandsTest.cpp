#include "ToolProjectTest.h"

#include <filesystem>

// The command line of duplicate, instantiate, set-tessellate, set-state,
// set-texture and can-edit on a compiled data/rock.mat; what the operations
// write is checked in the library's own tests.
namespace {

class MaterialCommandsTest : public ToolProjectTest {
protected:
    void SetUp() override
    {
        ToolProjectTest::SetUp();
        ASSERT_EQ(tool({"compile", "data/rock.mat"}).exitCode, 0);
        compiled = project.read("data/rock.mat");
    }

    // Runs the tool and checks its exit code and exact standard error.
    void expectTool(const std::vector<std::string>& args, int exitCode, const std::string& err)
    {
        const ToolResult result = tool(args);
        EXPECT_EQ(result.exitCode, exitCode) << args[0] << " " << args[1];
        EXPECT_EQ(result.err, err) << args[0] << " " << args[1];
    }

    bool fileHolds(const std::string& file, const std::string& part) const
    {
        return contains(project.read(file), part);
    }

    std::string compiled;
};

} // namespace

TEST_F(MaterialCommandsTest, EachCommandPassesItsArgumentsAndSaysWhatItWrote)
{
    const ToolResult copy = tool({"duplicate", "rock.mat", "stone.mat", "--use-file-name"}, project / "data");
    EXPECT_EQ(copy.exitCode, 0);
    EXPECT_EQ(copy.err, "duplicate: wrote \"stone.mat\"\n");
    EXPECT_TRUE(fileHolds("data/stone.mat", "\t\tname stone\n"));

    // The last --texture of a tag wins, its path made root-relative.
    expectTool({"instantiate", "data/rock.mat", "data/red.mat", "--texture", "albedo=data/red.dds", "--texture",
                   "albedo=./data/red2.dds"},
        0, "instantiate: wrote \"data/red.mat\"\n");
    EXPECT_TRUE(fileHolds("data/red.mat", "\t\t\ttext data/red2.dds\n"));
    expectTool({"can-edit", "data/red.mat"}, 0, "");

    EXPECT_EQ(tool({"set-tessellate", "data/rock.mat", "on"}).exitCode, 0);
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttessellate true\n"));
    expectTool({"set-state", "data/rock.mat", "Mode", "300"}, 0,
        "warning: set-state: 300 is stored as 44 (8 bits)\nset-state: wrote \"data/rock.mat\"\n");
    expectTool({"set-state", "data/rock.mat", "Locked", "1"}, 0,
        "warning: set-state: \"data/rock.mat\" has no editable state \"Locked\"; its states are unchanged\n"
        "set-state: wrote \"data/rock.mat\"\n");

    // set-texture keeps the file's own state values, not the template's.
    EXPECT_EQ(tool({"set-state", "data/rock.mat", "Quality", "2"}).exitCode, 0);
    EXPECT_EQ(tool({"set-texture", "data/rock.mat", "albedo", "data/red.dds"}).exitCode, 0);
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttext data/red.dds\n"));
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\tname Quality\n\t\t\ttype switch\n\t\t\ttext 2\n"));
    EXPECT_TRUE(fileHolds("data/rock.mat", "\t\t\ttessellate true\n"));
}

TEST_F(MaterialCommandsTest, RefusalsExitWithTheirCodeAndMessageAndWriteNothing)
{
    project.makeFolder("data/out");
    project.makeFolder("data/folder.mat");
    project.write("data/engine.mat", "materials { material { } }\n");
    const struct {
        std::vector<std::string> args;
        int exitCode;
        std::string err;
    } cases[] = {
        {{"duplicate", "data/rock.mat", ""}, 2, "error: duplicate: the destination path is empty\n"},
        {{"duplicate", "data/rock.mat", "data/./rock.mat"}, 2,
            "error: duplicate: the destination \"data/./rock.mat\" is the source file\n"},
        {{"duplicate", "data/rock.mat", "data/out"}, 2, "error: duplicate: the destination \"data/out\" is a folder\n"},
        {{"duplicate", "data/engine.mat", "data/copy.mat"}, 1,
            "error: duplicate: can't duplicate \"data/engine.mat\" as \"data/copy.mat\"\n"},
        {{"instantiate", "data/rock.mat", "data/copy.mat", "--texture", "albedo"}, 2,
            "error: instantiate: --texture \"albedo\" is not TAG=TEXTURE\n"},
        {{"set-tessellate", "data/rock.mat", "yes"}, 2, "SWITCH: yes not in {on,off}\nRun with --help for more information.\n"},
        {{"set-texture", "data/rock.mat", "Albedo", "data/blue.dds"}, 1,
            "error: set-texture: \"data/rock.mat\" has no texture node named \"Albedo\"\n"},
        {{"can-edit", "data/engine.mat"}, 1, ""},
        {{"can-edit", "data/none.mat"}, 1, "error: can-edit: \"data/none.mat\" does not exist\n"},
        {{"can-edit", "data/folder.mat"}, 1, "error: can-edit: \"data/folder.mat\" is a folder, not a material file\n"},
    };
    for (const auto& c : cases)
        expectTool(c.args, c.exitCode, c.err);
    EXPECT_FALSE(std::filesystem::exists(project / "data/copy.mat"));
    EXPECT_EQ(project.read("data/rock.mat"), compiled);
}
