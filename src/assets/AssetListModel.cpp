#include "AssetListModel.h"

#include "AssetImage.h"

#include <QIcon>

#include <algorithm>
#include <cctype>

namespace {

jString toLower(jString text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

} // namespace

AssetListModel::AssetListModel(QObject* parent) : QAbstractListModel(parent) {}

AssetListModel::~AssetListModel() = default;

void AssetListModel::setAssets(std::vector<std::unique_ptr<Asset>> assets)
{
    beginResetModel();
    m_assets = std::move(assets);
    m_images.clear();
    for (const std::unique_ptr<Asset>& asset : m_assets)
        if (asset->getKind() == Asset::Kind::Image)
            m_images.emplace(asset->getPath(), static_cast<AssetImage*>(asset.get()));
    select_rows();
    endResetModel();
}

void AssetListModel::setFilter(const jString& filter)
{
    jString lowered = toLower(filter);
    if (lowered == m_filter)
        return;
    beginResetModel();
    m_filter = std::move(lowered);
    select_rows();
    endResetModel();
}

void AssetListModel::select_rows()
{
    m_shown.clear();
    m_rows.clear();
    m_shown.reserve(m_assets.size());
    m_rows.reserve(m_assets.size());
    for (const std::unique_ptr<Asset>& asset : m_assets) {
        if (!m_filter.empty() && toLower(asset->getName()).find(m_filter) == jString::npos)
            continue;
        m_rows.emplace(asset->getPath(), int(m_shown.size()));
        m_shown.push_back(asset.get());
    }
}

Asset* AssetListModel::assetAt(int row) const
{
    return row >= 0 && size_t(row) < m_shown.size() ? m_shown[size_t(row)] : nullptr;
}

int AssetListModel::rowOf(const jString& path) const
{
    auto found = m_rows.find(path);
    return found == m_rows.end() ? -1 : found->second;
}

AssetImage* AssetListModel::imageOf(const jString& path) const
{
    auto found = m_images.find(path);
    return found == m_images.end() ? nullptr : found->second;
}

void AssetListModel::refreshRow(int row)
{
    const QModelIndex changed = index(row);
    emit dataChanged(changed, changed, {Qt::DecorationRole});
}

void AssetListModel::setThumbnail(const jString& path, const QPixmap& thumbnail)
{
    AssetImage* image = imageOf(path);
    if (!image)
        return;
    image->setThumbnail(thumbnail);
    if (const int row = rowOf(path); row >= 0)
        refreshRow(row);
}

void AssetListModel::setThumbnailFailed(const jString& path)
{
    if (AssetImage* image = imageOf(path))
        image->setThumbnailFailed();
}

int AssetListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
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
