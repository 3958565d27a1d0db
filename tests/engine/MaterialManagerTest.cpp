#include "MaterialManager.h"
#include "jLog.h"
#include "mjl.h"

#include "TempRootTest.h"

namespace {

const char* const kRock = R"(materials { material {
	bind "surface"
	state { name EDITOR_MODE; text 1; defines ",EDITOR" }
	state { name Quality; type switch; text 2; items "Low,Mid,High" }
	state { name Layers; type int; text 3; defines LAYERS; editable false }
	state { name Odd; type wobble; text 0 }
	state { name NoValue; type toggle }
	options { two_sided true; depth_offset -2 }
	shader {
		pass ambient; vertex standard.vs
		fragment { i "out vec4 c;"; i "void main() { c = vec4(1.0); }" }
		textures "base,albedo3,sky9"; blend_func src_alpha,one_minus_src_alpha; depth_func DEPTH_LESS
	}
	shader { pass shadow; vertex @ambient; fragment @ambient; geometry @ambient }
	parameter { name color2; type float4; text 0.5,0.25 }
	texture { name albedo3; type texture2D; text data/core/textures/common/white.dds; sampler 9; wrap clamp }
	texture { name sky9; type textureCube; text data/core/textures/environment/sky.dds }
	texture { name noise11; type texture3D; text data/noise.dds }
	texture { name detail12; type texture2D; text data/detail.dds }
} }
)";

MaterialManager::MaterialPtr parse(const char* text, const jString& path = "data/materials/rock.mat")
{
    mjl file;
    EXPECT_TRUE(file.parse(text, path));
    return MaterialManager::fromPackage(*file.getRoot(), path);
}

TEST(MaterialManagerTest, ReadsStatesPassesOptionsParametersAndTexturesAndReportsBadStates)
{
    jLog::Capture log;
    auto material = parse(kRock);
    ASSERT_TRUE(material);
    EXPECT_EQ(log.text(), "error: MaterialManager::load: unknown state type \"wobble\" in \"Odd\" material\n"
                          "error: MaterialManager::load: state no value in \"NoValue\" material\n"
                          "warning: MaterialManager::load: \"data/materials/rock.mat\" pass \"shadow\" refers "
                          "to the ambient geometry stage, which it has not\n");
    ASSERT_EQ(material->getStates().size(), 3u);
    EXPECT_EQ(material->getStates()[1].items, (jVector<jString>{"Low", "Mid", "High"}));
    EXPECT_EQ(material->getSelectedDefines(), (jVector<jString>{"EDITOR", "LAYERS=3"}));
    EXPECT_TRUE(material->getOptions().twoSided);
    EXPECT_EQ(material->getOptions().depthOffset, -2);

    const Material::Pass* ambient = material->findPass("ambient");
    ASSERT_TRUE(ambient);
    EXPECT_EQ(ambient->stage(Material::StageKind::Vertex).file, "standard.vs");
    EXPECT_EQ(ambient->stage(Material::StageKind::Fragment).lines,
        (jVector<jString>{"out vec4 c;", "void main() { c = vec4(1.0); }"}));
    EXPECT_EQ(ambient->textures, (jVector<jString>{"base", "albedo3", "sky9"}));
    Material::RenderSettings settings;
    settings.blendSrc = "src_alpha", settings.blendDst = "one_minus_src_alpha", settings.depthFunc = "DEPTH_LESS";
    EXPECT_EQ(ambient->settings, settings);

    EXPECT_EQ(material->getParameters()[0].components, 4);
    EXPECT_EQ(material->getParameters()[0].values, (std::array<float, 4>{0.5f, 0.25f, 0.0f, 1.0f}));

    // Units: cube textures from 15, then volumes, then 2D textures, each in document order.
    const auto& textures = material->getTextures();
    ASSERT_EQ(textures.size(), 4u);
    EXPECT_EQ((std::array<int, 4>{textures[0].unit, textures[1].unit, textures[2].unit, textures[3].unit}),
        (std::array<int, 4>{17, 15, 16, 18}));

    // "@ambient" stages take the ambient pass's program.
    const Material::Pass* shadow = material->findPass("shadow");
    ASSERT_TRUE(shadow);
    EXPECT_EQ(shadow->stage(Material::StageKind::Vertex).file, "standard.vs");
    EXPECT_EQ(shadow->stage(Material::StageKind::Fragment).lines, ambient->stage(Material::StageKind::Fragment).lines);
    EXPECT_FALSE(shadow->stage(Material::StageKind::Geometry).present);
}

