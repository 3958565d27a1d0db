#pragma once

#include "Asset.h"

// An image file (DDS, PNG, TGA, JPG). It shows the picture icon until its
// thumbnail has been made off the UI thread (AssetThumbnailer), and keeps it
// when it cannot be made. Images are what the strip lets the user drag out.
class AssetImage : public Asset {
public:
    enum class Thumbnail { None, Pending, Ready, Failed };

    explicit AssetImage(jString path);

    Thumbnail getThumbnailState() const { return m_state; }
    void setThumbnailPending() { m_state = Thumbnail::Pending; }
    void setThumbnail(const QPixmap& thumbnail);
    void setThumbnailFailed() { m_state = Thumbnail::Failed; }

    QPixmap getIcon() const override;

private:
    QPixmap m_thumbnail;
    Thumbnail m_state = Thumbnail::None;
};
