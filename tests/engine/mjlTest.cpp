#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
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

// The error text of a parse that must fail, checking that it was logged once
// with exactly that text and that nothing stayed open.
jString parseError(std::string_view text)
{
    jLog::Capture capture;
    mjl file;
    EXPECT_FALSE(file.parse(text, "rock.mat")) << text;
    EXPECT_EQ(file.getRoot(), nullptr);
    EXPECT_EQ(capture.lines(), std::vector<jString> { "error: " + file.getError() });
    return file.getError();
}

jString readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const fs::path& path, std::string_view text)
{
    std::ofstream(path, std::ios::binary) << text;
}

std::string nested(int depth)
{
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "p {\n";
    for (int i = 0; i < depth; ++i)
        text += "}\n";
    return text;
}

class mjlFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/mjlTest.XXXXXX";
        m_dir = mkdtemp(pattern);
        m_previousRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(m_dir.string());
    }
    void TearDown() override
    {
        jDir::setProjectRoot(m_previousRoot);
        fs::remove_all(m_dir);
    }
    std::vector<jString> fileNames() const
    {
        std::vector<jString> names;
        for (const auto& entry : fs::directory_iterator(m_dir))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path m_dir;
    jString m_previousRoot;
};

} // namespace

// ---------------------------------------------------------------------------
// Reading

TEST(mjlRead, ItemsPackagesAndDuplicatesInFileOrder)
{
    auto file = parsed("version 1\n"
                       "block { type Math.Add; name a\n"
                       "  input \"a b\" \"\" c\\d\n"
                       "  input second\n"
                       "  flag\n"
                       "}\n"
                       "block { type Two }\n");
    const Package& root = *file->getRoot();
    ASSERT_EQ(root.getPackageCount(), 2u);
    EXPECT_EQ(root.getInt("version"), 1);
    const Package& block = *root.findPackage("block");
    EXPECT_EQ(block.getString("type"), "Math.Add");
    EXPECT_EQ(block.getString("name"), "a");
    EXPECT_EQ(block.findItem("input")->getValues(), (jVector<jString> { "a b", "", "c\\d" }));
    EXPECT_EQ(block.getItem(3)->getValue(), "second");
    EXPECT_EQ(block.findItem("flag")->getValueCount(), 0u);
    EXPECT_EQ(root.getPackage(1)->getString("type"), "Two");
    using K = Package::EntryKind;
    EXPECT_EQ(root.getOrder(), (jVector<K> { K::Item, K::Package, K::Package }));
}

TEST(mjlRead, BraceOnItsOwnLineOpensThePackageOfTheKeyAbove)
{
    auto file = parsed("block # the comment\n\n{\n  a 1\n}\nlone\n");
    const Package& root = *file->getRoot();
    ASSERT_EQ(root.getPackageCount(), 1u);
    EXPECT_EQ(root.getPackage(0)->getName(), "block");
    EXPECT_EQ(root.getPackage(0)->getComment(), "the comment");
    EXPECT_EQ(root.getPackage(0)->getInt("a"), 1);
    EXPECT_EQ(root.findItem("lone")->getValueCount(), 0u);
}

TEST(mjlRead, QuotedStringsDecodeEveryEscape)
{
    auto file = parsed("\"quoted key\" \"tab\\there\" \"q\\\"uote\" \"back\\\\slash\" \"nl\\ncr\\r\" \"#not comment\"\n");
    const PackageItem& item = *file->getRoot()->getItem(0);
    EXPECT_EQ(item.getName(), "quoted key");
    EXPECT_EQ(item.getValues(), (jVector<jString> { "tab\there", "q\"uote", "back\\slash", "nl\ncr\r", "#not comment" }));
}

TEST(mjlRead, CommentsAreKeptWhereTheyBelong)
{
    auto file = parsed("# head\n"
                       "//  indented\n"
                       "a 1 # after item\n"
                       "b url://x/y#z // after url\n"
                       "p { # opening\n"
                       "} // closing\n"
                       "#\n");
    const Package& root = *file->getRoot();
    ASSERT_EQ(root.getCommentCount(), 3u);
    EXPECT_EQ(root.getCommentLine(0), "head");
    EXPECT_EQ(root.getCommentLine(1), " indented");
    EXPECT_EQ(root.getCommentLine(2), "");
    EXPECT_EQ(root.findItem("a")->getComment(), "after item");
    EXPECT_EQ(root.findItem("b")->getValue(), "url://x/y#z");
    EXPECT_EQ(root.findItem("b")->getComment(), "after url");
    EXPECT_EQ(root.findPackage("p")->getComment(), "opening closing");
}

