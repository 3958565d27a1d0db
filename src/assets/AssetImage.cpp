#include "AssetImage.h"

#include "AssetIcons.h"

AssetImage::AssetImage(jString path) : Asset(std::move(path), Kind::Image) {}

void AssetImage::setThumbnail(const QPixmap& thumbnail)
{
    m_thumbnail = thumbnail;
    m_state = Thumbnail::Ready;
}

QPixmap AssetImage::getIcon() const
{
    return m_state == Thumbnail::Ready ? m_thumbnail : AssetIcons::get(Kind::Image);
}
