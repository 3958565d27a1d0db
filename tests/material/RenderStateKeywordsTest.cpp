#include "MaterialState.h"
#include "RenderStateKeywords.h"
#include "jLog.h"

#include <gtest/gtest.h>

using K = RenderStateKeywords;

TEST(RenderStateKeywords, DisplayNamesKeepTheEditorsSpellingAndUnknownNamesLog)
{
    jLog::Capture log;
    const std::pair<jString, const char*> known[] = {
        {K::depthFunctionKeyword("LessEqaul", "r"), "DEPTH_LEQUAL"},
        {K::blendFactorKeyword("DstColor", "r"), "dest_color"},
        {K::blendOperationKeyword("ReverseSub", "r"), "reverse_sub"},
        {K::bufferMaskKeyword("Color", "r"), "BUFFER_COLOR"},
        {K::transparentTypeKeyword("AlphaTest", "r"), "alpha_test"},
        {K::depthFunctionDisplay("DEPTH_GEQUAL"), "GreaterEqaul"},
        {K::blendFactorDisplay("one_minus_src_alpha"), "OneMinusSrcAlpha"},
    };
    for (const auto& [got, expected] : known)
        EXPECT_EQ(got, expected);
    EXPECT_TRUE(log.empty());
    // A braced list evaluates in order, so the log follows it.
    const jVector<jString> unknown{K::depthFunctionKeyword("LessEqual", "Panel::depth"),
        K::bufferMaskKeyword("all", "Panel::mask"), K::blendOperationKeyword("add", "Panel::op"),
        K::blendFactorKeyword("DestColor", "Panel::src"), K::transparentTypeKeyword("Opaque", "Panel::tt"),
        K::transparentTypeDisplay("blend", "Panel::tt"), K::depthFunctionDisplay("LessEqaul")};
    EXPECT_EQ(unknown, jVector<jString>(7, ""));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: Panel::depth:Unknown depth function \"LessEqual\"",
                               "error: Panel::mask:Unknown buffer mask \"all\"",
                               "error: Panel::op:Unknown blend op \"add\"",
                               "error: Panel::src:Unknown blend type \"DestColor\"",
                               "error: Panel::tt:Unknown transparent_type \"Opaque\"",
                               "error: Panel::tt:Unknown transparent_type \"blend\"",
                           }));
}

TEST(MaterialState, TypeKeywordsAndSelectedDefine)
{
    EXPECT_EQ(MaterialState::typeFromText("switch"), 1);
    EXPECT_EQ(MaterialState::typeFromText("Toggle"), -1);

    MaterialState s;
    s.type = MaterialState::Switch;
    s.defines = {"LOW", "MID", "HIGH"};
    s.value = 2;
    EXPECT_EQ(s.selectedDefine(), "HIGH");
    s.value = 3;
    EXPECT_EQ(s.selectedDefine(), "");
    s.type = MaterialState::Int;
    s.defines = {"LIGHT_COUNT"};
    s.value = 200;
    EXPECT_EQ(s.selectedDefine(), "LIGHT_COUNT");
}

