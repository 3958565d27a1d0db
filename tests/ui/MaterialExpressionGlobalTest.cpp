// The global options panel: which rows and buttons it shows for a document,
// what its combos hold and write, the conversions' error texts, and the mask
// selector's outcome on the message bus.
#include "AppData.h"
#include "AttrWrap.h"
#include "ComboEntries.h"
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

using Texts = std::vector<jString>;

// Records what the panel posts on the bus, as "code text".
class Bus : public MsgNode {
public:
    Bus() { attach(); }
    void processMsg(UiMsg* msg) override { posted.push_back(std::to_string(msg->getCode()) + " " + msg->getText()); }
    Texts drain()
    {
        posted.clear();
        MsgMngr::instance().dispatch();
        return posted;
    }
    Texts posted;
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

    void build()
    {
        panel = std::make_unique<MaterialExpressionGlobal>(nullptr, &document, nullptr);
        EXPECT_TRUE(panel->create());
    }

    template <typename W>
    W* find(const char* name) const
    {
        return panel->findChild<W*>(name);
    }
    QComboBox* combo(const char* name) const { return find<QComboBox>(name); }

    template <typename W>
    static Texts texts(const QList<W*>& widgets)
    {
        Texts out;
        for (const W* w : widgets)
            out.push_back(w->text().toStdString());
        return out;
    }
    Texts buttons() const
    {
        return texts(panel->getSection()->getContent()->findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly));
    }
    Texts labels(const char* group) const { return texts(find<QGroupBox>(group)->findChildren<QLabel*>()); }

    // Runs the mask selector: "set all" when asked, then OK or Cancel.
    void select_mask(bool setAll, bool ok)
    {
        DialogRecorder recorder;
        recorder.dialogHandler = [&](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle().toStdString(), "Select");
            auto& selector = dynamic_cast<MaterialMaskBitSelect&>(dialog);
            if (setAll)
                selector.getContent()->setAll();
            ok ? selector.accept() : selector.reject();
            return dialog.result();
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
    const Texts own{"Locate in assets browser", "Show in file manager"};
    document.setParentPath("data/materials/glass.mat");
    build();
    EXPECT_EQ(panel->getSection()->getTitle(), "Global");
    EXPECT_EQ(buttons(), own) << "a plain material never shows the parent buttons";
    EXPECT_NE(find<QCheckBox>("use_file_name_as_material_name"), nullptr);
    find<QPushButton>("locate_in_assets_browser")->click();
    find<QPushButton>("show_in_explorer")->click();
    EXPECT_TRUE(bus.drain().empty()) << "an unsaved document has no folder to show";

    document.setInstance(true);
    document.setPath("data/materials/glass_tinted.mat");
    build();
    EXPECT_EQ(buttons(), (Texts{"Locate in assets browser", "Show in file manager",
                                "Locate parent material in assets browser", "Open parent material"}));
    EXPECT_EQ(find<QCheckBox>("use_file_name_as_material_name"), nullptr);
    for (const char* name : {"locate_in_assets_browser", "locate_parent_material_in_assets_browser",
                             "open_parent_material"})
        find<QPushButton>(name)->click();
    const jString root = jDir::getProjectRoot() + "/";
    EXPECT_EQ(bus.drain(), (Texts{"2 " + root + "data/materials/", "2 " + root + "data/materials/",
                                  "5 " + root + "data/materials/glass.mat"}));

    document.setParentPath("");
    build();
    EXPECT_EQ(buttons(), own);
    EXPECT_TRUE(log.empty()) << log.text();
}

TEST_F(GlobalPanelTest, OptionRowsAndTheTessellateRow)
{
    document.clear();
    build();
    Texts rows{"Mask", "Two sided", "Post scattering", "Post fog", "Post TAA",
               "Render order", "Depth offset", "Buffer mask", "Depth function"};
    EXPECT_EQ(labels("options"), rows);
    EXPECT_EQ(find<QGroupBox>("state"), nullptr) << "no states, no state group";

    document.getStates().push_back(state("Tessellate", MaterialState::Toggle, 0));
    build();
    rows.insert(rows.begin() + 5, "Tessellate");
    EXPECT_EQ(labels("options"), rows);
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
    EXPECT_EQ(labels("state"), (Texts{"EDITOR_MODE[D]", "LightModulation[P]", "Environment[S]"}));
    EXPECT_EQ(panel->find_state_label("Hidden"), nullptr);
    EXPECT_EQ(panel->find_state_label("Environment"), panel->getStateLabels()[2]);
    EXPECT_TRUE(find<QCheckBox>("state:EDITOR_MODE")->isChecked());
    QComboBox* modulation = combo("state:LightModulation");
    EXPECT_EQ(comboEntries(modulation), (Texts{"Lit", "Unlit", "Diffuse Only"}));
    EXPECT_EQ(modulation->currentIndex(), 2);
    auto* environment = find<QLineEdit>("state:Environment");
    EXPECT_EQ(environment->text().toStdString(), "3");

    modulation->setCurrentIndex(1);
    environment->setText("300");
    emit environment->editingFinished();
    EXPECT_EQ(document.getStates()[2].value, 1);
    EXPECT_EQ(document.getStates()[3].value, 3) << "an int state holds 0 to 255";
    EXPECT_EQ(log.lines(), (Texts{"warning: UIIntBase::commit: \"300\" is not a whole number from 0 to 255, the value stays 3"}));
    EXPECT_EQ(bus.drain(), (Texts{"30 "}));
    ASSERT_TRUE(document.undo()) << "a state edit is a step of the document's history";
    EXPECT_EQ(document.getStates()[2].value, 2);

    document.getStates().clear();
    find<QCheckBox>("state:EDITOR_MODE")->click();
    modulation->setCurrentIndex(0);
    EXPECT_TRUE(bus.drain().empty()) << "editors of states that are gone do nothing";
}