class MaterialManagerFileTest : public TempRootTest {
protected:
    void SetUp() override { TempRootTest::SetUp(); root.write("data/rock.mat", kRock); }

    MaterialManager manager;
    jLog::Capture quiet; // the rock's own state problems
};

TEST_F(MaterialManagerFileTest, InstanceLaysItsEntriesOverTheParent)
{
    root.write("data/red.mat", R"(materials { material {
		parent_path data/rock.mat
		name shiny
		state { name Quality; text 0 }
		options { two_sided false }
		shader { pass ambient; depth_func DEPTH_ALWAYS }
		parameter { name color2; text 1,0,0,1 }
		texture { name albedo3; text data/red.dds }
	} }
)");
    auto instance = manager.load("data/red.mat");
    ASSERT_TRUE(instance);
    EXPECT_EQ(instance->getName(), "shiny");
    EXPECT_EQ(instance->findState("Quality")->value, 0);
    EXPECT_FALSE(instance->getOptions().twoSided);
    EXPECT_EQ(instance->getOptions().depthOffset, -2);
    const Material::Pass* ambient = instance->findPass("ambient");
    EXPECT_EQ(ambient->settings.depthFunc, "DEPTH_ALWAYS");
    EXPECT_EQ(ambient->stage(Material::StageKind::Vertex).file, "standard.vs");
    EXPECT_EQ(instance->findParameter("color2")->values, (std::array<float, 4>{1, 0, 0, 1}));
    EXPECT_EQ(instance->findTexture("albedo3")->path, "data/red.dds");
    EXPECT_EQ(instance->findTexture("albedo3")->unit, 17);
    EXPECT_EQ(manager.getCount(), 1u); // the parent is read, not cached
}

TEST_F(MaterialManagerFileTest, ParentCyclesAndMissingFilesAreRefused)
{
    root.write("data/a.mat", "materials { material { parent_path data/b.mat } }\n");
    root.write("data/b.mat", "materials { material { parent_path data/a.mat } }\n");
    root.write("data/empty.mat", "editor { }\n");
    jLog::Capture log;
    EXPECT_FALSE(manager.load("data/a.mat"));
    EXPECT_FALSE(manager.load("data/missing.mat"));
    EXPECT_FALSE(manager.load("data/empty.mat"));
    EXPECT_EQ(log.text(),
        "error: MaterialManager::load: \"data/a.mat\" is its own parent or nested too deep\n"
        "error: MaterialManager::load: parent material \"data/a.mat\" of \"data/b.mat\" can't be loaded\n"
        "error: MaterialManager::load: parent material \"data/b.mat\" of \"data/a.mat\" can't be loaded\n"
        "error: MaterialManager::load: can't open material \"data/missing.mat\"\n"
        "error: MaterialManager::load: \"data/empty.mat\" has no \"materials\" -> \"material\" package\n");
    EXPECT_EQ(manager.getCount(), 0u);
}

TEST_F(MaterialManagerFileTest, CacheSharesReloadReplacesAndFailedReloadKeepsThePrevious)
{
    auto first = manager.load("data/./rock.mat");
    ASSERT_TRUE(first);
    EXPECT_EQ(manager.load("data/rock.mat"), first);
    EXPECT_EQ(manager.find("data/rock.mat"), first);

    root.write("data/rock.mat", "materials { material { options { mask 5 } } }\n");
    auto second = manager.reload("data/rock.mat");
    ASSERT_TRUE(second);
    EXPECT_NE(second->getSerial(), first->getSerial());
    EXPECT_EQ(second->getOptions().mask, 5);
    EXPECT_TRUE(first->getOptions().twoSided); // holders keep their copy

    root.write("data/rock.mat", "materials { material {\n");
    {
        jLog::Capture log;
        EXPECT_FALSE(manager.reload("data/rock.mat"));
        EXPECT_EQ(log.lines().back(), "error: MaterialManager::load: can't open material \"data/rock.mat\"");
    }
    EXPECT_EQ(manager.find("data/rock.mat"), second);

    EXPECT_TRUE(manager.remove("data/rock.mat"));
    EXPECT_FALSE(manager.find("data/rock.mat"));
}

} // namespace