TEST(mjlRead, CrlfAndBomReadLikePlainText)
{
    const jString plain = "a 1 # c\np\n{\n\tb \"x y\"\n}\n";
    jString windows = "\xEF\xBB\xBF";
    for (char c : plain)
        windows += c == '\n' ? jString("\r\n") : jString(1, c);
    EXPECT_TRUE(*parsed(plain)->getRoot() == *parsed(windows)->getRoot());
    EXPECT_EQ(parsed(windows)->getRoot()->findItem("a")->getComment(), "c");
}

TEST(mjlRead, Utf8PassesThrough)
{
    auto file = parsed("név \"érték ✓\" ünnep\n");
    const PackageItem& item = *file->getRoot()->getItem(0);
    EXPECT_EQ(item.getName(), "név");
    EXPECT_EQ(item.getValues(), (jVector<jString> { "érték ✓", "ünnep" }));
    EXPECT_EQ(mjl::toText(*file->getRoot()), "név \"érték ✓\" ünnep\n");
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

TEST(mjlWrite, QuotesKeysAndValuesOnlyWhenNeeded)
{
    Package root;
    root.addItem("", jVector<jString> { "" });
    root.addItem("//key", jVector<jString> { "tab\there", "line\nbreak", "cr\r", "quote\"", "semi;", "}" });
    root.addItem("a.b-c:d/e_F9", jVector<jString> { "plain", "back\\slash", "x//y", "-1.5e3" });
    Package* sub = root.addPackage("has space");
    sub->setComment("multi\nline");
    sub->addCommentLine("  two spaces");
    EXPECT_EQ(mjl::toText(root),
        "\"\" \"\"\n"
        "\"//key\" \"tab\\there\" \"line\\nbreak\" \"cr\\r\" \"quote\\\"\" \"semi;\" \"}\"\n"
        "a.b-c:d/e_F9 plain back\\slash x//y -1.5e3\n"
        "\"has space\" { # multi line\n"
        "\t#   two spaces\n"
        "}\n");
    Package copy = root;
    copy.getPackage(0)->setComment("multi line");
    EXPECT_TRUE(*parsed(mjl::toText(root))->getRoot() == copy);
}

TEST(mjlWrite, TypedValuesWriteTheirCanonicalText)
{
    Package root;
    root.setBool("on", true);
    root.setBool("off", false);
    root.setFloat("third", 1.0f / 3.0f);
    root.setFloat("whole", 2.0f);
    root.setInt("neg", -7);
    EXPECT_EQ(mjl::toText(root), "on true\noff false\nthird 0.33333334\nwhole 2\nneg -7\n");
}

// ---------------------------------------------------------------------------
// Errors

TEST(mjlErrors, NameFileLineAndColumn)
{
    EXPECT_EQ(parseError("a {\n  b \"x\n}"), "mjl: rock.mat:2:5: unterminated string");
    EXPECT_EQ(parseError("a \"x\\"), "mjl: rock.mat:1:3: unterminated string");
    EXPECT_EQ(parseError("a 1\n}\n"), "mjl: rock.mat:2:1: unexpected '}'");
    EXPECT_EQ(parseError("a {\n\tb {\n\t}\n"), "mjl: rock.mat:1:3: unclosed '{'");
    EXPECT_EQ(parseError("a \"\\q\""), "mjl: rock.mat:1:4: unknown escape '\\q'");
    EXPECT_EQ(parseError("a \"\\\x01\""), "mjl: rock.mat:1:4: unknown escape: backslash before byte 0x01");
    EXPECT_EQ(parseError("width=5"), "mjl: rock.mat:1:6: unexpected character '=' after key");
    EXPECT_EQ(parseError("\"k\"v 1"), "mjl: rock.mat:1:4: unexpected character 'v' after key");
    EXPECT_EQ(parseError("a \"x\"y"), "mjl: rock.mat:1:6: unexpected character 'y' after string");
    EXPECT_EQ(parseError("a x\"y\""), "mjl: rock.mat:1:4: unexpected '\"' inside a value");
    EXPECT_EQ(parseError("a b {\n}"), "mjl: rock.mat:1:5: unexpected '{' after a value");
    EXPECT_EQ(parseError("a;\n{\n}"), "mjl: rock.mat:2:1: unexpected '{'");
    EXPECT_EQ(parseError("a\n# c\n{\n}"), "mjl: rock.mat:3:1: unexpected '{'");
    EXPECT_EQ(parseError("{"), "mjl: rock.mat:1:1: unexpected '{'");
    EXPECT_EQ(parseError("ok 1\n  =x"), "mjl: rock.mat:2:3: unexpected character '='");
    EXPECT_EQ(parseError("\x01"), "mjl: rock.mat:1:1: unexpected character byte 0x01");
}

TEST(mjlErrors, PositionsCountFromAfterTheBomAndIgnoreCr)
{
    EXPECT_EQ(parseError("\xEF\xBB\xBF}"), "mjl: rock.mat:1:1: unexpected '}'");
    EXPECT_EQ(parseError("a 1\r\nb \"x\r\n"), "mjl: rock.mat:2:3: unterminated string");
}

TEST(mjlErrors, NestingIsLimitedTo256Levels)
{
    auto file = parsed(nested(mjl::kMaxDepth));
    EXPECT_NE(file->getRoot()->getPackage(0), nullptr);
    EXPECT_EQ(parseError(nested(mjl::kMaxDepth + 1)), "mjl: rock.mat:257:3: nesting deeper than 256 levels");
    EXPECT_EQ(parseError(jString(100000, '{')), "mjl: rock.mat:1:1: unexpected '{'");
    jString deep;
    for (int i = 0; i < 100000; ++i)
        deep += "p{";
    EXPECT_EQ(parseError(deep), "mjl: rock.mat:1:514: nesting deeper than 256 levels");
}

TEST(mjlErrors, AFailedParseClosesWhatWasOpen)
{
    jLog::Capture capture;
    mjl file;
    ASSERT_TRUE(file.parse("a 1"));
    EXPECT_FALSE(file.parse("a }}"));
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getError(), "mjl: <memory>:1:3: unexpected '}'");
}