TEST_F(GlobalPanelTest, DefaultsAfterNewAndOfAFreshDocument)
{
    build();
    EXPECT_EQ(combo("src")->currentText().toStdString() + combo("dst")->currentText().toStdString(), "OneZero");

    document.clear();
    build();
    Texts shown;
    for (const char* name : {"render_two_sided", "post_scattering", "post_fog", "post_taa"})
        shown.push_back(find<QCheckBox>(name)->isChecked() ? "checked" : "clear");
    for (const char* name : {"mask", "render_order", "depth_offset"})
        shown.push_back(find<QLineEdit>(name)->text().toStdString());
    for (const char* name : {"buffer_mask", "depth_func", "blend_op", "src", "dst"})
        shown.push_back(combo(name)->currentText().toStdString());
    EXPECT_EQ(shown, (Texts{"clear", "clear", "clear", "clear", "0", "0", "0", "All", "LessEqaul", "Add", "None",
                            "None"}));
    EXPECT_TRUE(find<QLineEdit>("mask")->isReadOnly());
    EXPECT_EQ(labels("blend"), (Texts{"Operation", "Source", "Destination"}));
}

TEST_F(GlobalPanelTest, CombosListTheirEntriesInOrderAndWriteKeywords)
{
    document.setDepthFunc("DEPTH_LEQUAL");
    build();
    QComboBox* depth = combo("depth_func");
    EXPECT_EQ(comboEntries(depth),
              (Texts{"LessEqaul", "Always", "Less", "Eqaul", "GreaterEqaul", "Greater", "NotEqaul", "Never"}));
    EXPECT_EQ(depth->currentIndex(), 0);
    EXPECT_EQ(comboEntries(combo("buffer_mask")), (Texts{"All", "Color", "Depth"}));
    EXPECT_EQ(comboEntries(combo("blend_op")), (Texts{"Add", "Sub", "ReverseSub", "Min", "Max"}));
    const Texts factors{"None", "One", "Zero", "SrcColor", "OneMinusSrcColor", "SrcAlpha",
        "OneMinusSrcAlpha", "DstColor", "OneMinusDstColor", "DstAlpha", "OneMinusDstAlpha"};
    EXPECT_EQ(comboEntries(combo("src")), factors);
    EXPECT_EQ(comboEntries(combo("dst")), factors);

    depth->setCurrentIndex(4);
    combo("dst")->setCurrentIndex(7);
    auto* offset = find<QLineEdit>("depth_offset");
    offset->setText("-5");
    emit offset->editingFinished();
    EXPECT_EQ(document.getDepthFunc() + " " + document.getBlendDst(), "DEPTH_GEQUAL dest_color");
    EXPECT_EQ(offset->text().toStdString(), "0");
    EXPECT_EQ(bus.drain(), (Texts{"30 ", "30 "})) << "an offset that stays 0 is no edit";

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
              (Texts{"error: MaterialExpressionGlobal::cvt_combo_to_buffer_mask:Unknown buffer mask \"Colour\"",
                     "error: MaterialExpressionGlobal::cvt_combo_to_depth_func:Unknown depth function \"LessEqual\"",
                     "error: MaterialExpressionGlobal::cvt_combo_to_blend_op:Unknown blend op \"add\"",
                     "error: MaterialExpressionGlobal::cvt_combo_to_blend_func:Unknown blend type \"DestColor\""}));
}

TEST_F(GlobalPanelTest, MaskSelectorPostsOnlyAnAcceptedNewMask)
{
    document.setMask(0x40000005);
    build();
    select_mask(true, false);
    select_mask(false, true);
    EXPECT_EQ(document.getMask(), 0x40000005);
    EXPECT_TRUE(bus.drain().empty()) << "cancel and the same mask post nothing";

    select_mask(true, true);
    EXPECT_EQ(document.getMask(), 0x40FFFFFF);
    EXPECT_EQ(find<QLineEdit>("mask")->text().toStdString(), std::to_string(0x40FFFFFF));
    EXPECT_EQ(bus.drain(), (Texts{"30 "}));

    document.setMask(int32_t(0x80000001u));
    build();
    EXPECT_EQ(find<QLineEdit>("mask")->text().toStdString(), "2147483649");
}

} // namespace
