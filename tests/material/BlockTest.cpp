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

TEST(BlockLoad, TypeOnlyGivesTheDefaultsMissingTypeFailsAndUsageTakesFourExactTexts)
{
    Package p = packageOf("block", {{"type", "Math.Add"}});
    Block block;
    jLog::Capture log;
    ASSERT_TRUE(block.load(&p));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK);

    Package untyped = packageOf("block", {{"usage", "ps_end"}});
    EXPECT_FALSE(block.load(&untyped));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Block::load: can't find block type"}));
    EXPECT_FALSE(block.load(nullptr));

    // Usage recognises only the four exact texts.
    const std::pair<const char*, int32_t> cases[] = {
        {"PS_END", 4}, {"2", 4}, {"vs_start", 0}, {"ps_end", 3},
    };
    for (const auto& [text, usage] : cases) {
        Package typed = packageOf("block", {{"type", "T"}, {"usage", text}});
        ASSERT_TRUE(block.load(&typed));
        EXPECT_EQ(block.getUsage(), usage) << text;
    }
    ASSERT_TRUE(block.load(&p));
    EXPECT_EQ(block.getUsage(), BLOCK_USAGE_BLOCK) << "every load starts as an ordinary block";
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
    EXPECT_FALSE(variable.getValue(1)->isEdit());
}
