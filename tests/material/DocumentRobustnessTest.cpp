// The document reader against the fuzz target's data root: the seed corpus
// rewrites identically, and every input the fuzzer found to fail stays fixed.
#include "../../fuzz/DocumentLibrary.h"
#include "DocumentFixture.h"
#include "TempFolder.h"
#include "jLog.h"
#include "mjl.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

class DocumentRobustnessTest : public DocumentTest {
protected:
    const char* projectRoot() const override { return root.path().c_str(); }
    void SetUp() override
    {
        DocumentLibrary::install(root.path());
        DocumentTest::SetUp();
    }

    // Parses text and loads it as the fuzz target does.
    bool loadText(const jString& text)
    {
        mjl file;
        return file.parse(text, "doc.mat") && doc->load_document(*file.getRoot(), "doc.mat");
    }

    jString writeText() const
    {
        Package file;
        doc->write_editor(file);
        doc->write_blueprint(file);
        return mjl::toText(file);
    }

    TempFolder root;
};

std::vector<std::filesystem::path> corpusFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
        std::filesystem::directory_iterator(MATERIAL_SOURCE_ROOT "/fuzz/corpus/document"))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

jString readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return jString(std::istreambuf_iterator<char>(in), {});
}

} // namespace

TEST_F(DocumentRobustnessTest, CorpusDocumentsRewriteToIdenticalBytes)
{
    const std::vector<std::filesystem::path> files = corpusFiles();
    ASSERT_GE(files.size(), 12u);
    for (const auto& path : files) {
        const jString name = path.filename().string();
        jLog::Capture log;
        // An instance of an instance has no graph to take.
        if (name == "instance_of_instance.mat") {
            EXPECT_FALSE(loadText(readFile(path)));
            continue;
        }
        ASSERT_TRUE(loadText(readFile(path))) << name;
        const jString first = writeText();
        ASSERT_TRUE(loadText(first)) << name;
        EXPECT_EQ(writeText(), first) << name;
        if (name == "plain.mat") {
            EXPECT_EQ(first, readFile(path));
        }
    }
}

// Without these checks the load read /dev/zero until memory ran out, waited
// on the pipe for ever and parsed files anywhere on the machine.
TEST_F(DocumentRobustnessTest, ParentsOutsideTheRootOrNotFilesAreRefused)
{
    ASSERT_EQ(mkfifo((root / "pipe.mat").c_str(), 0600), 0);
    const std::pair<const char*, jString> cases[] = {
        {"/dev/zero", "error: AppData::load: \"doc.mat\" names the parent \"/dev/zero\" outside the data root\n"},
        {"../../../../etc/passwd",
            "error: AppData::load: \"doc.mat\" names the parent \"../../../../etc/passwd\" outside the data root\n"},
        {"pipe.mat", "error: mjl: pipe.mat: a pipe, not a regular file\n"},
    };
    for (const auto& [parent, message] : cases) {
        jLog::Capture log;
        EXPECT_FALSE(loadText(jFormat("materials { material { parent_path %s } }", parent))) << parent;
        EXPECT_EQ(log.text(), message);
        EXPECT_FALSE(doc->isInstance());
        EXPECT_EQ(doc->getParentPath(), "");
    }
}

TEST_F(DocumentRobustnessTest, OddIdsAndNamesLoadWithTheirMessages)
{
    jLog::Capture log;
    ASSERT_TRUE(loadText(readFile(MATERIAL_SOURCE_ROOT "/fuzz/corpus/document/odd_values.mat")));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: AppData::setNodeId: node id 7 is already in use",
                               "error: AppData::setNodeId: invalid node id -4",
                               "error: AppData::createNode:Unknown Block type \"Unknown.Block\"",
                               "error: AppData::load: can't create node by type \"Unknown.Block\"",
                               "error: AppData::load: unknown node \"comment\"",
                           }));
    // Past the largest id, fresh nodes take the lowest free one.
    std::vector<int32_t> ids;
    for (const auto& node : doc->getNodes())
        ids.push_back(node->getId());
    EXPECT_EQ(ids, (std::vector<int32_t>{2147483647, 7, 0, 1}));
    const DataNode& first = *doc->findNode(2147483647);
    EXPECT_EQ(first.getName(), "tab\there");
    EXPECT_EQ(first.getPosX(), -2147483648);
    EXPECT_EQ(first.getPosY(), 2147483647);
    EXPECT_EQ(first.getVariableValue("value"), "  spaced  ");
    ASSERT_EQ(doc->getJointCount(), 1u);
    EXPECT_EQ(doc->getJoints().front()->anchor1, first.getOutputLink(0));
    EXPECT_FLOAT_EQ(doc->getScale(), 0.001f);
    EXPECT_FLOAT_EQ(doc->getHScroll(), -2.5f);
    EXPECT_TRUE(doc->isUseFileNameAsMaterialName());
}
