#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <gtest/gtest.h>

// One sanity check of each bundled material template named by the pixel end
// blocks (docs/shader-library.md lists the defines): its render states in
// file order, its passes and its render order.
TEST(MaterialTemplate, BundledTemplatesDeclareTheirStatesAndPasses)
{
    using Lines = jVector<jString>;
    const struct {
        const char* file;
        const char* lighting;
        int renderOrder;
        Lines passes;
    } cases[] = {
        {"opaque", "0", 0,
            {"ambient: textures=", "pre_depth: textures= buffer_mask=BUFFER_DEPTH",
                "shadow: textures= buffer_mask=BUFFER_DEPTH"}},
        {"transparent", "0", 100,
            {"ambient: textures= buffer_mask=BUFFER_COLOR blend_op=add blend_func=src_alpha,one_minus_src_alpha",
                "shadow: textures= buffer_mask=BUFFER_DEPTH"}},
        {"unlit", "1", -1, {}},
    };
    const jString previous = jDir::getProjectRoot();
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        mjl file;
        jLog::Capture log;
        ASSERT_TRUE(file.open(jFormat("data/core/materials/generate/%s.mat", c.file), false)) << file.getError();
        EXPECT_TRUE(log.empty()) << log.text();
        const Package* material = file.getRoot()->findPackage("materials")->findPackage("material");
        ASSERT_NE(material, nullptr);
        Lines states, passes;
        for (size_t i = 0; i < material->getPackageCount(); ++i) {
            const Package& p = *material->getPackage(i);
            if (p.getName() == "state") {
                jString line = p.getString("name") + " " + p.getString("type") + " " + p.getString("text");
                if (p.hasItem("items"))
                    line += " [" + p.getString("items") + "]";
                states.push_back(line + " " + p.getString("defines"));
            } else if (p.getName() == "shader") {
                jString line = p.getString("pass") + ":";
                for (size_t k = 0; k < p.getItemCount(); ++k)
                    if (p.getItem(k)->getName() != "pass")
                        line += " " + p.getItem(k)->getName() + "=" + p.getItem(k)->getValue();
                passes.push_back(line);
            }
        }
        EXPECT_EQ(states, (Lines{"Tessellate toggle 0 TESSELLATE_OFF,TESSELLATE",
                              "EDITOR_MODE toggle 0 EDITOR_MODE_OFF,EDITOR_MODE",
                              jString("LightModulation switch ") + c.lighting
                                  + " [Lit,Unlit,Diffuse Only] LIGHT_MODULATION_LIT,LIGHT_MODULATION_UNLIT,"
                                    "LIGHT_MODULATION_DIFFUSE",
                              "Environment int 3 ENVIRONMENT_BANDS"}));
        const Package* options = material->findPackage("options");
        ASSERT_NE(options, nullptr);
        for (const char* key : {"render_order", "depth_offset", "mask", "two_sided", "post_scattering", "post_fog",
                 "post_taa", "tessellate"})
            EXPECT_TRUE(options->hasItem(key)) << key;
        if (c.renderOrder >= 0) {
            EXPECT_EQ(passes, c.passes);
            EXPECT_EQ(options->getInt("render_order"), c.renderOrder);
        }
    }
    jDir::setProjectRoot(previous);
}
