#include "MaterialExpressionGlobal.h"

#include "AppData.h"
#include "AttrWrap.h"
#include "DialogAnswerer.h"
#include "MaterialEditorWindow.h"
#include "MaterialMaskBitSelect.h"
#include "MsgMngr.h"
#include "RenderStateKeywords.h"
#include "UIBool.h"
#include "UIEnum.h"
#include "UIEnumRef.h"
#include "UIIntBase.h"
#include "UiMsg.h"
#include "jDir.h"
#include "jKit.h"
#include "tr.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

using KeywordGetter = const jString& (AppData::*)() const;
using KeywordSetter = void (AppData::*)(const jString&);
using FlagGetter = bool (AppData::*)() const;
using FlagSetter = void (AppData::*)(bool);
using NumberGetter = int32_t (AppData::*)() const;
using NumberSetter = void (AppData::*)(int32_t);
using Conversion = jString (*)(const jString&);

constexpr const char* kStateMarkers[] = {"[D]", "[P]", "[S]"};
constexpr int kGroupMargin = 5;
// The shared label column leaves the editors at least 60 % of the column's
// 256 pixels (room for a 32-bit mask beside its button); a longer label,
// such as a long state name, widens only its own group.
constexpr int kMaxLabelColumn = 100;

QString qtext(const jString& text)
{
    return QString::fromStdString(text);
}

// A two-column grid of rows, label left (as narrow as its text) and editor
// right (taking the rest of the width).
class RowGrid {
public:
    RowGrid(QWidget* owner, int margin, std::vector<QLabel*>* labels = nullptr)
        : m_grid(new QGridLayout(owner)), m_labels(labels)
    {
        m_grid->setContentsMargins(margin, margin, margin, margin);
        m_grid->setColumnStretch(0, 0);
        m_grid->setColumnStretch(1, 1);
        m_grid->setVerticalSpacing(4);
    }

    QLabel* add(const jString& text, QWidget* editor)
    {
        auto* label = new QLabel(qtext(text), m_grid->parentWidget());
        m_grid->addWidget(label, m_rows, 0);
        m_grid->addWidget(editor, m_rows, 1);
        ++m_rows;
        if (m_labels)
            m_labels->push_back(label);
        return label;
    }

private:
    QGridLayout* m_grid;
    std::vector<QLabel*>* m_labels;
    int m_rows = 0;
};

QGroupBox* add_group(QWidget* parent, const char* key)
{
    auto* group = new QGroupBox(qtext(::tr(key)), parent);
    group->setObjectName(key);
    parent->layout()->addWidget(group);
    return group;
}

jString data_root()
{
    const jString& root = jDir::getProjectRoot();
    return root.empty() || root.back() == '/' ? root : root + "/";
}

// The text of a locate request: the folder of a root-relative file as an
// absolute path ending in '/'.
jString folder_request(const jString& path)
{
    const jString folder = jKit::getFileDir(path);
    return folder.empty() ? data_root() : data_root() + folder + "/";
}

} // namespace

MaterialExpressionGlobal::MaterialExpressionGlobal(QWidget* parent, AppData* document, Graph* graph)
    : MaterialExpression(parent, document, graph, nullptr)
{
}

MaterialExpressionGlobal::~MaterialExpressionGlobal() = default;

bool MaterialExpressionGlobal::create()
{
    release();
    section = add_section("Global");
    QWidget* content = section->getContent();
    init_buttons(content);
    if (!getDocument())
        return true;
    init_name(content);
    init_options(content);
    init_blend(content);
    init_states(content);
    align_label_column();
    return true;
}

// The editors of the options and the states start at the same x: their
// labels get the width of the widest one.
void MaterialExpressionGlobal::align_label_column()
{
    int width = 0;
    for (const QLabel* label : m_rowLabels)
        width = std::max(width, label->sizeHint().width());
    width = std::min(width, kMaxLabelColumn);
    for (QLabel* label : m_rowLabels)
        label->setMinimumWidth(width);
}

