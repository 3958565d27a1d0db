#include "Block.h"
#include "Package.h"
#include "jLog.h"

#include <gtest/gtest.h>

namespace {

using Items = std::initializer_list<std::pair<const char*, const char*>>;

// Adds the items, in order, to the package and returns it.
Package* fill(Package* package, Items items)
{
    for (const auto& [name, value] : items)
        package->addItem(name, value);
    return package;
}

Package packageOf(const char* name, Items items)
{
    Package p(name);
    fill(&p, items);
    return p;
}

} // namespace

TEST(BlockLoad, TypeOnlyGivesTheDefaultsAndMissingTypeFails)
{
    Package p = packageOf("block", {{"type", "Math.Add"}});
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK);
    EXPECT_EQ(block.getNumLimit(), -1);
    EXPECT_EQ(block.getInputPathCount() + block.getOutputPathCount() + block.getInputLinkCount()
            + block.getOutputLinkCount() + block.getVariableCount(),
        0u);
    EXPECT_FALSE(block.isConstant() || block.isTexture2D() || block.isTexture3D() || block.isTextureCube());

    Package untyped = packageOf("block", {{"usage", "ps_end"}});
    EXPECT_FALSE(block.load(&untyped));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Block::load: can't find block type"}));
    EXPECT_FALSE(block.load(nullptr));
}

TEST(BlockLoad, ItemsFillTheirFieldsAndFlagsReadAsBooleans)
{
    Package p = packageOf("block", {{"type", "Texture.Sample"}, {"bind", "b"}, {"mat", "m.mat"},
        {"data_type", "float4"}, {"vertex", "v"}, {"control", "c"}, {"evaluate", "e"}, {"geometry", "g"},
        {"num_limit", "3"}, {"constant", "yes"}, {"texture2D", "TRUE"}, {"texture3D", "0"}, {"textureCube", "on"}});
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getBind() + block.getMat() + block.getDataType(), "bm.matfloat4");
    EXPECT_EQ(block.getVertex() + block.getControl() + block.getEvaluate() + block.getGeometry(), "vceg");
    EXPECT_EQ(block.getNumLimit(), 3);
    EXPECT_TRUE(block.isConstant() && block.isTexture2D() && block.isTextureCube());
    EXPECT_FALSE(block.isTexture3D());
}

TEST(BlockLoad, AnItemWithSeveralValuesReadsAsThemJoinedBySpaces)
{
    // How an unquoted text with spaces reaches the loaders.
    Package p = packageOf("block", {{"type", "T"}, {"usage", "vs_end"}});
    p.addItem("input_path", jVector<jString>{"Base", "Color"});
    p.addItem("mat", jVector<jString>{"a", "", "b"});
    p.addPackage("output_path")->addItem("default", jVector<jString>{"float4(1.0,", "0.0,", "0.0,", "1.0)"});
    Package* variable = p.addPackage("variable");
    variable->addItem("text", jVector<jString>{"Tint", "colour"});
    variable->addPackage("sub")->addItem("text", jVector<jString>{"First", "choice"});
    p.addPackage("function")->addItem("i", jVector<jString>{"float4", "x", "=", "@a"});
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getInputPath(0)->getText(), "Base Color");
    EXPECT_EQ(block.getMat(), "a  b");
    EXPECT_EQ(block.getOutputPath(0)->getDefault(), "float4(1.0, 0.0, 0.0, 1.0)");
    EXPECT_EQ(block.getVariable(0)->getText(), "Tint colour");
    EXPECT_EQ(block.getVariable(0)->getValue(0)->getText(), "First choice");
    EXPECT_EQ(block.getFunction(), (jVector<jString>{"float4 x = @a"}));

    p.addItem("usage", jVector<jString>{"ps_end", "x"});
    Block other;
    ASSERT_TRUE(other.load(&p));
    EXPECT_EQ(other.getUsage(), BLOCK_USAGE_VS_END) << "\"ps_end x\" is not a usage text";
}

TEST(BlockLoad, UsageRecognisesOnlyTheFourExactTexts)
{
    const std::pair<const char*, int32_t> cases[] = {
        {"vs_start", 0}, {"vs_end", 1}, {"ps_start", 2}, {"ps_end", 3},
        {"ps_starts", 4}, {"PS_END", 4}, {"", 4}, {"2", 4},
    };
    for (const auto& [text, usage] : cases) {
        Package p = packageOf("block", {{"type", "T"}, {"usage", text}});
        Block block;
        ASSERT_TRUE(block.load(&p));
        EXPECT_EQ(block.getUsage(), usage) << text;
    }

    Package p = packageOf("block", {{"type", "T"}, {"usage", "vs_end"}});
    Block block;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(block.isVertexEnd());
    EXPECT_FALSE(block.isVertexStart() || block.isPixelStart() || block.isPixelEnd());
    p.removeItems("usage");
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK) << "every load starts as an ordinary block";
}

