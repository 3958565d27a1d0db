#include "DataAnchor.h"
#include "DataVariable.h"
#include "DocumentFileFixture.h"
#include "jString.h"

#include <algorithm>

#include <filesystem>

using MaterialSaveTest = DocumentFileTest;

namespace {

const char* const kPassTemplate = R"(materials {
	material {
		state { name EDITOR_MODE; type toggle; text 0; defines ",EDITOR" }
		options { render_order 2 }
		shader { pass ambient; textures base; vertex old.vert }
		shader { pass shadow; fragment shadow.frag }
		shader { pass wireframe; vertex wire.vert }
		shader { pass post }
		shader { pass custom }
		shader { no_pass here }
	}
}
)";

// Everything above the editor packages of a saved file.
jString materialPart(const jString& text)
{
    return text.substr(0, text.find("editor {"));
}

// A saved file's text from its lines, split at newlines and "|" and stripped
// of leading blanks, each indented by its depth of braces.
jString mat(const jString& packed, size_t depth = 0)
{
    jString text;
    for (jString line : jSplit(packed, '\n')) {
        for (const jString& item : jSplit(line, '|')) {
            const jString stripped = item.substr(std::min(item.find_first_not_of(" \t"), item.size()));
            if (stripped.starts_with('}'))
                --depth;
            text += jString(depth, '\t') + stripped + "\n";
            if (stripped.ends_with('{'))
                ++depth;
        }
    }
    return text;
}

} // namespace

class MaterialSaveGraphTest : public MaterialSaveTest {
protected:
    void SetUp() override
    {
        MaterialSaveTest::SetUp();
        root.write("data/core/materials/generate/opaque.mat", kPassTemplate);
        input = create("PixelInput");
        texture = create("Texture.Sample2D");
        constant = create("Constant.Float");
        output = create("PixelOutput");
        doc->createJoint(input->getOutputPath(0), texture->getInputPath(0));
        doc->createJoint(texture->getOutputPath(0), output->getInputPath(0));
    }

    DataNode* input = nullptr;
    DataNode* texture = nullptr;
    DataNode* constant = nullptr;
    DataNode* output = nullptr;
};

TEST_F(MaterialSaveGraphTest, PlainMaterialFillsTheTemplatesPasses)
{
    ASSERT_TRUE(doc->createStates());
    doc->getStates()[0].value = 1;
    doc->setTwoSided(true);
    doc->setBlendSrc("src_alpha");
    doc->setBlendDst("one_minus_src_alpha");
    doc->setDepthFunc("DEPTH_LESS");
    texture->setVariableValue(0, "data/t.dds", "", "clamp", "", 1, false);
    jLog::Capture log;
    ASSERT_TRUE(doc->save("out/rock.mat")) << log.text();
    EXPECT_EQ(doc->getPath(), "out/rock.mat");
    EXPECT_EQ(materialPart(root.read("out/rock.mat")), mat(R"MAT(materials {|material {
        state {|name EDITOR_MODE|type toggle|text 1|defines ,EDITOR|}
        options {|render_order 0|depth_offset 0|mask 0|two_sided true|post_scattering false|post_fog false
            post_taa false|tessellate false|}
        shader {|pass ambient|textures base,tex1|vertex ""|fragment {|i "#define tex1 0"|i "INIT_SAMPLER(8);"
            i "INIT_SAMPLER(9);"|i "INIT_TEXTURE_2D_GROUP(15, BASE_2D, 1);"|i CBUFFER_BEGIN(ps_shader_parameters)
            i "\tUNIFORM float value2;"|i CBUFFER_END|i "float2 uv0;"|i "float4 rgba1;"|i "uv0 = IN.uv0;"
            i "rgba1 = SAMPLE(tex1, uv0, 9);"|}|depth_func DEPTH_LESS|blend_func src_alpha,one_minus_src_alpha|}
        shader {|pass shadow|fragment shadow.frag|textures tex1|vertex @ambient|}
        shader {|pass wireframe|vertex wire.vert|vertex @ambient|}
        shader {|pass post|textures tex1|}|shader {|pass custom|textures tex1|}|shader {|no_pass here|}
        texture {|name tex1|type texture2D|text data/t.dds|sampler 9|wrap clamp|filter bilinear|anisotropy 1
            sub {|name tag|text hero|}|sub {|name srgb|text 1|}|}
        parameter {|name value2|type float|text 0.5|}|}|})MAT"));
    EXPECT_TRUE(log.empty()) << log.text();

    // Loaded and saved again without building the states (as a duplicate
    // is), the file keeps its state values.
    ASSERT_TRUE(doc->load("out/rock.mat"));
    ASSERT_TRUE(doc->save("copy.mat"));
    ASSERT_TRUE(doc->load("copy.mat"));
    ASSERT_TRUE(doc->createStates());
    EXPECT_EQ(doc->findState("EDITOR_MODE")->value, 1);
}

