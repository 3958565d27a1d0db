#include "AppData.h"
#include "Block.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "LineRecord.h"
#include "ShaderSource.h"
#include "XMatComplier.h"
#include "jDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

// The generator's line record over the bundled samples: every line it gives
// to a node is that node's code, and the record counts physical lines as the
// program assembler does.
namespace {

using Lines = jVector<jString>;

bool containsWord(const jString& text, const jString& word)
{
    return std::regex_search(text, std::regex("(^|[^A-Za-z0-9_])" + word + "($|[^A-Za-z0-9_])"));
}

// The names that end in the node's id: its variables' and outputs'.
Lines identifiersOf(const DataNode& node)
{
    Lines names;
    for (size_t i = 0; i < node.getVariableCount(); ++i)
        names.push_back(node.getVariable(i)->getParameterName());
    for (size_t i = 0; i < node.getOutputPathCount(); ++i)
        names.push_back(XMatComplier::output_identifier(node.getOutputPath(i)));
    return names;
}

// The end node's own lines name its inputs' sources, not its identifiers:
// such a line is one of its block's fragments up to the first placeholder.
bool isEndNodeFragment(const DataNode& end, const jString& entry)
{
    const Block& block = *end.getBlock();
    for (const Lines* list : {&block.getFunctionBegin(), &block.getFunction()}) {
        for (const jString& fragment : *list) {
            if (entry.rfind(fragment.substr(0, fragment.find('@')), 0) == 0)
                return true;
        }
    }
    return false;
}

Lines bundledSamples()
{
    Lines paths;
    for (const auto& entry : std::filesystem::directory_iterator(jDir::getBundledRoot() + "/data/materials"))
        paths.push_back("data/materials/" + entry.path().filename().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

void checkStage(const AppData& document, bool vertex, const jString& sample)
{
    XMatComplier generator(false);
    Lines lines;
    if (!(vertex ? generator.generate_vs(lines) : generator.generate_ps(lines)))
        return;
    const jVector<int32_t>& owners = generator.getLineNodes();
    ASSERT_EQ(owners.size(), lines.size()) << sample;
    const DataNode* end = document.findNodeByUsage(vertex ? BLOCK_USAGE_VS_END : BLOCK_USAGE_PS_END);
    size_t owned = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (owners[i] == XMatComplier::kNoNode)
            continue;
        ++owned;
        const DataNode* node = document.findNode(owners[i]);
        ASSERT_NE(node, nullptr) << sample << " entry " << i;
        bool named = false;
        for (const jString& name : identifiersOf(*node))
            named = named || containsWord(lines[i], name);
        EXPECT_TRUE(named || (node == end && isEndNodeFragment(*node, lines[i])))
            << sample << (vertex ? " vertex" : " pixel") << " entry " << i << " of node " << owners[i] << ": "
            << lines[i];
    }
    EXPECT_GT(owned, 0u) << sample;

    LineRecord record;
    record.assign(lines, owners);
    ShaderSource source;
    ASSERT_TRUE(source.assemble(lines, {}, true)) << sample;
    size_t generated = 0;
    for (size_t line = 1; line <= source.getLineCount(); ++line)
        generated += source.origin(line)->file == ShaderSource::kGenerated ? 1 : 0;
    // Includes expand in the assembled text; their own lines count once.
    size_t includes = 0;
    for (const jString& entry : lines)
        includes += entry.rfind("#include", 0) == 0 ? 1 : 0;
    EXPECT_EQ(record.getLineCount(), generated + includes) << sample;
}

TEST(LineRecordTest, EveryOwnedLineOfEverySampleIsItsNodesCode)
{
    jDir::setProjectRoot(jDir::getBundledRoot());
    AppData& document = *AppData::get();
    const Lines samples = bundledSamples();
    ASSERT_GE(samples.size(), 10u);
    for (const jString& sample : samples) {
        ASSERT_TRUE(document.init());
        ASSERT_TRUE(document.load(sample)) << sample;
        checkStage(document, false, sample);
        checkStage(document, true, sample);
    }
    document.clear();
}

TEST(LineRecordTest, MapsPhysicalLinesOfMultiLineEntries)
{
    const Lines entries = {"void main()", "#ifdef A\nx1 = a;#else\nx1 = b;#endif\n", "", "y2 = x1;"};
    LineRecord record;
    record.assign(entries, {9, 7, 2});
    ASSERT_EQ(record.getLineCount(), 6u);
    EXPECT_EQ(record.nodeAt(1), LineRecord::kNoNode);
    EXPECT_EQ(record.nodeAt(2), 9);
    EXPECT_EQ(record.nodeAt(4), 9);
    EXPECT_EQ(record.nodeAt(5), 7);
    EXPECT_EQ(record.nodeAt(6), 2);
    EXPECT_EQ(record.nodeAt(0), LineRecord::kNoNode);
    EXPECT_EQ(record.nodeAt(7), LineRecord::kNoNode);
}

} // namespace
