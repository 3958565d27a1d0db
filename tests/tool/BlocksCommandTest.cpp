#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

namespace {

const std::string kLibraryPath = "data/core/materials/generate/block.cfg";

// A project root whose block library is the given text.
class BlocksCommandTest : public ::testing::Test {
protected:
    ToolResult blocks(const std::string& library, std::vector<std::string> args = {})
    {
        project.write(kLibraryPath, library);
        args.insert(args.begin(), {"--data-root", project.path(), "blocks"});
        return runTool(args, {project.path(), std::nullopt});
    }

    TempFolder project;
};

const std::string kLibrary = "blocks {\n"
                             "\tversion 1\n"
                             "\tblock {\n"
                             "\t\ttype PixelOutput\n"
                             "\t\tusage ps_end\n"
                             "\t\tinput_path { name color; type float3; text \"Base \\\"Color\\\"\" }\n"
                             "\t}\n"
                             "\tblock {\n"
                             "\t\ttype Constant.Float\n"
                             "\t\tconstant true\n"
                             "\t\tvariable { name value; type float; default 0.5\n"
                             "\t\t\tsub { name s; edit true }\n"
                             "\t\t}\n"
                             "\t}\n"
                             "\tblock {\n"
                             "\t\ttype Math.Add\n"
                             "\t}\n"
                             "}\n";

} // namespace

TEST_F(BlocksCommandTest, ListsTypesInLibraryOrder)
{
    const ToolResult result = blocks(kLibrary);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "PixelOutput\nConstant.Float\nMath.Add\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(BlocksCommandTest, JsonCarriesUsageFlagsAnchorsAndVariables)
{
    const ToolResult result = blocks(kLibrary, {"--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string& out = result.out;
    EXPECT_EQ(out.front(), '[');
    EXPECT_EQ(out.substr(out.size() - 2), "]\n");
    const size_t output = out.find("\"type\": \"PixelOutput\"");
    const size_t constant = out.find("\"type\": \"Constant.Float\"");
    const size_t add = out.find("\"type\": \"Math.Add\"");
    ASSERT_NE(output, std::string::npos);
    EXPECT_LT(output, constant);
    EXPECT_LT(constant, add);
    EXPECT_NE(out.find("\"usage\": 3,"), std::string::npos);
    EXPECT_NE(out.find("\"usage\": 4,"), std::string::npos);
    EXPECT_NE(out.find("{\"name\": \"color\", \"text\": \"Base \\\"Color\\\"\", \"type\": \"float3\", \"default\": \"\", "
                       "\"edit\": false}"),
        std::string::npos);
    EXPECT_NE(out.find("\"flags\": {\"constant\": true, \"texture2D\": false, \"texture3D\": false, "
                       "\"textureCube\": false}"),
        std::string::npos);
    EXPECT_NE(out.find("{\"name\": \"value\", \"text\": \"\", \"type\": \"float\", \"default\": \"0.5\", \"mask\": 1, "
                       "\"edit\": false, \"values\": ["),
        std::string::npos);
    EXPECT_NE(out.find("{\"name\": \"s\", \"text\": \"\", \"type\": \"\", \"default\": \"\", \"edit\": true}"),
        std::string::npos);
}

TEST_F(BlocksCommandTest, EmptyLibraryListsNothing)
{
    const std::string empty = "blocks {\n\tversion 1\n}\n";
    EXPECT_EQ(blocks(empty).out, "");
    const ToolResult json = blocks(empty, {"--json"});
    EXPECT_EQ(json.exitCode, 0);
    EXPECT_EQ(json.out, "[]\n");
}

TEST_F(BlocksCommandTest, LibraryThatFailsToLoadPrintsTheLogAndExitsOne)
{
    const ToolResult result = blocks("blocks {\n\tversion 1\n\tblock {\n\t\ttype A\n\t}\n\tblock {\n\t\ttype A\n\t}\n}\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: Schemer::addBlock(): \"A\" block is already defined\n"
                          "error: Schemer::loadBlocks(): can't add block\n"
                          "error: BlockManager::init: can't load blocks\n");

    const ToolResult noVersion = blocks("blocks {\n\tblock {\n\t\ttype A\n\t}\n}\n");
    EXPECT_EQ(noVersion.exitCode, 1);
    EXPECT_EQ(noVersion.err, "error: BlockManager::init: can't load blocks\n");
}

TEST_F(BlocksCommandTest, UnknownKeysWarnButTheListStillPrints)
{
    const ToolResult result = blocks("blocks {\n\tversion 1\n\tblock {\n\t\ttype A\n\t\tcolour red\n\t}\n}\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "A\n");
    EXPECT_EQ(result.err, "warning: colour: unknown node \"Block::load\"\n");
}
