#include "MaterialState.h"
#include "RenderStateKeywords.h"
#include "jLog.h"

#include <gtest/gtest.h>

using K = RenderStateKeywords;

TEST(RenderStateKeywords, DisplayNamesKeepTheEditorsSpelling)
{
    jLog::Capture log;
    EXPECT_EQ(K::depthFunctionKeyword("LessEqaul", "r"), "DEPTH_LEQUAL");
    EXPECT_EQ(K::depthFunctionKeyword("Eqaul", "r"), "DEPTH_EQUAL");
    EXPECT_EQ(K::depthFunctionKeyword("GreaterEqaul", "r"), "DEPTH_GEQUAL");
    EXPECT_EQ(K::depthFunctionKeyword("NotEqaul", "r"), "DEPTH_NOTEQUAL");
    EXPECT_EQ(K::blendFactorKeyword("DstColor", "r"), "dest_color");
    EXPECT_EQ(K::blendFactorKeyword("OneMinusDstAlpha", "r"), "one_minus_dest_alpha");
    EXPECT_EQ(K::blendOperationKeyword("ReverseSub", "r"), "reverse_sub");
    EXPECT_EQ(K::bufferMaskKeyword("Color", "r"), "BUFFER_COLOR");
    EXPECT_EQ(K::transparentTypeKeyword("AlphaTest", "r"), "alpha_test");
    EXPECT_TRUE(log.empty());

    EXPECT_EQ(K::depthFunctionDisplay("DEPTH_GEQUAL"), "GreaterEqaul");
    EXPECT_EQ(K::blendFactorDisplay("one_minus_src_alpha"), "OneMinusSrcAlpha");
    EXPECT_EQ(K::depthFunctions().size(), 8u);
    EXPECT_EQ(K::blendFactors().size(), 11u);
}

TEST(RenderStateKeywords, UnknownNamesLogTheirTablesMessageAndGiveEmpty)
{
    jLog::Capture log;
    EXPECT_EQ(K::depthFunctionKeyword("LessEqual", "Panel::depth"), "");
    EXPECT_EQ(K::bufferMaskKeyword("all", "Panel::mask"), "");
    EXPECT_EQ(K::blendOperationKeyword("add", "Panel::op"), "");
    EXPECT_EQ(K::blendFactorKeyword("DestColor", "Panel::src"), "");
    EXPECT_EQ(K::transparentTypeKeyword("Opaque", "Panel::tt"), "");
    EXPECT_EQ(K::transparentTypeDisplay("blend", "Panel::tt"), "");
    EXPECT_EQ(K::depthFunctionDisplay("LessEqaul"), "");
    const std::vector<jString> expected = {
        "error: Panel::depth:Unknown depth function \"LessEqual\"",
        "error: Panel::mask:Unknown buffer mask \"all\"",
        "error: Panel::op:Unknown blend op \"add\"",
        "error: Panel::src:Unknown blend type \"DestColor\"",
        "error: Panel::tt:Unknown transparent_type \"Opaque\"",
        "error: Panel::tt:Unknown transparent_type \"blend\"",
    };
    EXPECT_EQ(log.lines(), expected);
}

TEST(MaterialState, TypeKeywordsAndSelectedDefine)
{
    EXPECT_EQ(MaterialState::typeFromText("toggle"), 0);
    EXPECT_EQ(MaterialState::typeFromText("switch"), 1);
    EXPECT_EQ(MaterialState::typeFromText("int"), 2);
    EXPECT_EQ(MaterialState::typeFromText("Toggle"), -1);

    MaterialState sw;
    sw.type = MaterialState::Switch;
    sw.defines = {"LOW", "MID", "HIGH"};
    sw.value = 2;
    EXPECT_EQ(sw.selectedDefine(), "HIGH");
    sw.value = 3;
    EXPECT_EQ(sw.selectedDefine(), "");

    MaterialState count;
    count.type = MaterialState::Int;
    count.defines = {"LIGHT_COUNT"};
    count.value = 200;
    EXPECT_EQ(count.selectedDefine(), "LIGHT_COUNT");
}

TEST(jSplit, DropsEmptyEntries)
{
    EXPECT_EQ(jSplit("one,zero", ','), (jVector<jString>{"one", "zero"}));
    EXPECT_EQ(jSplit(",a,,b,", ','), (jVector<jString>{"a", "b"}));
    EXPECT_TRUE(jSplit("", ',').empty());
    EXPECT_EQ(jJoin({"src_alpha", "one_minus_src_alpha"}, ","), "src_alpha,one_minus_src_alpha");
}