void MaterialExpressionGlobal::release()
{
    m_stateLabels.clear();
    m_rowLabels.clear();
    m_maskField = nullptr;
    MaterialExpression::release();
}

// ---- conversions

const std::vector<const char*>& MaterialExpressionGlobal::bufferMaskEntries()
{
    static const std::vector<const char*> entries{"All", "Color", "Depth"};
    return entries;
}

const std::vector<const char*>& MaterialExpressionGlobal::depthFuncEntries()
{
    static const std::vector<const char*> entries{"LessEqaul",    "Always",  "Less",     "Eqaul",
                                                  "GreaterEqaul", "Greater", "NotEqaul", "Never"};
    return entries;
}

const std::vector<const char*>& MaterialExpressionGlobal::blendOpEntries()
{
    static const std::vector<const char*> entries{"Add", "Sub", "ReverseSub", "Min", "Max"};
    return entries;
}

// "One" comes before "Zero" here, unlike the keyword table.
const std::vector<const char*>& MaterialExpressionGlobal::blendFuncEntries()
{
    static const std::vector<const char*> entries{
        "None",      "One",              "Zero",     "SrcColor",         "OneMinusSrcColor", "SrcAlpha",
        "OneMinusSrcAlpha", "DstColor", "OneMinusDstColor", "DstAlpha", "OneMinusDstAlpha"};
    return entries;
}

jString MaterialExpressionGlobal::cvt_combo_to_blend_func(const jString& entry)
{
    return RenderStateKeywords::blendFactorKeyword(entry, "MaterialExpressionGlobal::cvt_combo_to_blend_func");
}

jString MaterialExpressionGlobal::cvt_combo_to_blend_op(const jString& entry)
{
    return RenderStateKeywords::blendOperationKeyword(entry, "MaterialExpressionGlobal::cvt_combo_to_blend_op");
}

jString MaterialExpressionGlobal::cvt_combo_to_buffer_mask(const jString& entry)
{
    return RenderStateKeywords::bufferMaskKeyword(entry, "MaterialExpressionGlobal::cvt_combo_to_buffer_mask");
}

jString MaterialExpressionGlobal::cvt_combo_to_depth_func(const jString& entry)
{
    return RenderStateKeywords::depthFunctionKeyword(entry, "MaterialExpressionGlobal::cvt_combo_to_depth_func");
}

// ---- buttons

void MaterialExpressionGlobal::init_buttons(QWidget* parent)
{
    add_button(parent, "locate_in_assets_browser", &MaterialExpressionGlobal::cb_locate_in_assets_browser);
    add_button(parent, "show_in_explorer", &MaterialExpressionGlobal::cb_show_in_explorer);
    const AppData* document = getDocument();
    if (document && document->isInstance() && !document->getParentPath().empty()) {
        add_button(parent, "locate_parent_material_in_assets_browser",
                   &MaterialExpressionGlobal::cb_locate_parent_material_in_assets_browser);
        add_button(parent, "open_parent_material", &MaterialExpressionGlobal::cb_open_parent_material);
    }
}

QPushButton* MaterialExpressionGlobal::add_button(QWidget* parent, const char* key,
                                                  void (MaterialExpressionGlobal::*action)())
{
    auto* button = new QPushButton(qtext(::tr(key)), parent);
    button->setObjectName(key);
    connect(button, &QPushButton::clicked, this, [this, action] { (this->*action)(); });
    parent->layout()->addWidget(button);
    return button;
}

void* MaterialExpressionGlobal::host_root() const
{
    for (QWidget* widget = parentWidget(); widget; widget = widget->parentWidget())
        if (auto* window = dynamic_cast<MaterialEditorWindow*>(widget))
            return window->getRoot();
    return nullptr;
}

void MaterialExpressionGlobal::cb_locate_in_assets_browser()
{
    const jString path = getDocument() ? getDocument()->getPath() : jString();
    if (path.empty())
        return;
    MsgMngr::instance().post(std::make_unique<UiMsg>(kMsgLocateInAssets, folder_request(path), host_root()));
}

