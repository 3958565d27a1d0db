#include "ProblemList.h"

#include "DocumentProblems.h"
#include "tr.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum Column { kType, kId, kMessage, kColumns };

} // namespace

ProblemList::ProblemList(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 2, 0, 0);
    layout->setSpacing(2);
    m_title = new QLabel(QString::fromStdString(::tr("problems")), this);
    layout->addWidget(m_title);
    m_tree = new QTreeWidget(this);
    m_tree->setColumnCount(kColumns);
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setSectionResizeMode(kMessage, QHeaderView::Stretch);
    m_tree->header()->setStretchLastSection(true);
    m_tree->setMaximumHeight(m_tree->fontMetrics().height() * (kRowsShown + 1) + 8);
    layout->addWidget(m_tree);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    connect(m_tree, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { on_item_clicked(item); });
    hide();
}

void ProblemList::setProblems(const DocumentProblems* problems)
{
    m_problems = problems;
    m_shownSerial = UINT64_MAX;
    refresh();
}

void ProblemList::refresh()
{
    const uint64_t serial = m_problems ? m_problems->getSerial() : 0;
    if (serial == m_shownSerial)
        return;
    m_shownSerial = serial;
    fill_rows();
    setVisible(m_tree->topLevelItemCount() > 0);
}

void ProblemList::fill_rows()
{
    m_tree->clear();
    if (!m_problems)
        return;
    QList<QTreeWidgetItem*> rows;
    for (const DocumentProblems::Entry& entry : m_problems->getEntries()) {
        auto* row = new QTreeWidgetItem;
        row->setText(kType, QString::fromStdString(entry.nodeType));
        row->setText(kId, entry.nodeId >= 0 ? QString::number(entry.nodeId) : QString());
        row->setText(kMessage, QString::fromStdString((entry.warning ? "warning: " : "") + entry.message));
        row->setData(kType, Qt::UserRole, entry.nodeId);
        rows.push_back(row);
    }
    m_tree->addTopLevelItems(rows);
    for (int column = kType; column < kMessage; ++column)
        m_tree->resizeColumnToContents(column);
}

void ProblemList::on_item_clicked(QTreeWidgetItem* item)
{
    const int id = item ? item->data(kType, Qt::UserRole).toInt() : -1;
    if (id >= 0)
        emit nodeActivated(id);
}
