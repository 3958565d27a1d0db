#include "HostileFiles.h"
#include "ToolProjectTest.h"

// check, compile and preview against pipes, devices, folders and oversized
// files named as a document or a parent, and parents outside the data root.
// Runs under a short CTest timeout: the failure this guards against is a hang.
namespace {

class HostileFilesTest : public ToolProjectTest {
protected:
    ToolResult run(const std::string& command, const std::string& path)
    {
        std::vector<std::string> args = {command, path};
        if (command == "preview")
            args.insert(args.end(), {"-o", project / "out.png", "--size", "16"});
        return tool(args);
    }

    // The instance data/inst.mat of parent, as the editor writes one.
    void writeInstance(const std::string& parent)
    {
        project.write("data/inst.mat", "materials { material { parent " + parent + "; parent_path " + parent + " } }\n");
    }
};

} // namespace

TEST_F(HostileFilesTest, FilesThatAreNotDocumentsAreRefusedAsADocumentAndAsAParent)
{
    for (const auto& [path, reason] : makeHostileFiles(project, "x.mat", uint64_t(256) << 20)) {
        // A link out of the root on the command line is a usage error (exit 2) before any read.
        if (!reason.starts_with("a device") && !reason.starts_with("a folder")) {
            const ToolResult document = tool({"check", path});
            EXPECT_EQ(document.exitCode, 1);
            EXPECT_EQ(document.err, "error: check: can't read \"" + path + "\": " + reason + "\n");
        }
        writeInstance(path);
        const ToolResult check = tool({"check", "data/inst.mat"});
        EXPECT_EQ(check.exitCode, 1);
        EXPECT_EQ(check.out, "data/inst.mat: can't read the parent \"" + path + "\"\n");
        EXPECT_EQ(check.err, "error: mjl: " + path + ": " + reason + "\n");
        for (const char* command : {"compile", "preview"}) {
            const ToolResult result = run(command, "data/inst.mat");
            EXPECT_EQ(result.exitCode, 1) << command;
            EXPECT_TRUE(contains(result.err, "error: mjl: " + path + ": " + reason + "\n")) << result.err;
        }
    }
}

TEST_F(HostileFilesTest, ParentsOutsideTheDataRootAreRefusedUnopened)
{
    for (const std::string parent : {"/etc/passwd", "../../../../etc/passwd", "data/../../rock.mat"}) {
        writeInstance(parent);
        const std::string named = "\"data/inst.mat\" names the parent \"" + parent + "\" outside the data root\n";
        const ToolResult check = tool({"check", "data/inst.mat"});
        EXPECT_EQ(check.exitCode, 1);
        EXPECT_EQ(check.out, "data/inst.mat: the parent \"" + parent + "\" is outside the data root\n");
        const ToolResult compile = run("compile", "data/inst.mat");
        EXPECT_EQ(compile.exitCode, 1);
        EXPECT_TRUE(contains(compile.err, "error: AppData::load: " + named)) << compile.err;
        const ToolResult preview = run("preview", "data/inst.mat");
        EXPECT_EQ(preview.exitCode, 1);
        EXPECT_TRUE(contains(preview.err, "error: MaterialManager::load: " + named)) << preview.err;
        EXPECT_FALSE(contains(compile.err + preview.err, "mjl")) << "nothing outside the root is opened";
    }
}
