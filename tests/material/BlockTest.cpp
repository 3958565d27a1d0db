#include "Block.h"
#include "Package.h"
#include "jLog.h"

#include <gtest/gtest.h>

namespace {

Package* add_anchor(Package& parent, const char* list, const char* name, const char* type)
{
    Package* anchor = parent.addPackage(list);
    anchor->addItem("name", name);
    anchor->addItem("type", type);
    return anchor;
}

} // namespace

TEST(BlockLoad, TypeOnlyGivesTheDefaults)
{
    Package p("block");
    p.addItem("type", "Math.Add");
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(block.getType(), "Math.Add");
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK);
    EXPECT_EQ(block.getNumLimit(), -1);
    EXPECT_EQ(block.getInputPathCount() + block.getOutputPathCount() + block.getInputLinkCount()
            + block.getOutputLinkCount() + block.getVariableCount(),
        0u);
    EXPECT_FALSE(block.isConstant() || block.isTexture2D() || block.isTexture3D() || block.isTextureCube());
    EXPECT_EQ(block.getBind() + block.getMat() + block.getDataType() + block.getVertex(), "");
    EXPECT_EQ(block.getInputPath(0), nullptr);
}

TEST(BlockLoad, MissingTypeFailsWithItsMessage)
{
    Package p("block");
    p.addItem("usage", "ps_end");
    Block block;
    jLog::Capture log;
    EXPECT_FALSE(block.load(&p));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Block::load: can't find block type"}));
    EXPECT_FALSE(block.load(nullptr));
}

TEST(BlockLoad, ItemsFillTheirFields)
{
    Package p("block");
    p.addItem("type", "Texture.Sample");
    p.addItem("bind", "b");
    p.addItem("mat", "data/core/materials/generate/opaque.mat");
    p.addItem("data_type", "float4");
    p.addItem("vertex", "v");
    p.addItem("control", "c");
    p.addItem("evaluate", "e");
    p.addItem("geometry", "g");
    p.addItem("num_limit", "3");
    p.addItem("constant", "yes");
    p.addItem("texture2D", "TRUE");
    p.addItem("texture3D", "0");
    p.addItem("textureCube", "on");
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getBind(), "b");
    EXPECT_EQ(block.getMat(), "data/core/materials/generate/opaque.mat");
    EXPECT_EQ(block.getDataType(), "float4");
    EXPECT_EQ(block.getVertex() + block.getControl() + block.getEvaluate() + block.getGeometry(), "vceg");
    EXPECT_EQ(block.getNumLimit(), 3);
    EXPECT_TRUE(block.isConstant());
    EXPECT_TRUE(block.isTexture2D());
    EXPECT_FALSE(block.isTexture3D());
    EXPECT_TRUE(block.isTextureCube());
}

TEST(BlockLoad, UsageRecognisesOnlyTheFourExactTexts)
{
    const std::pair<const char*, int32_t> cases[] = {
        {"vs_start", 0}, {"vs_end", 1}, {"ps_start", 2}, {"ps_end", 3},
        {"ps_starts", 4}, {"PS_END", 4}, {"", 4}, {"2", 4},
    };
    for (const auto& [text, usage] : cases) {
        Package p("block");
        p.addItem("type", "T");
        p.addItem("usage", text);
        Block block;
        ASSERT_TRUE(block.load(&p));
        EXPECT_EQ(block.getUsage(), usage) << text;
    }

    Package p("block");
    p.addItem("type", "T");
    p.addItem("usage", "vs_end");
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(block.isVertexEnd());
    EXPECT_FALSE(block.isVertexStart() || block.isPixelStart() || block.isPixelEnd());
    p.removeItems("usage");
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK) << "every load starts as an ordinary block";
}

