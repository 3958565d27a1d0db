#pragma once

#include <QListView>

#include <functional>

class QDrag;

// The list view of the strip: one row of icons with their names under them,
// scrolled sideways. It starts the drag of an image itself so that the
// drag can be handed to a runner (tests run it without a modal loop), and
// turns Backspace into a request for the parent folder and Enter into an
// activation of the current item.
class AssetStripView : public QListView {
    Q_OBJECT

public:
    using DragRunner = std::function<void(QDrag&)>;

    explicit AssetStripView(QWidget* parent = nullptr);

    void setDragRunner(DragRunner runner) { m_dragRunner = std::move(runner); }
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

private:
    DragRunner m_dragRunner;
    QString m_emptyText;
};
