#include "MaterialEditorWindow.h"

#include "AppData.h"
#include "AssetsBrowser.h"
#include "BlockBrowser.h"
#include "Button.h"
#include "ButtonBar.h"
#include "Graph.h"
#include "GraphScrollBox.h"
#include "MaterialEditor.h"
#include "MatViewport.h"
#include "MaterialManager.h"
#include "MsgMngr.h"
#include "Package.h"
#include "PackageItem.h"
#include "UIEventKey.h"
#include "UIRoot.h"
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>

namespace {

constexpr const char* kSaveIcon = "data/core/editor/gui/save.dds";
constexpr const char* kApplyIcon = "data/core/editor/gui/apply.dds";
constexpr const char* kCenterIcon = "data/core/editor/gui/center.dds";
constexpr int kKeyN = 110;
constexpr int kKeyO = 111;
constexpr int kKeyS = 115;
// The main row's share of the splitter against the asset row's 1.
constexpr int kMainRowStretch = 4;

// The data root as the window compares paths with it: absolute, ending in
// one '/', so that cutting it off leaves a root-relative path.
jString dataPathOf(const jString& root)
{
    if (root.empty() || root.back() == '/')
        return root;
    return root + "/";
}

void write_pair(Package& package, std::string_view key, int a, int b)
{
    const jVector<jString> values{std::to_string(a), std::to_string(b)};
    if (PackageItem* item = package.findItem(key))
        item->setValues(values);
    else
        package.addItem(key, values);
}

QWidget* rowWidget(QWidget* parent, QHBoxLayout*& layout, int margin)
{
    auto* row = new QWidget(parent);
    layout = new QHBoxLayout(row);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(4);
    return row;
}

} // namespace

MaterialEditorWindow::MaterialEditorWindow(UIRoot* root, MaterialEditor* owner)
    : QWidget(root ? root->getWindow() : nullptr), m_owner(owner), m_root(root)
{
    // 1. The window's own column; the message node is attached last.
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 2);
    m_layout->setSpacing(0);
    // 2. The document and its block library.
    AppData::get()->init();
    // 3. The data root every document path is relative to.
    data_path = dataPathOf(jDir::getProjectRoot());
    last_dir = data_path;
    // 4-5. Toolbar and rows.
    init_menu_bar();
    init_layout();
    // 6. The preview's neutral material.
    MaterialManager::get().load(kEditorMeshPath);
    // 7-10. Parameters column, canvas, block browser, asset strip.
    init_parameters_ui();
    init_graph_ui();
    init_blocks();
    init_assets();
    init_shortcuts();
    init_history();
    init_live_toggle();
    // 11.
    clear();
    attach();
}

MaterialEditorWindow::~MaterialEditorWindow()
{
    detach();
    for (QWidget* window : deferred_windows)
        delete window;
    clear_parameter();
    if (m_owner)
        m_owner->m_window = nullptr;
}

// ---- Construction ----

void MaterialEditorWindow::init_menu_bar()
{
    toolbar = new ButtonBar(this);
    toolbar->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_layout->addWidget(toolbar);

    struct Entry {
        const char* name;
        const char* icon;
        void (MaterialEditorWindow::*callback)(const UIEvent*, QWidget*);
        uint32_t key;
        bool ctrl;
    };
    const Entry entries[] = {
        {"save", kSaveIcon, &MaterialEditorWindow::cb_menu_file_save, kKeyS, true},
        {"apply", kApplyIcon, &MaterialEditorWindow::cb_menu_file_compile, UIEventKey::kF7, false},
        {"centered", kCenterIcon, &MaterialEditorWindow::cb_menu_file_center, 0, false},
    };
    for (const Entry& entry : entries) {
        Button* button = toolbar->addButton(::tr(entry.name), entry.icon);
        if (!button)
            continue;
        button->getClick().add(this, entry.callback);
        button->getClick().setShortcut(entry.key, entry.ctrl);
        if (entry.callback == &MaterialEditorWindow::cb_menu_file_save)
            button->setElementId(ButtonBar::kSaveButtonId);
    }
}

void MaterialEditorWindow::init_layout()
{
    QHBoxLayout* stripLayout = nullptr;
    top_strip = rowWidget(this, stripLayout, 0);
    m_layout->addWidget(top_strip);

    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setChildrenCollapsible(false);
    m_layout->addWidget(m_splitter, 1);
    main_row = rowWidget(m_splitter, m_mainLayout, 0);
    bottom_row = rowWidget(m_splitter, m_bottomLayout, kMargin);
    m_splitter->addWidget(main_row);
    m_splitter->addWidget(bottom_row);
    m_splitter->setStretchFactor(0, kMainRowStretch);
    m_splitter->setStretchFactor(1, 1);
}

