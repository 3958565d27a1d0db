#include "DataVariable.h"
#include "DocumentFixture.h"
#include "MaterialEditor.h"
#include "MaterialProject.h"
#include "jLog.h"
#include "mjl.h"

#include <filesystem>

namespace {

// The material package of a saved file, or null.
const Package* savedMaterial(mjl& file, const jString& path)
{
    return file.open(path, false) ? file.getRoot()->findPackage("materials")->findPackage("material") : nullptr;
}

// The value of the first "text" of the first package named `kind` whose
// "name" is name, in the material of a saved file.
std::string materialEntry(const jString& path, const char* kind, const jString& name)
{
    mjl file;
    const Package* material = savedMaterial(file, path);
    if (!material)
        return "<unreadable>";
    for (size_t i = 0; i < material->getPackageCount(); ++i) {
        const Package& entry = *material->getPackage(i);
        if (entry.getName() == kind && entry.getString("name") == name)
            return std::string(entry.getString("text"));
    }
    return "<none>";
}

jString materialItem(const jString& path, const char* key)
{
    mjl file;
    const Package* material = savedMaterial(file, path);
    return jString(material ? material->getString(key, "<none>") : "<unreadable>");
}

class MaterialEditorOperationsTest : public DocumentTest {
protected:
    const char* projectRoot() const override { return root.path().c_str(); }
    void SetUp() override
    {
        materialproject::write(root);
        DocumentTest::SetUp();
    }

    DataVariable* variableOf(int32_t id) const { return doc->findNode(id)->getVariable(0); }

    TempFolder root;
    jLog::Capture log;
};

} // namespace

// Refused duplicates and instances leave the shared document and the
// published block manager as they were; no refusal writes a file.
TEST_F(MaterialEditorOperationsTest, RefusedOperationsTouchNothing)
{
    ASSERT_TRUE(MaterialEditor::MakeInstance("data/rock.mat"));
    BlockManager* published = BlockManager::get();
    const DataNode* first = doc->getNodes().front().get();
    EXPECT_FALSE(MaterialEditor::Duplicate("data/rock.mat", "", false));
    EXPECT_FALSE(MaterialEditor::Instantiate("data/missing.mat", "data/copy.mat", {{"albedo", "x.dds"}}));
    EXPECT_FALSE(MaterialEditor::Instantiate("data/rock.mat", ""));
    EXPECT_TRUE(doc->isInstance());
    EXPECT_EQ(doc->getParentPath(), "data/rock.mat");
    EXPECT_EQ(doc->getNodes().front().get(), first);
    EXPECT_EQ(BlockManager::get(), published);

    EXPECT_FALSE(MaterialEditor::Compile("data/missing.mat"));
    EXPECT_FALSE(MaterialEditor::MakeInstance("data/missing.mat"));
    EXPECT_FALSE(MaterialEditor::SetTessellate("data/missing.mat", true));
    EXPECT_FALSE(MaterialEditor::SetStateValueByName("data/missing.mat", "Quality", 1));
    EXPECT_FALSE(std::filesystem::exists(root / "data/missing.mat"));
    EXPECT_FALSE(std::filesystem::exists(root / "data/copy.mat"));
}

// Compile writes the generated material and keeps the file loaded.
TEST_F(MaterialEditorOperationsTest, CompileThenMakeInstanceThenSaveWritesTheSharedDocumentAsItStands)
{
    ASSERT_TRUE(MaterialEditor::Compile("data/rock.mat")) << log.text();
    EXPECT_EQ(materialEntry("data/rock.mat", "state", "Quality"), "1");
    EXPECT_EQ(materialEntry("data/rock.mat", "texture", "tex2"), "data/white.dds");
    EXPECT_NE(root.read("data/rock.mat").find("\t\t\t\ti \"rgb2 = texture(BASE_2D[tex2], uv0).rgb;\"\n"),
        std::string::npos);
    EXPECT_EQ(doc->getPath(), "data/rock.mat");
    EXPECT_EQ(doc->getNodeCount(), 4u);

    ASSERT_TRUE(MaterialEditor::MakeInstance("data/rock.mat"));
    EXPECT_TRUE(doc->isInstance());
    EXPECT_EQ(doc->getParentPath(), "data/rock.mat");
    EXPECT_EQ(doc->getPath(), "");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(root / "data"), {}), 2); // core/, rock.mat
    variableOf(3)->setValue("0.25");
    ASSERT_TRUE(MaterialEditor::Save("data/rock_red.mat")) << log.text();
    EXPECT_EQ(materialItem("data/rock_red.mat", "parent"), "data/rock.mat");
    EXPECT_EQ(materialEntry("data/rock_red.mat", "parameter", "value3"), "0.25");
}

