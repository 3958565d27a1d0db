#pragma once

#include "DataJoint.h"
#include "DataSampler.h"
#include "EditHistory.h"
#include "MaterialState.h"
#include "NodeIdIndex.h"
#include "jString.h"

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <unordered_map>

class Block;
class BlockManager;
class Package;
class DataAnchor;
class DataNode;
class DataVariable;

// The material document: the node graph (nodes made from blocks, joints
// between their anchors), the render settings, options and shader states,
// the texture samplers in use, the editor view and the document's paths.
//
// One process-wide document is created on first use by get() and lives until
// the program ends. Nodes and joints are kept in creation order; lookups of a
// node by id, of the joints of an anchor and of an anchor by name are
// indexed (see docs/document-model.md).
class AppData {
public:
    using NodeList = std::list<std::unique_ptr<DataNode>>;
    using JointList = std::list<std::unique_ptr<DataJoint>>;

    // The first sampler every variable starts with.
    static constexpr uint32_t kDefaultSamplerIndex = 8;

    // The process-wide document, constructed on first use.
    static AppData* get();

    AppData();
    AppData(const AppData&) = delete;
    AppData& operator=(const AppData&) = delete;

    // Virtual property interface, in slot order.
    virtual const jString& getPath() const { return m_path; }
    virtual const jString& getParentPath() const { return m_parentPath; }
    virtual bool isInstance() const { return m_isInstance; }
    virtual void setInstance(bool instance) { change(&AppData::m_isInstance, instance); }
    virtual bool isForceName() const { return m_forceName; }
    virtual void setForceName(bool forceName) { change(&AppData::m_forceName, forceName); }
    virtual bool isUseFileNameAsMaterialName() const { return m_useFileNameAsMaterialName; }
    virtual void setUseFileNameAsMaterialName(bool use) { change(&AppData::m_useFileNameAsMaterialName, use); }
    virtual const jString& getBufferMask() const { return m_bufferMask; }
    virtual void setBufferMask(const jString& mask) { change(&AppData::m_bufferMask, mask); }
    virtual const jString& getDepthFunc() const { return m_depthFunc; }
    virtual void setDepthFunc(const jString& func) { change(&AppData::m_depthFunc, func); }
    virtual const jString& getBlendOp() const { return m_blendOp; }
    virtual void setBlendOp(const jString& op) { change(&AppData::m_blendOp, op); }
    virtual const jString& getBlendSrc() const { return m_blendSrc; }
    virtual void setBlendSrc(const jString& factor) { change(&AppData::m_blendSrc, factor); }
    virtual const jString& getBlendDst() const { return m_blendDst; }
    virtual void setBlendDst(const jString& factor) { change(&AppData::m_blendDst, factor); }
    virtual int32_t getRenderOrder() const { return m_renderOrder; }
    virtual void setRenderOrder(int32_t order) { change(&AppData::m_renderOrder, order); }
    virtual int32_t getDepthOffset() const { return m_depthOffset; }
    // Stores 0 for a negative offset.
    virtual void setDepthOffset(int32_t offset) { change(&AppData::m_depthOffset, offset < 0 ? 0 : offset); }
    virtual int32_t getMask() const { return m_mask; }
    virtual void setMask(int32_t mask) { change(&AppData::m_mask, mask); }
    virtual bool isTwoSided() const { return m_twoSided; }
    virtual void setTwoSided(bool twoSided) { change(&AppData::m_twoSided, twoSided); }
    virtual bool isPostScattering() const { return m_postScattering; }
    virtual void setPostScattering(bool on) { change(&AppData::m_postScattering, on); }
    virtual bool isPostFog() const { return m_postFog; }
    virtual void setPostFog(bool on) { change(&AppData::m_postFog, on); }
    virtual bool isPostTaa() const { return m_postTaa; }
    virtual void setPostTaa(bool on) { change(&AppData::m_postTaa, on); }
    virtual bool isTessellate() const { return m_tessellate; }
    virtual void setTessellate(bool on) { change(&AppData::m_tessellate, on); }

    // Declared after the slots above so that they keep their order.
    virtual ~AppData();

    // Creates, publishes and loads the block manager when there is none yet
    // (false when the blocks fail to load), then clears the document. A
    // library that fails to load is dropped whole, so every later init()
    // tries again from scratch.
    bool init();
    // Empties the document: samplers, options, states, render settings,
    // nodes and joints, and the document path. The parent path stays.
    void clear();
    // The part of a reload that does not read the document: clears it, then
    // replaces the block manager by a new one loaded from the block file.
    // False (after "BlockManager::init: can't load blocks") when the blocks
    // fail to load; then there is no block manager until the next init().
    bool reloadBlocks();

    // The headless operations re-point a loaded document (an instance of
    // the file just read, or a document that has no file yet).
    void setPath(const jString& path) { change(&AppData::m_path, path); }
    void setParentPath(const jString& path) { change(&AppData::m_parentPath, path); }

