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
    const std::vector<std::unique_ptr<Asset>>& getAssets() const { return m_assets; }
    Asset* assetAt(int row) const;
    // The row of a path; -1 when it is not listed.
    int rowOf(const jString& path) const;

    // Gives an image item its thumbnail (or marks it failed) and repaints it.
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

    std::vector<std::unique_ptr<Asset>> m_assets;
    std::unordered_map<jString, int> m_rows;
};
