#include "MaterialExpression.h"

#include "AttrWrap.h"
#include "Block.h"
#include "BlockVariable.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "Graph.h"
#include "GraphNode.h"
#include "MsgMngr.h"
#include "UIBool.h"
#include "UIColorSwatch.h"
#include "UIEnumRef.h"
#include "UIFloatField.h"
#include "UIIntBase.h"
#include "UIString.h"
#include "tr.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <charconv>

namespace {

bool isTextureType(const jString& type)
{
    return type == "texture" || type == "texture2D" || type == "texture3D" || type == "textureCube";
}

// Colours are four-component values: a "color" or "float4" variable, or a
// "float" variable of a block whose value type is float4 (the library's
// Color and Float4 constants).
bool isColourVariable(const BlockVariable& definition, const Block* block)
{
    const jString& type = definition.getType();
    return type == "color" || type == "float4" || (type == "float" && block && block->getDataType() == "float4");
}

// The package reading of a boolean: 1, true, yes, on in any case.
bool readBool(const jString& text)
{
    jString lower;
    for (char c : text)
        lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return lower == "1" || lower == "true" || lower == "yes" || lower == "on";
}

int readInt(const jString& text)
{
    int value = 0;
    UIIntBase<int>::parse(text, value);
    return value;
}

jString labelOf(const BlockVariable& definition)
{
    return definition.getText().empty() ? definition.getName() : definition.getText();
}

} // namespace

