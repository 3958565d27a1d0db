// The real material-editor under Xvfb: a screenshot of a sample shows the
// canvas and the preview sphere, the layout file is written on quit, the
// exit codes of a document that does not load and of a picture that cannot
// be written, and the recovery of an edit after the program was killed.
#include "TempFolder.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

// Runs material-editor under Xvfb with home as its config folder. prefix
// goes before the command (environment, "timeout -s KILL n"), suffix after it.
int runEditor(const TempFolder& home, const std::string& arguments, const std::string& prefix = "",
              const std::string& dataRoot = MATERIAL_SOURCE_ROOT, const std::string& suffix = "")
{
    const std::string command = "XDG_CONFIG_HOME='" + home.path() + "' " XVFB_RUN " -a " + prefix + MATERIAL_EDITOR_PATH
        " --data-root '" + dataRoot + "' " + arguments + suffix;
    // xvfb-run exits 5 when it cannot clean up its own temporary folder
    // (other X servers of the machine's tests come and go beside it); the
    // program's run is then repeated once.
    constexpr int kXvfbCleanupError = 5;
    for (int attempt = 0;; ++attempt) {
        const int status = std::system(command.c_str());
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (code != kXvfbCleanupError || attempt > 0)
            return code;
    }
}

struct PixelCounts {
    int canvas = 0; // the canvas background grey
    int sphere = 0; // the gold of the sample on the preview sphere
};

PixelCounts countPixels(const QImage& image)
{
    PixelCounts counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (std::abs(c.red() - 38) <= 4 && std::abs(c.green() - 38) <= 4 && std::abs(c.blue() - 38) <= 4)
                ++counts.canvas;
            // The preview column is the window's left 300 pixels.
            if (x < 300 && c.red() > 90 && c.red() - c.blue() > 40)
                ++counts.sphere;
        }
    }
    return counts;
}

TEST(EditorProgramTest, ScreenshotShowsTheCanvasAndThePreviewSphereAndQuitWritesTheLayout)
{
    TempFolder home;
    const std::string shot = home / "shot.png";
    ASSERT_EQ(runEditor(home, MATERIAL_SOURCE_ROOT "/data/materials/metal_gold.mat --screenshot " + shot), 0);

    const QImage image(QString::fromStdString(shot));
    ASSERT_FALSE(image.isNull());
    EXPECT_GE(image.width(), 1000);
    const PixelCounts counts = countPixels(image);
    EXPECT_GT(counts.canvas, image.width() * image.height() / 5);
    EXPECT_GT(counts.sphere, 8000);

    const std::string layout = home / "material-editor/layout.cfg";
    ASSERT_TRUE(std::filesystem::exists(layout));
    EXPECT_NE(home.read("material-editor/layout.cfg").find("material_editor {"), std::string::npos);
}

TEST(EditorProgramTest, ScreenshotFailsWhenTheDocumentOrThePictureCannotBeMade)
{
    TempFolder home;
    EXPECT_EQ(runEditor(home, MATERIAL_SOURCE_ROOT "/data/materials/missing.mat --screenshot " + (home / "a.png")), 1);
    EXPECT_FALSE(std::filesystem::exists(home / "a.png"));
    EXPECT_EQ(runEditor(home, MATERIAL_SOURCE_ROOT "/data/materials/rubber.mat --screenshot " + (home / "no/such/folder/b.png")), 1);
    EXPECT_EQ(runEditor(home, "--version"), 0);
    EXPECT_EQ(runEditor(home, "--no-such-option"), 2);
}

// Pixels of the sample's stone texture (light, warm greys) in the
// parameters column under the preview: the texture panel's thumbnail.
int countThumbnailPixels(const QImage& image)
{
    constexpr int kColumnWidth = 266;
    constexpr int kBelowPreview = 350;
    int count = 0;
    for (int y = kBelowPreview; y < image.height(); ++y) {
        for (int x = 0; x < kColumnWidth; ++x) {
            const QColor c = image.pixelColor(x, y);
            const int spread = std::max({c.red(), c.green(), c.blue()}) - std::min({c.red(), c.green(), c.blue()});
            if (c.red() + c.green() + c.blue() > 240 && c.red() - c.blue() >= 8 && spread < 60)
                ++count;
        }
    }
    return count;
}

TEST(EditorProgramTest, SelectedTextureNodeShowsItsThumbnailInTheParametersColumn)
{
    TempFolder home;
    const std::string sample = MATERIAL_SOURCE_ROOT "/data/materials/textured.mat";
    const std::string selected = home / "selected.png";
    const std::string plain = home / "plain.png";
    ASSERT_EQ(runEditor(home, sample + " --select-node 2 --screenshot " + selected), 0);
    ASSERT_EQ(runEditor(home, sample + " --screenshot " + plain), 0);
    EXPECT_GT(countThumbnailPixels(QImage(QString::fromStdString(selected))), 2000);
    EXPECT_LT(countThumbnailPixels(QImage(QString::fromStdString(plain))), 200);
    EXPECT_EQ(runEditor(home, sample + " --select-node 99 --screenshot " + plain), 1);
}

