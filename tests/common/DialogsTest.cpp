// Message boxes and file dialogs reach the installed answerer (never the
// screen); sections keep their collapsed state across rebuilds.
#include "AttrWrap.h"
#include "DialogFileEx.h"
#include "DialogRecorder.h"
#include "msgBox.h"

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

} // namespace
