#include "UISpriteDrop.h"

#include "AssetDrag.h"
#include "UICanvasTextures.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

UISpriteDrop::UISpriteDrop(QWidget* parent, int size, const jString& texture) : QLabel(parent), m_size(size)
{
    setFixedSize(size, size);
    setAcceptDrops(true);
    setAlignment(Qt::AlignCenter);
    setTexture(texture);
}

void UISpriteDrop::setTexture(const jString& path)
{
    m_texture = path;
    const QImage& image = UICanvasTextures::thumbnail(path);
    QPixmap pixmap(m_size, m_size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(0, 0, m_size, m_size), image);
    painter.end();
    setPixmap(pixmap);
    setToolTip(QString::fromStdString(path));
}

jString UISpriteDrop::droppedPath(const QMimeData* mime)
{
    if (!mime)
        return {};
    if (AssetDrag::isAssetDrag(mime))
        return AssetDrag::path(mime);
    if (mime->hasUrls()) {
        for (const QUrl& url : mime->urls())
            if (url.isLocalFile())
                return url.toLocalFile().toStdString();
        return {};
    }
    return mime->hasText() ? mime->text().trimmed().toStdString() : jString();
}

bool UISpriteDrop::carriesPath(const QMimeData* mime)
{
    return mime && (AssetDrag::isAssetDrag(mime) || mime->hasUrls() || mime->hasText());
}

void UISpriteDrop::drop(const QMimeData* mime)
{
    if (m_onDrop)
        m_onDrop(droppedPath(mime));
}

void UISpriteDrop::dragEnterEvent(QDragEnterEvent* event)
{
    if (carriesPath(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void UISpriteDrop::dragMoveEvent(QDragMoveEvent* event)
{
    if (carriesPath(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void UISpriteDrop::dropEvent(QDropEvent* event)
{
    if (!carriesPath(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    drop(event->mimeData());
}
