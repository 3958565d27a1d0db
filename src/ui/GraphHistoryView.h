#pragma once

#include "HistoryObserver.h"

class Graph;

// Keeps the canvas in step with the document while the history undoes or
// redoes a step: adds and drops the canvas items of the nodes and links that
// come and go, moves and re-lays out the nodes that changed. Only what the
// step touched is redone, so a step costs the same on any size of graph.
class GraphHistoryView : public HistoryObserver {
public:
    explicit GraphHistoryView(Graph& graph) : m_graph(graph) {}

    void nodeAdded(DataNode* node) override;
    void nodeRemoving(DataNode* node) override;
    void jointAdded(DataJoint* joint) override;
    void jointRemoving(DataJoint* joint) override;
    void nodeMoved(DataNode* node) override;
    void nodeChanged(DataNode* node) override;
    void documentChanged() override {}

private:
    Graph& m_graph;
};
