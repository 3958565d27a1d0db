#include "DataVariable.h"
#include "DocumentFixture.h"
#include "XMatComplier.h"
#include "jLog.h"

// The block library of these tests is tests/data/material/generator/
// data/core/materials/generate/block.cfg; node ids are handed out from 0 in
// creation order.
namespace {

using Lines = jVector<jString>;

class XMatComplierTest : public DocumentTest {
protected:
    const char* projectRoot() const override { return MATERIAL_TEST_DATA "/material/generator"; }

    DataNode* add(const char* type, const char* name = "")
    {
        DataNode* node = create(type);
        if (node)
            node->setName(name);
        return node;
    }

    void link(DataNode* from, const char* out, DataNode* to, const char* in)
    {
        ASSERT_NE(from->findAnchor(out), nullptr) << out;
        ASSERT_NE(to->findAnchor(in), nullptr) << in;
        doc->createJoint(from->findAnchor(out), to->findAnchor(in));
    }

    static Lines endNode(DataNode* end)
    {
        XMatComplier generator;
        Lines lines;
        generator.generate_end_node(lines, end);
        return lines;
    }

    static Lines ps()
    {
        XMatComplier generator;
        Lines lines;
        EXPECT_TRUE(generator.generate_ps(lines));
        return lines;
    }
};

// --- Fragments -------------------------------------------------------------

TEST(XMatComplierToken, ScanStopsForGoodAtAnAtSignWithoutAName)
{
    const auto tokens = XMatComplier::scan_tokens("x = @a_1 * @_b + @1 + @c;");
    ASSERT_EQ(tokens.size(), 2u);
    EXPECT_EQ(tokens[0].text, "@a_1");
    EXPECT_EQ(tokens[0].name, "a_1");
    EXPECT_EQ(tokens[0].position, 8);
    EXPECT_EQ(tokens[1].text, "@_b");
    EXPECT_EQ(tokens[1].name, "_b");
    EXPECT_TRUE(XMatComplier::scan_tokens("@").empty());
    EXPECT_TRUE(XMatComplier::scan_tokens("@@a").empty());
    EXPECT_EQ(XMatComplier::scan_tokens("f(@a,@b)").size(), 2u);
}

TEST(XMatComplierToken, ReplaceChangesEveryWholeOccurrenceOnly)
{
    jString text = "@a + @ab * @a_ + @a9 + @a;@a";
    EXPECT_EQ(XMatComplier::replace_token(text, "@a", "out1"), 3u);
    EXPECT_EQ(text, "out1 + @ab * @a_ + @a9 + out1;out1");
    jString parameter = "&parameter.x * &parameter.y";
    EXPECT_EQ(XMatComplier::replace_all(parameter, "&parameter", "sx1sy1"), 2u);
    EXPECT_EQ(parameter, "sx1sy1.x * sx1sy1.y");
}

TEST_F(XMatComplierTest, PlaceholdersOfVariablesAndInputs)
{
    DataNode* color = add("Constant.Color");
    DataNode* square = add("Math.Square");
    DataNode* sum = add("Math.Add");
    DataNode* prefix = add("Edge.Prefix");
    DataNode* scale = add("MyConstantScale");
    link(color, "rgb", square, "a");
    link(square, "out", prefix, "a");
    XMatComplier generator;
    jLog::Capture log;
    // A linked input read twice; unlinked inputs with and without a default.
    EXPECT_EQ(generator.process_function(square, "@a * @a;"), "rgb0 * rgb0;");
    EXPECT_EQ(generator.process_function(sum, "@a + @b;"), "float3_zero + 0.5;");
    // Adjacent placeholders: what a replacement wrote never lengthens the
    // placeholder before it.
    EXPECT_EQ(generator.process_function(square, "@a@a@"), "rgb0rgb0@");
    EXPECT_EQ(generator.process_function(sum, "@b@a@b;"), "0.5float3_zero0.5;");
    // "&parameter" wins over every placeholder; the parameter name joins all
    // variable identifiers.
    EXPECT_EQ(generator.process_function(color, "&parameter.rgb; // @x"), "color0.rgb; // @x");
    EXPECT_EQ(generator.process_function(scale, "&parameter.x * &parameter.y;"), "sx4sy4.x * sx4sy4.y;");
    EXPECT_EQ(generator.process_function(scale, "@sx + @sy"), "sx4 + sy4");
    // A prefix never corrupts the longer placeholder; unknown names stay.
    EXPECT_EQ(generator.process_function(prefix, "@a + @ab + @abc + @a_b;"), "out1 + float_zero + @abc + @a_b;");
    EXPECT_TRUE(log.empty());
}

// @SAMPLER_ID is the first texture's sampler everywhere; on an error the
// fragment comes back as edited so far.
TEST_F(XMatComplierTest, SamplerIdAndItsErrors)
{
    DataNode* pair = add("Texture.Pair", "pair");
    DataNode* fake = add("Fake.Sampler", "fake");
    pair->setVariableValue(1, "b.png", "", "clamp", "point", 1, false); // second texture: sampler 9
    XMatComplier generator;
    jLog::Capture log;
    EXPECT_EQ(generator.process_function(pair, "PAIR(@SAMPLER_ID, @SAMPLER_ID, @first, @second);"),
        "PAIR(8, 8, first0, second0);");
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(generator.process_function(fake, "SAMPLE(@SAMPLER_ID, @level);"), "SAMPLE(@SAMPLER_ID, @level);");
    pair->getVariable(1)->setSampler(nullptr);
    EXPECT_EQ(generator.process_function(pair, "PART(@SAMPLER_ID, @first);"), "PART(8, @first);");
    EXPECT_EQ(log.lines(), (Lines{
        "error: XMatComplier::process_function: \"fake\" is not a texutre node but use function TEXTURE_GROUP",
        "error: XMatComplier::process_function: \"pair\" sampler is null in texutre node",
    }));
}

TEST_F(XMatComplierTest, AddLineIndentsWithTabsFromLevelOne)
{
    XMatComplier generator;
    Lines lines;
    generator.add_line(lines, "a");
    for (int i = 0; i < 2; ++i)
        generator.raise_indent();
    generator.add_line(lines, "b");
    generator.setNoIndent(true);
    generator.add_line(lines, "c");
    generator.setNoIndent(false);
    for (int i = 0; i < 3; ++i) // one more than raised
        generator.lower_indent();
    generator.add_line(lines, "d");
    EXPECT_EQ(lines, (Lines{"a", "\t\tb", "c", "d"}));
}

// --- Outputs and the walk ----------------------------------------------------

TEST_F(XMatComplierTest, SharedOutputIsDeclaredAndAssignedOnce)
{
    DataNode* color = add("Constant.Color");
    DataNode* square = add("Math.Square");
    DataNode* sum = add("Math.Add");
    DataNode* output = add("PixelOutput");
    link(color, "rgb", square, "a");
    link(color, "rgb", sum, "a");
    link(square, "out", sum, "b");
    link(sum, "out", output, "color");
    EXPECT_EQ(endNode(output), (Lines{"float3 rgb0;", "float3 out1;", "float3 out2;", "rgb0 = color0.rgb; // @x",
        "out1 = rgb0 * rgb0;", "out2 = rgb0 + out1;", "// output", "OUT.color = float4(out2, 1.0);", "// output"}));
}

// A joint from an input anchor (a file can hold it) is still followed.
TEST_F(XMatComplierTest, JointFromAnInputAnchorIsFollowed)
{
    DataNode* output = add("PixelOutput");
    DataNode* sum = add("Math.Add");
    DataNode* square = add("Math.Square");
    link(square, "out", output, "color");
    link(sum, "a", square, "a");
    EXPECT_EQ(endNode(output), (Lines{"float3 out2;", "a1 = ", "out2 = a1 * a1;", "// output",
        "OUT.color = float4(out2, 1.0);", "// output"}));
}

TEST_F(XMatComplierTest, LongChainIsWalkedWithoutRecursion)
{
    const int count = 100000;
    DataNode* previous = add("Constant.Color");
    for (int i = 1; i < count; ++i) {
        DataNode* next = add("Math.Square");
        link(previous, i == 1 ? "rgb" : "out", next, "a");
        previous = next;
    }
    DataNode* output = add("PixelOutput");
    link(previous, "out", output, "color");
    const Lines lines = endNode(output);
    ASSERT_EQ(lines.size(), 2u * count + 3);
    EXPECT_EQ(lines[count], "rgb0 = color0.rgb; // @x");
    EXPECT_EQ(lines[count + 1], "out1 = rgb0 * rgb0;");
    EXPECT_EQ(lines[2 * count + 1], "OUT.color = float4(out99999, 1.0);");
}

// --- Whole programs ----------------------------------------------------------

TEST_F(XMatComplierTest, PixelProgramInTableOrder)
{
    DataNode* start = add("PixelStart");
    DataNode* output = add("PixelOutput");
    DataNode* color = add("Constant.Color");
    DataNode* texture = add("Texture.Sample2D");
    DataNode* sum = add("Math.Add");
    add("Texture.SampleCube");
    add("MyConstantScale");
    link(start, "uv", texture, "uv");
    link(texture, "rgb", sum, "a");
    link(color, "rgb", sum, "b");
    link(sum, "out", output, "color");
    EXPECT_EQ(ps(), (Lines{"#include \"core.h\"", "#define tex3 0", "#define cube5 0", "#include \"pixel.h\"",
        "INIT_SAMPLER(8);", "INIT_TEXTURE_2D_GROUP(16, BASE_2D, 1);", "INIT_TEXTURE_CUBE_GROUP(15, BASE_CUBE, 1);",
        "CBUFFER_BEGIN(ps_shader_parameters)", "\tUNIFORM float4 color2;", "\tUNIFORM float2 sx6sy6;", "CBUFFER_END",
        "float2 base_uv = IN.uv0;", "void main()", "{", "// main begin", "float2 uv0;", "float3 rgb2;", "float3 rgb3;",
        "float3 out4;", "uv0 = IN.uv0;",
        "#ifdef __MATERAIL_EDITOR__\nrgb3 = SAMPLE_2D_EDITOR(tex3, uv0, 8).rgb;\n#else\n"
        "rgb3 = SAMPLE_2D(tex3, uv0, 8).rgb;#endif\n",
        "rgb2 = color2.rgb; // @x", "out4 = rgb3 + rgb2;", "// output", "OUT.color = float4(out4, 1.0);", "// output",
        "// main end", "}"}));
}

// The pixel program of loose nodes, from its second line (or whole).
TEST_F(XMatComplierTest, PixelProgramHeaders)
{
    const struct {
        std::vector<const char*> types;
        size_t from;
        Lines expected;
    } cases[] = {
        {{"PixelStart", "Texture.SampleCube", "Texture.Pair"}, 1,
            {"#define first2 0", "#define second2 1", "#define cube1 0", "#include \"pixel.h\"", "INIT_SAMPLER(8);",
                "INIT_TEXTURE_2D_GROUP(16, BASE_2D, 2);", "INIT_TEXTURE_CUBE_GROUP(15, BASE_CUBE, 1);",
                "float2 base_uv = IN.uv0;"}},
        // The last 3D texture has its own sampler (9).
        {{"Texture.Sample3D", "PixelStart", "Texture.SampleCube", "Texture.Sample3D"}, 1,
            {"#define cube2 0", "#define volume0 0", "#define volume3 1", "#include \"pixel.h\"", "INIT_SAMPLER(8);",
                "INIT_SAMPLER(9);", "INIT_TEXTURE_CUBE_GROUP(15, BASE_CUBE, 1);",
                "INIT_TEXTURE_3D_GROUP(16, BASE_3D, 2);", "float2 base_uv = IN.uv0;"}},
        // Without a start node.
        {{"PixelOutput"}, 0, {"#include \"core.h\"", "void main()", "{", "// main begin", "// output",
            "OUT.color = float4(float3_zero, 1.0);", "// output", "// main end", "}"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected.front());
        doc->clear();
        DataNode* last = nullptr;
        for (const char* type : c.types)
            last = add(type);
        if (c.types.size() == 4)
            last->setVariableValue(0, "v.dds", "", "clamp", "trilinear", 4, false);
        const Lines lines = ps();
        if (c.from == 0) {
            EXPECT_EQ(lines, c.expected);
            continue;
        }
        ASSERT_GE(lines.size(), c.from + c.expected.size());
        EXPECT_EQ(Lines(lines.begin() + c.from, lines.begin() + c.from + c.expected.size()), c.expected);
    }
}

TEST_F(XMatComplierTest, VertexProgramKeepsTexturesButNoSamplers)
{
    DataNode* start = add("VertexStart");
    DataNode* output = add("VertexOutput");
    add("Texture.Sample2D");
    add("Constant.Color");
    add("PixelStart");
    link(start, "position", output, "position");
    XMatComplier generator;
    Lines lines;
    EXPECT_TRUE(generator.generate_vs(lines));
    EXPECT_EQ(lines, (Lines{"#include \"core.h\"", "#define tex2 0", "#include \"vertex.h\"",
        "INIT_TEXTURE_2D_GROUP(15, BASE_2D, 1);", "CBUFFER_BEGIN(vs_shader_parameters)", "\tUNIFORM float4 color3;",
        "CBUFFER_END", "float4 object_pos = IN.position;", "void main()", "{", "// vertex main begin",
        "float4 position0;", "position0 = IN.position;", "OUT.position = position0;", "// vertex main end", "}"}));

    // Without a vertex end node nothing past the include is written.
    doc->destroyNode(output);
    XMatComplier again;
    lines.clear();
    EXPECT_FALSE(again.generate_vs(lines));
    EXPECT_FALSE(again.wasRefused());
    EXPECT_EQ(lines, (Lines{"#include \"core.h\""}));
}

TEST_F(XMatComplierTest, CyclicGraphIsRefusedWithTheNodesOnTheCycleUntilTheCycleIsGone)
{
    add("PixelStart");
    DataNode* output = add("PixelOutput");
    DataNode* sum = add("Math.Add");
    DataNode* square = add("Math.Square");
    DataNode* other = add("Math.Square");
    link(sum, "out", output, "color");
    link(square, "out", sum, "b");
    link(other, "out", square, "a");
    link(sum, "out", other, "a");
    XMatComplier generator;
    Lines lines;
    jLog::Capture log;
    EXPECT_FALSE(generator.generate_ps(lines));
    EXPECT_TRUE(lines.empty());
    EXPECT_TRUE(generator.wasRefused());
    EXPECT_EQ(log.lines(), (Lines{"error: XMatComplier::generate_ps: the graph has a cycle through nodes 2, 3, 4"}));
    EXPECT_EQ(generator.getRefusal(), "XMatComplier::generate_ps: the graph has a cycle through nodes 2, 3, 4");

    // A cycle away from the stage's nodes refuses the vertex stage too.
    log.clear();
    EXPECT_FALSE(generator.generate_vs(lines));
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ(log.lines(), (Lines{"error: XMatComplier::generate_vs: the graph has a cycle through nodes 2, 3, 4"}));

    // A node reading its own output is a cycle too.
    doc->clear();
    add("PixelOutput");
    DataNode* self = add("Math.Add");
    link(self, "out", self, "a");
    log.clear();
    EXPECT_FALSE(generator.generate_ps(lines));
    EXPECT_EQ(log.lines(), (Lines{"error: XMatComplier::generate_ps: the graph has a cycle through nodes 1"}));

    // Once the cycle is gone the same generator runs again.
    doc->destroyJoint(doc->findJointTo(self->findAnchor("a")));
    log.clear();
    EXPECT_TRUE(generator.generate_ps(lines));
    EXPECT_FALSE(generator.wasRefused());
    EXPECT_TRUE(log.empty());
}

} // namespace