TEST_F(MaterialEditorOperationsTest, DuplicateWritesACopyNamedAfterItsFileWhenAsked)
{
    const std::string source = root.read("data/rock.mat");
    ASSERT_TRUE(MaterialEditor::Duplicate("data/rock.mat", "data/copies/stone.mat", true)) << log.text();
    EXPECT_EQ(materialItem("data/copies/stone.mat", "name"), "stone");
    EXPECT_EQ(root.read("data/rock.mat"), source);
    EXPECT_EQ(doc->getPath(), "data/copies/stone.mat");
    EXPECT_TRUE(doc->isUseFileNameAsMaterialName());

    ASSERT_TRUE(MaterialEditor::Duplicate("data/rock.mat", "data/plain.mat", false));
    EXPECT_EQ(materialItem("data/plain.mat", "name"), "<none>");
}

// An instance is written without touching the shared document. Textures are
// replaced by tag (node name); an unknown tag changes nothing.
TEST_F(MaterialEditorOperationsTest, InstantiateWritesAnInstanceWithoutTouchingTheSharedDocument)
{
    ASSERT_TRUE(MaterialEditor::Compile("data/rock.mat"));
    BlockManager* published = BlockManager::get();
    const DataNode* first = doc->getNodes().front().get();

    ASSERT_TRUE(MaterialEditor::Instantiate("data/rock.mat", "data/rock_child.mat")) << log.text();
    EXPECT_EQ(materialItem("data/rock_child.mat", "parent"), "data/rock.mat");
    EXPECT_EQ(materialItem("data/rock_child.mat", "parent_path"), "data/rock.mat");
    EXPECT_EQ(materialEntry("data/rock_child.mat", "texture", "tex2"), "<none>");

    const std::map<jString, jString> textures = {{"albedo", "data/red.dds"}, {"nobody", "data/blue.dds"}};
    ASSERT_TRUE(MaterialEditor::Instantiate("data/rock.mat", "data/rock_red.mat", textures)) << log.text();
    EXPECT_EQ(materialEntry("data/rock_red.mat", "texture", "tex2"), "data/red.dds");
    EXPECT_EQ(root.read("data/rock_red.mat").find("data/blue.dds"), std::string::npos);

    EXPECT_EQ(variableOf(2)->getValue(), "data/white.dds");
    EXPECT_EQ(BlockManager::get(), published);
    EXPECT_EQ(doc->getBlockManager(), published);
    EXPECT_EQ(doc->getPath(), "data/rock.mat");
    EXPECT_FALSE(doc->isInstance());
    EXPECT_EQ(doc->getNodes().front().get(), first);
    EXPECT_NE(doc->createNode("Math.Add"), nullptr); // the shared document still works with its blocks
}

TEST_F(MaterialEditorOperationsTest, SetTessellateSavesTheOption)
{
    for (bool on : {true, false}) {
        ASSERT_TRUE(MaterialEditor::SetTessellate("data/rock.mat", on)) << log.text();
        EXPECT_NE(root.read("data/rock.mat").find(on ? "\t\t\ttessellate true\n" : "\t\t\ttessellate false\n"),
            std::string::npos);
    }
}

