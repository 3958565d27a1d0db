// The editor window's commands, title, save button, layout and notification
// handling, on a project root of its own (the samples are read from the
// bundled root; everything written goes to the temporary project root).
#include "Block.h"
#include "Button.h"
#include "ButtonBar.h"
#include "DataNode.h"
#include "EditorWindowFixture.h"
#include "GraphScrollBox.h"
#include "MsgNode.h"
#include "Package.h"
#include "UIEventKey.h"
#include "UiMsg.h"

#include <filesystem>

namespace {

constexpr const char* kPlain = "data/materials/metal_gold.mat";
constexpr const char* kInstance = "data/materials/glass_tinted.mat";
constexpr const char* kInstanceParent = "data/materials/glass.mat";

class PostedCodes : public MsgNode {
public:
    void processMsg(UiMsg* msg) override { posted.push_back({msg->getCode(), msg->getText()}); }
    std::vector<std::pair<int, jString>> posted;
};

class MaterialEditorWindowTest : public EditorWindowTest {
protected:
    void SetUp() override
    {
        EditorWindowTest::SetUp();
        codes.attach();
        log.clear();
    }

    void TearDown() override
    {
        codes.detach();
        EditorWindowTest::TearDown();
    }

    void open(const char* relative)
    {
        EditorWindowTest::open(relative);
        ASSERT_EQ(AppData::get()->getPath(), relative);
        codes.posted.clear();
    }

    void post(int code)
    {
        MsgMngr::instance().post(code);
        dispatch();
    }

    bool saveButtonActive()
    {
        window->update(0.0f);
        Button* save = window->getToolbar()->getSaveButton();
        EXPECT_EQ(save->getIconColour(), save->isButtonEnabled() ? Button::kIconColour : Button::kDisabledIconColour);
        return save->isButtonEnabled();
    }

