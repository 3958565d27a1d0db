// The global options panel: which rows and buttons it shows for a document,
// what its combos hold and write, the conversions' error texts, and the mask
// selector's outcome on the message bus.
#include "AppData.h"
#include "AttrWrap.h"
#include "DialogRecorder.h"
#include "MaskBitContent.h"
#include "MaterialExpressionGlobal.h"
#include "MaterialMaskBitSelect.h"
#include "MsgMngr.h"
#include "MsgNode.h"
#include "UIEnumRef.h"
#include "UiMsg.h"
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

struct Posted {
    int code;
    jString text;
    bool operator==(const Posted&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Posted& p)
{
    return out << "{" << p.code << ", \"" << p.text << "\"}";
}

class Bus : public MsgNode {
public:
    Bus() { attach(); }
    void processMsg(UiMsg* msg) override { posted.push_back({msg->getCode(), msg->getText()}); }
    std::vector<Posted> drain()
    {
        posted.clear();
        MsgMngr::instance().dispatch();
        return posted;
    }
    std::vector<Posted> posted;
};

MaterialState state(const char* name, int32_t type, uint8_t value, int32_t source = MaterialState::FromDocument)
{
    MaterialState s;
    s.name = name;
    s.type = type;
    s.value = value;
    s.source = source;
    if (type == MaterialState::Switch)
        s.items = {"Lit", "Unlit", "Diffuse Only"};
    return s;
}

class GlobalPanelTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        trReload();
    }

    void SetUp() override { MsgMngr::instance().clearQueue(); }

    MaterialExpressionGlobal& build()
    {
        panel = std::make_unique<MaterialExpressionGlobal>(nullptr, &document, nullptr);
        EXPECT_TRUE(panel->create());
        return *panel;
    }

    template <typename W>
    W* find(const char* name) const
    {
        return panel->findChild<W*>(name);
    }
    QComboBox* combo(const char* name) const { return find<QComboBox>(name); }

    std::vector<jString> buttons() const
    {
        std::vector<jString> texts;
        for (const QPushButton* b : panel->getSection()->getContent()->findChildren<QPushButton*>(
                 QString(), Qt::FindDirectChildrenOnly))
            texts.push_back(b->text().toStdString());
        return texts;
    }

    std::vector<jString> labels(const char* group) const
    {
        std::vector<jString> texts;
        for (const QLabel* l : find<QGroupBox>(group)->findChildren<QLabel*>())
            texts.push_back(l->text().toStdString());
        return texts;
    }

    static std::vector<jString> entries(const QComboBox* c)
    {
        std::vector<jString> texts;
        for (int i = 0; i < c->count(); ++i)
            texts.push_back(c->itemText(i).toStdString());
        return texts;
    }

    // Runs the mask selector; answer works the dialog and returns its result.
    void select_mask(std::function<int(MaterialMaskBitSelect&)> answer)
    {
        DialogRecorder recorder;
        recorder.dialogHandler = [&](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle().toStdString(), "Select");
            return answer(dynamic_cast<MaterialMaskBitSelect&>(dialog));
        };
        find<QPushButton>("select")->click();
        EXPECT_EQ(recorder.dialogs, 1);
    }

    AppData document;
    std::unique_ptr<MaterialExpressionGlobal> panel;
    Bus bus;
    jLog::Capture log;
};

TEST_F(GlobalPanelTest, ButtonsAndNameRowFollowTheInstanceFlagAndParentPath)
{
    const std::vector<jString> own{"Locate in assets browser", "Show in file manager"};
    build();
    EXPECT_EQ(buttons(), own);
    EXPECT_NE(find<QCheckBox>("use_file_name_as_material_name"), nullptr);

    document.setParentPath("data/materials/metal_gold.mat");
    build();
    EXPECT_EQ(buttons(), own) << "a plain material never shows the parent buttons";

    document.setInstance(true);
    build();
    EXPECT_EQ(buttons(), (std::vector<jString>{"Locate in assets browser", "Show in file manager",
                                               "Locate parent material in assets browser", "Open parent material"}));
    EXPECT_EQ(find<QCheckBox>("use_file_name_as_material_name"), nullptr);

    document.setParentPath("");
    build();
    EXPECT_EQ(buttons(), own);
    EXPECT_EQ(panel->getSection()->getTitle(), "Global");
}

TEST_F(GlobalPanelTest, ButtonsPostTheFoldersAndTheParentToOpen)
{
    document.setPath("data/materials/glass_tinted.mat");
    document.setParentPath("data/materials/glass.mat");
    document.setInstance(true);
    build();
    const jString root = jDir::getProjectRoot() + "/";
    find<QPushButton>("locate_in_assets_browser")->click();
    find<QPushButton>("locate_parent_material_in_assets_browser")->click();
    find<QPushButton>("open_parent_material")->click();
    EXPECT_EQ(bus.drain(), (std::vector<Posted>{{2, root + "data/materials/"},
                                               {2, root + "data/materials/"},
                                               {5, root + "data/materials/glass.mat"}}));

    document.clear();
    document.setParentPath("");
    build();
    find<QPushButton>("locate_in_assets_browser")->click();
    find<QPushButton>("show_in_explorer")->click();
    EXPECT_TRUE(bus.drain().empty()) << "an unsaved document has no folder to show";
    EXPECT_TRUE(log.empty()) << log.text();
}

