// The host window of material-editor on the offscreen platform: the quit
// question about a modified document, the layout file, and the recovery
// copy of a modified document.
#include "AppData.h"
#include "Autosave.h"
#include "DialogRecorder.h"
#include "EditorMainWindow.h"
#include "Graph.h"
#include "LayoutFile.h"
#include "MaterialEditor.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "ProjectRootScope.h"
#include "RecoveryPrompt.h"
#include "TempFolder.h"
#include "jLog.h"

#include <QMessageBox>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

class EditorMainWindowTest : public ::testing::Test {
protected:
    void SetUp() override { MsgMngr::instance().clearQueue(); }
    void TearDown() override
    {
        MsgMngr::instance().clearQueue();
        AppData::get()->init();
    }

    // A window whose document was edited.
    std::unique_ptr<EditorMainWindow> editedWindow()
    {
        auto window = std::make_unique<EditorMainWindow>(layout);
        window->show();
        window->getEditor().getWindow()->getGraph()->create_node("Stage.PixelOutput", 100, 100);
        window->frame();
        EXPECT_TRUE(window->getEditor().isModified());
        return window;
    }

    TempFolder root;
    ProjectRootScope rootScope{root.path()};
    TempFolder config;
    LayoutFile layout{config / "material-editor/layout.cfg"};
    DialogRecorder dialogs;
    jLog::Capture log;
};

TEST_F(EditorMainWindowTest, ClosingAModifiedDocumentAsksAndCancelKeepsTheWindow)
{
    auto window = editedWindow();
    int answer = QMessageBox::Cancel;
    dialogs.dialogHandler = [&](QDialog&) { return answer; };
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(std::filesystem::exists(layout.getPath()));

    // Save with a never-saved document asks for a path; cancelling it keeps the window.
    answer = QMessageBox::Save;
    EXPECT_FALSE(window->close());
    EXPECT_EQ(dialogs.files.size(), 1u);

    // Saving to a chosen path writes the document, then closes.
    dialogs.filePaths = {window->getEditor().getWindow()->getDataPath() + "kept.mat"};
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(std::filesystem::exists(root / "kept.mat"));
    EXPECT_EQ(dialogs.dialogs, 3);
    EXPECT_NE(config.read("material-editor/layout.cfg").find("material_editor {"), std::string::npos);
}

TEST_F(EditorMainWindowTest, ABrokenLayoutFileGivesOneWarningAndTheDefaults)
{
    config.write("material-editor/layout.cfg", "material_editor {\n\tsize 10 \"20\n");
    layout.read();
    EXPECT_EQ(layout.getPackage().getPackageCount(), 0u);
    const jString warning = layout.takeWarning();
    EXPECT_EQ(warning.rfind("material-editor: the layout file \"" + layout.getPath() + "\" cannot be read (", 0), 0u);
    EXPECT_TRUE(layout.takeWarning().empty());

    config.write("material-editor/layout.cfg", "material_editor {\n\tpos 5 6\n\tsize 1000 700\n}\n");
    layout.read();
    EditorMainWindow window(layout);
    EXPECT_EQ(window.size(), QSize(1000, 700));
    // An unmodified document closes without asking.
    window.show();
    EXPECT_TRUE(window.close());
    EXPECT_EQ(dialogs.dialogs, 0);
}

// The recovery copy, with the timer off and the periods run by hand.
class AutosaveTest : public EditorMainWindowTest {
protected:
    void SetUp() override
    {
        EditorMainWindowTest::SetUp();
        setenv("XDG_STATE_HOME", state.path().c_str(), 1);
    }

    void TearDown() override
    {
        unsetenv("XDG_STATE_HOME");
        EditorMainWindowTest::TearDown();
    }

    // A copy of the edited untitled document, written and waited for.
    std::unique_ptr<EditorMainWindow> windowWithCopy()
    {
        auto window = editedWindow();
        window->enableAutosave(0);
        window->getAutosave()->tick();
        window->getAutosave()->getWriter().flush();
        EXPECT_TRUE(std::filesystem::exists(copy())) << copy();
        return window;
    }

    std::string copy() const { return state / "material-editor/recovery/untitled"; }
    void settle(EditorMainWindow& window) { window.getAutosave()->getWriter().flush(); }

    TempFolder state;
};

TEST_F(AutosaveTest, AModifiedDocumentIsCopiedAndNewRemovesTheCopy)
{
    auto window = windowWithCopy();
    EXPECT_NE(state.read("material-editor/recovery/untitled").find("type Stage.PixelOutput"), std::string::npos);
    window->getEditor().getWindow()->new_file();
    settle(*window);
    EXPECT_FALSE(std::filesystem::exists(copy()));
    window->getAutosave()->tick();
    settle(*window);
    EXPECT_FALSE(std::filesystem::exists(copy()));
}

TEST_F(AutosaveTest, SavingAndACleanQuitRemoveTheCopy)
{
    auto window = windowWithCopy();
    dialogs.filePaths.push_back(root / "saved.mat");
    window->getEditor().getWindow()->save();
    settle(*window);
    EXPECT_FALSE(std::filesystem::exists(copy()));

    window->getEditor().getWindow()->getGraph()->create_node("Stage.PixelInput", 300, 100);
    window->frame();
    window->getAutosave()->tick();
    settle(*window);
    const std::string named = state / "material-editor/recovery/saved.mat";
    ASSERT_TRUE(std::filesystem::exists(named));
    dialogs.dialogHandler = [](QDialog&) { return int(QMessageBox::Discard); };
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(std::filesystem::exists(named));
}

TEST_F(AutosaveTest, ACopyLeftByAProgramThatDiedIsRestoredAsTheModifiedDocument)
{
    windowWithCopy().reset();
    AppData::get()->init();
    EditorMainWindow window(layout);
    int asked = 0;
    dialogs.dialogHandler = [&](QDialog&) { return ++asked, int(QMessageBox::Yes); };
    ASSERT_TRUE(RecoveryPrompt::offer(window));
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.getEditor().isModified());
    EXPECT_EQ(AppData::get()->getPath(), "");
    EXPECT_EQ(AppData::get()->getNodeCount(), 1u);
    EXPECT_EQ(window.getEditor().getWindow()->getGraph()->getNodes().size(), 1u);
    EXPECT_FALSE(AppData::get()->getHistory().isAtSavedPoint());
    EXPECT_TRUE(std::filesystem::exists(copy()));
}

} // namespace
