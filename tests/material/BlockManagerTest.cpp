#include "BlockManager.h"
#include "Package.h"
#include "jLog.h"

#include <gtest/gtest.h>

namespace {

const jString kBlocks = MATERIAL_TEST_DATA "/material/blocks/";

jVector<jString> types_of(const BlockManager& manager)
{
    jVector<jString> types;
    for (const Block* block : manager)
        types.push_back(block->getType());
    return types;
}

} // namespace

TEST(BlockManagerLoad, ReadsCodeListsAndBlocksInFileOrder)
{
    BlockManager manager;
    jLog::Capture log;
    ASSERT_TRUE(manager.loadBlocks(kBlocks + "library.cfg"));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(types_of(manager), (jVector<jString>{"Math.Add", "Constant.Float", "PixelOutput"}));
    EXPECT_EQ(manager.getCodeInclude(), (jVector<jString>{"#include \"common.h\"", "#include \"lighting.h\""}));
    EXPECT_EQ(manager.getCodeBegin(), (jVector<jString>{"void main()", "{"}));
    EXPECT_EQ(manager.getCodeEnd(), (jVector<jString>{"}"}));

    const Block* add = manager.getBlock("Math.Add");
    ASSERT_NE(add, nullptr);
    EXPECT_EQ(add->getOutputPath(0)->getFunction(), "@a + @b;");
    EXPECT_EQ(manager.getBlock("PixelOutput")->getUsage(), BLOCK_USAGE_PS_END);
    EXPECT_EQ(manager.getBlockAt(1)->getVariable(0)->getText(), "Base value") << "values joined by one space";
    // Lookup compares types exactly.
    EXPECT_EQ(manager.getBlock("math.add"), nullptr);
    EXPECT_EQ(manager.getBlock("Math.Add "), nullptr);
}

// Each library's result, exact log and the blocks registered before loading
// stopped; a missing file and "version" 0 fail
// without a message of their own.
TEST(BlockManagerLoad, FailuresAndStraysLogExactlyAndKeepWhatWasRead)
{
    const struct {
        const char* name;
        bool loaded;
        std::vector<jString> log;
        jVector<jString> types;
    } cases[] = {
        {"missing.cfg", false, {}, {}},
        {"version0.cfg", false, {}, {}},
        // A duplicate type stops loading; the first stays registered.
        {"duplicate.cfg", false,
            {"error: Schemer::addBlock(): \"Math.Add\" block is already defined",
                "error: Schemer::loadBlocks(): can't add block"},
            {"Math.Add"}},
        {"untyped.cfg", false,
            {"error: Block::load: can't find block type",
                "error: Schemer::loadBlocks(): can't load block from \"" + kBlocks + "untyped.cfg\" file"},
            {"Math.Add"}},
        // Other children of "blocks" are reported by file path and skipped.
        {"strays.cfg", true,
            {"error: Schemer::loadBlocks(): unknown node \"" + kBlocks + "strays.cfg\"",
                "error: Schemer::loadBlocks(): unknown node \"" + kBlocks + "strays.cfg\""},
            {"Math.Add"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        BlockManager manager;
        jLog::Capture log;
        EXPECT_EQ(manager.loadBlocks(kBlocks + c.name), c.loaded);
        EXPECT_EQ(log.lines(), c.log);
        EXPECT_EQ(types_of(manager), c.types);
    }
    BlockManager duplicate;
    jLog::Capture quiet;
    duplicate.loadBlocks(kBlocks + "duplicate.cfg");
    EXPECT_EQ(duplicate.getBlock("Math.Add")->getDataType(), "float") << "the first stays registered";

    // The code lists read before a failure stay.
    BlockManager manager;
    EXPECT_FALSE(manager.loadBlocks(kBlocks + "version0.cfg"));
    EXPECT_EQ(manager.getCodeInclude(), (jVector<jString>{"#include \"common.h\""}));
}
