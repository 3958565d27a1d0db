#pragma once

#include "jString.h"

#include <QWidget>

class AppData;
class AttrWrap;
class DataNode;
class Graph;
class GraphNode;
class QVBoxLayout;

// A property panel of the parameters column: the panel of one node of the
// graph, or (MaterialExpressionGlobal) of the material as a whole. A panel
// is a vertical layout of collapsible sections; create() builds them from
// the document and may be called again to rebuild them with the document's
// current values (the window's refresh in place). Every control reads the
// document when it is built and writes each edit back through the document
// at once: the panel keeps no copy of any value.
class MaterialExpression : public QWidget {
public:
    // Which panel a window holds (getKind()).
    enum Kind : int {
        KIND_BASE = 0,
        KIND_CONSTANT = 1,
        KIND_TEXTURE_2D = 2,
        KIND_TEXTURE_3D = 3,
        KIND_TEXTURE_CUBE = 4,
        KIND_GLOBAL = 5,
    };

    // node is null for the global options panel.
    MaterialExpression(QWidget* parent, AppData* document, Graph* graph, GraphNode* node);
    ~MaterialExpression() override;
    MaterialExpression(const MaterialExpression&) = delete;
    MaterialExpression& operator=(const MaterialExpression&) = delete;

    // Builds (or rebuilds) the panel's sections. True when the panel shows
    // something.
    virtual bool create();
    // Takes the sections down; the panel stays usable for another create().
    virtual void release();
    virtual int getKind() const { return KIND_BASE; }

    AppData* getDocument() const { return m_document; }
    Graph* getGraph() const { return m_graph; }
    GraphNode* getNode() const { return m_node; }
    DataNode* getDataNode() const;
    QVBoxLayout* getLayout() const { return m_layout; }
    AttrWrap* getSection() const { return section; }

protected:
    // Adds a new section titled title at the end of the panel.
    AttrWrap* add_section(const jString& title);
    // The base panel's section: "Base" with the block's caption, and one
    // editor row per node variable.
    bool create_base();

    AttrWrap* section = nullptr;

private:
    AppData* m_document;
    Graph* m_graph;
    GraphNode* m_node;
    QVBoxLayout* m_layout = nullptr;
};
