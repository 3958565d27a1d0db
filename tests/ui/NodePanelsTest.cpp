// The property panels of the parameters column: which panel a node gets,
// refresh in place, the rows of each panel, texture drops, refused input and
// the modified mark, on a block library of the test's own.
#include "AssetDrag.h"
#include "AttrWrap.h"
#include "BlockBrowser.h"
#include "ComboEntries.h"
#include "DataSampler.h"
#include "DataNode.h"
#include "EditorWindowFixture.h"
#include "GraphJoint.h"
#include "METexture2D.h"
#include "MaterialManager.h"
#include "UIBool.h"
#include "UIColorSwatch.h"
#include "UIFloatField.h"
#include "UISpriteDrop.h"
#include "tr.h"

#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMimeData>
#include <QTest>

namespace {

constexpr const char* kBlocks = R"(blocks {
	version 1
	block {
		type Stage.Out; usage ps_end
		input_path { name color; type float4 }
	}
	block {
		type Tex.Plain; texture2D true
		variable {
			text Texture; name tex; type texture2D; edit true; default data/core/textures/common/white.dds
			sub { name tiling; text Tiling; type float; edit true; default "1,1" }
			sub { name hidden; type float; default 0 }
		}
		output_path { name rgba; type float4 }
	}
	block {
		type Tex.Fixed; texture2D true
		variable { text Texture; name tex; type texture2D; default data/core/textures/common/white.dds }
	}
	block { type Tex.Cube; textureCube true; constant true }
	block { type Const.Both; constant true; texture3D true }
	block {
		type Const.Value; constant true; data_type float
		variable { text Value; name value; type float; edit true; default 0.5 }
	}
	block {
		type Const.Color; constant true; data_type float4
		variable { text Color; name color; type float; default "1,0.5,0,1" }
	}
	block {
		type Misc.Mixed
		variable { name flag; type bool; default true }
		variable {
			text Mode; name mode; type string; default b
			sub { name a; text First }
			sub { name b; text Second }
		}
		variable { text Label; name label; type string; default hello }
	}
}
)";

class NodePanelsTest : public EditorWindowTest {
protected:
    void prepareRoot() override
    {
        root.write("data/core/materials/generate/block.cfg", kBlocks);
        AppData::get()->reloadBlocks();
        trReload();
    }

    void TearDown() override
    {
        EditorWindowTest::TearDown();
        AppData::get()->setInstance(false);
        AppData::get()->reloadBlocks();
        AppData::get()->init();
        trReload();
    }

    GraphNode* add(const char* type) { return graph->create_node(type, 100, 100); }

    MaterialExpression* select(GraphNode* node)
    {
        graph->selectNode(node);
        dispatch();
        return panel();
    }

    MaterialExpression* panel() const
    {
        EXPECT_EQ(window->getExpressions().size(), 1u);
        return window->getExpressions().empty() ? nullptr : window->getExpressions().front();
    }

    // The panel's widgets of a class, in creation order (the value widgets
    // have no meta-object of their own, so findChildren cannot tell them).
    template <typename T>
    static std::vector<T*> all(const MaterialExpression* shown)
    {
        std::vector<T*> result;
        for (QWidget* widget : shown->findChildren<QWidget*>())
            if (auto* wanted = dynamic_cast<T*>(widget))
                result.push_back(wanted);
        return result;
    }

    static std::vector<jString> titles(const MaterialExpression* shown)
    {
        std::vector<jString> result;
        for (const AttrWrap* wrap : all<AttrWrap>(shown))
            result.push_back(wrap->getTitle());
        return result;
    }

    // The field of the first row labelled label, in any section.
    template <typename T = QWidget>
    static T* field(const MaterialExpression* shown, const char* label)
    {
        for (const QGridLayout* grid : shown->findChildren<QGridLayout*>())
            for (int row = 0; row < grid->rowCount(); ++row) {
                const QLayoutItem* name = grid->itemAtPosition(row, 0);
                const QLayoutItem* value = grid->itemAtPosition(row, 1);
                const auto* text = name ? qobject_cast<QLabel*>(name->widget()) : nullptr;
                if (text && value && text->text() == label)
                    return dynamic_cast<T*>(value->widget());
            }
        return nullptr;
    }

    static void type(QLineEdit* edit, const char* text)
    {
        edit->setText(text);
        QTest::keyClick(edit, Qt::Key_Return);
    }

};

