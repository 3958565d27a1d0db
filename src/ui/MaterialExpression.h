#pragma once

#include "jString.h"

#include <QWidget>

#include <functional>
#include <vector>

class AppData;
class AttrWrap;
class DataNode;
class DataVariable;
class Graph;
class GraphNode;
class QGridLayout;
class QLineEdit;
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

    // Posted after a panel changed a node's value (the window marks the
    // document modified) and after it changed a texture path (the window
    // also notes that textures must be reloaded).
    static constexpr int kMsgValueEdited = 14;
    static constexpr int kMsgTextureEdited = 15;

    // Row spacing, section content margin and least label width of the
    // panels' grids.
    static constexpr int kRowSpacing = 4;
    static constexpr int kContentMargin = 5;
    static constexpr int kLabelWidth = 72;

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

    // The "Base" section's title: "Base", or "Base(<caption>)" when the
    // node's block has a caption (its type name).
    static jString baseTitle(const DataNode* node);
    // Shows the document's current values again in every field of the
    // panel, without rebuilding it (after an edit, so that two fields bound
    // to one value agree).
    void refreshValues();

protected:
    // Adds a new section titled title at the end of the panel.
    AttrWrap* add_section(const jString& title);
    // A two-column grid (labels, fields) filling a section's content.
    static QGridLayout* add_grid(AttrWrap* wrap);
    // Appends a row: a label and a field taking the rest of the width.
    void add_row(QGridLayout* grid, const jString& label, QWidget* field);
    // The base panel's section: "Base" with the block's caption, and one
    // editor row per node variable.
    bool create_base();

    // The editor of one node variable, chosen by its type; parent is the
    // section content it goes into.
    QWidget* make_variable_editor(QWidget* parent, size_t index);
    // Numeric field for a "float" or "int" value text of variable index.
    QWidget* make_number_field(QWidget* parent, size_t index, const jString& type);
    // A read-only path field scrolled to its end: a path too long for the
    // field shows its file name rather than its root.
    static void show_path_end(QLineEdit* field);
    // Writes a variable's value text through the node and tells the window.
    void set_variable_value(size_t index, const jString& value);
    // Called by every field after it has written to the document.
    void value_edited(int code = kMsgValueEdited);
    // Keeps a field's refresh for refreshValues().
    void keep_refresh(std::function<void()> refresh) { m_refreshers.push_back(std::move(refresh)); }

    AttrWrap* section = nullptr;

private:
    AppData* m_document;
    Graph* m_graph;
    GraphNode* m_node;
    QVBoxLayout* m_layout = nullptr;
    std::vector<std::function<void()>> m_refreshers;
};
