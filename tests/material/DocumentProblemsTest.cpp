#include "DataAnchor.h"
#include "DataJoint.h"
#include "DocumentFixture.h"
#include "DocumentProblems.h"
#include "ShaderValidator.h"

#include <gtest/gtest.h>

// The editor's problem list over the graphs of tests/data/problems: each
// problem on the node it is about, and gone once the graph is fixed.
namespace {

using Entry = DocumentProblems::Entry;

std::string listed(const DocumentProblems& problems)
{
    std::string text;
    for (const Entry& entry : problems.getEntries()) {
        text += std::to_string(entry.nodeId) + " " + entry.nodeType + " " + std::to_string(entry.line)
            + (entry.warning ? " warning " : " ") + entry.message + "\n";
    }
    return text;
}

class DocumentProblemsTest : public DocumentTest {
protected:
    const char* projectRoot() const override { return MATERIAL_TEST_DATA "/problems"; }

    void load(const char* path)
    {
        ASSERT_TRUE(doc->load(path));
        doc->createStates();
        problems.afterLoad(path, *doc);
    }

    DataJoint* link(int32_t from, const char* output, int32_t to, const char* input)
    {
        return doc->createJoint(doc->findAnchor(from, output), doc->findAnchor(to, input));
    }

    DocumentProblems problems;
};

TEST_F(DocumentProblemsTest, CompilerErrorsAreShownOnTheNodeWhoseCodeFails)
{
    const ShaderValidator validator;
    if (!validator.isAvailable())
        GTEST_SKIP() << "glslangValidator is not installed";
    load("data/broken.mat");
    EXPECT_TRUE(problems.isEmpty()) << listed(problems);

    problems.compile(*doc, validator);
    EXPECT_EQ(listed(problems),
        "3 Broken.Swizzle 13 pixel program: 'xyzq' : vector swizzle selectors not from the same set\n"
        "3 Broken.Swizzle 13 pixel program: 'assign' :  cannot convert from ' temp 3-component vector of float' "
        "to ' temp 4-component vector of float'\n");
    EXPECT_TRUE(problems.hasNode(3));
    EXPECT_FALSE(problems.hasNode(2));

    // The broken block replaced by a multiply: the next compile is clean.
    const uint64_t serial = problems.getSerial();
    doc->destroyNode(doc->findNode(3));
    const int32_t multiply = doc->createNode("Math.Multiply")->getId();
    link(2, "rgba", multiply, "a");
    link(multiply, "out", 1, "color");
    problems.afterEdit(*doc);
    EXPECT_EQ(problems.getSerial(), serial);
    problems.compile(*doc, validator);
    EXPECT_TRUE(problems.isEmpty()) << listed(problems);
    EXPECT_NE(problems.getSerial(), serial);
}

TEST_F(DocumentProblemsTest, StructureProblemsAreOnTheirNodesUntilFixed)
{
    load("data/cycle.mat");
    EXPECT_EQ(listed(problems),
        "1 Stage.PixelOutputUnlit -1 joint 3: no anchor \"colour\"\n"
        "1 Stage.PixelOutputUnlit -1 joint 4: node 9 does not exist\n"
        "4 Math.Multiply -1 cycle through nodes 4, 5\n"
        "5 Math.Multiply -1 cycle through nodes 4, 5\n"
        "1 Stage.PixelOutputUnlit -1 warning input \"color\" is not linked and has no default; the program uses "
        "float4_zero\n");
    EXPECT_EQ(problems.messagesOf(4), "cycle through nodes 4, 5");
    EXPECT_TRUE(problems.hasStructureErrors());
    EXPECT_EQ(problems.messagesOf(0), "");

    // The cycle cut and the output linked: what the loader left out stays
    // until the document is saved.
    doc->destroyJoint(doc->findJointTo(doc->findAnchor(4, "a")));
    link(5, "out", 1, "color");
    problems.afterEdit(*doc);
    EXPECT_EQ(listed(problems),
        "1 Stage.PixelOutputUnlit -1 joint 3: no anchor \"colour\"\n"
        "1 Stage.PixelOutputUnlit -1 joint 4: node 9 does not exist\n");
    EXPECT_FALSE(problems.hasStructureErrors());
    problems.afterSave(*doc);
    EXPECT_TRUE(problems.isEmpty()) << listed(problems);
}

TEST_F(DocumentProblemsTest, MissingStageNodesAreProblemsOfTheMaterial)
{
    load("data/broken.mat");
    doc->destroyNode(doc->findNode(1));
    problems.afterEdit(*doc);
    EXPECT_EQ(listed(problems), "-1  -1 no pixel end node (a block of usage ps_end)\n");
}

} // namespace
