#include "AssetStripView.h"

#include "AssetDrag.h"
#include "AssetListModel.h"

#include <QDrag>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include <algorithm>

namespace {

// Every item takes its whole cell, so each name has the cell's width
// (with uniform sizes the view would otherwise size all items like the
// first one).
class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        const QSize grid = static_cast<const QListView*>(parent())->gridSize();
        return grid - QSize(6, 2);
    }
};

} // namespace

AssetStripView::AssetStripView(QWidget* parent) : QListView(parent)
{
    setViewMode(QListView::IconMode);
    setFlow(QListView::LeftToRight);
    setWrapping(false);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    // Every cell has the same size, so laying out a thousand items costs
    // nothing and only the items in sight are ever asked for.
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setTextElideMode(Qt::ElideMiddle);
    setWordWrap(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setItemDelegate(new CellDelegate(this));
    fit_cells();
}

void AssetStripView::setCellWidth(int width)
{
    m_cellWidth = width;
    fit_cells();
}

void AssetStripView::fit_cells()
{
    const int text = fontMetrics().height();
    const int icon = std::clamp(viewport()->height() - text - 10, kMinIcon, kMaxIcon);
    const QSize cell(m_cellWidth, icon + text + 8);
    if (iconSize() == QSize(icon, icon) && gridSize() == cell)
        return;
    setIconSize(QSize(icon, icon));
    setGridSize(cell);
}

void AssetStripView::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    fit_cells();
}

void AssetStripView::startDrag(Qt::DropActions)
{
    const QModelIndex current = currentIndex();
    if (!current.isValid() || !(model()->flags(current) & Qt::ItemIsDragEnabled))
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(AssetDrag::makeMimeData(current.data(AssetListModel::PathRole).toString().toStdString()));
    const QPixmap icon = current.data(Qt::DecorationRole).value<QIcon>().pixmap(iconSize());
    if (!icon.isNull()) {
        drag->setPixmap(icon);
        drag->setHotSpot(QPoint(icon.width() / 2, icon.height() / 2));
    }
    if (m_dragRunner)
        m_dragRunner(*drag);
    else
        drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
}

void AssetStripView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier) {
        emit parentFolderWanted();
        event->accept();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid()) {
        emit currentActivated(currentIndex());
        event->accept();
        return;
    }
    QListView::keyPressEvent(event);
}

void AssetStripView::wheelEvent(QWheelEvent* event)
{
    // The strip only scrolls sideways: the wheel moves it that way.
    QPoint delta = event->angleDelta();
    if (delta.x() == 0 && delta.y() != 0) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta.y());
        event->accept();
        return;
    }
    QListView::wheelEvent(event);
}

void AssetStripView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (model() && model()->rowCount() == 0 && !m_emptyText.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(viewport()->rect(), Qt::AlignCenter, m_emptyText);
    }
}
