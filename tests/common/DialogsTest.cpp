// Message boxes and file dialogs reach the installed answerer (never the
// screen); sections keep their collapsed state across rebuilds; tr.
#include "AttrWrap.h"
#include "DialogFileEx.h"
#include "DialogRecorder.h"
#include "jLog.h"
#include "msgBox.h"
#include "tr.h"

#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(Dialogs, MessageBoxesAndFileDialogsAreAnsweredByTheTest)
{
    DialogRecorder answers;
    msgBox("Current scene is empty.", "Error");
    EXPECT_EQ(answers.messages, (std::vector<AskedMessage>{{"Current scene is empty.", "Error"}}));

    DialogFileEx open(nullptr, DialogFileEx::Mode::Open);
    open.setFilter(".mat");
    open.setDirectory("/data/root/materials");
    EXPECT_FALSE(open.show());
    EXPECT_EQ(open.getSelectedPath(), "");

    answers.filePaths.push_back("/data/root/materials/rock");
    DialogFileEx save(nullptr, DialogFileEx::Mode::Save, "Save");
    save.setFilter(".mat");
    EXPECT_TRUE(save.show());
    EXPECT_EQ(save.getSelectedPath(), "/data/root/materials/rock");
    EXPECT_EQ(answers.files, (std::vector<AskedFile>{{DialogFileEx::Mode::Open, "", ".mat", "/data/root/materials"},
                                                     {DialogFileEx::Mode::Save, "Save", ".mat", ""}}));
    EXPECT_EQ(DialogFileEx::nameFilter(".mat"), "*.mat");
    EXPECT_EQ(DialogFileEx::nameFilter(""), "*");
}

TEST(AttrWrap, CollapsedStateOutlivesARebuildOfThePanel)
{
    QWidget panel;
    auto global = std::make_unique<AttrWrap>(&panel, "Global");
    EXPECT_TRUE(global->isExpanded());
    EXPECT_EQ(global->getHeader()->text(), "Global");
    global->setExpanded(false);
    EXPECT_TRUE(global->getContent()->isHidden());

    global = std::make_unique<AttrWrap>(&panel, "Global");
    EXPECT_FALSE(global->isExpanded());
    EXPECT_TRUE(AttrWrap(&panel, "Base").isExpanded());
    // Another panel starts afresh.
    QWidget other;
    EXPECT_TRUE(AttrWrap(&other, "Global").isExpanded());
}

TEST(Tr, KnownKeysHaveTextsUnknownOnesWarnOnce)
{
    jLog::Capture log;
    EXPECT_EQ(tr("use_file_name_as_material_name"), "Use file name as material name");
    EXPECT_EQ(tr("OK"), "OK");
    EXPECT_EQ(tr("no_such_key"), "no_such_key");
    EXPECT_EQ(tr("no_such_key"), "no_such_key");
    EXPECT_EQ(log.lines(), std::vector<jString>{
                               "warning: tr: no text for \"no_such_key\" in \"data/core/editor/lang/en.cfg\""});
}

TEST(Tr, EveryKeyOfThePanelsHasAText)
{
    jLog::Capture log;
    for (const char* key : {"save", "apply", "centered", "options", "blend", "state", "select", "find", "set_all",
                            "clear_all", "OK", "Cancel", "locate_in_assets_browser", "show_in_explorer", "help",
                            "locate_parent_material_in_assets_browser", "open_parent_material",
                            "use_file_name_as_material_name", "mask", "render_two_sided", "post_scattering",
                            "post_fog", "post_taa", "tessellate", "render_order", "depth_offset", "buffer_mask",
                            "depth_func", "blend_op", "src", "dst", "asyn", "path", "usage", "uv_wrap", "filter",
                            "anisotropy"})
        tr(key);
    EXPECT_TRUE(log.empty()) << log.text();
}

} // namespace
