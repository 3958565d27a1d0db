#include "AssetsBrowser.h"

#include "Asset.h"
#include "AssetFolderReader.h"
#include "AssetIcons.h"
#include "AssetImage.h"
#include "AssetListModel.h"
#include "AssetPathBar.h"
#include "AssetThumbnailer.h"
#include "MsgMngr.h"
#include "UiMsg.h"
#include "jDir.h"
#include "jKit.h"
#include "jLog.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileSystemWatcher>
#include <QGuiApplication>
#include <QMenu>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

namespace {

// Thumbnails kept before the cache starts over.
constexpr size_t kThumbnailCacheLimit = 2048;
// Changes on disk come in bursts (a save writes a temporary file and
// renames it); the strip reads the folder once they settle.
constexpr int kRefreshDelayMs = 150;
// Wide enough for names like "glass_tinted.mat" in the editor's font;
// longer names are shortened in the middle, keeping the extension.
constexpr int kCellWidth = 120;
constexpr int kFilterWidth = 180;

jString joinFolder(const jString& folder, const jString& name)
{
    return folder.empty() ? name : folder + "/" + name;
}

} // namespace

AssetsBrowser::AssetsBrowser(QWidget* parent) : QWidget(parent)
{
    init_layout();
    const jString start = kStartFolder;
    if (jDir::isDirectory(jDir::resolveRead(start)))
        showFolder(start);
    else
        showFolder({});
}

AssetsBrowser::~AssetsBrowser() = default;

void AssetsBrowser::init_layout()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    m_pathBar = new AssetPathBar(this);
    m_filterField = new QLineEdit(this);
    m_filterField->setPlaceholderText(QStringLiteral("Filter"));
    m_filterField->setClearButtonEnabled(true);
    m_filterField->setMaximumWidth(kFilterWidth);
    top->addWidget(m_pathBar, 1);
    top->addWidget(m_filterField);
    m_view = new AssetStripView(this);
    m_model = new AssetListModel(this);
    m_thumbnailer = new AssetThumbnailer(AssetIcons::kSize, this);
    m_watcher = new QFileSystemWatcher(this);
    m_refreshTimer = new QTimer(this);
    m_refreshTimer->setSingleShot(true);
    m_refreshTimer->setInterval(kRefreshDelayMs);

    m_view->setModel(m_model);
    m_view->setCellWidth(kCellWidth);
    layout->addLayout(top);
    layout->addWidget(m_view, 1);

    connect(m_pathBar, &AssetPathBar::folderClicked, this,
            [this](const QString& folder) { showFolder(folder.toStdString()); });
    connect(m_filterField, &QLineEdit::textChanged, this, &AssetsBrowser::set_filter);
    connect(m_view, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) { activate(index.row()); });
    connect(m_view, &AssetStripView::parentFolderWanted, this, &AssetsBrowser::goUp);
    connect(m_view, &AssetStripView::currentActivated, this, [this](const QModelIndex& index) { activate(index.row()); });
    connect(m_model, &AssetListModel::thumbnailWanted, this,
            [this](const QString& path) { m_thumbnailer->request(path.toStdString()); });
    connect(m_thumbnailer, &AssetThumbnailer::thumbnailReady, this, &AssetsBrowser::on_thumbnail_ready);
    connect(m_thumbnailer, &AssetThumbnailer::thumbnailFailed, this, &AssetsBrowser::on_thumbnail_failed);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, m_refreshTimer, qOverload<>(&QTimer::start));
    connect(m_refreshTimer, &QTimer::timeout, this, &AssetsBrowser::refresh);
}

bool AssetsBrowser::showFolder(const jString& path)
{
    jString folder;
    if (!AssetFolderReader::toRootRelative(path, folder)) {
        jLog::warning("AssetsBrowser: \"%s\" is outside the data root", path.c_str());
        return false;
    }
    m_thumbnailer->cancelPending();
    // A filter belongs to the folder it was typed in.
    if (folder != m_folder && !m_filterField->text().isEmpty()) {
        const QSignalBlocker quiet(m_filterField);
        m_filterField->clear();
        m_model->setFilter({});
    }
    const bool read = show_listing(folder);
    m_view->horizontalScrollBar()->setValue(0);
    return read;
}

bool AssetsBrowser::show_listing(const jString& folder)
{
    std::vector<AssetFolderReader::Entry> entries;
    jString reason;
    const bool read = AssetFolderReader::list(folder, entries, reason);
    if (!read)
        jLog::warning("AssetsBrowser: can't read the folder \"%s\": %s", folder.c_str(), reason.c_str());
    std::vector<std::unique_ptr<Asset>> assets;
    assets.reserve(entries.size());
    for (const AssetFolderReader::Entry& entry : entries) {
        std::unique_ptr<Asset> asset = Asset::create(joinFolder(folder, entry.name), entry.folder);
        if (asset->getKind() == Asset::Kind::Image) {
            auto found = m_thumbnails.find(asset->getPath());
            if (found != m_thumbnails.end()) {
                auto* image = static_cast<AssetImage*>(asset.get());
                if (found->second.isNull())
                    image->setThumbnailFailed();
                else
                    image->setThumbnail(found->second);
            }
        }
        assets.push_back(std::move(asset));
    }
    m_folder = folder;
    m_folderRead = read;
    m_model->setAssets(std::move(assets));
    update_empty_text();
    m_pathBar->setFolder(folder);
    watch_folder();
    return read;
}