    BlockManager* getBlockManager() const { return m_blockManager.get(); }

    // Nodes, in document order.
    DataNode* createNode(const jString& type);
    bool destroyNode(DataNode* node);
    size_t getNodeCount() const { return m_nodes.size(); }
    const NodeList& getNodes() const { return m_nodes; }
    DataNode* findNode(int32_t id) const;
    // Re-keys a node (the file reader gives nodes their stored ids). False,
    // with a log, when the id is negative or held by another node.
    bool setNodeId(DataNode* node, int32_t id);
    // The number of nodes made from the block of that type.
    int getNodeCountByType(const jString& type) const;
    // The first node, in document order, whose block has that usage.
    DataNode* findNodeByUsage(int32_t usage) const;
    // The first anchor of that name on the node with that id.
    DataAnchor* findAnchor(int32_t nodeId, const jString& name) const;

    // Joints, in document order.
    DataJoint* createJoint(DataAnchor* anchor0, DataAnchor* anchor1);
    bool destroyJoint(DataJoint* joint);
    size_t getJointCount() const { return m_joints.size(); }
    const JointList& getJoints() const { return m_joints; }
    // The first joint, in document order, whose first or second anchor is it.
    DataJoint* findJoint(const DataAnchor* anchor) const;
    // The first joint, in document order, whose second anchor is it.
    DataJoint* findJointTo(const DataAnchor* anchor) const;

    // Samplers: the default one first, then those made by getSampler.
    DataSampler* getSampler(const jString& wrap, const jString& filter, uint32_t anisotropy);
    DataSampler* getDefaultSampler() { return &m_defaultSampler; }
    size_t getSamplerCount() const { return 1 + m_madeSamplers.size(); }
    DataSampler* getSamplerAt(size_t index) const;

    // Editor document file.
    // Reads a plain document or an instance (whose graph comes from its
    // parent); on success the document path becomes path.
    bool load(const jString& path);
    // The same from a parsed file; path is what the document remembers.
    bool load_document(const Package& root, const jString& path);
    // Re-reads the block library, then the current document from its path.
    bool reload();
    // Appends the "editor" and "blueprint" packages to root.
    void write_editor(Package& root) const;
    // Writes the document to path: the engine material with its generated
    // shaders and the editor packages, or, for an instance, only what it
    // overrides of its parent. False (and nothing written) when the
    // material cannot be filled or the write fails.
    bool save(const jString& path);
    // What save writes to path, made in memory only: nothing is written and
    // the document path stays. False as save when the material cannot be
    // filled.
    bool fillMaterial(Package& root, const jString& path);
    void write_blueprint(Package& root) const;
    // The document as a recovery copy: what loading needs to give it back
    // (graph, view, options, render settings and states; an instance's
    // overrides), without generating the programs, so that it is quick and
    // logs nothing. Nothing about the document changes.
    bool writeRecovery(Package& root);

    // Render states and options.
    const jVector<MaterialState>& getStates() const { return m_states; }
    jVector<MaterialState>& getStates() { return m_states; }
    // The material template named by the output node's block; "" without one.
    jString getTemplatePath() const;
    // Rebuilds the states from the template, then overlays the parent's and
    // the document's values and classifies where each value comes from.
    bool createStates();
    bool fill_material_state_value(const jString& path);
    bool fill_material_state_value_type(const jString& path, int32_t marker);
    // Reads the four render settings of a pass package (null is ignored).
    void load_operations(const Package* pass);
    // The first "shader" child whose "pass" is "ambient"; created when asked.
    static Package* find_shader_pass(Package* material, bool create);
    static const Package* find_shader_pass(const Package* material);
    // Reads the option keys present in the material's "options" package.
    void load_options(const Package* material);
    // First state of that name, or null.
    MaterialState* findState(const jString& name);
    // The first "state" child of the material whose "name" is name.
    static const Package* findStatePackage(const Package* material, const jString& name);
    // Whether the material holds the state with the state's current value;
    // found tells whether it holds the state at all.
    static bool compareState(const Package* material, const MaterialState& state, bool& found);
    // Whether the material's "options" holds key with that value.
    static bool compareOption(const Package* material, const char* key, int32_t value, bool& found);
    // The option keys in the order they are read and written.
    static const jVector<const char*>& optionKeys();
    // The value of an option by key (booleans as 0 and 1); 0 for an unknown key.
    int32_t getOptionValue(const jString& key) const;

    // Render states as edits: each is one undoable change.
    void setStateValue(size_t index, uint8_t value);
    // Drops every state (the output node is gone).
    void clearStates();
    // Records the change from before to the current states, when they differ
    // (for code that rebuilds or resets the list in place).
    void recordStatesChange(jVector<MaterialState> before);

    // The log of edits. Load, New (init), reload and clear start a fresh one.
    EditHistory& getHistory() { return m_history; }
    const EditHistory& getHistory() const { return m_history; }
    // Take back or redo the last step; false when there is none.
    bool undo();
    bool redo();
    // How a variable stands now, and setting it back to such a state.
    VariableState getVariableState(const DataVariable& variable) const;
    void setVariableState(DataVariable& variable, const VariableState& state);