TEST_F(MaterialSaveGraphTest, RefusedOrUnfillableMaterialsLeaveTheOldFileAlone)
{
    root.write("keep.mat", "old contents\n");
    // A cycle through the texture's uv input (its message is the generator's).
    doc->createJoint(texture->getOutputPath(0), texture->getInputPath(0));
    {
        jLog::Capture quiet;
        EXPECT_FALSE(doc->save("keep.mat"));
    }
    EXPECT_EQ(root.read("keep.mat"), "old contents\n");

    doc->destroyJoint(doc->getJoints().back().get());
    root.write("data/core/materials/generate/opaque.mat", "materials { }");
    jLog::Capture log;
    EXPECT_FALSE(doc->save("keep.mat"));
    EXPECT_EQ(log.text(), "error: AppData::save:pkg_mat_ret\n");
    EXPECT_EQ(root.read("keep.mat"), "old contents\n");
}

TEST_F(MaterialSaveGraphTest, MissingTemplateOrStartNodeStillSavesTheGraph)
{
    // The bundled data root holds a real opaque.mat, so the missing template
    // is one that exists nowhere.
    output->getBlock()->setMat("data/core/materials/generate/missing.mat");
    {
        jLog::Capture log;
        EXPECT_TRUE(doc->save("a.mat"));
        EXPECT_EQ(log.text(),
            "error: AppData::save:mat gen \"data/core/materials/generate/missing.mat\" can not be open\n");
        EXPECT_EQ(root.read("a.mat").find("materials"), jString::npos);
    }
    output->getBlock()->setMat("data/core/materials/generate/opaque.mat");
    doc->destroyNode(input);
    jLog::Capture log;
    EXPECT_TRUE(doc->save("b.mat"));
    EXPECT_EQ(log.text(), "warning: AppData::save:PS Start node not found, ignore compile\n");
    EXPECT_EQ(root.read("b.mat").find("fragment {"), jString::npos);
    ASSERT_TRUE(doc->load("b.mat"));
    EXPECT_EQ(doc->getNodeCount(), 3u);
}

