#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <gtest/gtest.h>

// The bundled material templates named by the pixel end blocks, read as
// plain packages: the render states, options and passes every compiled
// material starts from (docs/shader-library.md lists the defines).
namespace {

using Lines = jVector<jString>;

class MaterialTemplateTest : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
        m_previousRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        jLog::Capture log;
        ASSERT_TRUE(m_file.open(GetParam(), false)) << m_file.getError();
        EXPECT_TRUE(log.empty()) << log.text();
        const Package* materials = m_file.getRoot()->findPackage("materials");
        ASSERT_NE(materials, nullptr);
        material = materials->findPackage("material");
        ASSERT_NE(material, nullptr);
    }
    void TearDown() override { jDir::setProjectRoot(m_previousRoot); }

    // "name type text [items] defines" of every state, in file order.
    Lines states() const
    {
        Lines found;
        for (size_t i = 0; i < material->getPackageCount(); ++i) {
            const Package& state = *material->getPackage(i);
            if (state.getName() != "state")
                continue;
            jString line = state.getString("name") + " " + state.getString("type") + " " + state.getString("text");
            if (state.hasItem("items"))
                line += " [" + state.getString("items") + "]";
            found.push_back(line + " " + state.getString("defines"));
        }
        return found;
    }

    // "pass: key=value ..." of every shader package, in file order.
    Lines passes() const
    {
        Lines found;
        for (size_t i = 0; i < material->getPackageCount(); ++i) {
            const Package& pass = *material->getPackage(i);
            if (pass.getName() != "shader")
                continue;
            jString line = pass.getString("pass") + ":";
            for (size_t k = 0; k < pass.getItemCount(); ++k) {
                const PackageItem& item = *pass.getItem(k);
                if (item.getName() != "pass")
                    line += " " + item.getName() + "=" + item.getValue();
            }
            found.push_back(line);
        }
        return found;
    }

    const Package* material = nullptr;

private:
    mjl m_file;
    jString m_previousRoot;
};

TEST_P(MaterialTemplateTest, DeclaresTheFourRenderStatesOfAllThreeTypes)
{
    const jString lighting = jString(GetParam()).find("unlit") != jString::npos ? "1" : "0";
    EXPECT_EQ(states(), (Lines{
                            "Tessellate toggle 0 TESSELLATE_OFF,TESSELLATE",
                            "EDITOR_MODE toggle 0 EDITOR_MODE_OFF,EDITOR_MODE",
                            "LightModulation switch " + lighting +
                                " [Lit,Unlit,Diffuse Only] LIGHT_MODULATION_LIT,LIGHT_MODULATION_UNLIT,"
                                "LIGHT_MODULATION_DIFFUSE",
                            "Environment int 3 ENVIRONMENT_BANDS",
                        }));
    const Package* options = material->findPackage("options");
    ASSERT_NE(options, nullptr);
    for (const char* key : {"render_order", "depth_offset", "mask", "two_sided", "post_scattering", "post_fog",
             "post_taa", "tessellate"})
        EXPECT_TRUE(options->hasItem(key)) << key;
    EXPECT_FALSE(options->getBool("tessellate"));
}

INSTANTIATE_TEST_SUITE_P(Bundled, MaterialTemplateTest,
    ::testing::Values("data/core/materials/generate/opaque.mat", "data/core/materials/generate/transparent.mat",
        "data/core/materials/generate/unlit.mat"));

using OpaqueTemplateTest = MaterialTemplateTest;
using TransparentTemplateTest = MaterialTemplateTest;

TEST_P(OpaqueTemplateTest, HasTheAmbientDepthAndShadowPasses)
{
    EXPECT_EQ(passes(), (Lines{"ambient: textures=", "pre_depth: textures= buffer_mask=BUFFER_DEPTH",
                            "shadow: textures= buffer_mask=BUFFER_DEPTH"}));
    EXPECT_EQ(material->findPackage("options")->getInt("render_order"), 0);
}
INSTANTIATE_TEST_SUITE_P(Bundled, OpaqueTemplateTest, ::testing::Values("data/core/materials/generate/opaque.mat"));

TEST_P(TransparentTemplateTest, BlendsByAlphaWithoutWritingDepth)
{
    EXPECT_EQ(passes(), (Lines{"ambient: textures= buffer_mask=BUFFER_COLOR blend_op=add "
                               "blend_func=src_alpha,one_minus_src_alpha",
                            "shadow: textures= buffer_mask=BUFFER_DEPTH"}));
    EXPECT_EQ(material->findPackage("options")->getInt("render_order"), 100) << "after the opaque materials";
}
INSTANTIATE_TEST_SUITE_P(Bundled, TransparentTemplateTest,
    ::testing::Values("data/core/materials/generate/transparent.mat"));

} // namespace