MaterialExpression::MaterialExpression(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
    : QWidget(parent), m_document(document), m_graph(graph), m_node(node)
{
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(4);
}

MaterialExpression::~MaterialExpression() = default;

DataNode* MaterialExpression::getDataNode() const
{
    return m_node ? m_node->getData() : nullptr;
}

bool MaterialExpression::create()
{
    release();
    return create_base();
}

void MaterialExpression::release()
{
    m_refreshers.clear();
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    section = nullptr;
}

void MaterialExpression::refreshValues()
{
    for (const auto& refresh : m_refreshers)
        refresh();
}

AttrWrap* MaterialExpression::add_section(const jString& title)
{
    auto* wrap = new AttrWrap(this, title);
    m_layout->addWidget(wrap);
    // A layout shows a widget added to a shown parent only later, from the
    // event loop; a refresh in place shows its sections at once.
    wrap->show();
    return wrap;
}

QGridLayout* MaterialExpression::add_grid(AttrWrap* wrap)
{
    wrap->setContentMargin(kContentMargin);
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(kRowSpacing);
    grid->setHorizontalSpacing(6);
    // Labels take what they need, fields the rest.
    grid->setColumnStretch(0, 0);
    // One label width for every section of the column, so that fields of
    // consecutive sections line up.
    grid->setColumnMinimumWidth(0, kLabelWidth);
    grid->setColumnStretch(1, 1);
    wrap->getContentLayout()->addLayout(grid);
    return grid;
}

void MaterialExpression::add_row(QGridLayout* grid, const jString& label, QWidget* field)
{
    const int row = grid->rowCount();
    auto* text = new QLabel(QString::fromStdString(label), field->parentWidget());
    text->setToolTip(text->text());
    grid->addWidget(text, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
    grid->addWidget(field, row, 1);
}

void MaterialExpression::show_path_end(QLineEdit* field)
{
    field->setCursorPosition(static_cast<int>(field->text().size()));
    field->setToolTip(field->text());
}

jString MaterialExpression::baseTitle(const DataNode* node)
{
    // The library has no caption of its own: a block is known by its type
    // name, as in the block browser.
    const Block* block = node ? node->getBlock() : nullptr;
    const jString caption = block ? block->getType() : jString();
    return caption.empty() ? jString("Base") : "Base(" + caption + ")";
}

bool MaterialExpression::create_base()
{
    DataNode* node = getDataNode();
    section = add_section(baseTitle(node));
    QGridLayout* grid = add_grid(section);
    const size_t count = node ? node->getVariableCount() : 0;
    for (size_t i = 0; i < count; ++i) {
        const BlockVariable* definition = node->getVariable(i)->getDefinition();
        if (!definition)
            continue;
        add_row(grid, labelOf(*definition), make_variable_editor(section->getContent(), i));
    }
    if (grid->count() == 0) {
        auto* none = new QLabel(QString::fromStdString(::tr("no_variables")), section->getContent());
        none->setEnabled(false);
        grid->addWidget(none, 0, 0, 1, 2);
    }
    return true;
}

QWidget* MaterialExpression::make_variable_editor(QWidget* parent, size_t index)
{
    DataNode* node = getDataNode();
    DataVariable* variable = node->getVariable(index);
    const BlockVariable& definition = *variable->getDefinition();
    const jString& type = definition.getType();
    auto get = [variable] { return variable->getValue(); };
    auto set = [this, index](const jString& value) { set_variable_value(index, value); };

    if (isTextureType(type)) {
        // The texture is chosen on the thumbnail of the texture panel.
        auto* path = new UIString(parent, get, {});
        path->setReadOnly(true);
        show_path_end(path);
        keep_refresh([path] {
            path->refresh();
            show_path_end(path);
        });
        return path;
    }
    if (variable->getSubValueCount() > 0) {
        auto* combo = new UIEnumRef<jString>(parent, [variable]() -> const jString& { return variable->getValue(); },
                                             set);
        for (size_t i = 0; i < variable->getSubValueCount(); ++i) {
            const BlockVariable::Value* sub = variable->getSubValue(i)->getDefinition();
            const jString& name = variable->getSubValue(i)->getName();
            combo->addEntry(sub && !sub->getText().empty() ? sub->getText() : name, name);
        }
        combo->refresh();
        keep_refresh([combo] { combo->refresh(); });
        return combo;
    }
    if (type == "bool") {
        auto* box = new UIBool(parent, [variable] { return readBool(variable->getValue()); },
                               [set](bool on) { set(on ? "true" : "false"); });
        keep_refresh([box] { box->refresh(); });
        return box;
    }
    if (isColourVariable(definition, node->getBlock())) {
        auto* row = new QWidget(parent);
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(4);
        auto* swatch = new UIColorSwatch(row, get, set);
        auto* field = new UIFloatField(row, get, set);
        layout->addWidget(swatch);
        layout->addWidget(field, 1);
        keep_refresh([swatch, field] {
            swatch->refresh();
            field->refresh();
        });
        return row;
    }
    if (type == "float" || type == "slider" || type == "int")
        return make_number_field(parent, index, type);
    auto* text = new UIString(parent, get, set);
    keep_refresh([text] { text->refresh(); });
    return text;
}

QWidget* MaterialExpression::make_number_field(QWidget* parent, size_t index, const jString& type)
{
    DataVariable* variable = getDataNode()->getVariable(index);
    if (type == "int") {
        auto* field = new UIIntBase<int>(parent, [variable] { return readInt(variable->getValue()); },
                                         [this, index](int value) { set_variable_value(index, std::to_string(value)); });
        keep_refresh([field] { field->refresh(); });
        return field;
    }
    auto* field = new UIFloatField(parent, [variable] { return variable->getValue(); },
                                   [this, index](const jString& value) { set_variable_value(index, value); });
    keep_refresh([field] { field->refresh(); });
    return field;
}

void MaterialExpression::set_variable_value(size_t index, const jString& value)
{
    DataNode* node = getDataNode();
    if (!node || !node->setVariableValueOnly(static_cast<int>(index), value))
        return;
    // The node shows its values on the canvas too: its labels and width
    // follow the new text.
    if (m_node->getCanvas()) {
        m_node->genUI();
        if (m_graph)
            m_graph->refreshJoints(m_node);
    }
    value_edited();
}

void MaterialExpression::value_edited(int code)
{
    refreshValues();
    MsgMngr::instance().post(code);
}
