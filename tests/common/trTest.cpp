// tr: the English texts of the user interface by key.
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <gtest/gtest.h>

namespace {

TEST(tr, KnownKeysGiveTheirTextsAndUnknownKeysThemselvesWithOneWarning)
{
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    trReload();
    jLog::Capture log;
    EXPECT_EQ(tr("locate_in_assets_browser"), "Locate in assets browser");
    EXPECT_EQ(tr("show_in_explorer"), "Show in file manager");
    EXPECT_EQ(tr("help"), "Help");
    EXPECT_EQ(tr("no_such_key"), "no_such_key");
    EXPECT_EQ(tr("no_such_key"), "no_such_key");
    EXPECT_EQ(log.lines(),
              std::vector<jString>{"warning: tr: no text for \"no_such_key\" in \"data/core/editor/lang/en.cfg\""});
}

} // namespace