TEST(BlockLoad, ShortFormsGiveATextAndNoNameAndItemsComeBeforeSubPackages)
{
    Package p("block");
    p.addItem("type", "First");
    fill(p.addPackage("input_path"), {{"name", "full"}, {"type", "float"}});
    fill(&p, {{"input_path", "short"}, {"output_path", "Out"}, {"input_link", "L"}, {"output_link", "M"},
                 {"variable", "Colour"}, {"data_type", "float"}, {"data_type", "float4"}, {"type", "Second"}});
    fill(p.addPackage("input_path"), {{"name", "full2"}, {"type", "float2"}});
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(block.getType(), "First") << "the first \"type\" names the block";
    EXPECT_EQ(block.getDataType(), "float4") << "the last string wins";
    ASSERT_EQ(block.getInputPathCount(), 3u);
    EXPECT_EQ(block.getInputPath(0)->getText() + "|" + block.getInputPath(0)->getName() + "|"
            + block.getInputPath(0)->getType(),
        "short||");
    EXPECT_EQ(block.getInputPath(1)->getName(), "full");
    EXPECT_EQ(block.getInputPath(2)->getName(), "full2");
    EXPECT_EQ(block.getOutputPath(0)->getText() + block.getInputLink(0)->getText() + block.getOutputLink(0)->getText(),
        "OutLM");
    ASSERT_EQ(block.getVariableCount(), 1u);
    EXPECT_EQ(block.getVariable(0)->getText() + "|" + block.getVariable(0)->getName(), "Colour|");
    EXPECT_EQ(block.getVariable(0)->getMask(), 1);
}

TEST(BlockLoad, UnknownKeysWarnInTheirEstablishedArgumentOrder)
{
    Package p = packageOf("block", {{"type", "T"}, {"colour", "red"}, {"include", "common.h"}});
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
    Package p = packageOf("block", {{"type", "T"}});
    for (const char* name : {"include", "function_begin", "function_end", "main_begin", "main_end", "function"})
        fill(p.addPackage(name), {{"a", (jString(name) + "1").c_str()}, {"line", (jString(name) + "2").c_str()}});
    p.findPackage("function")->addItem("a", "float x = @a;");
    Block block;
    ASSERT_TRUE(block.load(&p));
    const std::pair<jVector<jString>, const char*> lists[] = {{block.getInclude(), "include"},
        {block.getFunctionBegin(), "function_begin"}, {block.getFunctionEnd(), "function_end"},
        {block.getMainBegin(), "main_begin"}, {block.getMainEnd(), "main_end"}};
    for (const auto& [list, name] : lists)
        EXPECT_EQ(list, (jVector<jString>{jString(name) + "1", jString(name) + "2"})) << name;
    EXPECT_EQ(block.getFunction(), (jVector<jString>{"function1", "function2", "float x = @a;"}));
}

TEST(BlockAnchorLoad, FullFormFillsFieldsAndLogsUnknownItemsAsErrors)
{
    Package p = packageOf("output_path", {{"text", "Result"}, {"edit", "true"}, {"name", "out"}, {"type", "float3"},
        {"function", "@a + @b;"}, {"function_editor", "@a;"}, {"default", "0.5"}, {"colour", "red"}});
    p.addPackage("sub")->addItem("bogus", "1");
    BlockAnchor anchor;
    jLog::Capture log;
    EXPECT_TRUE(anchor.load(&p));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: BlockAnchor::load:unknown value \"colour\""}));
    EXPECT_TRUE(anchor.isEdit());
    EXPECT_EQ(anchor.getText() + "|" + anchor.getName() + "|" + anchor.getType() + "|" + anchor.getFunction() + "|"
            + anchor.getFunctionEditor() + "|" + anchor.getDefault(),
        "Result|out|float3|@a + @b;|@a;|0.5");
    EXPECT_FALSE(anchor.load(static_cast<Package*>(nullptr)));
    EXPECT_FALSE(anchor.load(static_cast<PackageItem*>(nullptr)));
}

TEST(BlockVariableLoad, FullFormWithSubValuesAndUnknownItemsLogged)
{
    Package p = packageOf("variable", {{"name", "mode"}, {"type", "enum"}, {"text", "Mode"}, {"mask", "6"},
        {"edit", "1"}, {"default", "a"}, {"range", "0 1"}});
    fill(p.addPackage("sub"), {{"name", "a"}, {"text", "First"}, {"type", "int"}, {"default", "0"}, {"edit", "yes"}});
    p.addPackage("choices")->addItem("name", "ignored");
    fill(p.addPackage("sub"), {{"colour", "red"}, {"name", "b"}, {"weight", "2"}});
    BlockVariable variable;
    jLog::Capture log;
    EXPECT_TRUE(variable.load(&p));
    // Other sub-packages ("choices") are ignored silently.
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: BlockVariable::load:unknown value \"range\"",
                               "error: BlockVariable::load:unknown value \"\" in sub, in variable \"colour\"",
                               "error: BlockVariable::load:unknown value \"b\" in sub, in variable \"weight\"",
                           }));
    EXPECT_EQ(variable.getName() + "|" + variable.getType() + "|" + variable.getText() + "|" + variable.getDefault(),
        "mode|enum|Mode|a");
    EXPECT_EQ(variable.getMask(), 6);
    EXPECT_TRUE(variable.isEdit());
    ASSERT_EQ(variable.getValueCount(), 2u);
    const BlockVariable::Value* first = variable.getValue(0);
    EXPECT_EQ(first->getName() + "|" + first->getText() + "|" + first->getType() + "|" + first->getDefault(),
        "a|First|int|0");
    EXPECT_TRUE(first->isEdit());
    EXPECT_EQ(variable.getValue(1)->getName(), "b");
    EXPECT_FALSE(variable.getValue(1)->isEdit());
    EXPECT_EQ(variable.getValue(2), nullptr);

    BlockVariable empty;
    EXPECT_TRUE(empty.load(static_cast<Package*>(nullptr)));
    EXPECT_TRUE(empty.load(static_cast<PackageItem*>(nullptr)));
    EXPECT_EQ(empty.getMask(), 1);
    EXPECT_FALSE(empty.isEdit());
}
