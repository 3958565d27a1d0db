#pragma once

#include "UICanvas.h"
#include "jString.h"

#include <QPointer>

#include <cstdint>
#include <unordered_map>
#include <vector>

class AppData;
class Block;
class DocumentProblems;
class GraphAnchor;
class GraphJoint;
class GraphNode;
class QMenu;
struct DataJoint;

// The editing surface of the material graph: one GraphNode per document
// node, one GraphJoint per document link. It turns pointer, key and drop
// input into edits of the document (AppData) and reports every edit as a
// numbered notification on the message bus. It paints nothing itself: it
// recolours, reorders and hit-tests the canvas items its nodes and joints
// own.
class Graph : public UICanvas {
    Q_OBJECT

public:
    // Notification codes.
    static constexpr int kMsgLocateInAssets = 2;
    static constexpr int kMsgNodeCreated = 7;
    static constexpr int kMsgNodeAdded = 8;
    static constexpr int kMsgSelectionChanged = 10;
    static constexpr int kMsgNodeMoved = 12;
    static constexpr int kMsgNodeRemoved = 13;
    static constexpr int kMsgLinkMade = 19;
    static constexpr int kMsgJointRemoved = 20;
    static constexpr int kMsgCentred = 24;
    static constexpr int kMsgNotice = 31;

    static constexpr uint32_t kNoCopy = 0xFFFFFFFF;
    // A held key repeats at most once per this many seconds.
    static constexpr float kKeyRepeatDelay = 0.05f;
    static constexpr float kLineHitDistance = 8.0f;
    static constexpr int kKeyC = 99;
    static constexpr int kKeyV = 118;

    static constexpr Colour kBackground{0.15f, 0.15f, 0.15f, 1.0f};
    static constexpr Colour kWhite{1.0f, 1.0f, 1.0f, 1.0f};
    static constexpr Colour kDimmed{0.5f, 0.5f, 0.5f, 1.0f};
    static constexpr Colour kNoHighlight{0.0f, 0.0f, 0.0f, 0.0f};
    static constexpr Colour kHovered{0.8f, 0.8f, 0.8f, 1.0f};
    static constexpr Colour kCyan{0.0f, 1.0f, 1.0f, 1.0f};
    static constexpr Colour kYellow{1.0f, 1.0f, 0.0f, 1.0f};
    // The links of the node whose property panel is shown.
    static constexpr Colour kLinkHighlight{1.0f, 0.6f, 0.2f, 1.0f};
    // Frame of a node with a problem, under the hover and selection tints.
    static constexpr Colour kProblem{1.0f, 0.35f, 0.3f, 1.0f};

    Graph(QWidget* parent, int width, int height);
    ~Graph() override;

    // Frame step: runs down the key repeat timer.
    using QWidget::update;
    void update(float dt);

    // Registry. The graph owns what is added and frees what is removed.
    void addNode(GraphNode* node);
    void removeNode(GraphNode* node);
    void addJoint(GraphJoint* joint);
    void removeJoint(GraphJoint* joint);
    // The joint of a document link between two nodes of the graph; null
    // when a node or an anchor is missing.
    GraphJoint* createGrahpJoint(DataJoint* link);
    // Creates a document node of that type at canvas-local pixels (x, y).
    GraphNode* create_node(const jString& type, int x, int y);
    // The canvas follows a document that changed under it (undo, redo): these
    // add or drop only the canvas items, never a document node or link.
    void dropNodeView(GraphNode* node);
    void dropJointView(GraphJoint* joint);
    GraphJoint* findJointByLink(const DataJoint* link) const;
    void clear();

    // Look-ups; with duplicates the first registered wins.
    GraphNode* findNode(int32_t id) const;
    GraphNode* findNodeByPolygon(ItemId polygon) const;
    GraphAnchor* findAnchorByPolygon(ItemId polygon) const;
    GraphJoint* findJointByArrow(ItemId polygon) const;

    // The zoom: the canvas transform becomes a scale of s.
    virtual void setScale(float s);

    void selectNode(GraphNode* node);
    // Tints every link that starts or ends on node (null: none); the tint
    // stays through the highlight refreshes until another node (or none)
    // takes its place.
    void highlightLinks(GraphNode* node);
    GraphNode* getLinksHighlighted() const { return m_linksNode; }
    void selectJoint(GraphJoint* joint);
    void moveAllNodes(int dx, int dy);
    void refreshJoints(GraphNode* node);
    // Moves the nodes so that their mean position is at the visible centre.
    void centerGraph();

    // Recolours for the pointer at widget pixels (x, y); (-1, -1) for none.
    void refreshHighlight(int x, int y);
    // Pointing hand over a node, arrow elsewhere.
    void checkCursor(UIEventMouse& event);
    // The menu over a texture node, built but not shown; null when none
    // applies. The graph keeps it until the next one is made.
    QMenu* make_context_menu(UIEvent& event);

    bool onMouseDown(UIEventMouse& event) override;
    bool onMouseMove(UIEventMouse& event) override;
    bool onMouseUp(UIEventMouse& event) override;
    bool onKeyPress(UIEventKey& event) override;
    bool onDropFinish(UIEventDrop& event) override;

