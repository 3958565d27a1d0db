#include "jLog.h"

#include <gtest/gtest.h>

TEST(jLog, CapturesRecordExactLinesWithPrefixesAndNest)
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

    // Nested captures both see lines; the inner one stops at its destruction.
    {
        jLog::Capture inner;
        jLog::error("one");
        EXPECT_EQ(inner.lines().size(), 1u);
    }
    jLog::error("two");
    EXPECT_EQ(capture.lines().size(), 5u);
    EXPECT_EQ(capture.text().substr(capture.text().rfind("plain 7\n") + 8), "error: one\nerror: two\n");
}
