#include "jLog.h"
#include "mjl.h"

#include "PackageValues.h"
#include "TempRootTest.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

std::unique_ptr<mjl> parsed(std::string_view text)
{
    auto file = std::make_unique<mjl>();
    EXPECT_TRUE(file->parse(text)) << file->getError();
    return file;
}

jString canonical(std::string_view text)
{
    auto file = parsed(text);
    return file->isOpen() ? mjl::toText(*file->getRoot()) : jString("<parse failed>");
}

std::string nested(int depth)
{
    std::string open, close;
    for (int i = 0; i < depth; ++i)
        open += "p {\n", close += "}\n";
    return open + close;
}

// A temporary project root; fileNames() lists what is in it.
class mjlFiles : public TempRootTest {
protected:
    std::vector<jString> fileNames() const
    {
        std::vector<jString> names;
        for (const auto& entry : fs::directory_iterator(root.path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

} // namespace

// ---------------------------------------------------------------------------
// Reading

TEST(mjlRead, QuotedStringsDecodeEveryEscapeAndUtf8PassesThrough)
{
    auto file = parsed("\"quoted key\" \"tab\\there\" \"q\\\"uote\" \"back\\\\slash\" \"nl\\ncr\\r\" \"#not comment\"\n"
                       "név \"érték ✓\" ünnep\n");
    const PackageItem& item = *file->getRoot()->getItem(0);
    EXPECT_EQ(item.getName(), "quoted key");
    EXPECT_EQ(valuesOf(item), (jVector<jString> { "tab\there", "q\"uote", "back\\slash", "nl\ncr\r", "#not comment" }));
    EXPECT_EQ(file->getRoot()->getItem(1)->getName(), "név");
    EXPECT_EQ(valuesOf(*file->getRoot()->getItem(1)), (jVector<jString> { "érték ✓", "ünnep" }));
    EXPECT_EQ(canonical("név \"érték ✓\" ünnep\n"), "név \"érték ✓\" ünnep\n");
}

// A brace on its own line, even after a blank line, opens the package of
// the key above, which keeps that key's comment.
TEST(mjlRead, CommentsAreKeptWhereTheyBelong)
{
    auto file = parsed("# head\n"
                       "//  indented\n"
                       "a 1 # after item\n"
                       "b url://x/y#z // after url\n"
                       "p { # opening\n"
                       "} // closing\n"
                       "#\n"
                       "block # the comment\n\n{\n  a 1\n}\n");
    const Package& root = *file->getRoot();
    ASSERT_EQ(root.getCommentCount(), 3u);
    ASSERT_EQ(root.getPackageCount(), 2u);
    EXPECT_EQ(root.getPackage(1)->getName(), "block");
    EXPECT_EQ(root.getPackage(1)->getComment(), "the comment");
    EXPECT_EQ(root.getPackage(1)->getInt("a"), 1);
    EXPECT_EQ(root.getCommentLine(0), "head");
    EXPECT_EQ(root.getCommentLine(1), " indented");
    EXPECT_EQ(root.getCommentLine(2), "");
    EXPECT_EQ(root.findItem("a")->getComment(), "after item");
    EXPECT_EQ(root.findItem("b")->getValue(), "url://x/y#z");
    EXPECT_EQ(root.findItem("b")->getComment(), "after url");
    EXPECT_EQ(root.findPackage("p")->getComment(), "opening closing");
}

// ---------------------------------------------------------------------------
// Writing

TEST(mjlWrite, CanonicalFormOfATrickyFile)
{
    const jString tricky = "\xEF\xBB\xBF# header\r\n"
                           "blocks {   # top\r\n"
                           "    version   1 ; count 2\r\n"
                           "  block\r\n"
                           "  {\r\n"
                           "type \"Math.Add\" \"\" \"a b\" x\\y\r\n"
                           "function \"@a + @b;\\n\\\"q\\\"\"\r\n"
                           "  empty\r\n"
                           "// slash comment\r\n"
                           "\"odd key\" \"#hash\" \"//slashes\" \"{\" \";\" a#b\r\n"
                           "  }\r\n"
                           "dup 1\r\ndup 2\r\n"
                           "}\r\n";
    const jString expected = "# header\n"
                             "blocks { # top\n"
                             "\tversion 1\n"
                             "\tcount 2\n"
                             "\tblock {\n"
                             "\t\ttype Math.Add \"\" \"a b\" x\\y\n"
                             "\t\tfunction \"@a + @b;\\n\\\"q\\\"\"\n"
                             "\t\tempty\n"
                             "\t\t# slash comment\n"
                             "\t\t\"odd key\" \"#hash\" \"//slashes\" \"{\" \";\" a#b\n"
                             "\t}\n"
                             "\tdup 1\n"
                             "\tdup 2\n"
                             "}\n";
    auto file = parsed(tricky);
    const jString text = mjl::toText(*file->getRoot());
    EXPECT_EQ(text, expected);
    EXPECT_TRUE(*parsed(text)->getRoot() == *file->getRoot());
    EXPECT_EQ(canonical(text), text);
}

// Values up to 16 bytes are checked as one block that may reach past the
// value; what lies beyond must not decide the quoting, and a stop character
// at the value's last byte must.
TEST(mjlWrite, QuotingOfShortValuesDependsOnlyOnTheirOwnBytes)
{
    const jString fifteen(15, 'v');
    const std::pair<jString, jString> cases[] = {
        { "a", "a" }, { fifteen, fifteen }, { fifteen + "w", fifteen + "w" }, { fifteen + "wx", fifteen + "wx" },
        { fifteen + " ", "\"" + fifteen + " \"" }, { fifteen + "w;", "\"" + fifteen + "w;\"" },
        { "#" + fifteen, "\"#" + fifteen + "\"" },
    };
    // One text holds every value, so each is followed in memory by the
    // blank, quote or line feed of the next token.
    Package root;
    for (const auto& [value, written] : cases)
        root.addItem("k", jVector<jString> { value, "\"" });
    jString expected;
    for (const auto& [value, written] : cases)
        expected += "k " + written + " \"\\\"\"\n";
    EXPECT_EQ(mjl::toText(root), expected);
    EXPECT_EQ(canonical(expected), expected);
}

// Indentation up to 16 levels is written as one block of tabs that may reach
// past it; deeper levels tab by tab.
TEST(mjlWrite, EveryLevelIsIndentedByItsDepth)
{
    constexpr int kDepth = 18;
    Package root;
    Package* package = &root;
    for (int level = 0; level < kDepth; ++level) {
        package->addItem("i", std::to_string(level));
        package = package->addPackage("p");
    }
    package->addItem("v", "x");
    jString expected;
    for (int level = 0; level < kDepth; ++level)
        expected += jString(level, '\t') + "i " + std::to_string(level) + "\n" + jString(level, '\t') + "p {\n";
    expected += jString(kDepth, '\t') + "v x\n";
    for (int level = kDepth - 1; level >= 0; --level)
        expected += jString(level, '\t') + "}\n";
    EXPECT_EQ(mjl::toText(root), expected);
}

// ---------------------------------------------------------------------------
// Errors

// Each error is logged once with exactly its text, and nothing stays open.
TEST(mjlErrors, NameFileLineAndColumn)
{
    jString deep;
    for (int i = 0; i < 100000; ++i)
        deep += "p{";
    const std::pair<std::string, const char*> cases[] = {
        {"a {\n  b \"x\n}", "2:5: unterminated string"},
        {"a 1\n}\n", "2:1: unexpected '}'"},
        {"a {\n\tb {\n\t}\n", "1:3: unclosed '{'"},
        {"a \"\\q\"", "1:4: unknown escape '\\q'"},
        {"a \"\\\x01\"", "1:4: unknown escape: backslash before byte 0x01"},
        {"width=5", "1:6: unexpected character '=' after key"},
        {"a \"x\"y", "1:6: unexpected character 'y' after string"},
        {"a x\"y\"", "1:4: unexpected '\"' inside a value"},
        {"a b {\n}", "1:5: unexpected '{' after a value"},
        {"a;\n{\n}", "2:1: unexpected '{'"},
        {"ok 1\n  =x", "2:3: unexpected character '='"},
        {"\x01", "1:1: unexpected character byte 0x01"},
        // Positions count from after the BOM and ignore CR.
        {"\xEF\xBB\xBF}", "1:1: unexpected '}'"},
        {"a 1\r\nb \"x\r\n", "2:3: unterminated string"},
        // Nesting is limited to 256 levels.
        {nested(mjl::kMaxDepth + 1), "257:3: nesting deeper than 256 levels"},
        {deep, "1:514: nesting deeper than 256 levels"},
    };
    for (const auto& [text, where] : cases) {
        SCOPED_TRACE(text.substr(0, 20));
        jLog::Capture capture;
        mjl file;
        EXPECT_FALSE(file.parse(text, "rock.mat"));
        EXPECT_EQ(file.getError(), jString("mjl: rock.mat:") + where);
        EXPECT_EQ(file.getRoot(), nullptr);
        EXPECT_EQ(capture.lines(), std::vector<jString> { "error: " + file.getError() });
    }
    EXPECT_NE(parsed(nested(mjl::kMaxDepth))->getRoot()->getPackage(0), nullptr);
}

// ---------------------------------------------------------------------------
// Files

TEST_F(mjlFiles, OpenResolvesAgainstTheProjectRootAndReportsFailuresWithThePathAsGiven)
{
    root.write("data/a.cfg", "x 5\n");
    root.write("rock.mat", "a {\n\tb 1\n\tc \"open\n}\n");
    root.makeFolder("folder.mat");
    mjl file;
    ASSERT_TRUE(file.open("data/a.cfg", false));
    EXPECT_EQ(file.getRoot()->getInt("x"), 5);
    EXPECT_EQ(file.getPath(), root / "data/a.cfg");
    EXPECT_FALSE(file.isWritable());

    jLog::Capture capture;
    EXPECT_FALSE(file.open("rock.mat", true));
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getPath(), "");
    // A missing file is not logged; a folder is.
    EXPECT_FALSE(file.open("missing.mat", false));
    EXPECT_EQ(file.getError(), "mjl: missing.mat: no such file");
    EXPECT_EQ(file.getRoot(), nullptr);
    EXPECT_FALSE(file.open("folder.mat", false));
    EXPECT_EQ(capture.lines(), (std::vector<jString> { "error: mjl: rock.mat:3:4: unterminated string",
                                   "error: mjl: folder.mat: a folder, not a regular file" }));
}

TEST_F(mjlFiles, SaveCreatesOrReplacesTheFileKeepingItsPermissions)
{
    mjl file;
    ASSERT_TRUE(file.open("new.mat", true));
    EXPECT_EQ(file.getRoot()->getOrder().size(), 0u);
    file.getRoot()->addPackage("p")->setBool("b", true);
    ASSERT_TRUE(file.save());
    EXPECT_EQ(root.read("new.mat"), "p {\n\tb true\n}\n");

    root.write("a.mat", "old 1\n");
    chmod((root / "a.mat").c_str(), 0640);
    ASSERT_TRUE(file.open("a.mat", true));
    file.getRoot()->setInt("old", 2);
    ASSERT_TRUE(file.save());
    EXPECT_EQ(root.read("a.mat"), "old 2\n");
    struct stat info {};
    stat((root / "a.mat").c_str(), &info);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(fileNames(), (std::vector<jString> { "a.mat", "new.mat" }));
}

TEST_F(mjlFiles, SaveRefusesReadOnlyOpensTreesTooDeepToReadBackAndUnusableTargets)
{
    root.write("a.mat", "a 1\n");
    jLog::Capture capture;
    mjl file;
    ASSERT_TRUE(file.open("a.mat", false));
    EXPECT_FALSE(file.save());
    EXPECT_EQ(file.getError(), "mjl: " + root / "a.mat" + ": not open for writing");

    ASSERT_TRUE(file.open("a.mat", true));
    Package* package = file.getRoot();
    for (int i = 0; i <= mjl::kMaxDepth; ++i)
        package = package->addPackage("p");
    EXPECT_FALSE(file.save());
    EXPECT_EQ(file.getError(), "mjl: " + root / "a.mat" + ": nesting deeper than 256 levels");
    EXPECT_EQ(root.read("a.mat"), "a 1\n");

    // An unusable target fails cleanly and leaves no temporary file.
    root.write("file", "not a folder");
    root.makeFolder("b.mat/inner");
    jString error;
    EXPECT_FALSE(mjl::writeFileAtomic(root / "file/a.mat", "a 1\n", &error));
    EXPECT_EQ(error, "mjl: " + root / "file/a.mat" + ": can't create a temporary file: Not a directory");
    EXPECT_FALSE(mjl::writeFileAtomic(root / "b.mat", "a 1\n", &error));
    EXPECT_EQ(error, "mjl: " + root / "b.mat" + ": can't replace the file: Is a directory");
    EXPECT_EQ(capture.entries().size(), 4u);
    EXPECT_EQ(root.read("file"), "not a folder");
    EXPECT_EQ(fileNames(), (std::vector<jString> { "a.mat", "b.mat", "file" }));
}

TEST_F(mjlFiles, AFailingWriteLeavesTheOldFileByteIdentical)
{
    const jString old = "keep {\n\tme 1\n}\n";
    root.write("a.mat", old);
    // Files may not grow past 1000 bytes: the write fails part way, as on a
    // full disk.
    struct rlimit previous {};
    getrlimit(RLIMIT_FSIZE, &previous);
    const auto previousHandler = signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = previous;
    small.rlim_cur = 1000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    jLog::Capture capture;
    jString error;
    const bool saved = mjl::writeFileAtomic(root / "a.mat", jString(5000, 'x'), &error);
    setrlimit(RLIMIT_FSIZE, &previous);
    signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(saved);
    EXPECT_EQ(error, "mjl: " + root / "a.mat" + ": can't write: File too large");
    EXPECT_EQ(capture.lines(), std::vector<jString> { "error: " + error });
    EXPECT_EQ(root.read("a.mat"), old);
    EXPECT_EQ(fileNames(), std::vector<jString> { "a.mat" });
}

// ---------------------------------------------------------------------------
// Inputs the fuzzer found

// A key made of the BOM bytes, written first in a file, was read back as a
// byte order mark.
TEST(mjlFuzzFinds, KeyStartingWithBomBytesIsQuotedAndEmptyTreesWriteEmptyText)
{
    auto file = parsed("\n\xEF\xBB\xBF\n\n\n ");
    const jString text = mjl::toText(*file->getRoot());
    EXPECT_EQ(text, "\"\xEF\xBB\xBF\"\n");
    EXPECT_TRUE(*parsed(text)->getRoot() == *file->getRoot());

    // The writer's buffer is only reserved by the first line: an empty tree
    // wrote a length computed from a null cursor.
    EXPECT_EQ(mjl::toText(Package()), "");
    EXPECT_EQ(canonical(""), "");
    EXPECT_EQ(canonical("\r\n\t \n"), "");
    Package onlyEmptyPackage;
    onlyEmptyPackage.addPackage("p");
    EXPECT_EQ(mjl::toText(onlyEmptyPackage), "p {\n}\n");
}
