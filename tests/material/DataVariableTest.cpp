#include "DataSampler.h"
#include "DataVariable.h"
#include "DocumentFixture.h"

using DataVariableTest = DocumentTest;

TEST_F(DataVariableTest, StartsFromTheDefinitionAndSubValuesFollowTheSubDefinitions)
{
    DataNode* node = create("Constant.Color");
    const DataVariable* color = node->getVariable(0);
    EXPECT_EQ(color->getDefinition(), node->getBlock()->getVariable(0));
    EXPECT_EQ(color->getValue() + "|" + color->getFormat() + "|" + color->getWrap() + "|" + color->getFilter(),
        "1 1 1|rgb|repeat|bilinear");
    EXPECT_EQ(color->getSampler(), doc->getDefaultSampler());
    EXPECT_FALSE(color->isTexture());
    EXPECT_EQ(color->getSubValueCount(), 0u) << "no sub definitions, no sub values";

    DataNode* tex = create("Texture.Sample2D");
    EXPECT_TRUE(tex->getVariable(0)->isTexture()) << "type \"texture\"";
    DataVariable* mode = tex->findVariable("mode");
    ASSERT_NE(mode, nullptr);
    ASSERT_EQ(mode->getSubValueCount(), 2u);
    EXPECT_EQ(mode->getSubValue(0)->getName() + "=" + mode->getSubValue(0)->getValue(), "a=1");
    EXPECT_EQ(mode->getSubValue(1)->getName() + "=" + mode->getSubValue(1)->getValue(), "b=");
    EXPECT_EQ(mode->findSubValue("b"), mode->getSubValue(1));
    EXPECT_EQ(mode->findSubValue("c"), nullptr);
}

TEST(DataSampler, NameCarriesTheIndex)
{
    DataSampler sampler(9, "clamp", "point", 4);
    EXPECT_EQ(sampler.getName(), "sampler_9");
    sampler.setIndex(12);
    EXPECT_EQ(sampler.getName(), "sampler_12");
}