TEST_F(MaterialEditorOperationsTest, SetStateValueByNameStoresEightBitsInEditableStatesOnly)
{
    ASSERT_TRUE(MaterialEditor::SetStateValueByName("data/rock.mat", "Quality", 2)) << log.text();
    ASSERT_TRUE(MaterialEditor::SetStateValueByName("data/rock.mat", "Mode", 300));
    ASSERT_TRUE(MaterialEditor::SetStateValueByName("data/rock.mat", "Locked", 1));
    EXPECT_EQ(materialEntry("data/rock.mat", "state", "Quality"), "2");
    EXPECT_EQ(materialEntry("data/rock.mat", "state", "Mode"), "44");
    EXPECT_EQ(materialEntry("data/rock.mat", "state", "Locked"), "0");
    EXPECT_EQ(materialEntry("data/rock.mat", "state", "quality"), "<none>");

    // An unknown (or differently cased) name still saves, states unchanged.
    const std::string before = root.read("data/rock.mat");
    std::filesystem::remove(root / "data/rock.mat");
    root.write("data/rock.mat", before);
    EXPECT_TRUE(MaterialEditor::SetStateValueByName("data/rock.mat", "quality", 0));
    EXPECT_EQ(root.read("data/rock.mat"), before);
}

// Nodes 4 (cube) and 5 (2D) share a tag, the cube one first in the document.
TEST_F(MaterialEditorOperationsTest, SetTexturePathByTagTakes2DThenCubeThen3D)
{
    root.write("data/tags.mat", "blueprint {\n\tnode { id 4; type Texture.SampleCube; name shared }\n"
                                "\tnode { id 5; type Texture.Sample2D; name shared }\n"
                                "\tnode { id 6; type Texture.SampleCube; name sky }\n"
                                "\tnode { id 7; type Texture.Sample3D; name sky }\n"
                                "\tnode { id 8; type Texture.Sample3D; name fog }\n"
                                "\tnode { id 9; type Texture.Sample2D; name Fog }\n}\n");
    ASSERT_TRUE(doc->load("data/tags.mat"));
    const struct {
        const char* tag;
        int32_t changed, untouched;
        const char* untouchedValue;
    } cases[] = {{"shared", 5, 4, "data/sky.dds"}, {"sky", 6, 7, "data/noise.dds"}, {"fog", 8, 9, "data/white.dds"}};
    for (const auto& c : cases) {
        EXPECT_TRUE(MaterialEditor::SetTexturePathByTag(doc, c.tag, jString(c.tag) + ".dds"));
        EXPECT_EQ(variableOf(c.changed)->getValue(), jString(c.tag) + ".dds");
        EXPECT_EQ(variableOf(c.untouched)->getValue(), c.untouchedValue) << c.tag;
    }
    EXPECT_FALSE(MaterialEditor::SetTexturePathByTag(doc, "nobody", "d.dds"));
    EXPECT_FALSE(MaterialEditor::SetTexturePathByTag(doc, "", "d.dds"));
    EXPECT_FALSE(MaterialEditor::SetTexturePathByTag(nullptr, "shared", "d.dds"));
}

TEST_F(MaterialEditorOperationsTest, IsMaterialCanBeEditLooksForABlueprintOrAParentItem)
{
    const std::pair<const char*, const char*> files[] = {{"data/child.mat", "materials { material { parent data/rock.mat } }"},
        {"data/loaded_only.mat", "materials { material { parent_path data/rock.mat } }"},
        {"data/broken.mat", "blueprint {"}};
    for (const auto& [path, text] : files)
        root.write(path, std::string(text) + "\n");
    const std::pair<const char*, bool> cases[] = {{"data/rock.mat", true}, {"data/child.mat", true},
        {"data/loaded_only.mat", false}, {"data/broken.mat", false}, {"data/missing.mat", false}};
    for (const auto& [path, editable] : cases)
        EXPECT_EQ(MaterialEditor::IsMaterialCanBeEdit(path), editable) << path;
}