TEST_F(NodePanelsTest, PanelByBlockFlagInTableOrder)
{
    struct Case {
        const char* type;
        int kind;
    };
    for (const Case& c : {Case{"Tex.Plain", MaterialExpression::KIND_TEXTURE_2D},
                          Case{"Tex.Cube", MaterialExpression::KIND_TEXTURE_CUBE},
                          Case{"Const.Both", MaterialExpression::KIND_TEXTURE_3D},
                          Case{"Const.Value", MaterialExpression::KIND_CONSTANT},
                          Case{"Misc.Mixed", MaterialExpression::KIND_BASE}}) {
        const MaterialExpression* shown = select(add(c.type));
        ASSERT_NE(shown, nullptr) << c.type;
        EXPECT_EQ(shown->getKind(), c.kind) << c.type;
    }
    EXPECT_EQ(select(nullptr)->getKind(), MaterialExpression::KIND_GLOBAL);
    // Texture blocks without variables show the base panel only.
    EXPECT_EQ(titles(select(add("Tex.Cube"))), std::vector<jString>{"Base(Tex.Cube)"});
}

TEST_F(NodePanelsTest, SelectingTheShownNodeAgainRefreshesItsPanelInPlace)
{
    GraphNode* node = add("Const.Value");
    MaterialExpression* first = select(node);
    const AttrWrap* before = first->getSection();
    node->getData()->setVariableValueOnly(0, "0.75");
    MsgMngr::instance().postPtr(11, node);
    dispatch();
    EXPECT_EQ(panel(), first);
    EXPECT_NE(first->getSection(), before);
    EXPECT_EQ(field<QLineEdit>(first, "Value")->text(), "0.75");

    MaterialExpression* global = select(nullptr);
    MsgMngr::instance().post(13);
    dispatch();
    EXPECT_EQ(panel(), global);
}

TEST_F(NodePanelsTest, SelectionHighlightsTheNodesLinks)
{
    GraphNode* texture = add("Tex.Plain");
    GraphNode* out = add("Stage.Out");
    GraphJoint* joint = graph->createGrahpJoint(
        AppData::get()->createJoint(texture->getData()->findAnchor("rgba"), out->getData()->findAnchor("color")));
    select(texture);
    EXPECT_EQ(graph->getPolygonColour(joint->getArrowId()), Graph::kLinkHighlight);
    select(nullptr);
    EXPECT_EQ(graph->getPolygonColour(joint->getArrowId()), Graph::kWhite);
}

TEST_F(NodePanelsTest, TexturePanelRowsAndTheirEntries)
{
    const MaterialExpression* shown = select(add("Tex.Plain"));
    EXPECT_EQ(titles(shown), (std::vector<jString>{"Texture", "Base(Tex.Plain)"}));
    EXPECT_EQ(field<QLineEdit>(shown, "Path")->text(), "data/core/textures/common/white.dds");
    EXPECT_EQ(comboEntries(field<QComboBox>(shown, "Usage")), (std::vector<jString>{"rgb", "srgb", "signed"}));
    EXPECT_EQ(comboEntries(field<QComboBox>(shown, "UV wrap")), (std::vector<jString>{"clamp", "border", "repeat"}));
    EXPECT_EQ(comboEntries(field<QComboBox>(shown, "Filter")),
              (std::vector<jString>{"point", "linear", "bilinear", "trilinear"}));
    EXPECT_EQ(comboEntries(field<QComboBox>(shown, "Anisotropy")), (std::vector<jString>{"1", "2", "4", "16"}));
    EXPECT_EQ(field<QComboBox>(shown, "UV wrap")->currentText(), "repeat");
    EXPECT_EQ(field<QComboBox>(shown, "Filter")->currentText(), "bilinear");
    // Only the shown sub value gets a row.
    EXPECT_EQ(field<UIFloatField>(shown, "Tiling")->text(), "1,1");
    EXPECT_EQ(field<QWidget>(shown, "hidden"), nullptr);

    // A sampler edit goes through the node: the variable takes the shared
    // sampler of its new settings.
    field<QComboBox>(shown, "UV wrap")->setCurrentIndex(0);
    const DataVariable* variable = shown->getDataNode()->getVariable(0);
    EXPECT_EQ(variable->getWrap(), "clamp");
    EXPECT_EQ(variable->getSampler()->getWrap(), "clamp");

    // A texture variable without edit: the rows, but no thumbnail.
    auto* fixed = dynamic_cast<METexture2D*>(select(add("Tex.Fixed")));
    ASSERT_NE(fixed, nullptr);
    EXPECT_EQ(fixed->getThumbnail(), nullptr);
    EXPECT_TRUE(all<UISpriteDrop>(fixed).empty());
    EXPECT_NE(field(fixed, "Anisotropy"), nullptr);
}

