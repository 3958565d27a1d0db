#include "HostileFiles.h"
#include "MaterialProject.h"
#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

// check, compile and preview against files no reader may follow: pipes,
// devices, folders and oversized files named on the command line or as a
// parent, and parents outside the data root. Runs under a short CTest
// timeout, since the failure this guards against is a hang.
namespace {

constexpr uint64_t kDocumentLimit = uint64_t(256) << 20;

class HostileFilesTest : public ::testing::Test {
protected:
    void SetUp() override { materialproject::write(project); }

    ToolResult run(const std::string& command, const std::string& path)
    {
        std::vector<std::string> args = {command, path};
        if (command == "preview")
            args.insert(args.end(), {"-o", project / "out.png", "--size", "16"});
        return runTool(args, {project.path(), std::nullopt});
    }

    // An instance of parent, as the editor writes one.
    std::string writeInstance(const std::string& parent)
    {
        project.write("data/inst.mat", "materials { material { parent " + parent + "; parent_path " + parent + " } }\n");
        return "data/inst.mat";
    }

    static bool contains(const std::string& text, const std::string& part)
    {
        return text.find(part) != std::string::npos;
    }

    TempFolder project;
};

const char* const kCommands[] = {"check", "compile", "preview"};

} // namespace

// The link to /dev/zero leads out of the root: on the command line that is
// a usage error, decided before the file is looked at.
TEST_F(HostileFilesTest, CommandLineFilesThatAreNotDocumentsAreRefusedUnread)
{
    for (const hostilefiles::Case& c : hostilefiles::make(project, "data", "x.mat", kDocumentLimit)) {
        for (const std::string command : kCommands) {
            const ToolResult result = run(command, c.path);
            std::string expected = "error: " + command + ": can't read \"" + c.path + "\": " + c.reason + "\n";
            if (c.reason.starts_with("a folder"))
                expected = "error: " + command + ": \"" + c.path + "\" is a folder, not a material file\n";
            if (c.reason.starts_with("a device"))
                expected = "error: " + command + ": \"" + c.path + "\" is outside the data root \"" + project.path()
                    + "\"\n";
            EXPECT_EQ(result.exitCode, c.reason.starts_with("a device") ? 2 : 1) << command << " " << c.path;
            EXPECT_TRUE(result.err.starts_with(expected)) << result.err;
            EXPECT_EQ(project.read("out.png"), "") << command;
        }
    }
}

TEST_F(HostileFilesTest, ParentsThatAreNotDocumentsFailTheInstance)
{
    for (const hostilefiles::Case& c : hostilefiles::make(project, "data", "x.mat", kDocumentLimit)) {
        const std::string instance = writeInstance(c.path);
        const std::string logged = "error: mjl: " + c.path + ": " + c.reason + "\n";
        const ToolResult check = run("check", instance);
        EXPECT_EQ(check.exitCode, 1);
        EXPECT_EQ(check.out, "data/inst.mat: can't read the parent \"" + c.path + "\"\n");
        EXPECT_EQ(check.err, logged);
        for (const char* command : {"compile", "preview"}) {
            const ToolResult result = run(command, instance);
            EXPECT_EQ(result.exitCode, 1) << command << " " << c.path;
            EXPECT_TRUE(contains(result.err, logged)) << result.err;
        }
    }
}

TEST_F(HostileFilesTest, ParentsOutsideTheDataRootAreRefusedUnopened)
{
    for (const std::string parent : {"/etc/passwd", "../../../../etc/passwd", "data/../../rock.mat"}) {
        const std::string instance = writeInstance(parent);
        const std::string named = "\"data/inst.mat\" names the parent \"" + parent + "\" outside the data root\n";
        const ToolResult check = run("check", instance);
        EXPECT_EQ(check.exitCode, 1);
        EXPECT_EQ(check.out, "data/inst.mat: the parent \"" + parent + "\" is outside the data root\n");
        const ToolResult compile = run("compile", instance);
        EXPECT_EQ(compile.exitCode, 1);
        EXPECT_TRUE(contains(compile.err, "error: AppData::load: " + named)) << compile.err;
        const ToolResult preview = run("preview", instance);
        EXPECT_EQ(preview.exitCode, 1);
        EXPECT_TRUE(contains(preview.err, "error: MaterialManager::load: " + named)) << preview.err;
        EXPECT_FALSE(contains(compile.err + preview.err, "mjl")) << "nothing outside the root is opened";
    }
}