void MaterialExpressionGlobal::cb_show_in_explorer()
{
    const jString path = getDocument() ? getDocument()->getPath() : jString();
    if (path.empty())
        return;
    jKit::openPath(jDir::resolveRead(path));
}

void MaterialExpressionGlobal::cb_locate_parent_material_in_assets_browser()
{
    const jString path = getDocument() ? getDocument()->getParentPath() : jString();
    if (path.empty())
        return;
    MsgMngr::instance().post(std::make_unique<UiMsg>(kMsgLocateInAssets, folder_request(path), host_root()));
}

void MaterialExpressionGlobal::cb_open_parent_material()
{
    const jString path = getDocument() ? getDocument()->getParentPath() : jString();
    if (path.empty())
        return;
    MsgMngr::instance().postStr(kMsgOpenMaterial, data_root() + path);
}

// ---- name and options

void MaterialExpressionGlobal::init_name(QWidget* parent)
{
    AppData* document = getDocument();
    if (document->isInstance())
        return;
    auto* rows = new QWidget(parent);
    RowGrid grid(rows, kGroupMargin);
    auto* check = new UIBool(
        rows, [document] { return document->isUseFileNameAsMaterialName(); },
        [this, document](bool on) {
            document->setUseFileNameAsMaterialName(on);
            post_changed();
        });
    check->setObjectName("use_file_name_as_material_name");
    grid.add(::tr("use_file_name_as_material_name"), check)->setWordWrap(true);
    parent->layout()->addWidget(rows);
}

namespace {

UIBool* make_flag(QWidget* parent, const char* key, AppData* document, FlagGetter get, FlagSetter set,
                  std::function<void()> changed)
{
    auto* check = new UIBool(
        parent, [document, get] { return (document->*get)(); },
        [document, set, changed](bool on) {
            (document->*set)(on);
            changed();
        });
    check->setObjectName(key);
    return check;
}

UIIntBase<int32_t>* make_number(QWidget* parent, const char* key, AppData* document, NumberGetter get,
                                NumberSetter set, std::function<void()> changed)
{
    auto* field = new UIIntBase<int32_t>(
        parent, [document, get] { return (document->*get)(); },
        [document, get, set, changed](int32_t value) {
            const int32_t before = (document->*get)();
            (document->*set)(value);
            if ((document->*get)() != before)
                changed();
        });
    field->setObjectName(key);
    return field;
}

// A combo of (entry, keyword) pairs; each keyword is converted once, as the
// entry is added. An entry without a keyword never reaches the document.
UIEnumRef<jString>* make_keyword_combo(QWidget* parent, const char* key, const std::vector<const char*>& entries,
                                       Conversion convert, AppData* document, KeywordGetter get, KeywordSetter set,
                                       std::function<void()> changed)
{
    auto* combo = new UIEnumRef<jString>(
        parent, [document, get]() -> const jString& { return (document->*get)(); },
        [document, get, set, changed](const jString& keyword) {
            if (keyword.empty() || keyword == (document->*get)())
                return;
            (document->*set)(keyword);
            changed();
        });
    combo->setObjectName(key);
    for (const char* entry : entries)
        combo->addEntry(entry, convert(entry));
    combo->refresh();
    return combo;
}

} // namespace

