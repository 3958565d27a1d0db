#pragma once

#include <cstdint>

class DataAnchor;
class DataNode;

// One link between two anchors of the document. The canvas links an output
// (first anchor) to an input (second anchor); the node pointers are taken
// from the anchors when the joint is made.
struct DataJoint {
    DataNode* node0 = nullptr;
    DataNode* node1 = nullptr;
    DataAnchor* anchor0 = nullptr;
    DataAnchor* anchor1 = nullptr;
    // Creation number within the document: orders the joints of an anchor.
    uint64_t serial = 0;
};
