#include "Package.h"
#include "PackageValues.h"
#include "mjl.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <limits>

TEST(PackageItem, NumbersAreTheLeadingDecimalNumber)
{
    const std::pair<const char*, int> cases[] = {
        { "  -17px", -17 }, { "3.9", 3 }, { "0x1F", 0 }, { "99999999999", 2147483647 }, { "-99999999999", -2147483647 - 1 },
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(PackageItem::toInt(text), expected) << text;
    const std::pair<const char*, float> floats[] = {
        { " -0.25e1x", -2.5f }, { ".5", 0.5f }, { "1e", 1.0f }, { "0x10", 0.0f },
    };
    for (const auto& [text, expected] : floats)
        EXPECT_EQ(PackageItem::toFloat(text), expected) << text;
    EXPECT_EQ(PackageItem::toFloat("1e999"), std::numeric_limits<float>::infinity());
}

TEST(Package, FormatFloatIsShortestAndReadsBackExactly)
{
    EXPECT_EQ(Package::formatFloat(0.1f), "0.1");
    EXPECT_EQ(Package::formatFloat(2.0f), "2");
    EXPECT_EQ(Package::formatFloat(-0.0f), "-0");
    EXPECT_EQ(Package::formatFloat(1e20f), "1e+20");
    for (float value : { 0.1f, 1.0f / 3.0f, FLT_MAX, FLT_MIN, FLT_TRUE_MIN, -123.456f, 16777217.0f })
        EXPECT_EQ(std::bit_cast<uint32_t>(PackageItem::toFloat(Package::formatFloat(value))), std::bit_cast<uint32_t>(value))
            << value;
}

TEST(Package, LookupsFindTheFirstEntryTypedReadsFallBackAndTypedWritesReplaceTheFirstOrAppend)
{
    Package root;
    root.addItem("a", jVector<jString> { "1", "x" });
    root.addItem("a", "2");
    root.addPackage("p")->setName("p");
    root.addPackage("p")->addItem("second", "x");
    EXPECT_EQ(root.getInt("a"), 1);
    EXPECT_EQ(root.findPackage("p"), root.getPackage(0));
    EXPECT_EQ(root.getInt("missing", 9), 9);
    EXPECT_TRUE(root.getBool("missing", true));

    root.setInt("a", -7);
    root.setBool("on", true);
    root.setBool("off", true);
    root.setBool("off", false);
    root.setFloat("f", 1.0f / 3.0f);
    EXPECT_EQ(valuesOf(*root.getItem(0)), jVector<jString> { "-7" });
    EXPECT_EQ(root.getItem(1)->getValue(), "2");
    EXPECT_EQ(root.getString("on"), "true");
    EXPECT_EQ(root.getString("off"), "false");
    EXPECT_EQ(root.getString("f"), "0.33333334");
    EXPECT_EQ(root.getItemCount(), 5u);
}

// Replacing a package by one of its own descendants keeps the descendant's
// entries and drops the rest; entries held by pointer move with it.
TEST(Package, MovingADescendantIntoItsAncestor)
{
    Package root("root");
    Package* outer = root.addPackage("outer");
    outer->addItem("o", "1");
    Package* inner = outer->addPackage("inner");
    const PackageItem* x = inner->addItem("x", jVector<jString> { "1", "2" });
    root.addItem("after", "3");

    root = std::move(*outer);
    EXPECT_EQ(root.getName(), "outer");
    ASSERT_EQ(root.getItemCount(), 1u);
    EXPECT_EQ(root.getItem(0)->getValue(), "1");
    EXPECT_EQ(root.findPackage("inner")->findItem("x"), x);
    EXPECT_EQ(x->getValue(1), "2");

    root = std::move(*root.findPackage("inner"));
    EXPECT_EQ(root.getName(), "inner");
    EXPECT_EQ(root.getItem(0), x);
    EXPECT_EQ(root.getPackageCount(), 0u);
}

// Destruction, copy and comparison walk the tree without recursion: a very
// deep tree built through the API must not exhaust the stack.
TEST(Package, VeryDeepTreesCopyCompareAndDestroy)
{
    auto root = std::make_unique<Package>("root");
    Package* leaf = root.get();
    for (int i = 0; i < 100000; ++i) {
        leaf = leaf->addPackage("p");
        leaf->addItem("depth", std::to_string(i));
    }
    Package copy(*root);
    EXPECT_TRUE(copy == *root);
    leaf->setInt("depth", -1);
    EXPECT_FALSE(copy == *root);
    copy = *root;
    EXPECT_TRUE(copy == *root);
    root->clear();
    root.reset();
    EXPECT_EQ(copy.getPackage(0)->getPackage(0)->getInt("depth"), 1);
}

// Texts live as long as the tree: a view taken before the value is replaced
// or the item removed still reads the old text. Copies made inside one tree,
// also of an ancestor into its descendant, are deep and finite.
TEST(Package, ViewsOutliveEditsAndCopiesWithinOneTreeAreDeep)
{
    Package root("root");
    PackageItem* item = root.addItem("a", "first");
    const std::string_view first = item->getValue();
    item->setValue("second");
    item->addValue(item->getValue());
    root.removeItem(item);
    EXPECT_EQ(first, "first");
    EXPECT_EQ(valuesOf(*item), (jVector<jString> { "second", "second" }));

    Package* child = root.addPackage("child");
    child->addItem("x", "1");
    Package* copy = root.addPackageCopy(*child);
    copy->findItem("x")->setValue("2");
    EXPECT_EQ(child->getString("x"), "1");

    *child = root;
    EXPECT_EQ(mjl::toText(root), "root {\n\tchild {\n\t\tx 1\n\t}\n\tchild {\n\t\tx 2\n\t}\n}\nchild {\n\tx 2\n}\n");
}
