#pragma once

#include <QListView>

#include <functional>

class QDrag;

// The list view of the strip: one row of icons with their names under them,
// scrolled sideways, the icons sized to the strip's height. It starts the drag of an image itself so that the
// drag can be handed to a runner (tests run it without a modal loop), and
// turns Backspace into a request for the parent folder and Enter into an
// activation of the current item.
class AssetStripView : public QListView {
    Q_OBJECT

public:
    using DragRunner = std::function<void(QDrag&)>;

    explicit AssetStripView(QWidget* parent = nullptr);

    void setDragRunner(DragRunner runner) { m_dragRunner = std::move(runner); }
    // Cells are this wide; icons are as large as the height allows, from
    // kMinIcon to kMaxIcon pixels, with the name under them.
    void setCellWidth(int width);
    static constexpr int kMinIcon = 24;
    static constexpr int kMaxIcon = 64;
    // What the view says when it has no items.
    void setEmptyText(const QString& text) { m_emptyText = text; }
    const QString& getEmptyText() const { return m_emptyText; }

signals:
    void parentFolderWanted();
    // Enter or Return on the current item.
    void currentActivated(const QModelIndex& index);

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit_cells();

    DragRunner m_dragRunner;
    int m_cellWidth = 120;
    QString m_emptyText;
};
