#pragma once

#include <QWidget>

#include <cstdint>

class DocumentProblems;
class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

// The "Problems" list under the graph canvas: one row per problem of the
// document (node type, node id, message), hidden while there is none.
// Clicking a row of a node emits nodeActivated with its id; the window
// selects that node and scrolls the canvas to it.
class ProblemList : public QWidget {
    Q_OBJECT

public:
    static constexpr int kRowsShown = 5;

    explicit ProblemList(QWidget* parent);

    void setProblems(const DocumentProblems* problems);
    // Rebuilds the rows when the problems changed since the last refresh.
    void refresh();

    QTreeWidget* getTree() const { return m_tree; }

signals:
    void nodeActivated(int nodeId);

private:
    void fill_rows();
    void on_item_clicked(QTreeWidgetItem* item);

    const DocumentProblems* m_problems = nullptr;
    uint64_t m_shownSerial = UINT64_MAX;
    QLabel* m_title = nullptr;
    QTreeWidget* m_tree = nullptr;
};