TEST_F(NodePanelsTest, SamplerSettingsAreDisabledOnAnInstance)
{
    AppData::get()->setInstance(true);
    const MaterialExpression* shown = select(add("Tex.Plain"));
    for (const char* row : {"Async load", "Usage", "UV wrap", "Filter", "Anisotropy"}) {
        ASSERT_NE(field(shown, row), nullptr) << row;
        EXPECT_FALSE(field(shown, row)->isEnabled()) << row;
    }
    EXPECT_TRUE(field(shown, "Path")->isEnabled());

    // The instance command disables them at once in the shown panel; undo
    // enables them again.
    AppData::get()->setInstance(false);
    AppData::get()->setPath("data/materials/plain.mat");
    select(graph->getSelectedNode());
    window->set_window_modified(false);
    ASSERT_TRUE(window->instance());
    EXPECT_FALSE(field(window->getExpressions().at(0), "UV wrap")->isEnabled());
    ASSERT_TRUE(window->undo());
    EXPECT_TRUE(field(window->getExpressions().at(0), "UV wrap")->isEnabled());
}

TEST_F(NodePanelsTest, TextureDropsOnTheThumbnail)
{
    GraphNode* node = add("Tex.Plain");
    auto* shown = dynamic_cast<METexture2D*>(select(node));
    ASSERT_NE(shown, nullptr);
    UISpriteDrop* thumbnail = shown->getThumbnail();
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->size(), QSize(128, 128));
    const DataVariable* variable = node->getData()->getVariable(0);
    const GraphVariable* onCanvas = node->getVarAt(0);
    auto drop = [&](const jString& path) {
        std::unique_ptr<QMimeData> mime(AssetDrag::makeMimeData(path));
        thumbnail->drop(mime.get());
        dispatch();
    };

    // From the asset strip (root-relative) and as an absolute path inside
    // the root: the panel, the document and the canvas follow at once.
    drop("data/core/textures/environment/sky.dds");
    EXPECT_EQ(variable->getValue(), "data/core/textures/environment/sky.dds");
    EXPECT_EQ(graph->getPolygonTexture(onCanvas->getPolygonId()), "data/core/textures/environment/sky.dds");
    EXPECT_EQ(thumbnail->getTexture(), "data/core/textures/environment/sky.dds");
    EXPECT_EQ(field<QLineEdit>(shown, "Path")->text(), "data/core/textures/environment/sky.dds");
    EXPECT_TRUE(window->isModified());
    EXPECT_TRUE(window->isNeedReloadTexture());
    drop(root / "data/textures/own.dds");
    EXPECT_EQ(variable->getValue(), "data/textures/own.dds");

    // Undo takes the drop back on the document, the canvas and the panel.
    ASSERT_TRUE(window->undo());
    EXPECT_EQ(variable->getValue(), "data/core/textures/environment/sky.dds");
    EXPECT_EQ(graph->getPolygonTexture(onCanvas->getPolygonId()), "data/core/textures/environment/sky.dds");
    shown = dynamic_cast<METexture2D*>(window->getExpressions().at(0));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->getThumbnail()->getTexture(), "data/core/textures/environment/sky.dds");
    ASSERT_TRUE(window->redo());
    EXPECT_EQ(variable->getValue(), "data/textures/own.dds");
    thumbnail = shown->getThumbnail();

    // The same texture again changes nothing, not even the modified mark.
    window->set_window_modified(false);
    drop("data/textures/own.dds");
    EXPECT_FALSE(window->isModified());

    // Outside the root, climbing out of it, or nothing: the black default.
    for (const jString& outside : {jString("/elsewhere/stone.dds"), jString("../stone.dds"), jString()}) {
        node->getData()->setVariableValueOnly(0, "data/textures/own.dds");
        drop(outside);
        EXPECT_EQ(variable->getValue(), "data/core/textures/common/black.dds") << outside;
    }
    EXPECT_EQ(graph->getPolygonTexture(onCanvas->getPolygonId()), "data/core/textures/common/black.dds");
}

TEST_F(NodePanelsTest, NumericFieldsRefuseWhatIsNotANumber)
{
    GraphNode* node = add("Const.Value");
    const MaterialExpression* shown = select(node);
    EXPECT_EQ(titles(shown), (std::vector<jString>{"Constant", "Base(Const.Value)"}));
    window->set_window_modified(false);
    log.clear();
    auto* value = field<UIFloatField>(shown, "Value");
    type(value, "abc");
    type(value, "1,2");
    dispatch();
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "warning: UIFloatField::commit: \"abc\" is not a number, the value stays 0.5",
                               "warning: UIFloatField::commit: \"1,2\" is not a number, the value stays 0.5",
                           }));
    EXPECT_EQ(node->getData()->getVariable(0)->getValue(), "0.5");
    EXPECT_EQ(value->text(), "0.5");
    EXPECT_FALSE(window->isModified());
    EXPECT_EQ(host.title, "MaterialEditor");

    // A number is written through the node, shown on the canvas and in the
    // other field of the same value, and marks the document modified.
    type(value, " +0.25 ");
    EXPECT_EQ(node->getData()->getVariable(0)->getValue(), "0.25");
    EXPECT_EQ(node->getVarAt(0)->getLabel(), "value(0.25)");
    EXPECT_EQ(all<UIFloatField>(shown).back()->text(), "0.25");
    dispatch();
    EXPECT_TRUE(window->isModified());
    EXPECT_EQ(host.title, "MaterialEditor*");
}