// A project of its own holding a copy of a sample, and a state folder: the
// program is run on the copy with a test environment (docs/material-editor.md).
class RecoveryProgramTest : public ::testing::Test {
protected:
    static constexpr const char* kDocument = "data/materials/metal_gold.mat";
    static constexpr const char* kRecovery = "state/material-editor/recovery/data%2Fmaterials%2Fmetal_gold.mat";

    void SetUp() override
    {
        original = readFile(MATERIAL_SOURCE_ROOT "/" + std::string(kDocument));
        home.write("project/" + std::string(kDocument), original);
        // The copy must be older than any recovery file written after it.
        const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::seconds(10);
        std::filesystem::last_write_time(home / ("project/" + std::string(kDocument)), past);
    }

    static std::string readFile(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    // Runs the editor on the copy; killAfter > 0 kills it with SIGKILL after
    // that many seconds. Its standard error goes to home/log.txt.
    int run(const std::string& environment, const std::string& arguments, int killAfter = 0)
    {
        const std::string kill = killAfter > 0 ? "timeout -s KILL " + std::to_string(killAfter) + " " : "";
        return runEditor(home, "'" + (home / ("project/" + std::string(kDocument))) + "' " + arguments,
                         "env " + environment + " XDG_STATE_HOME='" + (home / "state") + "' " + kill,
                         home / "project", " 2>'" + (home / "log.txt") + "'");
    }

    // An edit (render order 7), a recovery copy a second later, then SIGKILL.
    void editAndKill()
    {
        EXPECT_EQ(run("MATERIAL_EDITOR_TEST_RENDER_ORDER=7", "--autosave-seconds 1", 4), 128 + SIGKILL);
        ASSERT_TRUE(std::filesystem::exists(home / kRecovery));
        EXPECT_NE(home.read(kRecovery).find("render_order 7"), std::string::npos);
    }

    std::string document() { return home.read("project/" + std::string(kDocument)); }
    std::string log() { return home.read("log.txt"); }

    TempFolder home;
    std::string original;
};

TEST_F(RecoveryProgramTest, AcceptingRestoresTheEditUnderTheDocumentsPathAndSavingRemovesTheCopy)
{
    editAndKill();
    // Restore, then the question on closing the modified document: save.
    ASSERT_EQ(run("MATERIAL_EDITOR_TEST_ANSWERS=yes,save", "--screenshot '" + (home / "shot.png") + "'"), 0);
    EXPECT_NE(log().find("material-editor: answered \"yes\"\n"), std::string::npos) << log();
    EXPECT_NE(log().find("material-editor: answered \"save\"\n"), std::string::npos) << log();
    EXPECT_NE(document().find("\t\t\trender_order 7\n"), std::string::npos);
    EXPECT_EQ(original.find("render_order 7"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(home / kRecovery));
}

TEST_F(RecoveryProgramTest, DecliningRemovesTheCopyAndLeavesTheDocument)
{
    editAndKill();
    ASSERT_EQ(run("MATERIAL_EDITOR_TEST_ANSWERS=no", "--screenshot '" + (home / "shot.png") + "'"), 0);
    EXPECT_NE(log().find("material-editor: answered \"no\"\n"), std::string::npos) << log();
    EXPECT_FALSE(std::filesystem::exists(home / kRecovery));
    EXPECT_EQ(document(), original);
}

TEST_F(RecoveryProgramTest, ACopyThatDoesNotParseIsSetAsideWithOneWarningAndNoQuestion)
{
    home.write(kRecovery, "materials {\n\tmaterial {\n");
    ASSERT_EQ(run("MATERIAL_EDITOR_TEST_ANSWERS=yes", "--screenshot '" + (home / "shot.png") + "'"), 0);
    const std::string warning = "warning: material-editor: the recovery file \"" + (home / kRecovery)
        + "\" can't be restored (";
    const std::string text = log();
    ASSERT_NE(text.find(warning), std::string::npos) << text;
    EXPECT_EQ(text.find("warning:", text.find(warning) + 1), std::string::npos) << text;
    EXPECT_EQ(text.find("answered"), std::string::npos) << text;
    EXPECT_FALSE(std::filesystem::exists(home / kRecovery));
    EXPECT_TRUE(std::filesystem::exists(home / (std::string(kRecovery) + ".broken")));
    EXPECT_EQ(document(), original);
}

} // namespace