    PostedCodes codes;
};

TEST_F(MaterialEditorWindowTest, TitleOfANewAnEditedAPlainAndAnInstanceDocument)
{
    EXPECT_EQ(host.title, "MaterialEditor");
    post(7);
    EXPECT_EQ(host.title, "MaterialEditor*");

    open(kPlain);
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor");
    open(kInstance);
    EXPECT_EQ(host.title, jString(kInstance) + "[" + kInstanceParent + "] - MaterialEditor[Instance]");
    post(27);
    EXPECT_EQ(host.title, jString(kInstance) + "[" + kInstanceParent + "] - MaterialEditor[Instance]*");

    // Longer than the 256-character formatting buffer: nothing is cut.
    const jString longPath = "data/" + jString(300, 'a') + ".mat";
    AppData::get()->setPath(longPath);
    AppData::get()->setParentPath(jString());
    AppData::get()->setInstance(false);
    window->update_window_name();
    EXPECT_EQ(host.title, longPath + " - MaterialEditor*");
}

TEST_F(MaterialEditorWindowTest, SaveButtonIsGreyExactlyWhileUnmodified)
{
    EXPECT_FALSE(saveButtonActive());
    open(kPlain);
    EXPECT_FALSE(saveButtonActive());
    MsgMngr::instance().postPtr(12, graph->getNodes().front());
    dispatch();
    EXPECT_TRUE(saveButtonActive());
    EXPECT_TRUE(saveButtonActive());
    window->save();
    EXPECT_FALSE(saveButtonActive());
    EXPECT_TRUE(std::filesystem::exists(root / kPlain));
}

TEST_F(MaterialEditorWindowTest, SavingANeverSavedDocumentFollowsThePathRules)
{
    graph->create_node("Stage.PixelOutput", 100, 100);
    dispatch();
    ASSERT_TRUE(window->isModified());

    dialogs.filePaths = {"/elsewhere/x.mat", window->getDataPath() + "x.mat", window->getDataPath() + "sub/y"};
    window->save();
    EXPECT_EQ(log.lines(), std::vector<jString>{
        "warning: MaterialEditor::cb_menu_file_save: Invalid path \"/elsewhere/x.mat\""});
    EXPECT_TRUE(window->isModified());
    EXPECT_EQ(AppData::get()->getPath(), "");

    window->save();
    EXPECT_EQ(AppData::get()->getPath(), "x.mat");
    EXPECT_TRUE(std::filesystem::exists(root / "x.mat"));
    EXPECT_EQ(host.title, "x.mat - MaterialEditor");

    // Save as always asks; a name without the extension gets it.
    window->save_as();
    EXPECT_EQ(AppData::get()->getPath(), "sub/y.mat");
    EXPECT_TRUE(std::filesystem::exists(root / "sub/y.mat"));
    const AskedFile asked{DialogFileEx::Mode::Save, "Save", ".mat", window->getDataPath()};
    EXPECT_EQ(dialogs.files, std::vector<AskedFile>(3, asked));
}

TEST_F(MaterialEditorWindowTest, CtrlNEmptiesAModifiedDocumentWithoutAsking)
{
    open(kPlain);
    post(19);
    ASSERT_TRUE(window->isModified());
    EXPECT_TRUE(window->checkShortcut(UIEventKey(110, UIEventKey::kCtrl)));
    EXPECT_EQ(AppData::get()->getNodeCount(), 0u);
    EXPECT_TRUE(graph->getNodes().empty());
    EXPECT_FALSE(window->isModified());
    EXPECT_EQ(host.title, "MaterialEditor");
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_TRUE(dialogs.files.empty());
    EXPECT_FALSE(window->checkShortcut(UIEventKey(110, 0)));
}

TEST_F(MaterialEditorWindowTest, CompileOfAnEmptyDocumentDoesNothing)
{
    EXPECT_FALSE(window->compile());
    EXPECT_FALSE(window->checkShortcut(UIEventKey(UIEventKey::kF7, UIEventKey::kCtrl)));
    dispatch();
    EXPECT_TRUE(codes.posted.empty());
    EXPECT_TRUE(log.empty());
}

TEST_F(MaterialEditorWindowTest, CompileSavesAModifiedDocumentFirstAndShowsTheMaterial)
{
    open(kPlain);
    post(14);
    ASSERT_TRUE(window->isModified());
    codes.posted.clear();
    int plainCalls = 0;
    jString eventName;
    window->getOnCompiled().push_back([&] { ++plainCalls; });
    window->getOnCompiledEvent().push_back([&](const UIEvent* event, QWidget*) {
        eventName = static_cast<const MaterialCompiledEvent*>(event)->name;
    });

    // F7 is the apply button's shortcut.
    EXPECT_TRUE(window->checkShortcut(UIEventKey(UIEventKey::kF7, 0)));
    dispatch();
    EXPECT_FALSE(window->isModified());
    EXPECT_EQ(host.title, "data/materials/metal_gold.mat - MaterialEditor");
    EXPECT_TRUE(std::filesystem::exists(root / kPlain));
    EXPECT_EQ(window->getPreviewMaterial(), kPlain);
    EXPECT_EQ(plainCalls, 1);
    EXPECT_EQ(eventName, kPlain);
    EXPECT_EQ(codes.posted, (std::vector<std::pair<int, jString>>{{32, kPlain}}));
}

TEST_F(MaterialEditorWindowTest, InstanceRefusalsAndTheInstanceItMakes)
{
    EXPECT_FALSE(window->instance());
    open(kInstance);
    post(14);
    EXPECT_FALSE(window->instance());
    window->clear();
    open(kInstance);
    EXPECT_FALSE(window->instance());
    EXPECT_EQ(dialogs.messages, (std::vector<AskedMessage>{
        {"Current scene is empty.", "Error"},
        {"You should save current scene first.", "Warning"},
        {"Instance can not generate instance.", "Warning"}}));

    open(kPlain);
    EXPECT_TRUE(window->instance());
    dispatch();
    EXPECT_TRUE(AppData::get()->isInstance());
    EXPECT_EQ(AppData::get()->getParentPath(), kPlain);
    EXPECT_EQ(AppData::get()->getPath(), "");
    EXPECT_EQ(host.title, "MaterialEditor[Instance]*");
    EXPECT_EQ(dialogs.messages.size(), 3u);
}

TEST_F(MaterialEditorWindowTest, LoadRefusesPathsOutsideTheRootAndOtherFiles)
{
    EXPECT_FALSE(window->load("/elsewhere/a.mat"));
    EXPECT_FALSE(window->load(window->getDataPath() + "data/readme.txt"));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
        "warning: MaterialEditor::load: Invalid path \"/elsewhere/a.mat\"",
        "warning: MaterialEditor::load: Invalid file \"" + window->getDataPath() + "data/readme.txt\""}));
    EXPECT_EQ(window->getLastDir(), window->getDataPath());
}

