#include "DataSampler.h"
#include "DataVariable.h"
#include "DocumentFixture.h"

using DataVariableTest = DocumentTest;

TEST_F(DataVariableTest, StartsFromTheDefinitionAndTheDefaultSampler)
{
    DataNode* node = create("Constant.Color");
    ASSERT_EQ(node->getVariableCount(), 1u);
    const DataVariable* color = node->getVariable(0);
    EXPECT_EQ(color->getDefinition(), node->getBlock()->getVariable(0));
    EXPECT_EQ(color->getOwner(), node);
    EXPECT_EQ(color->getValue(), "1 1 1");
    EXPECT_EQ(color->getFormat(), "rgb");
    EXPECT_FALSE(color->getAsyn());
    EXPECT_EQ(color->getSampler(), doc->getDefaultSampler());
    EXPECT_EQ(color->getWrap(), "repeat");
    EXPECT_EQ(color->getFilter(), "bilinear");
    EXPECT_EQ(color->getAnisotropy(), 1u);
    EXPECT_FALSE(color->isTexture());
    EXPECT_EQ(color->getSubValueCount(), 0u) << "no sub definitions, no sub values";
}

TEST_F(DataVariableTest, SubValuesFollowTheSubDefinitions)
{
    DataNode* node = create("Texture.Sample2D");
    EXPECT_TRUE(node->getVariable(0)->isTexture()) << "type \"texture\"";
    DataVariable* mode = node->findVariable("mode");
    ASSERT_NE(mode, nullptr);
    ASSERT_EQ(mode->getSubValueCount(), 2u);
    EXPECT_EQ(mode->getSubValue(0)->getName(), "a");
    EXPECT_EQ(mode->getSubValue(0)->getValue(), "1");
    EXPECT_EQ(mode->getSubValue(1)->getName(), "b");
    EXPECT_EQ(mode->getSubValue(1)->getValue(), "");
    EXPECT_EQ(mode->findSubValue("b"), mode->getSubValue(1));
    EXPECT_EQ(mode->findSubValue("c"), nullptr);
    EXPECT_EQ(mode->getSubValue(2), nullptr);
}

TEST(DataSampler, NameCarriesTheIndex)
{
    DataSampler sampler(9, "clamp", "point", 4);
    EXPECT_EQ(sampler.getName(), "sampler_9");
    sampler.setIndex(12);
    EXPECT_EQ(sampler.getName(), "sampler_12");
}