// ---------------------------------------------------------------------------
// Files

TEST_F(mjlFiles, OpenResolvesRelativePathsAgainstTheProjectRoot)
{
    fs::create_directories(m_dir / "data");
    writeFile(m_dir / "data/a.cfg", "x 5\n");
    mjl file;
    ASSERT_TRUE(file.open("data/a.cfg", false));
    EXPECT_EQ(file.getRoot()->getInt("x"), 5);
    EXPECT_EQ(file.getPath(), (m_dir / "data/a.cfg").string());
    EXPECT_FALSE(file.isWritable());
}

TEST_F(mjlFiles, ParseErrorsInFilesNameThePathAsGiven)
{
    writeFile(m_dir / "rock.mat", "a {\n\tb 1\n\tc \"open\n}\n");
    jLog::Capture capture;
    mjl file;
    EXPECT_FALSE(file.open("rock.mat", true));
    EXPECT_EQ(capture.lines(), std::vector<jString> { "error: mjl: rock.mat:3:4: unterminated string" });
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getPath(), "");
}

TEST_F(mjlFiles, AMissingFileIsNotLogged)
{
    jLog::Capture capture;
    mjl file;
    EXPECT_FALSE(file.open("missing.mat", false));
    EXPECT_TRUE(capture.empty());
    EXPECT_EQ(file.getError(), "mjl: missing.mat: No such file or directory");
    EXPECT_EQ(file.getRoot(), nullptr);
}

TEST_F(mjlFiles, ADirectoryIsAnErrorThatIsLogged)
{
    fs::create_directories(m_dir / "folder.mat");
    jLog::Capture capture;
    mjl file;
    EXPECT_FALSE(file.open("folder.mat", false));
    EXPECT_EQ(capture.lines(), std::vector<jString> { "error: mjl: folder.mat: Is a directory" });
}

TEST_F(mjlFiles, AWritableOpenOfAMissingFileIsCreatedBySave)
{
    mjl file;
    ASSERT_TRUE(file.open("new.mat", true));
    EXPECT_EQ(file.getRoot()->getOrder().size(), 0u);
    file.getRoot()->addPackage("p")->setBool("b", true);
    ASSERT_TRUE(file.save());
    EXPECT_EQ(readFile(m_dir / "new.mat"), "p {\n\tb true\n}\n");
    EXPECT_EQ(fileNames(), std::vector<jString> { "new.mat" });
}

TEST_F(mjlFiles, SaveReplacesTheFileAndKeepsItsPermissions)
{
    writeFile(m_dir / "a.mat", "old 1\n");
    chmod((m_dir / "a.mat").c_str(), 0640);
    mjl file;
    ASSERT_TRUE(file.open("a.mat", true));
    file.getRoot()->setInt("old", 2);
    ASSERT_TRUE(file.save());
    EXPECT_EQ(readFile(m_dir / "a.mat"), "old 2\n");
    struct stat info {};
    stat((m_dir / "a.mat").c_str(), &info);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(fileNames(), std::vector<jString> { "a.mat" });
}