void AssetsBrowser::watch_folder()
{
    if (!m_watcher->directories().isEmpty())
        m_watcher->removePaths(m_watcher->directories());
    QStringList folders;
    for (const jString& root : {jDir::getProjectRoot(), jDir::getBundledRoot()}) {
        const jString path = m_folder.empty() ? root : jKit::joinPath(root, m_folder);
        const QString folder = QString::fromStdString(path);
        if (jDir::isDirectory(path) && !folders.contains(folder))
            folders << folder;
    }
    if (!folders.isEmpty())
        m_watcher->addPaths(folders);
}

void AssetsBrowser::refresh()
{
    const int scroll = m_view->horizontalScrollBar()->value();
    const QModelIndex current = m_view->currentIndex();
    const jString selected = current.isValid() ? current.data(AssetListModel::PathRole).toString().toStdString() : jString();
    // Files may have changed in place: their thumbnails are made again.
    m_thumbnails.clear();
    m_thumbnailer->cancelPending();
    show_listing(m_folder);
    select_row(rowOf(selected));
    m_view->horizontalScrollBar()->setValue(scroll);
}

bool AssetsBrowser::processMsg(UiMsg* msg)
{
    if (!msg || msg->getCode() != kMsgLocateFolder)
        return false;
    if (m_rootElement && msg->getPtr() && msg->getPtr() != m_rootElement)
        return false;
    showFolder(msg->getText());
    return true;
}

void AssetsBrowser::activate(int row)
{
    const Asset* asset = getAsset(row);
    if (!asset)
        return;
    if (asset->isFolder())
        showFolder(asset->getPath());
    else if (asset->getKind() == Asset::Kind::Material)
        MsgMngr::instance().postStr(kMsgOpenMaterial, asset->getPath());
}

void AssetsBrowser::goUp()
{
    if (m_folder.empty())
        return;
    const jString child = m_folder;
    showFolder(jKit::getDirectory(m_folder));
    select_row(rowOf(child));
}

void AssetsBrowser::select_row(int row)
{
    if (row < 0)
        return;
    const QModelIndex index = m_model->index(row);
    m_view->setCurrentIndex(index);
    m_view->scrollTo(index);
}

QMenu* AssetsBrowser::makeContextMenu(int row)
{
    const Asset* asset = getAsset(row);
    if (!asset)
        return nullptr;
    auto* menu = new QMenu(this);
    const jString path = asset->getPath();
    if (asset->isFolder() || asset->getKind() == Asset::Kind::Material)
        connect(menu->addAction(QStringLiteral("Open")), &QAction::triggered, this, [this, path] { activate(rowOf(path)); });
    connect(menu->addAction(QStringLiteral("Show in File Manager")), &QAction::triggered, this,
            [path] { jKit::openPath(path); });
    connect(menu->addAction(QStringLiteral("Copy Path")), &QAction::triggered, this,
            [path] { QGuiApplication::clipboard()->setText(QString::fromStdString(path)); });
    return menu;
}

void AssetsBrowser::contextMenuEvent(QContextMenuEvent* event)
{
    const QPoint local = m_view->viewport()->mapFrom(this, event->pos());
    const QModelIndex index = m_view->indexAt(local);
    std::unique_ptr<QMenu> menu(makeContextMenu(index.row()));
    if (!menu)
        return;
    m_view->setCurrentIndex(index);
    menu->exec(event->globalPos());
}

void AssetsBrowser::set_filter(const QString& text)
{
    m_model->setFilter(text.toStdString());
    update_empty_text();
}

void AssetsBrowser::update_empty_text()
{
    if (!m_folderRead)
        m_view->setEmptyText(QStringLiteral("This folder can't be read"));
    else if (!m_model->getAssets().empty())
        m_view->setEmptyText(QStringLiteral("No name contains \"%1\"").arg(m_filterField->text()));
    else
        m_view->setEmptyText(QStringLiteral("This folder is empty"));
    m_view->viewport()->update();
}

int AssetsBrowser::getCount() const
{
    return m_model->rowCount();
}

Asset* AssetsBrowser::getAsset(int row) const
{
    return m_model->assetAt(row);
}

int AssetsBrowser::rowOf(const jString& path) const
{
    return m_model->rowOf(path);
}

void AssetsBrowser::setDragRunner(AssetStripView::DragRunner runner)
{
    m_view->setDragRunner(std::move(runner));
}

void AssetsBrowser::on_thumbnail_ready(const QString& path, const QImage& image)
{
    if (m_thumbnails.size() >= kThumbnailCacheLimit)
        m_thumbnails.clear();
    const jString key = path.toStdString();
    const QPixmap thumbnail = QPixmap::fromImage(image);
    m_thumbnails[key] = thumbnail;
    m_model->setThumbnail(key, thumbnail);
}

void AssetsBrowser::on_thumbnail_failed(const QString& path, const QString& reason)
{
    const jString key = path.toStdString();
    jLog::warning("AssetsBrowser: can't make a thumbnail of \"%s\": %s", key.c_str(), reason.toStdString().c_str());
    m_thumbnails[key] = QPixmap();
    m_model->setThumbnailFailed(key);
}