TEST_F(MaterialEditorWindowTest, Message5OpensEditableFilesOnly)
{
    root.write("data/compiled.mat", "materials {\n\tmaterial {\n\t\tname compiled\n\t}\n}\n");
    MsgMngr::instance().postStr(5, "data/compiled.mat");
    dispatch();
    EXPECT_EQ(log.lines(), std::vector<jString>{"warning: \"data/compiled.mat\" can not be edit"});
    EXPECT_EQ(AppData::get()->getPath(), "");

    MsgMngr::instance().postStr(5, kPlain);
    dispatch();
    EXPECT_EQ(AppData::get()->getPath(), kPlain);
    EXPECT_EQ(graph->getNodes().size(), AppData::get()->getNodeCount());
    EXPECT_EQ(window->getLastDir(), "data/materials");
}

TEST_F(MaterialEditorWindowTest, Message13DropsTheStatesOnlyWithoutAnOutputNode)
{
    open(kPlain);
    AppData& document = *AppData::get();
    ASSERT_FALSE(document.getStates().empty());
    auto nodeOfUsage = [&](bool output) {
        for (GraphNode* node : graph->getNodes())
            if (node->getData()->getBlock()->isPixelEnd() == output)
                return node;
        return static_cast<GraphNode*>(nullptr);
    };
    graph->removeNode(nodeOfUsage(false));
    EXPECT_FALSE(document.getStates().empty());
    EXPECT_TRUE(window->isModified());
    graph->removeNode(nodeOfUsage(true));
    EXPECT_TRUE(document.getStates().empty());
}

TEST_F(MaterialEditorWindowTest, Message28ResetsTheStatesToTheTemplate)
{
    open(kPlain);
    AppData& document = *AppData::get();
    for (MaterialState& state : document.getStates())
        state.value = 2;
    post(28);
    EXPECT_EQ(document.findState("EDITOR_MODE")->value, 0);
    EXPECT_EQ(document.findState("LightModulation")->value, 0);
    EXPECT_EQ(document.findState("Environment")->value, 3);
    EXPECT_TRUE(window->isModified());
}

TEST_F(MaterialEditorWindowTest, NotificationsThatMarkTheDocument)
{
    post(15);
    EXPECT_TRUE(window->isNeedReloadTexture());
    EXPECT_TRUE(window->isModified());
    window->clear();
    post(26);
    post(8);
    EXPECT_FALSE(window->isModified());

    MsgMngr::instance().postStr(31, "\"Stage.PixelOutput\" is num limited to 1");
    dispatch();
    const AskedMessage notice{"\"Stage.PixelOutput\" is num limited to 1", "Warning"};
    EXPECT_EQ(dialogs.messages, std::vector<AskedMessage>{notice});

    post(10);
    EXPECT_EQ(log.lines(), std::vector<jString>{"error: MaterialEditor::processMsg:msg->getType() == UiMsgPTR"});
}

TEST_F(MaterialEditorWindowTest, LayoutIsReadAndWrittenInItsOwnPackage)
{
    Package layout;
    Package* mine = layout.addPackage("material_editor");
    mine->addItem("pos", jVector<jString>{"40", "30"});
    mine->addItem("size", jVector<jString>{"1200", "700"});
    window->readLayout(&layout);
    EXPECT_EQ(host.calls, (std::vector<jString>{"size", "pos"}));
    EXPECT_EQ(host.width, 1200);
    EXPECT_EQ(host.x, 40);

    host.x = 7;
    host.width = 1000;
    window->onUnload();
    EXPECT_EQ(layout.getPackageCount(), 1u);
    EXPECT_EQ(mine->findItem("pos")->getInt(0), 7);
    EXPECT_EQ(mine->findItem("size")->getInt(0), 1000);
    EXPECT_EQ(mine->findItem("size")->getInt(1), 700);
}

} // namespace