TEST(BlockLoad, ShortFormsGiveATextAndNoName)
{
    Package p("block");
    p.addItem("type", "T");
    p.addItem("input_path", "A");
    p.addItem("output_path", "Out");
    p.addItem("input_link", "L");
    p.addItem("output_link", "M");
    p.addItem("variable", "Colour");
    Block block;
    ASSERT_TRUE(block.load(&p));
    ASSERT_EQ(block.getInputPathCount(), 1u);
    EXPECT_EQ(block.getInputPath(0)->getText(), "A");
    EXPECT_EQ(block.getInputPath(0)->getName(), "");
    EXPECT_EQ(block.getInputPath(0)->getType(), "");
    EXPECT_EQ(block.getOutputPath(0)->getText(), "Out");
    EXPECT_EQ(block.getInputLink(0)->getText(), "L");
    EXPECT_EQ(block.getOutputLink(0)->getText(), "M");
    ASSERT_EQ(block.getVariableCount(), 1u);
    EXPECT_EQ(block.getVariable(0)->getText(), "Colour");
    EXPECT_EQ(block.getVariable(0)->getName(), "");
    EXPECT_EQ(block.getVariable(0)->getMask(), 1);
}

TEST(BlockLoad, ItemsAreReadBeforeSubPackagesAndDuplicatesApplyInOrder)
{
    Package p("block");
    p.addItem("type", "First");
    add_anchor(p, "input_path", "full", "float");
    p.addItem("input_path", "short");
    p.addItem("data_type", "float");
    p.addItem("data_type", "float4");
    p.addItem("type", "Second");
    add_anchor(p, "input_path", "full2", "float2");
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(block.getType(), "First") << "the first \"type\" names the block";
    EXPECT_EQ(block.getDataType(), "float4") << "the last string wins";
    ASSERT_EQ(block.getInputPathCount(), 3u);
    EXPECT_EQ(block.getInputPath(0)->getText(), "short");
    EXPECT_EQ(block.getInputPath(1)->getName(), "full");
    EXPECT_EQ(block.getInputPath(2)->getName(), "full2");
}

TEST(BlockLoad, UnknownKeysWarnInTheirEstablishedArgumentOrder)
{
    Package p("block");
    p.addItem("type", "T");
    p.addItem("colour", "red");
    p.addItem("include", "common.h");
    p.addPackage("extras")->addItem("x", "1");
    p.addItem("usage", "ps_start");
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "warning: colour: unknown node \"Block::load\"",
                               "warning: include: unknown node \"Block::load\"",
                               "warning: Block::load: unknown node \"extras\"",
                           }));
    EXPECT_TRUE(block.getInclude().empty()) << "includes come only from a sub-package";
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_PS_START) << "unknown keys are skipped, not fatal";
}

TEST(BlockLoad, CodeListsTakeEveryItemValueIgnoringItemNames)
{
    Package p("block");
    p.addItem("type", "T");
    const char* lists[] = {"include", "function_begin", "function_end", "main_begin", "main_end", "function"};
    for (const char* name : lists) {
        Package* list = p.addPackage(name);
        list->addItem("a", jString(name) + "1");
        list->addItem("line", jString(name) + "2");
    }
    p.findPackage("function")->addItem("a", "float x = @a;");
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getInclude(), (jVector<jString>{"include1", "include2"}));
    EXPECT_EQ(block.getFunctionBegin(), (jVector<jString>{"function_begin1", "function_begin2"}));
    EXPECT_EQ(block.getFunctionEnd(), (jVector<jString>{"function_end1", "function_end2"}));
    EXPECT_EQ(block.getMainBegin(), (jVector<jString>{"main_begin1", "main_begin2"}));
    EXPECT_EQ(block.getMainEnd(), (jVector<jString>{"main_end1", "main_end2"}));
    EXPECT_EQ(block.getFunction(), (jVector<jString>{"function1", "function2", "float x = @a;"}));
}

