#include "BlockManager.h"
#include "Package.h"
#include "jDir.h"
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
    EXPECT_EQ(manager.getBlock("PixelOutput")->getMat(), "data/core/materials/generate/opaque.mat");
    EXPECT_EQ(manager.getBlockAt(1), manager.getBlock("Constant.Float"));
    EXPECT_EQ(manager.getBlockAt(1)->getVariable(0)->getText(), "Base value") << "values joined by one space";
    EXPECT_EQ(manager.getBlockAt(3), nullptr);
    // Lookup compares types exactly.
    EXPECT_EQ(manager.getBlock("math.add"), nullptr);
    EXPECT_EQ(manager.getBlock("Math.Add "), nullptr);
    EXPECT_EQ(manager.getBlock("Unknown"), nullptr);
}

TEST(BlockManagerLoad, VersionOneWithoutBlocksGivesAnEmptyRegistry)
{
    BlockManager manager;
    EXPECT_TRUE(manager.loadBlocks(kBlocks + "empty.cfg"));
    EXPECT_EQ(manager.getBlockCount(), 0u);
}

TEST(BlockManagerLoad, SilentFailures)
{
    // Missing file, no "blocks", and "version" 0 or absent fail without a
    // message of their own; the code lists read before stay.
    jLog::Capture log;
    for (const char* name : {"missing.cfg", "noblocks.cfg", "version0.cfg", "noversion.cfg"}) {
        BlockManager manager;
        EXPECT_FALSE(manager.loadBlocks(kBlocks + name)) << name;
        EXPECT_EQ(manager.getBlockCount(), 0u) << name;
    }
    EXPECT_TRUE(log.empty()) << log.text();

    BlockManager manager;
    EXPECT_FALSE(manager.loadBlocks(kBlocks + "version0.cfg"));
    EXPECT_EQ(manager.getCodeInclude(), (jVector<jString>{"#include \"common.h\""}));
}

TEST(BlockManagerLoad, DuplicateTypeStopsLoading)
{
    BlockManager manager;
    jLog::Capture log;
    EXPECT_FALSE(manager.loadBlocks(kBlocks + "duplicate.cfg"));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: Schemer::addBlock(): \"Math.Add\" block is already defined",
                               "error: Schemer::loadBlocks(): can't add block",
                           }));
    ASSERT_EQ(types_of(manager), (jVector<jString>{"Math.Add"})) << "later blocks are not read";
    EXPECT_EQ(manager.getBlock("Math.Add")->getDataType(), "float") << "the first stays registered";
}

TEST(BlockManagerLoad, BlockWithoutTypeStopsLoadingAndNamesTheFile)
{
    BlockManager manager;
    jLog::Capture log;
    const jString path = kBlocks + "untyped.cfg";
    EXPECT_FALSE(manager.loadBlocks(path));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: Block::load: can't find block type",
                               "error: Schemer::loadBlocks(): can't load block from \"" + path + "\" file",
                           }));
    EXPECT_EQ(types_of(manager), (jVector<jString>{"Math.Add"}));
}

TEST(BlockManagerLoad, OtherChildrenOfBlocksAreReportedByFilePathAndSkipped)
{
    BlockManager manager;
    jLog::Capture log;
    const jString path = kBlocks + "strays.cfg";
    EXPECT_TRUE(manager.loadBlocks(path));
    const jString line = "error: Schemer::loadBlocks(): unknown node \"" + path + "\"";
    EXPECT_EQ(log.lines(), (std::vector<jString>{line, line}));
    EXPECT_EQ(types_of(manager), (jVector<jString>{"Math.Add"}));
}

TEST(BlockManagerRegistry, AddBlockRefusesARegisteredType)
{
    BlockManager manager;
    auto* first = new Block;
    auto second = std::make_unique<Block>();
    ASSERT_TRUE(manager.addBlock(first));
    jLog::Capture log;
    EXPECT_FALSE(manager.addBlock(second.get()));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Schemer::addBlock(): \"\" block is already defined"}));
    EXPECT_EQ(manager.getBlockCount(), 1u);
}

TEST(BlockManagerRegistry, BlocksPutInThroughTheVectorAreFoundFirstInLoadOrder)
{
    // The manager is a vector of its blocks; elements appended without
    // addBlock are still found, and of two of a type the earlier one.
    BlockManager manager;
    Package p("block");
    p.addItem("type", "Math.Add");
    auto* first = new Block;
    auto* second = new Block;
    ASSERT_TRUE(first->load(&p) && second->load(&p));
    manager.push_back(first);
    EXPECT_EQ(manager.getBlock("Math.Add"), first);
    manager.push_back(second);
    EXPECT_EQ(manager.getBlock("Math.Add"), first);

    auto third = std::make_unique<Block>();
    ASSERT_TRUE(third->load(&p));
    jLog::Capture log;
    EXPECT_FALSE(manager.addBlock(third.get()));
    EXPECT_EQ(log.lines(), (std::vector<jString>{"error: Schemer::addBlock(): \"Math.Add\" block is already defined"}));
}

TEST(BlockManagerRegistry, InitReadsTheFixedFileThroughTheDataRoot)
{
    const jString previous = jDir::getProjectRoot();
    jDir::setProjectRoot(MATERIAL_TEST_DATA "/material/broken-root");
    {
        BlockManager manager;
        jLog::Capture log;
        EXPECT_FALSE(manager.init());
        EXPECT_EQ(log.lines(), (std::vector<jString>{"error: BlockManager::init: can't load blocks"}));
    }
    jDir::setProjectRoot(MATERIAL_TEST_DATA "/material/root");
    {
        BlockManager manager;
        EXPECT_TRUE(manager.init());
        EXPECT_NE(manager.getBlock("Shared"), nullptr);
    }
    jDir::setProjectRoot(previous);
}

TEST(BlockManagerRegistry, ADestroyedManagerIsNoLongerCurrent)
{
    auto manager = std::make_unique<BlockManager>();
    BlockManager::setCurrent(manager.get());
    EXPECT_EQ(BlockManager::get(), manager.get());
    BlockManager other;
    manager.reset();
    EXPECT_EQ(BlockManager::get(), nullptr);
    BlockManager::setCurrent(&other);
    EXPECT_EQ(BlockManager::get(), &other);
    BlockManager::setCurrent(nullptr);
}