void MaterialEditorWindow::init_parameters_ui()
{
    parameters_column = new QWidget(main_row);
    auto* column = new QVBoxLayout(parameters_column);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    QHBoxLayout* previewLayout = nullptr;
    QWidget* previewRow = rowWidget(parameters_column, previewLayout, kMargin);
    m_preview = new MatViewport(previewRow, kPreviewSize, kPreviewSize);
    previewLayout->addWidget(m_preview, 0, Qt::AlignHCenter);
    column->addWidget(previewRow);

    parameters_scroll = new QScrollArea(parameters_column);
    parameters_scroll->setWidgetResizable(true);
    parameters_scroll->setFrameShape(QFrame::NoFrame);
    parameters_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* list = new QWidget(parameters_scroll);
    parameters_list = new QVBoxLayout(list);
    parameters_list->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    parameters_list->setSpacing(4);
    parameters_list->addStretch(1);
    parameters_scroll->setWidget(list);
    column->addWidget(parameters_scroll, 1);

    // The panels get the preview's width whether or not the list scrolls.
    const int scrollBar = parameters_scroll->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, parameters_scroll);
    parameters_column->setFixedWidth(kPreviewSize + 2 * kMargin + scrollBar);
    m_mainLayout->addWidget(parameters_column);
}

void MaterialEditorWindow::init_graph_ui()
{
    graph_column = new QWidget(main_row);
    auto* column = new QVBoxLayout(graph_column);
    column->setContentsMargins(0, 0, 0, 0);
    graph = new Graph(nullptr, kGraphSize, kGraphSize);
    graph_scroll = new GraphScrollBox(graph_column, graph);
    graph_scroll->setMinimumSize(kPreviewSize, kPreviewSize);
    column->addWidget(graph_scroll);
    init_problems_ui(column);
    m_mainLayout->addWidget(graph_column, 1);
}

void MaterialEditorWindow::init_blocks()
{
    auto* blocks = new QWidget(main_row);
    auto* column = new QVBoxLayout(blocks);
    column->setContentsMargins(0, kMargin, kMargin, 0);
    column->setSpacing(4);

    QHBoxLayout* findLayout = nullptr;
    QWidget* findRow = rowWidget(blocks, findLayout, 0);
    findLayout->addWidget(new QLabel(QString::fromStdString(::tr("find")), findRow));
    m_blockFilter = new QLineEdit(findRow);
    m_blockFilter->setClearButtonEnabled(true);
    findLayout->addWidget(m_blockFilter, 1);
    connect(m_blockFilter, &QLineEdit::textChanged, this, &MaterialEditorWindow::cb_changed);
    column->addWidget(findRow);

    // The tree scrolls itself; it is the block column's scroll box.
    block_browser = new BlockBrowser(blocks);
    block_browser->setGraph(graph);
    column->addWidget(block_browser, 1);
    block_browser->refresh();

    blocks->setFixedWidth(kBlockColumnWidth + kMargin);
    m_mainLayout->addWidget(blocks);
}

void MaterialEditorWindow::init_assets()
{
    assets_browser = new AssetsBrowser(bottom_row);
    assets_browser->setRootElement(m_root);
    m_bottomLayout->addWidget(assets_browser);
    bottom_row->setMinimumHeight(kAssetRowHeight);
}

// Keys reach checkShortcut wherever the focus is inside the window.
void MaterialEditorWindow::init_shortcuts()
{
    const struct {
        QKeySequence sequence;
        int key;
        uint32_t modifiers;
    } keys[] = {
        {QKeySequence(Qt::CTRL | Qt::Key_N), kKeyN, UIEventKey::kCtrl},
        {QKeySequence(Qt::CTRL | Qt::Key_O), kKeyO, UIEventKey::kCtrl},
        {QKeySequence(Qt::CTRL | Qt::Key_S), kKeyS, UIEventKey::kCtrl},
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), kKeyS, UIEventKey::kCtrl | UIEventKey::kShift},
        {QKeySequence(Qt::Key_F7), UIEventKey::kF7, 0},
    };
    for (const auto& entry : keys) {
        auto* shortcut = new QShortcut(entry.sequence, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        const UIEventKey key(entry.key, entry.modifiers);
        connect(shortcut, &QShortcut::activated, this, [this, key] { checkShortcut(key); });
    }
}

