// Every key the editor's panels translate has an English text.
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <gtest/gtest.h>

namespace {

TEST(tr, EveryKeyOfThePanelsHasAText)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    trReload();
    jLog::Capture log;
    EXPECT_EQ(tr("use_file_name_as_material_name"), "Use file name as material name");
    for (const char* key : {"save", "apply", "centered", "undo", "redo", "options", "blend", "state", "select", "find", "set_all",
                            "clear_all", "OK", "Cancel", "locate_in_assets_browser", "show_in_explorer", "help",
                            "locate_parent_material_in_assets_browser", "open_parent_material", "mask",
                            "render_two_sided", "post_scattering", "post_fog", "post_taa", "tessellate",
                            "render_order", "depth_offset", "buffer_mask", "depth_func", "blend_op", "src", "dst",
                            "asyn", "path", "usage", "uv_wrap", "filter", "anisotropy", "live", "problems"})
        tr(key);
    EXPECT_TRUE(log.empty()) << log.text();
}

} // namespace