TEST(BlockAnchorLoad, FullFormFillsFieldsAndLogsUnknownItemsAsErrors)
{
    Package p("output_path");
    p.addItem("text", "Result");
    p.addItem("edit", "true");
    p.addItem("name", "out");
    p.addItem("type", "float3");
    p.addItem("function", "@a + @b;");
    p.addItem("function_editor", "@a;");
    p.addItem("default", "0.5");
    p.addItem("colour", "red");
    p.addPackage("sub")->addItem("bogus", "1");
    BlockAnchor anchor;
    jLog::Capture log;
    EXPECT_TRUE(anchor.load(&p));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: BlockAnchor::load:unknown value \"colour\""}));
    EXPECT_EQ(anchor.getText(), "Result");
    EXPECT_TRUE(anchor.isEdit());
    EXPECT_EQ(anchor.getName(), "out");
    EXPECT_EQ(anchor.getType(), "float3");
    EXPECT_EQ(anchor.getFunction(), "@a + @b;");
    EXPECT_EQ(anchor.getFunctionEditor(), "@a;");
    EXPECT_EQ(anchor.getDefault(), "0.5");
    EXPECT_FALSE(anchor.load(static_cast<Package*>(nullptr)));
    EXPECT_FALSE(anchor.load(static_cast<PackageItem*>(nullptr)));
}

TEST(BlockVariableLoad, FullFormWithSubValues)
{
    Package p("variable");
    p.addItem("name", "mode");
    p.addItem("type", "enum");
    p.addItem("text", "Mode");
    p.addItem("mask", "6");
    p.addItem("edit", "1");
    p.addItem("default", "a");
    Package* a = p.addPackage("sub");
    a->addItem("name", "a");
    a->addItem("text", "First");
    a->addItem("type", "int");
    a->addItem("default", "0");
    a->addItem("edit", "yes");
    p.addPackage("choices")->addItem("name", "ignored");
    Package* b = p.addPackage("sub");
    b->addItem("name", "b");
    BlockVariable variable;
    jLog::Capture log;
    EXPECT_TRUE(variable.load(&p));
    EXPECT_TRUE(log.empty()) << "other sub-packages are ignored silently";
    EXPECT_EQ(variable.getName(), "mode");
    EXPECT_EQ(variable.getType(), "enum");
    EXPECT_EQ(variable.getText(), "Mode");
    EXPECT_EQ(variable.getMask(), 6);
    EXPECT_TRUE(variable.isEdit());
    EXPECT_EQ(variable.getDefault(), "a");
    ASSERT_EQ(variable.getValueCount(), 2u);
    const BlockVariable::Value* first = variable.getValue(0);
    EXPECT_EQ(first->getName(), "a");
    EXPECT_EQ(first->getText(), "First");
    EXPECT_EQ(first->getType(), "int");
    EXPECT_EQ(first->getDefault(), "0");
    EXPECT_TRUE(first->isEdit());
    EXPECT_EQ(variable.getValue(1)->getName(), "b");
    EXPECT_FALSE(variable.getValue(1)->isEdit());
    EXPECT_EQ(variable.getValue(2), nullptr);
}

TEST(BlockVariableLoad, UnknownItemsLogTheirEstablishedTexts)
{
    Package p("variable");
    p.addItem("name", "mode");
    p.addItem("range", "0 1");
    Package* sub = p.addPackage("sub");
    sub->addItem("colour", "red");
    sub->addItem("name", "v1");
    sub->addItem("weight", "2");
    BlockVariable variable;
    jLog::Capture log;
    EXPECT_TRUE(variable.load(&p));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: BlockVariable::load:unknown value \"range\"",
                               "error: BlockVariable::load:unknown value \"\" in sub, in variable \"colour\"",
                               "error: BlockVariable::load:unknown value \"v1\" in sub, in variable \"weight\"",
                           }));
    ASSERT_EQ(variable.getValueCount(), 1u);
    EXPECT_EQ(variable.getValue(0)->getName(), "v1");
}

TEST(BlockVariableLoad, DefaultsAndNullPackage)
{
    BlockVariable variable;
    EXPECT_TRUE(variable.load(static_cast<Package*>(nullptr)));
    EXPECT_TRUE(variable.load(static_cast<PackageItem*>(nullptr)));
    EXPECT_EQ(variable.getMask(), 1);
    EXPECT_FALSE(variable.isEdit());
    EXPECT_EQ(variable.getDefault(), "");
    EXPECT_EQ(variable.getValueCount(), 0u);
}