    // Editor view: zoom and scroll fractions (0.5 is centred).
    float getScale() const { return m_scale; }
    void setScale(float scale) { m_scale = scale; }
    float getHScroll() const { return m_hScroll; }
    void setHScroll(float scroll) { m_hScroll = scroll; }
    float getVScroll() const { return m_vScroll; }
    void setVScroll(float scroll) { m_vScroll = scroll; }

private:
    friend class DataNode;
    friend class DataVariable;

    void change(jString AppData::*field, const jString& value);
    void change(int32_t AppData::*field, int32_t value);
    void change(bool AppData::*field, bool value);
    bool build_states();
    void record_move(const DataNode& node, int32_t x, int32_t y);
    void record_name(const DataNode& node, const jString& name);
    void record_variable(const DataNode& node, size_t index, VariableState before);
    NodeSnapshot snapshot_of(const DataNode& node) const;
    void erase_node(DataNode* node);
    EditRecord::JointLife joint_record(const DataJoint& joint, bool created) const;
    DataJoint* find_joint(int32_t nodeId, uint32_t anchor, uint64_t serial) const;
    DataAnchor* anchor_at(int32_t nodeId, uint32_t anchor) const;
    void apply(EditRecord::Any& record, bool undo);
    void apply_node(EditRecord::NodeLife& record, bool present);
    void apply_joint(const EditRecord::JointLife& record, bool present);
    void apply_move(const EditRecord::NodeMove& record, bool undo);
    void apply_variable(const EditRecord::Variable& record, bool undo);
    void apply_sampler(const EditRecord::SamplerMade& record, bool undo);
    void remove_node(EditRecord::NodeLife& record);
    void restore_node(const NodeSnapshot& snapshot);
    void restore_joint(const EditRecord::JointLife& record);
    static void insert_by_serial(jVector<DataJoint*>& joints, DataJoint* joint);

    void destroy_nodes();
    bool read_graph(const Package& graph);
    bool read_graph_children(const Package& graph);
    void give_pending_ids();
    Block* find_block(const jString& type) const;
    DataNode* add_node(Block& block, int32_t id);
    bool read_joint(const Package& joint, DataAnchor* anchors[2]) const;
    void read_editor(const Package* editor);
    void read_overrides(const Package& material);
    bool fill_plain(Package& root, const jString& name);
    bool fill_instance(Package& root, const jString& name);
    bool fill_ambient_pass(Package& pass, bool stages[3]);
    void write_render_settings(Package& pass) const;
    void write_states(Package& material) const;
    void write_options(Package& material) const;
    void write_parameters(Package& material) const;
    template <typename Apply>
    bool walk_state_values(const jString& path, const char* routine, Apply apply);
    void destroy_joints_of(DataNode* node);
    int32_t next_free_id();
    static void unlink(jVector<DataJoint*>& joints, const DataJoint* joint);

    float m_scale = 1.0f;
    float m_hScroll = 0.5f;
    float m_vScroll = 0.5f;
    std::unique_ptr<BlockManager> m_blockManager;
    NodeList m_nodes;
    JointList m_joints;
    jString m_path;
    jString m_parentPath;
    bool m_isInstance = false;
    bool m_forceName = false;
    bool m_useFileNameAsMaterialName = false;
    // Render settings (file keywords).
    jString m_bufferMask = "BUFFER_ALL";
    jString m_depthFunc = "DEPTH_LEQUAL";
    jString m_blendOp = "add";
    jString m_blendSrc = "one";
    jString m_blendDst = "zero";
    // Options.
    int32_t m_renderOrder = 0;
    int32_t m_depthOffset = 0;
    int32_t m_mask = 0;
    bool m_twoSided = false;
    bool m_postScattering = false;
    bool m_postFog = false;
    bool m_postTaa = false;
    bool m_tessellate = false;
    jVector<MaterialState> m_states;
    DataSampler m_defaultSampler{kDefaultSamplerIndex, "repeat", "bilinear", 1};
    jVector<std::unique_ptr<DataSampler>> m_madeSamplers;

    // Indexes.
    NodeIdIndex m_nodeById;
    std::unordered_map<const DataNode*, NodeList::iterator> m_nodePositions;
    std::unordered_map<jString, int> m_nodeCountByType;
    // Next fresh id; wider than an id so that a loaded id of the largest
    // value cannot overflow it.
    int64_t m_nextId = 0;
    // Where the search for a free id goes on once m_nextId has passed the
    // largest id.
    int64_t m_wrapCursor = 0;
    // Joint -> list position; the joints of an anchor are kept by the anchor.
    std::unordered_map<const DataJoint*, JointList::iterator> m_jointPositions;
    uint64_t m_nextJointSerial = 0;

    EditHistory m_history;
};