TEST_F(GlobalPanelTest, OptionRowsAndTheTessellateRow)
{
    document.clear();
    build();
    const std::vector<jString> rows{"Mask",         "Two sided",    "Post scattering", "Post fog",      "Post TAA",
                                    "Render order", "Depth offset", "Buffer mask",     "Depth function"};
    EXPECT_EQ(labels("options"), rows);
    EXPECT_EQ(find<QGroupBox>("state"), nullptr) << "no states, no state group";

    document.getStates().push_back(state("Tessellate", MaterialState::Toggle, 0));
    build();
    std::vector<jString> withTessellate = rows;
    withTessellate.insert(withTessellate.begin() + 5, "Tessellate");
    EXPECT_EQ(labels("options"), withTessellate);
    find<QCheckBox>("tessellate")->click();
    EXPECT_TRUE(document.isTessellate());
}

TEST_F(GlobalPanelTest, StateRowsShowKindMarkersAndEditTheirState)
{
    document.getStates() = {state("EDITOR_MODE", MaterialState::Toggle, 1, MaterialState::FromTemplate),
                            state("Hidden", MaterialState::Toggle, 0),
                            state("LightModulation", MaterialState::Switch, 2, MaterialState::FromParent),
                            state("Environment", MaterialState::Int, 3)};
    document.getStates()[1].editable = false;
    build();
    EXPECT_EQ(labels("state"),
              (std::vector<jString>{"EDITOR_MODE[D]", "LightModulation[P]", "Environment[S]"}));
    EXPECT_EQ(panel->find_state_label("Hidden"), nullptr);
    ASSERT_NE(panel->find_state_label("Environment"), nullptr);
    EXPECT_EQ(panel->find_state_label("Environment")->text().toStdString(), "Environment[S]");

    EXPECT_TRUE(find<QCheckBox>("state:EDITOR_MODE")->isChecked());
    QComboBox* modulation = combo("state:LightModulation");
    EXPECT_EQ(entries(modulation), (std::vector<jString>{"Lit", "Unlit", "Diffuse Only"}));
    EXPECT_EQ(modulation->currentIndex(), 2);
    auto* environment = find<QLineEdit>("state:Environment");
    EXPECT_EQ(environment->text().toStdString(), "3");

    modulation->setCurrentIndex(1);
    environment->setText("300");
    emit environment->editingFinished();
    EXPECT_EQ(document.getStates()[2].value, 1);
    EXPECT_EQ(document.getStates()[3].value, 3) << "an int state holds 0 to 255";
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "warning: UIIntBase::commit: \"300\" is not a whole number, the value stays 3"}));
    EXPECT_EQ(bus.drain(), (std::vector<Posted>{{30, ""}}));

    document.getStates().clear();
    find<QCheckBox>("state:EDITOR_MODE")->click();
    modulation->setCurrentIndex(0);
    EXPECT_TRUE(bus.drain().empty()) << "editors of states that are gone do nothing";
}

TEST_F(GlobalPanelTest, DefaultsAfterNewAndOfAFreshDocument)
{
    build();
    EXPECT_EQ(combo("src")->currentText().toStdString(), "One");
    EXPECT_EQ(combo("dst")->currentText().toStdString(), "Zero");

    document.clear();
    build();
    for (const char* name : {"render_two_sided", "post_scattering", "post_fog", "post_taa"})
        EXPECT_FALSE(find<QCheckBox>(name)->isChecked()) << name;
    for (const char* name : {"mask", "render_order", "depth_offset"})
        EXPECT_EQ(find<QLineEdit>(name)->text().toStdString(), "0") << name;
    EXPECT_TRUE(find<QLineEdit>("mask")->isReadOnly());
    std::vector<jString> shown;
    for (const char* name : {"buffer_mask", "depth_func", "blend_op", "src", "dst"})
        shown.push_back(combo(name)->currentText().toStdString());
    EXPECT_EQ(shown, (std::vector<jString>{"All", "LessEqaul", "Add", "None", "None"}));
    EXPECT_EQ(labels("blend"), (std::vector<jString>{"Operation", "Source", "Destination"}));
}

