#include "FileReader.h"

#include "ShaderSource.h"
#include "TextureManager.h"
#include "jLog.h"
#include "mjl.h"

#include "HostileFiles.h"
#include "TempRootTest.h"

// Runs under a short CTest timeout: a reader that follows a pipe or a device
// to its end hangs instead of failing.
using FileReaderTest = TempRootTest;

TEST_F(FileReaderTest, DocumentsAndIncludesRefusePipesDevicesFoldersAndOversizedFiles)
{
    for (const auto& [path, reason] : makeHostileFiles(root, "x.mat", FileReader::kDocumentLimit)) {
        jLog::Capture log;
        mjl document;
        EXPECT_FALSE(document.open(path, true)) << "a writable open replaces only a missing file";
        EXPECT_EQ(log.text(), "error: mjl: " + path + ": " + reason + "\n");
        log.clear();
        EXPECT_FALSE(ShaderSource().assemble({"#include \"" + path + "\""}, {}, false));
        EXPECT_EQ(log.text(), "error: ShaderSource: generated:1: can't open include \"" + path + "\": " + reason + "\n");
    }
}

TEST_F(FileReaderTest, TexturesRefuseThemUnderTheImageLimit)
{
    TextureManager textures;
    for (const auto& [path, reason] : makeHostileFiles(root, "x.dds", FileReader::kImageLimit)) {
        jLog::Capture log;
        EXPECT_EQ(textures.load(path), nullptr);
        EXPECT_EQ(log.text(), "error: TextureManager: can't load \"" + path + "\": " + reason + "\n");
    }
}
