#pragma once

#include "jString.h"

#include <QLabel>

#include <functional>

class QMimeData;

// The texture thumbnail of a texture panel: a fixed square showing an image
// of the data root, blended over the panel (alpha blending), that takes a
// texture dropped on it. The drop hands the dropped path to the drop
// callback as it came: a root-relative path from the asset strip, or an
// absolute one (a file dragged from a file manager); the panel decides what
// the path becomes.
class UISpriteDrop : public QLabel {
public:
    using DropCallback = std::function<void(const jString& path)>;

    UISpriteDrop(QWidget* parent, int size, const jString& texture);

    // Shows the image at a root-relative path (the black texture when it
    // cannot be read).
    void setTexture(const jString& path);
    const jString& getTexture() const { return m_texture; }
    void setOnDrop(DropCallback callback) { m_onDrop = std::move(callback); }

    // The path a drop carries: the asset strip's path, else the first local
    // file of a URL list, else the plain text; empty for anything else.
    static jString droppedPath(const QMimeData* mime);
    // What a drop of that data does (the drop event calls it).
    void drop(const QMimeData* mime);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static bool carriesPath(const QMimeData* mime);

    int m_size;
    jString m_texture;
    DropCallback m_onDrop;
};
