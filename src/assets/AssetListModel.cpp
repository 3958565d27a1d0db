#include "AssetListModel.h"

#include "AssetImage.h"

#include <QIcon>

AssetListModel::AssetListModel(QObject* parent) : QAbstractListModel(parent) {}

AssetListModel::~AssetListModel() = default;

void AssetListModel::setAssets(std::vector<std::unique_ptr<Asset>> assets)
{
    beginResetModel();
    m_assets = std::move(assets);
    m_rows.clear();
    m_rows.reserve(m_assets.size());
    for (size_t row = 0; row < m_assets.size(); ++row)
        m_rows.emplace(m_assets[row]->getPath(), int(row));
    endResetModel();
}

Asset* AssetListModel::assetAt(int row) const
{
    return row >= 0 && size_t(row) < m_assets.size() ? m_assets[size_t(row)].get() : nullptr;
}

int AssetListModel::rowOf(const jString& path) const
{
    auto found = m_rows.find(path);
    return found == m_rows.end() ? -1 : found->second;
}

AssetImage* AssetListModel::imageOf(const jString& path) const
{
    Asset* asset = assetAt(rowOf(path));
    return asset && asset->getKind() == Asset::Kind::Image ? static_cast<AssetImage*>(asset) : nullptr;
}

void AssetListModel::refreshRow(int row)
{
    const QModelIndex changed = index(row);
    emit dataChanged(changed, changed, {Qt::DecorationRole});
}

void AssetListModel::setThumbnail(const jString& path, const QPixmap& thumbnail)
{
    if (AssetImage* image = imageOf(path)) {
        image->setThumbnail(thumbnail);
        refreshRow(rowOf(path));
    }
}

void AssetListModel::setThumbnailFailed(const jString& path)
{
    if (AssetImage* image = imageOf(path))
        image->setThumbnailFailed();
}

int AssetListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_assets.size());
}

QVariant AssetListModel::data(const QModelIndex& index, int role) const
{
    Asset* asset = assetAt(index.row());
    if (!asset || index.parent().isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(asset->getName());
    case Qt::DecorationRole:
        if (asset->getKind() == Asset::Kind::Image) {
            auto* image = static_cast<AssetImage*>(asset);
            if (image->getThumbnailState() == AssetImage::Thumbnail::None) {
                image->setThumbnailPending();
                emit thumbnailWanted(QString::fromStdString(asset->getPath()));
            }
        }
        // An icon rather than a pixmap: the view draws it at its icon size.
        return QIcon(asset->getIcon());
    case Qt::ToolTipRole:
        return QString::fromStdString(asset->getToolTip());
    case PathRole:
        return QString::fromStdString(asset->getPath());
    default:
        return {};
    }
}

Qt::ItemFlags AssetListModel::flags(const QModelIndex& index) const
{
    Asset* asset = assetAt(index.row());
    if (!asset)
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (asset->getKind() == Asset::Kind::Image)
        flags |= Qt::ItemIsDragEnabled;
    return flags;
}