// An empty document is not saved. The bind and name items; the ambient
// pass's optional stages reach only the passes after it; the vertex program
// is stored once the graph has both vertex nodes.
TEST_F(MaterialSaveTest, AmbientStagesAndVertexProgram)
{
    {
        jLog::Capture log;
        EXPECT_FALSE(doc->save("empty.mat"));
        EXPECT_EQ(log.text(), "warning: AppData::save:current scene is empty, save is ignored\n");
        EXPECT_FALSE(std::filesystem::exists(root / "empty.mat"));
    }
    root.write("data/core/materials/generate/block.cfg", R"(code_include { i "// include" }
blocks {
	version 1
	block { type PixelInput; usage ps_start; vertex lit.vert; control lit.ctrl; geometry lit.geom
		output_path { name uv; type float2; function "IN.uv0;" } }
	block { type PixelOutput; usage ps_end; mat data/core/materials/generate/opaque.mat; bind lit
		input_path { name color; type float4 } function { i "OUT.color = @color;" } }
	block { type VertexInput; usage vs_start; output_path { name position; type float4; function "IN.position;" } }
	block { type VertexOutput; usage vs_end; input_path { name position; type float4 }
		function { i "OUT.position = @position;" } }
}
)");
    root.write("data/core/materials/generate/opaque.mat", "materials { material { shader { pass shadow }\n"
        "shader { pass ambient; vertex old.vert; fragment old.frag } shader { pass light_omni }\n"
        "shader { pass light_proj; geometry proj.geom; fragment proj.frag } } }\n");
    ASSERT_TRUE(doc->reloadBlocks());
    create("PixelInput");
    create("PixelOutput");
    doc->setUseFileNameAsMaterialName(true);
    jLog::Capture log;
    ASSERT_TRUE(doc->save("out/a.mat"));
    EXPECT_EQ(materialPart(root.read("out/a.mat")), mat(R"MAT(materials {|material {
        shader {|pass shadow|vertex @ambient|fragment @ambient|}
        shader {|pass ambient|vertex lit.vert|fragment {|i "// include"|i "INIT_SAMPLER(8);"
            i "OUT.color = float4_zero;"|}|control lit.ctrl|geometry lit.geom|}
        shader {|pass light_omni|vertex @ambient|fragment @ambient|control @ambient|geometry @ambient|}
        shader {|pass light_proj|geometry proj.geom|fragment proj.frag|vertex @ambient|control @ambient|}
        bind lit|name a
        options {|render_order 0|depth_offset 0|mask 0|two_sided false|post_scattering false|post_fog false
            post_taa false|tessellate false|}|}|})MAT"));

    // With both vertex nodes the vertex program is stored; every linked output
    // of the document is declared in both programs.
    DataNode* vertexInput = create("VertexInput");
    doc->createJoint(vertexInput->getOutputPath(0), create("VertexOutput")->getInputPath(0));
    ASSERT_TRUE(doc->save("b.mat"));
    const jString text = materialPart(root.read("b.mat"));
    const jString ambient = text.substr(text.find("\t\tshader {\n\t\t\tpass ambient"));
    EXPECT_EQ(ambient.substr(0, ambient.find("\t\t\tcontrol")), mat(R"MAT(shader {|pass ambient
        vertex {|i "// include"|i "float4 position2;"|i "position2 = IN.position;"|i "OUT.position = position2;"|}
        fragment {|i "// include"|i "INIT_SAMPLER(8);"|i "float4 position2;"|i "OUT.color = float4_zero;"|})MAT", 2));
    EXPECT_TRUE(log.empty()) << log.text();
}

TEST_F(MaterialSaveGraphTest, InstanceWritesOnlyWhatDiffersFromItsParent)
{
    constant->setName("gloss");
    texture->setName("albedo");
    ASSERT_TRUE(doc->createStates());
    ASSERT_TRUE(doc->save("parent.mat"));

    // What the headless instantiation does to a loaded parent.
    ASSERT_TRUE(doc->load("parent.mat"));
    ASSERT_TRUE(doc->createStates());
    doc->setParentPath(doc->getPath());
    doc->setPath("");
    doc->setInstance(true);
    doc->setForceName(true);
    doc->findNode(2)->setVariableValueOnly(0, "0.75");
    doc->findNode(1)->setVariableValueOnly(0, "data/moss.dds");
    doc->setBlendOp("max");
    doc->setMask(6);
    doc->getStates()[0].value = 1;
    jLog::Capture log;
    ASSERT_TRUE(doc->save("inst/moss.mat"));
    EXPECT_TRUE(log.empty()) << log.text();
    EXPECT_EQ(root.read("inst/moss.mat"), mat(R"MAT(materials {|material {
        name moss|force_name true|parent parent.mat|parent_path parent.mat|shader {|pass ambient|blend_op max|}
        state {|name EDITOR_MODE|text 1|}|options {|mask 6|}|texture {|name tex1|text data/moss.dds|}
        parameter {|name value2|text 0.75|}|}|})MAT"));

    ASSERT_TRUE(doc->load("inst/moss.mat"));
    EXPECT_TRUE(doc->isInstance());
    EXPECT_EQ(doc->findNode(2)->getVariableValue("value"), "0.75");
    EXPECT_EQ(doc->findNode(1)->getVariableValue("tex"), "data/moss.dds");
    EXPECT_EQ(doc->getBlendOp(), "max");
    EXPECT_EQ(doc->getMask(), 6);
    ASSERT_TRUE(doc->createStates());
    EXPECT_EQ(doc->findState("EDITOR_MODE")->value, 1);
    EXPECT_EQ(doc->findState("EDITOR_MODE")->source, MaterialState::FromDocument);

    doc->setParentPath("gone.mat");
    jLog::Capture missing;
    EXPECT_FALSE(doc->save("inst/moss.mat"));
    EXPECT_EQ(missing.text(), "error: AppData::save:parent mat \"gone.mat\" not found\n");
}

