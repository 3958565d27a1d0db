#pragma once

class DataNode;
struct DataJoint;

// What a view of the document hears while the history undoes or redoes a
// step. Ordinary edits are not reported here: whoever makes them updates its
// own view. Removals are reported before the object goes, additions after
// it is in place, so a view can find its item by the document's pointer.
class HistoryObserver {
public:
    virtual ~HistoryObserver() = default;

    virtual void nodeAdded(DataNode* node) = 0;
    virtual void nodeRemoving(DataNode* node) = 0;
    virtual void jointAdded(DataJoint* joint) = 0;
    virtual void jointRemoving(DataJoint* joint) = 0;
    virtual void nodeMoved(DataNode* node) = 0;
    // A variable or the name of the node changed.
    virtual void nodeChanged(DataNode* node) = 0;
    // Options, render settings, states, paths or the instance flag changed.
    virtual void documentChanged() = 0;
};
