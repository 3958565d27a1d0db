#include "FileReader.h"

#include "ShaderSource.h"
#include "TextureManager.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include "HostileFiles.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

// Runs under a short CTest timeout: a reader that follows a pipe or a device
// to its end hangs instead of failing.
namespace {

class FileReaderTest : public ::testing::Test {
protected:
    void SetUp() override { jDir::setProjectRoot(root.path()); }
    void TearDown() override { jDir::setProjectRoot(previousRoot); }

    const jString previousRoot = jDir::getProjectRoot();
    TempFolder root;
};

} // namespace

TEST_F(FileReaderTest, ReadsARegularFileWholeAndTellsAMissingOneApart)
{
    jString text = "stale";
    jString reason;
    EXPECT_EQ(FileReader::read(root.write("a.mat", std::string("a 1\n\0b", 6)), 16, text, reason),
        FileReader::Status::Read);
    EXPECT_EQ(text, std::string("a 1\n\0b", 6));
    EXPECT_EQ(FileReader::read(root / "a.mat", 5, text, reason), FileReader::Status::Refused);
    EXPECT_EQ(reason, "6 bytes, over the limit of 5 bytes");
    EXPECT_EQ(text, "");
    EXPECT_EQ(FileReader::read(root / "none.mat", 16, text, reason), FileReader::Status::Missing);
    EXPECT_EQ(reason, "no such file");
    EXPECT_EQ(FileReader::probe(root / "a.mat/b", 16, reason), FileReader::Status::Missing);
}

TEST_F(FileReaderTest, PipesDevicesFoldersAndOversizedFilesAreRefusedUnread)
{
    for (const hostilefiles::Case& c : hostilefiles::make(root, "data", "x.mat", FileReader::kDocumentLimit)) {
        jString text;
        jString reason;
        EXPECT_EQ(FileReader::probe(root / c.path, FileReader::kDocumentLimit, reason), FileReader::Status::Refused);
        EXPECT_EQ(reason, c.reason);
        EXPECT_EQ(FileReader::read(root / c.path, FileReader::kDocumentLimit, text, reason),
            FileReader::Status::Refused);
        EXPECT_EQ(reason, c.reason);
        EXPECT_EQ(text, "");

        jLog::Capture log;
        mjl document;
        EXPECT_FALSE(document.open(c.path, true)) << "a writable open replaces only a missing file";
        EXPECT_EQ(log.text(), "error: mjl: " + c.path + ": " + c.reason + "\n");
        EXPECT_FALSE(document.isOpen());

        log.clear();
        ShaderSource source;
        EXPECT_FALSE(source.assemble({"#include \"" + c.path + "\""}, {}, false));
        EXPECT_EQ(log.text(), "error: ShaderSource: generated:1: can't open include \"" + c.path + "\": " + c.reason
                + "\n");
    }
}

TEST_F(FileReaderTest, TexturesAreRefusedTheSameWayUnderTheImageLimit)
{
    TextureManager textures;
    for (const hostilefiles::Case& c : hostilefiles::make(root, "data", "x.dds", FileReader::kImageLimit)) {
        jLog::Capture log;
        EXPECT_EQ(textures.load(c.path), nullptr);
        EXPECT_EQ(log.text(), "error: TextureManager: can't load \"" + c.path + "\": " + c.reason + "\n");
    }
}