    const std::vector<GraphNode*>& getNodes() const { return m_nodes; }
    const std::vector<GraphJoint*>& getJoints() const { return m_joints; }
    GraphNode* getSelectedNode() const { return m_selectedNode; }
    GraphJoint* getSelectedJoint() const { return m_selectedJoint; }
    GraphAnchor* getPressedAnchor() const { return m_pressedAnchor; }
    uint32_t getCopiedNodeId() const { return m_copiedNodeId; }
    int32_t getLastKey() const { return m_lastKey; }
    float getKeyTimer() const { return m_keyTimer; }
    int getLastMouseX() const { return m_lastMouseX; }
    int getLastMouseY() const { return m_lastMouseY; }
    bool isLeftDown() const { return m_leftDown; }
    ItemId getLinkLine() const { return m_linkLine; }
    uint32_t getOrderCounter() const { return m_orderCounter; }
    // Keyboard focus as the graph's handlers see it.
    bool isFocused() const { return m_focused; }

    // The problem list the canvas shows (GraphProblems.cpp): nodes with a
    // problem get a red frame and a badge, and their messages as tooltip.
    void setProblems(const DocumentProblems* problems) { m_problems = problems; }
    const DocumentProblems* getProblems() const { return m_problems; }
    // Badges and tints again, after the problem list changed.
    void refreshProblems();
    // The messages of the node under widget pixel (x, y); empty when none.
    jString problemTextAt(int x, int y);

signals:
    void pressedUnfocused(UIEventMouse* event, Graph* graph);
    void pressedFocused(UIEventMouse* event, Graph* graph);
    void released(UIEventMouse* event, Graph* graph);
    void clicked(UIEventMouse* event, Graph* graph);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    // What lies under a point: the topmost polygon and whose it is.
    struct Hit {
        ItemId polygon = kNoItem;
        GraphNode* node = nullptr;
        GraphAnchor* anchor = nullptr;
        GraphJoint* arrow = nullptr;
    };
    // Who owns a polygon, by polygon id (the canvas hands out small ids).
    struct PolygonOwner {
        GraphNode* node = nullptr;
        GraphAnchor* anchor = nullptr;
        GraphJoint* arrow = nullptr;
    };

    static AppData& doc();
    static bool isEditableInInstance(const GraphNode* node);
    Colour nodeBaseColour(const GraphNode* node, bool instance) const;

    void focus_canvas();
    void unfocus_canvas();
    bool is_inside(const UIEventMouse& event) const;
    Point window_to_local(int x, int y) const;
    Hit hit_test(Point local) const;
    GraphJoint* find_hit_line(Point local) const;

    void press_left(const UIEventMouse& event);
    bool drag_node(int dx, int dy);
    void draw_link_line(const UIEventMouse& event);
    void link_anchors(GraphAnchor* pressed, GraphAnchor* target);
    GraphJoint* find_joint_between(const GraphAnchor* a, const GraphAnchor* b) const;
    void replace_links_into(const GraphAnchor* target);
    bool drop_allowed(const Block& block) const;

    PolygonOwner* owner_slot(ItemId polygon);
    const PolygonOwner* find_owner(ItemId polygon) const;
    void index_node(GraphNode* node);
    void unindex_node(GraphNode* node);
    void index_joint(GraphJoint* joint);
    void unindex_joint(GraphJoint* joint);
    // Removes a joint from the document and the canvas and frees it; the
    // caller has taken it out of m_joints and sends the notification.
    void destroy_joint(GraphJoint* joint);
    void release_joint(GraphJoint* joint);
    void begin_gesture();
    void end_gesture();
    void forget_node(GraphNode* node);
    void apply_highlight(const Hit& hit, Point local, bool pointerValid);
    void tint_links(GraphNode* node);
    void reset_tinted(bool instance);
    void reset_all_colours(bool instance);
    void rest_node(GraphNode* node, bool instance);

    bool key_delete();
    bool key_copy();
    bool key_paste();

    int32_t m_lastKey = -1;
    float m_keyTimer = 1.0f;
    uint32_t m_orderCounter = 0;
    ItemId m_linkLine = kNoItem;
    std::vector<GraphNode*> m_nodes;
    std::vector<GraphJoint*> m_joints;
    GraphNode* m_selectedNode = nullptr;
    GraphAnchor* m_pressedAnchor = nullptr;
    GraphJoint* m_selectedJoint = nullptr;
    GraphNode* m_linksNode = nullptr;
    uint32_t m_copiedNodeId = kNoCopy;
    int m_lastMouseX = 0;
    int m_lastMouseY = 0;
    bool m_leftDown = false;
    bool m_focused = false;
    // A left press opened an undo group that its release closes.
    bool m_gestureOpen = false;

    // Indexes over the vectors above (the first registration wins, as a
    // scan in vector order would find it).
    std::unordered_map<const GraphNode*, int> m_nodeRefs;
    std::unordered_map<const GraphJoint*, int> m_jointRefs;
    std::unordered_map<int32_t, GraphNode*> m_nodeById;
    // Who owns a polygon, by polygon id.
    std::vector<PolygonOwner> m_polygonOwners;

    // Items whose colours may differ from their resting colour: the
    // highlight refresh resets only these.
    std::vector<GraphNode*> m_tintedNodes;
    std::vector<GraphAnchor*> m_tintedAnchors;
    std::vector<GraphJoint*> m_tintedJoints;
    bool m_tintsValid = false;
    bool m_tintsInstance = false;

    QPointer<QMenu> m_contextMenu;
    const DocumentProblems* m_problems = nullptr;
};
