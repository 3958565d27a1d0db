#include "DocumentFileFixture.h"
#include "MaterialManager.h"

namespace {

const MaterialState& state(AppData* doc, const char* name)
{
    static const MaterialState missing;
    const MaterialState* found = doc->findState(name);
    EXPECT_NE(found, nullptr) << name;
    return found ? *found : missing;
}

} // namespace

using RenderStatesTest = DocumentFileTest;

TEST_F(RenderStatesTest, TemplateDeclaresStatesWithTheirDefinesAndDropsBadOnes)
{
    create("PixelOutput");
    jLog::Capture log;
    ASSERT_TRUE(doc->createStates());
    const std::vector<jString> expected = {
        "error: AppData::createStates: unknown state type \"flag\" in \"Odd\" material",
        "error: AppData::createStates: state no value in \"Empty\" material",
        // The classification walks the template once more.
        "error: AppData::fill_material_state_value_type: state no value in \"Empty\" material",
    };
    EXPECT_EQ(log.lines(), expected);

    ASSERT_EQ(doc->getStates().size(), 5u);
    const MaterialState& quality = state(doc, "Quality");
    EXPECT_EQ(quality.items, (jVector<jString>{"Low", "Mid", "High"}));
    EXPECT_EQ(quality.defines, (jVector<jString>{"Q_LOW", "Q_MID", "Q_HIGH"}));
    EXPECT_EQ(quality.value, 1);
    EXPECT_FALSE(state(doc, "Locked").editable);
    EXPECT_EQ(state(doc, "Locked").defines, (jVector<jString>{"", ""}));
    EXPECT_EQ(state(doc, "Quality").source, MaterialState::FromTemplate);
    EXPECT_TRUE(state(doc, "Quality").inherited);
    // A state the template marks not editable is skipped by the walk that
    // classifies values, so it keeps the document as its source.
    EXPECT_EQ(state(doc, "Locked").source, MaterialState::FromDocument);
}

TEST_F(RenderStatesTest, ValuesLayerTemplateThenParentThenDocumentAndRecordTheirSource)
{
    create("PixelOutput");
    root.write("parent.mat", R"(materials { material {
		state { name Quality; text 2 }
		state { name Lights; text 3 }
		state { name Locked; text 1 }
		state { name EDITOR_MODE; editable false; text 1 }
		state { name Plain }
	} })");
    writeDocument("doc.mat", R"(materials { material {
		state { name EDITOR_MODE; text 1 }
		state { name Lights; text 300 }
	} })");
    ASSERT_TRUE(doc->load("doc.mat"));
    doc->setParentPath("parent.mat");

    jLog::Capture log;
    ASSERT_TRUE(doc->createStates());
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: AppData::createStates: unknown state type \"flag\" in \"Odd\" material",
                               "error: AppData::createStates: state no value in \"Empty\" material",
                               "error: AppData::fill_material_state_value: state no value in \"Plain\" material",
                               "error: AppData::fill_material_state_value_type: state no value in \"Plain\" material",
                               "error: AppData::fill_material_state_value_type: state no value in \"Empty\" material",
                           }));

    EXPECT_EQ(state(doc, "EDITOR_MODE").value, 1);
    EXPECT_EQ(state(doc, "EDITOR_MODE").source, MaterialState::FromDocument);
    EXPECT_EQ(state(doc, "Quality").value, 2);
    EXPECT_EQ(state(doc, "Quality").source, MaterialState::FromParent);
    EXPECT_EQ(state(doc, "Lights").value, 300 & 0xFF);
    EXPECT_EQ(state(doc, "Lights").source, MaterialState::FromDocument);
    // Overridden in the parent although the template marks it not editable:
    // only a file's own "editable false" protects a state from that file.
    EXPECT_EQ(state(doc, "Locked").value, 1);
    EXPECT_EQ(state(doc, "Plain").value, 1);
    EXPECT_EQ(state(doc, "Plain").source, MaterialState::FromTemplate);
}

