#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

namespace {

const std::string kLibraryPath = "data/core/materials/generate/block.cfg";

// A project root holding the generator tests' block library and one material.
class GenerateCommandTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::ifstream in(MATERIAL_TEST_DATA "/material/generator/" + kLibraryPath, std::ios::binary);
        std::ostringstream library;
        library << in.rdbuf();
        project.write(kLibraryPath, library.str());
    }

    ToolResult generate(const std::string& blueprint, std::vector<std::string> args = {})
    {
        project.write("rock.mat", "blueprint {\n\tversion 1\n" + blueprint + "}\n");
        args.insert(args.begin(), {"--data-root", project.path(), "generate", project / "rock.mat"});
        return runTool(args, {project.path(), std::nullopt});
    }

    TempFolder project;
};

// Start, output, an addition and a texture whose output has an editor variant.
const std::string kMaterial = "\tnode { id 0; type PixelStart }\n"
                              "\tnode { id 1; type PixelOutput }\n"
                              "\tnode { id 2; type Math.Add }\n"
                              "\tnode { id 3; type Texture.Sample2D }\n"
                              "\tjoint { node_0 2; node_1 1; anchor_0 out; anchor_1 color }\n"
                              "\tjoint { node_0 0; node_1 2; anchor_0 uv; anchor_1 a }\n"
                              "\tjoint { node_0 0; node_1 3; anchor_0 uv; anchor_1 uv }\n"
                              "\tjoint { node_0 3; node_1 2; anchor_0 rgb; anchor_1 b }\n";

} // namespace

TEST_F(GenerateCommandTest, PrintsThePixelProgramLineByLine)
{
    const ToolResult result = generate(kMaterial);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "#include \"core.h\"\n"
                          "#define tex3 0\n"
                          "#include \"pixel.h\"\n"
                          "INIT_SAMPLER(8);\n"
                          "INIT_TEXTURE_2D_GROUP(15, BASE_2D, 1);\n"
                          "float2 base_uv = IN.uv0;\n"
                          "void main()\n"
                          "{\n"
                          "// main begin\n"
                          "float2 uv0;\n"
                          "float3 out2;\n"
                          "float3 rgb3;\n"
                          "uv0 = IN.uv0;\n"
                          "#ifdef __MATERAIL_EDITOR__\n"
                          "rgb3 = SAMPLE_2D_EDITOR(tex3, uv0, 8).rgb;\n"
                          "#else\n"
                          "rgb3 = SAMPLE_2D(tex3, uv0, 8).rgb;#endif\n"
                          "\n"
                          "out2 = uv0 + rgb3;\n"
                          "// output\n"
                          "OUT.color = float4(out2, 1.0);\n"
                          "// output\n"
                          "// main end\n"
                          "}\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(GenerateCommandTest, VertexStageWithoutItsNodesFails)
{
    const ToolResult result = generate(kMaterial, {"--stage", "vs"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "#include \"core.h\"\n");
}

TEST_F(GenerateCommandTest, CycleIsRefusedWithNothingPrinted)
{
    const ToolResult result = generate("\tnode { id 4; type PixelOutput }\n"
                                       "\tnode { id 7; type Math.Add }\n"
                                       "\tjoint { node_0 7; node_1 4; anchor_0 out; anchor_1 color }\n"
                                       "\tjoint { node_0 7; node_1 7; anchor_0 out; anchor_1 a }\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: XMatComplier::generate_ps: the graph has a cycle through nodes 7\n");
}

TEST_F(GenerateCommandTest, BadUsage)
{
    EXPECT_EQ(generate(kMaterial, {"--stage", "gs"}).exitCode, 2);
    const ToolResult missing = runTool({"--data-root", project.path(), "generate", project / "none.mat"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "error: generate: \"" + project / "none.mat" + "\" does not exist\n");
    EXPECT_EQ(missing.out, "");
}