TEST_F(NodePanelsTest, ColourSwatchAsksTheColourDialog)
{
    GraphNode* node = add("Const.Color");
    const MaterialExpression* shown = select(node);
    ASSERT_EQ(all<UIColorSwatch>(shown).size(), 1u);
    UIColorSwatch* swatch = all<UIColorSwatch>(shown).front();
    EXPECT_EQ(swatch->getColour(), QColor::fromRgbF(1.0f, 0.5f, 0.0f, 1.0f));
    dialogs.dialogHandler = [](QDialog& dialog) {
        static_cast<QColorDialog&>(dialog).setCurrentColor(QColor(0, 0, 255, 51));
        return int(QDialog::Accepted);
    };
    swatch->click();
    EXPECT_EQ(node->getData()->getVariable(0)->getValue(), "0,0,1,0.2");
    EXPECT_EQ(field<QLineEdit>(shown, "Color")->text(), "0,0,1,0.2");

    dialogs.dialogHandler = [](QDialog& dialog) {
        static_cast<QColorDialog&>(dialog).setCurrentColor(Qt::red);
        return int(QDialog::Rejected);
    };
    swatch->click();
    EXPECT_EQ(node->getData()->getVariable(0)->getValue(), "0,0,1,0.2");
    EXPECT_EQ(dialogs.dialogs, 2);
}

TEST_F(NodePanelsTest, BaseRowsByVariableType)
{
    GraphNode* node = add("Misc.Mixed");
    const MaterialExpression* shown = select(node);
    EXPECT_EQ(titles(shown), std::vector<jString>{"Base(Misc.Mixed)"});
    const DataNode* data = node->getData();

    auto* flag = field<UIBool>(shown, "flag");
    ASSERT_NE(flag, nullptr);
    EXPECT_TRUE(flag->isChecked());
    flag->click();
    EXPECT_EQ(data->getVariable(0)->getValue(), "false");

    auto* mode = field<QComboBox>(shown, "Mode");
    EXPECT_EQ(comboEntries(mode), (std::vector<jString>{"First", "Second"}));
    EXPECT_EQ(mode->currentText(), "Second");
    mode->setCurrentIndex(0);
    EXPECT_EQ(data->getVariable(1)->getValue(), "a");

    type(field<QLineEdit>(shown, "Label"), "bye");
    EXPECT_EQ(data->getVariable(2)->getValue(), "bye");
}

TEST_F(NodePanelsTest, HierarchyOfTheBlockBrowsersCurrentItem)
{
    EXPECT_EQ(window->get_hierarchy("/"), "");
    BlockBrowser* browser = window->getBlockBrowser();
    const QList<QTreeWidgetItem*> found = browser->findItems("Mixed", Qt::MatchRecursive | Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    browser->setCurrentItem(found.front());
    EXPECT_EQ(window->get_hierarchy("/"), "Misc/Mixed");
    EXPECT_EQ(window->get_hierarchy(" > "), "Misc > Mixed");
}

// The preview follows the panels: an edit, then "apply", and the material
// the preview shows carries the new values (bundled library and sample).
using NodePanelsPreviewTest = EditorWindowTest;

TEST_F(NodePanelsPreviewTest, AnEditThenApplyReachesThePreviewMaterial)
{
    constexpr const char* kSample = "data/materials/textured.mat";
    open(kSample);
    graph->selectNode(node(3));
    dispatch();
    ASSERT_EQ(window->getExpressions().size(), 1u);
    auto* value = dynamic_cast<UIFloatField*>(window->getExpressions().front()->findChildren<QLineEdit*>().front());
    ASSERT_NE(value, nullptr);
    value->setText("0,1,0,1");
    QTest::keyClick(value, Qt::Key_Return);
    dispatch();
    ASSERT_TRUE(window->isModified());

    ASSERT_TRUE(window->compile());
    EXPECT_EQ(window->getPreviewMaterial(), kSample);
    const MaterialManager::MaterialPtr material = MaterialManager::get().find(kSample);
    ASSERT_NE(material, nullptr);
    jString shownValue;
    for (const Material::Parameter& parameter : material->getParameters())
        if (parameter.name == "color3")
            shownValue = parameter.text;
    EXPECT_EQ(shownValue, "0,1,0,1");
}

} // namespace
