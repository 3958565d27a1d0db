#include "TempFolder.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

namespace {

// Runs "generate" on a project root holding the generator tests' block
// library and the given blueprint as rock.mat.
ToolResult generate(const std::string& blueprint, std::vector<std::string> args = {})
{
    const std::string library = "data/core/materials/generate/block.cfg";
    std::ifstream in(MATERIAL_TEST_DATA "/material/generator/" + library, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    TempFolder project;
    project.write(library, text.str());
    project.write("rock.mat", "blueprint {\n\tversion 1\n" + blueprint + "}\n");
    args.insert(args.begin(), {"--data-root", project.path(), "generate", project / "rock.mat"});
    return runTool(args, {project.path(), std::nullopt});
}

// Start, output, an addition and a texture whose stored output line holds
// an editor variant with a newline of its own, printed as it is.
const std::string kMaterial = "\tnode { id 0; type PixelStart }\n\tnode { id 1; type PixelOutput }\n"
                              "\tnode { id 2; type Math.Add }\n\tnode { id 3; type Texture.Sample2D }\n"
                              "\tjoint { node_0 2; node_1 1; anchor_0 out; anchor_1 color }\n"
                              "\tjoint { node_0 0; node_1 2; anchor_0 uv; anchor_1 a }\n"
                              "\tjoint { node_0 0; node_1 3; anchor_0 uv; anchor_1 uv }\n"
                              "\tjoint { node_0 3; node_1 2; anchor_0 rgb; anchor_1 b }\n";

TEST(GenerateCommandTest, PrintsOneStageLineByLine)
{
    const struct {
        std::vector<std::string> args;
        int exitCode;
        std::string out, err;
    } cases[] = {
        {{}, 0, R"(#include "core.h"
#define tex3 0
#include "pixel.h"
INIT_SAMPLER(8);
INIT_TEXTURE_2D_GROUP(15, BASE_2D, 1);
float2 base_uv = IN.uv0;
void main()
{
// main begin
float2 uv0;
float3 out2;
float3 rgb3;
uv0 = IN.uv0;
#ifdef __MATERAIL_EDITOR__
rgb3 = SAMPLE_2D_EDITOR(tex3, uv0, 8).rgb;
#else
rgb3 = SAMPLE_2D(tex3, uv0, 8).rgb;#endif

out2 = uv0 + rgb3;
// output
OUT.color = float4(out2, 1.0);
// output
// main end
}
)", ""},
        // The vertex stage without its nodes fails after its first line.
        {{"--stage", "vs"}, 1, "#include \"core.h\"\n", ""},
        {{"--stage", "gs"}, 2, "",
            "--stage: gs not in {ps,vs}\nRun with --help for more information.\n"},
    };
    for (const auto& c : cases) {
        const ToolResult result = generate(kMaterial, c.args);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.err;
        EXPECT_EQ(result.out, c.out);
        EXPECT_EQ(result.err, c.err);
    }
}

} // namespace