void MaterialExpressionGlobal::init_options(QWidget* parent)
{
    AppData* document = getDocument();
    const auto changed = [this] { post_changed(); };
    QGroupBox* group = add_group(parent, "options");
    RowGrid grid(group, kGroupMargin, &m_rowLabels);
    grid.add(::tr("mask"), make_mask_row(group));
    grid.add(::tr("render_two_sided"),
             make_flag(group, "render_two_sided", document, &AppData::isTwoSided, &AppData::setTwoSided, changed));
    grid.add(::tr("post_scattering"), make_flag(group, "post_scattering", document, &AppData::isPostScattering,
                                              &AppData::setPostScattering, changed));
    grid.add(::tr("post_fog"),
             make_flag(group, "post_fog", document, &AppData::isPostFog, &AppData::setPostFog, changed));
    grid.add(::tr("post_taa"),
             make_flag(group, "post_taa", document, &AppData::isPostTaa, &AppData::setPostTaa, changed));
    if (document->findState("Tessellate"))
        grid.add(::tr("tessellate"),
                 make_flag(group, "tessellate", document, &AppData::isTessellate, &AppData::setTessellate, changed));
    grid.add(::tr("render_order"), make_number(group, "render_order", document, &AppData::getRenderOrder,
                                             &AppData::setRenderOrder, changed));
    grid.add(::tr("depth_offset"), make_number(group, "depth_offset", document, &AppData::getDepthOffset,
                                             &AppData::setDepthOffset, changed));
    grid.add(::tr("buffer_mask"),
             make_keyword_combo(group, "buffer_mask", bufferMaskEntries(), &cvt_combo_to_buffer_mask, document,
                                &AppData::getBufferMask, &AppData::setBufferMask, changed));
    grid.add(::tr("depth_func"),
             make_keyword_combo(group, "depth_func", depthFuncEntries(), &cvt_combo_to_depth_func, document,
                                &AppData::getDepthFunc, &AppData::setDepthFunc, changed));
}

QWidget* MaterialExpressionGlobal::make_mask_row(QWidget* parent)
{
    AppData* document = getDocument();
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    // The mask is a set of bits: shown unsigned, so that bit 31 does not read as a minus sign.
    m_maskField = new UIIntBase<uint32_t>(
        row, [document] { return static_cast<uint32_t>(document->getMask()); }, nullptr);
    m_maskField->setObjectName("mask");
    m_maskField->setReadOnly(true);
    auto* select = new QPushButton(qtext(::tr("select")), row);
    select->setObjectName("select");
    // As narrow as its text, so that the field keeps room for ten digits.
    select->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    select->setMaximumWidth(select->fontMetrics().horizontalAdvance(select->text()) + 12);
    connect(select, &QPushButton::clicked, this, [this] { cb_mask_bit_select(); });
    layout->addWidget(m_maskField, 1);
    layout->addWidget(select);
    return row;
}

// ---- blending

void MaterialExpressionGlobal::init_blend(QWidget* parent)
{
    AppData* document = getDocument();
    const auto changed = [this] { post_changed(); };
    QGroupBox* group = add_group(parent, "blend");
    auto* layout = new QVBoxLayout(group);
    layout->setContentsMargins(kGroupMargin, kGroupMargin, kGroupMargin, kGroupMargin);
    layout->setSpacing(4);
    struct Row {
        const char* key;
        const std::vector<const char*>& entries;
        Conversion convert;
        KeywordGetter get;
        KeywordSetter set;
    };
    const Row rows[] = {
        {"blend_op", blendOpEntries(), &cvt_combo_to_blend_op, &AppData::getBlendOp, &AppData::setBlendOp},
        {"src", blendFuncEntries(), &cvt_combo_to_blend_func, &AppData::getBlendSrc, &AppData::setBlendSrc},
        {"dst", blendFuncEntries(), &cvt_combo_to_blend_func, &AppData::getBlendDst, &AppData::setBlendDst},
    };
    std::vector<QLabel*> labels;
    for (const Row& row : rows) {
        auto* line = new QHBoxLayout();
        auto* label = new QLabel(qtext(::tr(row.key)), group);
        line->addWidget(label);
        line->addWidget(
            make_keyword_combo(group, row.key, row.entries, row.convert, document, row.get, row.set, changed), 1);
        layout->addLayout(line);
        labels.push_back(label);
    }
    // The blend labels are short and their combos hold the longest entries
    // ("OneMinusSrcAlpha"), so they line up among themselves only.
    int width = 0;
    for (const QLabel* label : labels)
        width = std::max(width, label->sizeHint().width());
    for (QLabel* label : labels)
        label->setFixedWidth(width);
}

