#pragma once

#include "AssetStripView.h"
#include "jString.h"

#include <QPixmap>
#include <QWidget>

#include <unordered_map>

class Asset;
class AssetListModel;
class AssetPathBar;
class AssetThumbnailer;
class QFileSystemWatcher;
class QLineEdit;
class QMenu;
class QTimer;
class UiMsg;

// The asset strip: the current folder of the data root as one row of items
// (folders first, then files, by name) under a path bar of clickable
// crumbs and beside a filter field. Double-clicking (or Enter on) a folder enters it, on a material
// posts message 5 with the material's root-relative path; images show
// thumbnails made off the UI thread and can be dragged out (AssetDrag).
// Backspace goes up a folder; the context menu opens, shows the file in
// the file manager or copies its path. The strip follows changes on disk.
//
// Paths are root-relative throughout; nothing outside the data root is
// ever shown. A folder that cannot be read leaves the strip empty with one
// warning.
class AssetsBrowser : public QWidget {
    Q_OBJECT

public:
    // The message that opens a material in the editor (text: its path).
    static constexpr int kMsgOpenMaterial = 5;
    // The message that shows a folder (text: the folder, root-relative or
    // absolute inside the root; pointer: the UI root that asks).
    static constexpr int kMsgLocateFolder = 2;
    // The folder shown first when it exists.
    static constexpr const char* kStartFolder = "data";

    explicit AssetsBrowser(QWidget* parent = nullptr);
    ~AssetsBrowser() override;

    // Shows a folder: root-relative, or absolute inside the data root, a
    // trailing '/' allowed. False when it lies outside the root (logged; the
    // strip keeps what it shows) or cannot be read (logged; the strip is
    // left empty on that folder).
    bool showFolder(const jString& path);
    // The root-relative folder shown ("" is the root).
    const jString& getFolder() const { return m_folder; }
    // Reads the shown folder again, keeping the selection and scroll position.
    void refresh();

    // Handles message 2 and returns true; other messages are not ours. When a
    // root element is set, a message from another root (a non-null pointer
    // that differs) is left alone.
    bool processMsg(UiMsg* msg);
    void setRootElement(const void* root) { m_rootElement = root; }

    // Double-click or Enter on the item at row.
    void activate(int row);
    // Shows the parent folder, with the folder left selected.
    void goUp();
    // The context menu of the item at row (caller owns it): "Open" for
    // folders and materials, "Show in File Manager", "Copy Path". Null when
    // there is no item there.
    QMenu* makeContextMenu(int row);

    int getCount() const;
    Asset* getAsset(int row) const;
    int rowOf(const jString& path) const;
    AssetListModel* getModel() const { return m_model; }
    AssetStripView* getView() const { return m_view; }
    AssetPathBar* getPathBar() const { return m_pathBar; }
    // The field that filters the shown folder's items by name; entering
    // another folder empties it.
    QLineEdit* getFilterField() const { return m_filterField; }
    AssetThumbnailer* getThumbnailer() const { return m_thumbnailer; }
    void setDragRunner(AssetStripView::DragRunner runner);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void init_layout();
    bool show_listing(const jString& folder);
    void watch_folder();
    void on_thumbnail_ready(const QString& path, const QImage& image);
    void on_thumbnail_failed(const QString& path, const QString& reason);
    void select_row(int row);
    void set_filter(const QString& text);
    void update_empty_text();

    AssetPathBar* m_pathBar = nullptr;
    QLineEdit* m_filterField = nullptr;
    AssetStripView* m_view = nullptr;
    AssetListModel* m_model = nullptr;
    AssetThumbnailer* m_thumbnailer = nullptr;
    QFileSystemWatcher* m_watcher = nullptr;
    QTimer* m_refreshTimer = nullptr;
    jString m_folder;
    bool m_folderRead = false;
    const void* m_rootElement = nullptr;
    // Thumbnails by path, kept across folders (a null pixmap: it failed).
    std::unordered_map<jString, QPixmap> m_thumbnails;
};
