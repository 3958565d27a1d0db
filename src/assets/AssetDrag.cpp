#include "AssetDrag.h"

#include <QMimeData>

QMimeData* AssetDrag::makeMimeData(const jString& path)
{
    auto* mime = new QMimeData;
    mime->setData(kMimeType, QByteArray::fromStdString(path));
    mime->setText(QString::fromStdString(path));
    return mime;
}

bool AssetDrag::isAssetDrag(const QMimeData* mime)
{
    return mime && mime->hasFormat(kMimeType);
}

jString AssetDrag::path(const QMimeData* mime)
{
    return isAssetDrag(mime) ? mime->data(kMimeType).toStdString() : jString();
}