TEST_F(MaterialSaveTest, InstanceOverridesFloatAndIntConstantsWithTheirSubValues)
{
    jString blocks = kBlocks;
    blocks.insert(blocks.rfind('}'),
        "\tblock { type Constant.Tint; data_type float4; variable { name tint; type color; default \"1,1,1,1\" } }\n"
        "\tblock { type MyConstantEmpty; data_type float }\n"
        "\tblock { type Constant.Ranged; data_type float; variable { name v; type int; default 2;"
        " sub { name lo; type float; default 0 } sub { name map; type texture2D; default m.dds } } }\n");
    root.write("data/core/materials/generate/block.cfg", blocks);
    ASSERT_TRUE(doc->reloadBlocks());
    for (const char* type : {"Constant.Tint", "MyConstantEmpty", "Constant.Float", "Constant.Ranged", "PixelOutput"})
        create(type);
    {
        jLog::Capture quiet; // the fixture's template holds malformed states
        doc->createStates();
    }
    {
        jLog::Capture quiet; // no start node; the texture sub variable is refused as below
        ASSERT_TRUE(doc->save("parent.mat"));
    }
    doc->setParentPath("parent.mat");
    doc->setInstance(true);
    jLog::Capture log;
    ASSERT_TRUE(doc->save("inst.mat"));
    EXPECT_EQ(log.text(), "error: AppData::save:DataVariable type \"color\" is not supported\n"
                          "error: AppData::save:Data node has no variable\n"
                          "error: AppData::save: sub variable type not support \"texture2D\"\n");
    EXPECT_EQ(root.read("inst.mat"), mat("materials {|material {|parent parent.mat|parent_path parent.mat"
                                         "|parameter {|name value2|text 0.5|}|parameter {|name v3|text 2"
                                         "|sub {|name lo|text 0|}|}|}|}"));
}

TEST_F(MaterialSaveGraphTest, APrivateDocumentGeneratesFromItsOwnGraph)
{
    auto priv = std::make_unique<AppData>();
    ASSERT_TRUE(priv->init());
    DataNode* start = priv->createNode("PixelInput");
    DataNode* sampler = priv->createNode("Texture.Sample2D");
    DataNode* end = priv->createNode("PixelOutput");
    ASSERT_TRUE(priv->setNodeId(sampler, 40));
    priv->createJoint(start->getOutputPath(0), sampler->getInputPath(0));
    priv->createJoint(sampler->getOutputPath(0), end->getInputPath(0));
    ASSERT_TRUE(priv->save("private.mat"));
    priv.reset();
    BlockManager::setCurrent(doc->getBlockManager());

    const jString text = root.read("private.mat");
    EXPECT_NE(text.find("i \"rgba40 = SAMPLE(tex40, uv0, 8);\""), jString::npos) << text;
    EXPECT_EQ(text.find("value2"), jString::npos) << text;
}
