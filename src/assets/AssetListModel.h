#pragma once

#include "Asset.h"

#include <QAbstractListModel>

#include <memory>
#include <unordered_map>
#include <vector>

class AssetImage;

// The items of the strip's current folder for its list view. Image
// thumbnails are asked for when the view first asks for an image's icon,
// that is when the item is painted, so only the items in sight cost
// anything; the wish goes out through thumbnailWanted.
class AssetListModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int PathRole = Qt::UserRole + 1;

    explicit AssetListModel(QObject* parent = nullptr);
    ~AssetListModel() override;

    void setAssets(std::vector<std::unique_ptr<Asset>> assets);
    // Every item of the folder, shown or not.
    const std::vector<std::unique_ptr<Asset>>& getAssets() const { return m_assets; }
    // Shows only the items whose name contains filter, ignoring case; an
    // empty filter shows all.
    void setFilter(const jString& filter);
    const jString& getFilter() const { return m_filter; }
    // The item shown at row; null when there is none.
    Asset* assetAt(int row) const;
    // The row of a path; -1 when it is not shown.
    int rowOf(const jString& path) const;

    // Gives an image item its thumbnail (or marks it failed) and repaints it;
    // an image hidden by the filter keeps it for when it shows again.
    void setThumbnail(const jString& path, const QPixmap& thumbnail);
    void setThumbnailFailed(const jString& path);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void thumbnailWanted(const QString& path) const;

private:
    AssetImage* imageOf(const jString& path) const;
    void refreshRow(int row);
    void select_rows();

    std::vector<std::unique_ptr<Asset>> m_assets;
    std::vector<Asset*> m_shown;
    std::unordered_map<jString, int> m_rows; // shown items only
    std::unordered_map<jString, AssetImage*> m_images; // every image, shown or not
    jString m_filter; // lower case
};