TEST_F(mjlFiles, SaveAsWritesUnderTheProjectRootAndBecomesTheTarget)
{
    mjl file;
    ASSERT_TRUE(file.parse("a 1"));
    EXPECT_FALSE(file.isWritable());
    ASSERT_TRUE(file.saveAs("copy.mat"));
    EXPECT_EQ(file.getPath(), (m_dir / "copy.mat").string());
    file.getRoot()->setInt("a", 3);
    ASSERT_TRUE(file.save());
    EXPECT_EQ(readFile(m_dir / "copy.mat"), "a 3\n");
}

TEST_F(mjlFiles, SaveRefusesReadOnlyOpensAndTreesTooDeepToReadBack)
{
    writeFile(m_dir / "a.mat", "a 1\n");
    jLog::Capture capture;
    mjl file;
    ASSERT_TRUE(file.open("a.mat", false));
    EXPECT_FALSE(file.save());
    EXPECT_EQ(file.getError(), "mjl: " + (m_dir / "a.mat").string() + ": not open for writing");

    ASSERT_TRUE(file.open("a.mat", true));
    Package* package = file.getRoot();
    for (int i = 0; i <= mjl::kMaxDepth; ++i)
        package = package->addPackage("p");
    EXPECT_FALSE(file.save());
    EXPECT_EQ(file.getError(), "mjl: " + (m_dir / "a.mat").string() + ": nesting deeper than 256 levels");
    EXPECT_EQ(readFile(m_dir / "a.mat"), "a 1\n");
    EXPECT_EQ(capture.entries().size(), 2u);
}

TEST_F(mjlFiles, AFailingWriteLeavesTheOldFileByteIdentical)
{
    const jString old = "keep {\n\tme 1\n}\n";
    writeFile(m_dir / "a.mat", old);
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
    const bool saved = mjl::writeFileAtomic((m_dir / "a.mat").string(), jString(5000, 'x'), &error);
    setrlimit(RLIMIT_FSIZE, &previous);
    signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(saved);
    EXPECT_EQ(error, "mjl: " + (m_dir / "a.mat").string() + ": can't write: File too large");
    EXPECT_EQ(capture.lines(), std::vector<jString> { "error: " + error });
    EXPECT_EQ(readFile(m_dir / "a.mat"), old);
    EXPECT_EQ(fileNames(), std::vector<jString> { "a.mat" });
}

TEST_F(mjlFiles, AnUnwritableTargetDirectoryFailsCleanly)
{
    writeFile(m_dir / "file", "not a folder");
    jLog::Capture capture;
    jString error;
    EXPECT_FALSE(mjl::writeFileAtomic((m_dir / "file/a.mat").string(), "a 1\n", &error));
    EXPECT_EQ(error, "mjl: " + (m_dir / "file/a.mat").string() + ": can't create a temporary file: Not a directory");
    EXPECT_EQ(capture.entries().size(), 1u);
    EXPECT_EQ(readFile(m_dir / "file"), "not a folder");
}

TEST_F(mjlFiles, ReplacingADirectoryFailsAndRemovesTheTemporaryFile)
{
    fs::create_directories(m_dir / "a.mat/inner");
    jLog::Capture capture;
    jString error;
    EXPECT_FALSE(mjl::writeFileAtomic((m_dir / "a.mat").string(), "a 1\n", &error));
    EXPECT_EQ(error, "mjl: " + (m_dir / "a.mat").string() + ": can't replace the file: Is a directory");
    EXPECT_EQ(fileNames(), std::vector<jString> { "a.mat" });
}

// ---------------------------------------------------------------------------
// Inputs the fuzzer found

// A key made of the BOM bytes, written first in a file, was read back as a
// byte order mark.
TEST(mjlFuzzFinds, KeyStartingWithBomBytesIsQuoted)
{
    auto file = parsed("\n\xEF\xBB\xBF\n\n\n ");
    const jString text = mjl::toText(*file->getRoot());
    EXPECT_EQ(text, "\"\xEF\xBB\xBF\"\n");
    EXPECT_TRUE(*parsed(text)->getRoot() == *file->getRoot());
}

// The writer's buffer is only reserved by the first line: an empty tree wrote
// a length computed from a null cursor.
TEST(mjlFuzzFinds, EmptyTreesWriteEmptyText)
{
    EXPECT_EQ(mjl::toText(Package()), "");
    EXPECT_EQ(canonical(""), "");
    EXPECT_EQ(canonical("\r\n\t \n"), "");
    Package onlyEmptyPackage;
    onlyEmptyPackage.addPackage("p");
    EXPECT_EQ(mjl::toText(onlyEmptyPackage), "p {\n}\n");
}
