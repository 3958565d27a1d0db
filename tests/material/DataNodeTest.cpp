#include "Block.h"
#include "DocumentFixture.h"
#include "jLog.h"

using DataNodeTest = DocumentTest;

TEST_F(DataNodeTest, AnchorsByNameSearchLinksBeforePathsAndLinkValuesTakeTheFirstOfTheirList)
{
    DataNode* node = create("Shared");
    // "x" is an input path, an output path and an output link anchor.
    EXPECT_EQ(node->findAnchor("x"), node->getOutputLink(0));
    // "y" is two input link anchors and an output link anchor.
    EXPECT_EQ(node->findAnchor("y"), node->getInputLink(0));
    EXPECT_EQ(node->findAnchor("z"), nullptr);
    EXPECT_EQ(doc->findAnchor(node->getId(), "x"), node->getOutputLink(0));
    EXPECT_EQ(doc->findAnchor(node->getId() + 1, "x"), nullptr);

    // Link values go to the first anchor of the name in their list.
    node->setInputLinkValue("y", "in");
    node->setOutputLinkValue("y", "out");
    EXPECT_EQ(node->getInputLink(0)->getLinkValue(), "in");
    EXPECT_EQ(node->getInputLink(1)->getLinkValue(), "");
    EXPECT_EQ(node->getOutputLink(1)->getLinkValue(), "out");
    EXPECT_EQ(node->getInputLinkValue("y"), "in");
    EXPECT_EQ(node->getOutputLinkValue("y"), "out");

    jLog::Capture log;
    // "x" is an input path anchor, not an input link: not found.
    EXPECT_EQ(node->getInputLinkValue("x"), "");
    EXPECT_EQ(node->getOutputLinkValue("q"), "");
    node->setInputLinkValue("x", "v");
    node->setOutputLinkValue("q", "v");
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: DataNode::getInputLinkValue:var",
                               "error: DataNode::getOutputLinkValue:var",
                               "error: DataNode::setInputLinkValue:var",
                               "error: DataNode::setOutputLinkValue:var",
                           }));
    EXPECT_EQ(node->getInputPath(0)->getLinkValue(), "");
}

TEST_F(DataNodeTest, SetVariableValueSetsEverythingAndSharesSamplers)
{
    DataNode* a = create("Texture.Sample2D");
    DataNode* b = create("Texture.Sample2D");
    ASSERT_TRUE(a->setVariableValue(0, "rock.png", "srgb", "clamp", "point", 4, true));
    const DataVariable* tex = a->getVariable(0);
    EXPECT_EQ(tex->getSampler()->getIndex(), 9u);

    ASSERT_TRUE(b->setVariableValue(0, "sand.png", "", "clamp", "point", 4, false));
    EXPECT_EQ(b->getVariable(0)->getSampler(), tex->getSampler()) << "equal settings share one sampler";
    EXPECT_EQ(b->getVariable(0)->getFormat(), "rgb") << "an empty format keeps the current one";

    // Empty wrap and filter keep the variable's own; anisotropy is always set.
    ASSERT_TRUE(b->setVariableValue(0, "sand.png", "", "", "", 1, false));
    EXPECT_EQ(b->getVariable(0)->getWrap(), "clamp");
    EXPECT_EQ(b->getVariable(0)->getAnisotropy(), 1u);
    EXPECT_EQ(b->getVariable(0)->getSampler()->getIndex(), 10u);
    EXPECT_EQ(doc->getSamplerCount(), 3u);
}

TEST_F(DataNodeTest, VariableIndexChecksLogTheirConditions)
{
    DataNode* node = create("Constant.Color");
    jLog::Capture log;
    EXPECT_FALSE(node->setVariableValue(1, "v", "", "", "", 1, false));
    EXPECT_FALSE(node->setVariableValue(node->getVariableIndex("missing"), "v", "", "", "", 1, false));
    EXPECT_FALSE(node->setVariableValueOnly(5, "v"));
    EXPECT_EQ(node->getVariableValue("w"), "");
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: DataNode::setVariableValue:id < m_vars.size()",
                               "error: DataNode::setVariableValue:id != -1",
                               "error: DataNode::setVariableValue:id < m_vars.size()",
                               "error: DataNode::setVariableValueOnly:id < m_vars.size()",
                               "error: DataNode::getVariableValue:var",
                           }));
    EXPECT_EQ(doc->getSamplerCount(), 1u);

    log.clear();
    ASSERT_TRUE(node->setVariableValueOnly(0, "0 0 1"));
    EXPECT_EQ(node->getVariable(0)->getValue(), "0 0 1");
    EXPECT_EQ(node->getVariable(0)->getSampler(), doc->getDefaultSampler());
    EXPECT_TRUE(log.empty());
}
