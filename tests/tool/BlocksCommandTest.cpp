#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

namespace {

// Runs "blocks" on a project root whose block library is the given text.
ToolResult blocks(const std::string& library, std::vector<std::string> args = {})
{
    TempFolder project;
    project.write("data/core/materials/generate/block.cfg", library);
    args.insert(args.begin(), {"--data-root", project.path(), "blocks"});
    return runTool(args, {project.path(), std::nullopt});
}

const std::string kLibrary = R"(blocks {
	version 1
	block { type PixelOutput; usage ps_end; input_path { name color; type float3; text "Base \"Color\"" } }
	block { type Constant.Float; constant true
		variable { name value; type float; default 0.5; sub { name s; edit true } } }
}
)";

TEST(BlocksCommandTest, JsonCarriesUsageFlagsAnchorsAndVariablesInLibraryOrder)
{
    const ToolResult result = blocks(kLibrary, {"--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, R"([
  {
    "type": "PixelOutput",
    "usage": 3,
    "flags": {"constant": false, "texture2D": false, "texture3D": false, "textureCube": false},
    "anchors": {
      "input_path": [
        {"name": "color", "text": "Base \"Color\"", "type": "float3", "default": "", "edit": false}
      ],
      "output_path": [],
      "input_link": [],
      "output_link": []
    },
    "variables": []
  },
  {
    "type": "Constant.Float",
    "usage": 4,
    "flags": {"constant": true, "texture2D": false, "texture3D": false, "textureCube": false},
    "anchors": {
      "input_path": [],
      "output_path": [],
      "input_link": [],
      "output_link": []
    },
    "variables": [
      {"name": "value", "text": "", "type": "float", "default": "0.5", "mask": 1, "edit": false, "values": [
        {"name": "s", "text": "", "type": "", "default": "", "edit": true}
      ]}
    ]
  }
]
)");
}

TEST(BlocksCommandTest, ListsTypesOrTheLoadLog)
{
    const struct {
        std::string library;
        std::vector<std::string> args;
        int exitCode;
        std::string out, err;
    } cases[] = {
        {"blocks {\n\tversion 1\n\tblock { type Z }\n\tblock { type A }\n\tblock { type M }\n}\n", {}, 0, "Z\nA\nM\n", ""},
        {"blocks {\n\tversion 1\n\tblock { type A }\n\tblock { type A }\n}\n", {}, 1, "",
            "error: Schemer::addBlock(): \"A\" block is already defined\n"
            "error: Schemer::loadBlocks(): can't add block\nerror: BlockManager::init: can't load blocks\n"},
        {"blocks {\n\tblock { type A }\n}\n", {}, 1, "", "error: BlockManager::init: can't load blocks\n"},
    };
    for (const auto& c : cases) {
        const ToolResult result = blocks(c.library, c.args);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.library;
        EXPECT_EQ(result.out, c.out) << c.library;
        EXPECT_EQ(result.err, c.err) << c.library;
    }
}

} // namespace