// ---- Frame ----

void MaterialEditorWindow::update(float dt)
{
    for (QWidget* window : deferred_windows)
        delete window;
    deferred_windows.clear();
    if (graph)
        graph->update(dt);
    udpate_menu();
    update_history_buttons();
    if (m_preview) {
        m_preview->update(dt);
        ++m_previewFrames;
    }
    update_live_preview(dt);
}

void MaterialEditorWindow::render()
{
    if (m_preview)
        m_preview->render();
}

bool MaterialEditorWindow::checkShortcut(const UIEventKey& key)
{
    if (!key.down)
        return false;
    if (history_shortcut(key))
        return true;
    if (key.key == kKeyN && key.modifiers == UIEventKey::kCtrl) {
        new_file();
        return true;
    }
    if (key.key == kKeyO && key.modifiers == UIEventKey::kCtrl) {
        cb_menu_file_open(nullptr, this);
        return true;
    }
    if (key.key == kKeyS && key.modifiers == (UIEventKey::kCtrl | UIEventKey::kShift)) {
        cb_menu_file_save_as(nullptr, this);
        return true;
    }
    return toolbar && toolbar->checkShortcut(key);
}

void MaterialEditorWindow::onUnload()
{
    if (layout_package)
        saveLayout(layout_package);
}

void MaterialEditorWindow::release()
{
    detach();
    clear_parameter();
}

// ---- Title and save button ----

void MaterialEditorWindow::update_window_name()
{
    const AppData& document = *AppData::get();
    const jString base = jFormat(document.isInstance() ? "%s[Instance]" : "%s", kTitleBase);
    jString title;
    if (!document.getPath().empty()) {
        title = document.getPath();
        if (!document.getParentPath().empty())
            title += "[" + document.getParentPath() + "]";
        title += " - " + base;
    } else {
        title = base;
    }
    if (modified)
        title += "*";
    m_title = title;
    if (m_root)
        m_root->setTitle(title);
}

void MaterialEditorWindow::set_window_modified(bool value)
{
    modified = value;
    update_window_name();
}

void MaterialEditorWindow::udpate_menu()
{
    Button* save = toolbar ? toolbar->getSaveButton() : nullptr;
    if (!save)
        return;
    if (modified && !save->isButtonEnabled()) {
        save->setIconColour(Button::kIconColour);
        save->setButtonEnabled(true);
    } else if (!modified && save->isButtonEnabled()) {
        save->setIconColour(Button::kDisabledIconColour);
        save->setButtonEnabled(false);
    }
}

// ---- Layout persistence ----

void MaterialEditorWindow::readLayout(Package* pkg)
{
    layout_package = pkg;
    const Package* layout = pkg ? pkg->findPackage(kLayoutPackage) : nullptr;
    read_live_layout(layout);
    if (!layout || !m_root)
        return;
    const PackageItem* pos = layout->findItem("pos");
    const PackageItem* size = layout->findItem("size");
    if (size && size->getValueCount() >= 2)
        m_root->setWindowSize(size->getInt(0), size->getInt(1));
    if (pos && pos->getValueCount() >= 2)
        m_root->setWindowPos(pos->getInt(0), pos->getInt(1));
}

void MaterialEditorWindow::saveLayout(Package* pkg)
{
    if (!pkg || !m_root)
        return;
    Package* layout = pkg->findPackage(kLayoutPackage);
    if (!layout)
        layout = pkg->addPackage(kLayoutPackage);
    int x = 0, y = 0, width = 0, height = 0;
    m_root->getWindowPos(x, y);
    m_root->getWindowSize(width, height);
    write_pair(*layout, "pos", x, y);
    write_pair(*layout, "size", width, height);
    save_live_layout(*layout);
}

// ---- Look-ups ----

jString MaterialEditorWindow::getCurrentBlockType() const
{
    const QTreeWidgetItem* item = block_browser ? block_browser->currentItem() : nullptr;
    if (!item || item->childCount() > 0)
        return jString();
    return block_browser->get_full_node_type_name(item);
}

void MaterialEditorWindow::cb_changed(const QString& text)
{
    if (!block_browser)
        return;
    block_browser->getFilter() = text.toLower().toStdString();
    block_browser->refresh();
}
