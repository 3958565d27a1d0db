#pragma once

#include "UIEventKey.h"
#include "UIEventMouse.h"
#include "jString.h"

#include <QPoint>
#include <QTreeWidget>

#include <functional>

class Block;
class BlockManager;
class Graph;
class QDrag;

// The tree of the block library's node types, the source of the drags that
// create nodes on the graph. Type names are dot-separated paths, one tree
// level per component; only leaves are types. A leaf's tooltip names the
// block and its anchors. Double-clicking a leaf, or Enter on it, creates
// that node in the middle of the graph's visible area, as a drop there
// would.
class BlockBrowser : public QTreeWidget {
public:
    static constexpr const char* kDragIcon = "data/core/editor/gui/function.dds";
    static constexpr int kDragIconSize = 32;

    // How a drag is carried out; exec() by default. Tests replace it, as
    // the offscreen platform runs no drag.
    using DragRunner = std::function<Qt::DropAction(QDrag&)>;

    explicit BlockBrowser(QWidget* parent = nullptr);
    ~BlockBrowser() override;

    // When not empty, only type names whose lower-cased form contains it
    // are listed. Used as stored: the owner lower-cases it.
    virtual jString& getFilter() { return m_filter; }

    // Rebuilds the tree from the document's block library, in its order.
    void refresh();
    void build(const BlockManager& blocks);

    // The full type name of a leaf; empty (with a warning) for an item that
    // has children, and for null.
    jString get_full_node_type_name(const QTreeWidgetItem* item) const;
    // The item of a full type name, or null.
    QTreeWidgetItem* findLeaf(const jString& typeName) const;

    // The graph that double-click and Enter create nodes on (not owned).
    void setGraph(Graph* graph) { m_graph = graph; }
    // Creates the leaf's node at the centre of the graph's visible area
    // through the graph's drop; false when nothing was created.
    bool createNode(const QTreeWidgetItem* item);

    void setDragRunner(DragRunner runner) { m_dragRunner = std::move(runner); }

    // Pointer records in viewport coordinates. A move with the left button
    // held, far enough from the press, starts the drag of the current item;
    // true then.
    virtual bool onMouseDown(UIEventMouse& event);
    virtual bool onMouseMove(UIEventMouse& event);
    // Enter on a leaf creates its node.
    virtual bool onKeyPress(UIEventKey& event);

    static jString tooltipOf(const Block& block);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void start_drag();
    // Where a drop in the middle of what the user sees of the graph lands,
    // in graph pixels.
    QPoint visible_centre() const;

    jString m_filter;
    Graph* m_graph = nullptr;
    DragRunner m_dragRunner;
    QPoint m_pressPos;
    bool m_pressed = false;
};
