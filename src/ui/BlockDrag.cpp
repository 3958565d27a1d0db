#include "BlockDrag.h"

#include <QDrag>
#include <QMimeData>
#include <QWidget>

Qt::DropAction BlockDrag::start(QWidget* source, const jString& typeName)
{
    auto* drag = new QDrag(source);
    drag->setMimeData(makeMimeData(typeName));
    return drag->exec(Qt::CopyAction, Qt::CopyAction);
}

QMimeData* BlockDrag::makeMimeData(const jString& typeName)
{
    auto* mime = new QMimeData;
    mime->setData(kMimeType, QByteArray::fromStdString(typeName));
    mime->setText(QString::fromStdString(typeName));
    return mime;
}

bool BlockDrag::isBlockDrag(const QMimeData* mime)
{
    return mime && mime->hasFormat(kMimeType);
}

jString BlockDrag::typeName(const QMimeData* mime)
{
    return isBlockDrag(mime) ? mime->data(kMimeType).toStdString() : jString();
}
