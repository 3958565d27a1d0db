#include "jLog.h"

#include <gtest/gtest.h>

TEST(jLog, CaptureRecordsExactLinesWithPrefixes)
{
    jLog::Capture capture;
    jLog::error("%s: can't find node type \"%s\"", "AppData::load", "Math.Add");
    jLog::warning("%s: unknown node \"%s\"", "usage2", "Block::load");
    jLog::message("plain %d", 7);
    const std::vector<jString> expected = {
        "error: AppData::load: can't find node type \"Math.Add\"",
        "warning: usage2: unknown node \"Block::load\"",
        "plain 7",
    };
    EXPECT_EQ(capture.lines(), expected);
    EXPECT_EQ(capture.entries()[0].text, "AppData::load: can't find node type \"Math.Add\"");
}

TEST(jLog, NestedCapturesBothSeeLinesAndStopAtDestruction)
{
    jLog::Capture outer;
    {
        jLog::Capture inner;
        jLog::error("one");
        EXPECT_EQ(inner.lines().size(), 1u);
    }
    jLog::error("two");
    EXPECT_EQ(outer.text(), "error: one\nerror: two\n");
}