TEST_F(RenderStatesTest, OnlyAnUnbrokenChainOfEqualLayersNamesAnEarlierSource)
{
    root.write("data/core/materials/generate/opaque.mat", R"(materials { material {
		state { name Restored; text 0 }
		state { name Repeated; text 0 }
		state { name Same; text 3 }
	} })");
    create("PixelOutput");
    root.write("parent.mat", R"(materials { material {
		state { name Restored; text 1 }
		state { name Repeated; text 0 }
		state { name Repeated; text 1 }
		state { name Same; text 3 }
	} })");
    writeDocument("doc.mat", "materials { material { state { name Restored; text 0 } state { name Restored; editable 0 } } }");
    ASSERT_TRUE(doc->load("doc.mat"));
    doc->setParentPath("parent.mat");
    jLog::Capture log;
    ASSERT_TRUE(doc->createStates());
    EXPECT_TRUE(log.empty());
    // The document restores the template's value over the parent's: the
    // parent breaks the chain, so the value is the document's own.
    EXPECT_EQ(state(doc, "Restored").value, 0);
    EXPECT_EQ(state(doc, "Restored").source, MaterialState::FromDocument);
    EXPECT_FALSE(state(doc, "Restored").inherited);
    // The parent's last entry gives the value; its first, different one has
    // already broken the chain.
    EXPECT_EQ(state(doc, "Repeated").value, 1);
    EXPECT_EQ(state(doc, "Repeated").source, MaterialState::FromDocument);
    // A parent value equal to the template's counts as the template's.
    EXPECT_EQ(state(doc, "Same").source, MaterialState::FromTemplate);
    EXPECT_TRUE(state(doc, "Same").inherited);
}

TEST_F(RenderStatesTest, OperationsFromAPassAndInvalidBlendFunc)
{
    mjl file;
    ASSERT_TRUE(file.parse(R"(material {
		shader { pass shadow; blend_op max }
		shader { pass ambient; buffer_mask BUFFER_COLOR; depth_func DEPTH_LESS; blend_func src_alpha,one_minus_src_alpha }
	})"));
    Package* material = file.getRoot()->findPackage("material");
    Package* pass = AppData::find_shader_pass(material, false);
    ASSERT_NE(pass, nullptr);
    doc->load_operations(pass);
    EXPECT_EQ(doc->getBufferMask(), "BUFFER_COLOR");
    EXPECT_EQ(doc->getDepthFunc(), "DEPTH_LESS");
    EXPECT_EQ(doc->getBlendOp(), "add");
    EXPECT_EQ(doc->getBlendSrc(), "src_alpha");
    EXPECT_EQ(doc->getBlendDst(), "one_minus_src_alpha");

    jLog::Capture log;
    pass->setString("blend_func", "one");
    doc->load_operations(pass);
    pass->setString("blend_func", "one,zero,one");
    doc->load_operations(pass);
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: AppData::load_operations:material blend_func \"one\" invalid",
                               "error: AppData::load_operations:material blend_func \"one,zero,one\" invalid",
                           }));
    EXPECT_EQ(doc->getBlendSrc(), "src_alpha");
    EXPECT_EQ(doc->getBlendDst(), "one_minus_src_alpha");
    doc->load_operations(nullptr);
}


// The template's EDITOR_MODE toggle reads ",EDITOR": value 0 selects no
// define, value 1 selects EDITOR, in the document and in the engine alike.
TEST_F(RenderStatesTest, EmptyDefineEntriesSelectTheSameDefinesInTheDocumentAndTheEngine)
{
    create("PixelInput");
    create("PixelOutput");
    writeDocument("doc.mat", "materials { material { state { name EDITOR_MODE; text 1 } } }");
    ASSERT_TRUE(doc->load("doc.mat"));
    jLog::Capture log;
    ASSERT_TRUE(doc->createStates());
    EXPECT_EQ(state(doc, "EDITOR_MODE").defines, (jVector<jString>{"", "EDITOR"}));
    const jVector<jString> expected = {"EDITOR", "Q_MID", "LIGHT_COUNT=3"};
    EXPECT_EQ(MaterialState::programDefines(doc->getStates()), expected);

    ASSERT_TRUE(doc->save("compiled.mat")) << log.text();
    const MaterialManager::MaterialPtr material = MaterialManager::loadFile("compiled.mat");
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->getSelectedDefines(), expected);
    material->findState("EDITOR_MODE")->value = 0;
    EXPECT_EQ(material->getSelectedDefines(), (jVector<jString>{"Q_MID", "LIGHT_COUNT=3"}));
}