TEST_F(GlobalPanelTest, CombosListTheirEntriesInOrderAndWriteKeywords)
{
    document.setDepthFunc("DEPTH_LEQUAL");
    build();
    QComboBox* depth = combo("depth_func");
    EXPECT_EQ(entries(depth), (std::vector<jString>{"LessEqaul", "Always", "Less", "Eqaul", "GreaterEqaul",
                                                    "Greater", "NotEqaul", "Never"}));
    EXPECT_EQ(depth->currentIndex(), 0);
    EXPECT_EQ(entries(combo("buffer_mask")), (std::vector<jString>{"All", "Color", "Depth"}));
    EXPECT_EQ(entries(combo("blend_op")), (std::vector<jString>{"Add", "Sub", "ReverseSub", "Min", "Max"}));
    const std::vector<jString> factors{"None",     "One",      "Zero",     "SrcColor",
                                       "OneMinusSrcColor", "SrcAlpha", "OneMinusSrcAlpha", "DstColor",
                                       "OneMinusDstColor", "DstAlpha", "OneMinusDstAlpha"};
    EXPECT_EQ(entries(combo("src")), factors);
    EXPECT_EQ(entries(combo("dst")), factors);

    depth->setCurrentIndex(4);
    combo("buffer_mask")->setCurrentIndex(2);
    combo("blend_op")->setCurrentIndex(2);
    combo("src")->setCurrentIndex(7);
    combo("dst")->setCurrentIndex(10);
    EXPECT_EQ(document.getDepthFunc(), "DEPTH_GEQUAL");
    EXPECT_EQ(document.getBufferMask(), "BUFFER_DEPTH");
    EXPECT_EQ(document.getBlendOp(), "reverse_sub");
    EXPECT_EQ(document.getBlendSrc(), "dest_color");
    EXPECT_EQ(document.getBlendDst(), "one_minus_dest_alpha");
    EXPECT_EQ(bus.drain().size(), 5u);

    // An entry that no table knows gets no keyword and never reaches the document.
    auto* typed = dynamic_cast<UIEnumRef<jString>*>(depth);
    ASSERT_NE(typed, nullptr);
    typed->addEntry("LessEqual", MaterialExpressionGlobal::cvt_combo_to_depth_func("LessEqual"));
    depth->setCurrentIndex(8);
    EXPECT_EQ(document.getDepthFunc(), "DEPTH_GEQUAL");
    EXPECT_TRUE(bus.drain().empty());
}

TEST_F(GlobalPanelTest, ConversionsLogUnknownEntries)
{
    EXPECT_EQ(MaterialExpressionGlobal::cvt_combo_to_blend_func("DstAlpha"), "dest_alpha");
    EXPECT_EQ(MaterialExpressionGlobal::cvt_combo_to_buffer_mask("Colour"), "");
    EXPECT_EQ(MaterialExpressionGlobal::cvt_combo_to_depth_func("LessEqual"), "");
    EXPECT_EQ(MaterialExpressionGlobal::cvt_combo_to_blend_op("add"), "");
    EXPECT_EQ(MaterialExpressionGlobal::cvt_combo_to_blend_func("DestColor"), "");
    EXPECT_EQ(log.lines(),
              (std::vector<jString>{
                  "error: MaterialExpressionGlobal::cvt_combo_to_buffer_mask:Unknown buffer mask \"Colour\"",
                  "error: MaterialExpressionGlobal::cvt_combo_to_depth_func:Unknown depth function \"LessEqual\"",
                  "error: MaterialExpressionGlobal::cvt_combo_to_blend_op:Unknown blend op \"add\"",
                  "error: MaterialExpressionGlobal::cvt_combo_to_blend_func:Unknown blend type \"DestColor\""}));
}

TEST_F(GlobalPanelTest, MaskSelectorPostsOnlyAnAcceptedNewMask)
{
    document.setMask(0x40000005);
    build();
    select_mask([](MaterialMaskBitSelect& dialog) {
        dialog.getContent()->setAll();
        dialog.reject();
        return int(QDialog::Rejected);
    });
    select_mask([](MaterialMaskBitSelect& dialog) {
        dialog.accept();
        return int(QDialog::Accepted);
    });
    EXPECT_EQ(document.getMask(), 0x40000005);
    EXPECT_TRUE(bus.drain().empty()) << "cancel and the same mask post nothing";

    select_mask([](MaterialMaskBitSelect& dialog) {
        dialog.getContent()->setAll();
        dialog.accept();
        return int(QDialog::Accepted);
    });
    EXPECT_EQ(document.getMask(), 0x40FFFFFF);
    EXPECT_EQ(find<QLineEdit>("mask")->text().toStdString(), std::to_string(0x40FFFFFF));
    EXPECT_EQ(bus.drain(), (std::vector<Posted>{{30, ""}}));
}

TEST_F(GlobalPanelTest, OptionEditsWriteTheDocumentAndReportOnce)
{
    document.clear();
    build();
    find<QCheckBox>("post_fog")->click();
    auto* offset = find<QLineEdit>("depth_offset");
    offset->setText("-5");
    emit offset->editingFinished();
    auto* order = find<QLineEdit>("render_order");
    order->setText("120");
    emit order->editingFinished();
    EXPECT_TRUE(document.isPostFog());
    EXPECT_EQ(document.getDepthOffset(), 0);
    EXPECT_EQ(offset->text().toStdString(), "0");
    EXPECT_EQ(document.getRenderOrder(), 120);
    EXPECT_EQ(bus.drain(), (std::vector<Posted>{{30, ""}, {30, ""}})) << "a negative offset stays 0: no change";
}

} // namespace