// ---- render states

jString MaterialExpressionGlobal::state_label_text(const MaterialState& state)
{
    const bool known = state.source >= 0 && state.source < 3;
    return state.name + (known ? kStateMarkers[state.source] : "");
}

MaterialState* MaterialExpressionGlobal::state_at(size_t index) const
{
    jVector<MaterialState>& states = getDocument()->getStates();
    return index < states.size() ? &states[index] : nullptr;
}

QLabel* MaterialExpressionGlobal::find_state_label(const jString& name) const
{
    const QString wanted = qtext(name);
    for (QLabel* label : m_stateLabels)
        if (label->property("state").toString() == wanted)
            return label;
    return nullptr;
}

void MaterialExpressionGlobal::init_states(QWidget* parent)
{
    const jVector<MaterialState>& states = getDocument()->getStates();
    if (states.empty())
        return;
    QGroupBox* group = add_group(parent, "state");
    RowGrid grid(group, kGroupMargin, &m_rowLabels);
    for (size_t i = 0; i < states.size(); ++i) {
        const MaterialState& state = states[i];
        if (!state.editable)
            continue;
        QLabel* label = grid.add(state_label_text(state), make_state_editor(group, i));
        label->setProperty("state", qtext(state.name));
        m_stateLabels.push_back(label);
    }
}

// Editors look the state up by index on every read and write: the list may
// be rebuilt (or emptied) while the panel is shown.
QWidget* MaterialExpressionGlobal::make_state_editor(QWidget* parent, size_t index)
{
    const MaterialState& state = getDocument()->getStates()[index];
    const auto store = [this, index](int value) {
        const MaterialState* s = state_at(index);
        if (!s || s->value == static_cast<uint8_t>(value))
            return;
        // Through the document, so that the edit can be undone.
        getDocument()->setStateValue(index, static_cast<uint8_t>(value));
        post_changed();
    };
    QWidget* editor = nullptr;
    if (state.type == MaterialState::Switch) {
        auto* combo = new UIEnum<int>(
            parent, [this, index] { const MaterialState* s = state_at(index); return s ? int(s->value) : -1; }, store);
        for (size_t k = 0; k < state.items.size(); ++k)
            combo->addEntry(state.items[k], static_cast<int>(k));
        combo->refresh();
        editor = combo;
    } else if (state.type == MaterialState::Int) {
        editor = new UIIntBase<uint8_t>(
            parent, [this, index] { const MaterialState* s = state_at(index); return s ? s->value : uint8_t(0); },
            [store](uint8_t value) { store(value); });
    } else {
        editor = new UIBool(
            parent, [this, index] { const MaterialState* s = state_at(index); return s && s->value != 0; },
            [store](bool on) { store(on ? 1 : 0); });
    }
    editor->setObjectName(qtext("state:" + state.name));
    return editor;
}

// ---- mask

void MaterialExpressionGlobal::cb_mask_bit_select()
{
    AppData* document = getDocument();
    if (!document)
        return;
    const auto current = static_cast<uint32_t>(document->getMask());
    uint32_t selected = current;
    uint8_t accepted = 0;
    MaterialMaskBitSelect dialog(window(), &accepted, &selected);
    dialog.setWindowTitle(qtext(::tr("select")));
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.adjustSize();
    if (const QScreen* screen = dialog.screen())
        dialog.move(screen->availableGeometry().center() - dialog.rect().center());
    DialogAnswerer::exec(dialog);
    if (!accepted || selected == current)
        return;
    document->setMask(static_cast<int32_t>(selected));
    if (m_maskField)
        m_maskField->refresh();
    MsgMngr::instance().post(kMsgOptionsChanged);
}

void MaterialExpressionGlobal::post_changed() const
{
    MsgMngr::instance().post(kMsgOptionsChanged);
}
