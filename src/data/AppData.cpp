#include "AppData.h"

#include "Block.h"
#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "jLog.h"

#include <algorithm>
#include <iterator>
#include <limits>

AppData* AppData::get()
{
    static AppData document;
    return &document;
}

AppData::AppData() = default;

AppData::~AppData()
{
    destroy_nodes();
}

bool AppData::init()
{
    if (!m_blockManager) {
        auto manager = std::make_unique<BlockManager>();
        BlockManager::setCurrent(manager.get());
        // A library that failed to load is not kept: the next init() starts
        // from scratch and fails the same way instead of using half of it.
        if (!manager->init()) {
            BlockManager::setCurrent(nullptr);
            return false;
        }
        m_blockManager = std::move(manager);
    }
    clear();
    return true;
}

void AppData::clear()
{
    EditHistory::Pause pause(m_history);
    m_forceName = false;

    m_madeSamplers.clear();
    m_renderOrder = 0;
    m_depthOffset = 0;
    m_mask = 0;
    m_twoSided = false;
    m_postScattering = false;
    m_postFog = false;
    m_postTaa = false;
    m_tessellate = false;

    m_states.clear();

    // A cleared document differs from a new one in its blend factors: "none"
    // for both here, "one" and "zero" after construction.
    setBufferMask("BUFFER_ALL");
    setDepthFunc("DEPTH_LEQUAL");
    setBlendOp("add");
    setBlendSrc("none");
    setBlendDst("none");
    setInstance(false);
    setUseFileNameAsMaterialName(false);

    destroy_nodes();
    m_path.clear();
    m_history.clear();
}

bool AppData::reloadBlocks()
{
    clear();
    // No node refers to the old manager's blocks any more, so it goes now;
    // init() loads the new one.
    m_blockManager.reset();
    return init();
}

void AppData::destroy_nodes()
{
    for (auto& node : m_nodes)
        node->release();
    m_nodes.clear();
    m_nodeById.clear();
    m_nodePositions.clear();
    m_nodeCountByType.clear();
    m_nextId = 0;
    m_wrapCursor = 0;

    m_joints.clear();
    m_jointPositions.clear();
    m_nextJointSerial = 0;
}

DataNode* AppData::createNode(const jString& type)
{
    Block* block = find_block(type);
    if (!block)
        return nullptr;
    DataNode* node = add_node(*block, next_free_id());
    EditRecord::NodeLife record;
    record.node.id = node->getId();
    record.node.type = type;
    m_history.record(std::move(record));
    return node;
}

Block* AppData::find_block(const jString& type) const
{
    Block* block = m_blockManager ? m_blockManager->getBlock(type) : nullptr;
    if (!block)
        jLog::error("%s:Unknown Block type \"%s\"", "AppData::createNode", type.c_str());
    return block;
}

// A node made while a graph is read has no id until it reads its record or
// the whole graph is read (see give_pending_ids).
DataNode* AppData::add_node(Block& block, int32_t id)
{
    m_nodes.push_back(std::unique_ptr<DataNode>(new DataNode(this, id, &block)));
    DataNode* node = m_nodes.back().get();
    if (id != DataNode::kPendingId)
        m_nodeById.insert(id, node);
    m_nodePositions.emplace(node, std::prev(m_nodes.end()));
    ++m_nodeCountByType[block.getType()];
    return node;
}

int32_t AppData::next_free_id()
{
    constexpr int64_t kLargest = std::numeric_limits<int32_t>::max();
    if (m_nextId > kLargest) {
        // Loaded ids reached the top of the range: hand out free ids from a
        // cursor that starts at 0 and only moves on, so a run of new nodes
        // costs linear time in all.
        while (m_nodeById.contains(static_cast<int32_t>(m_wrapCursor)))
            m_wrapCursor = m_wrapCursor == kLargest ? 0 : m_wrapCursor + 1;
        return static_cast<int32_t>(m_wrapCursor);
    }
    while (m_nodeById.contains(static_cast<int32_t>(m_nextId)))
        ++m_nextId;
    return static_cast<int32_t>(m_nextId++);
}

bool AppData::destroyNode(DataNode* node)
{
    if (!m_nodePositions.count(node))
        return false;
    // The node and its joints go as one step.
    EditHistory::Group group(m_history);
    destroy_joints_of(node);
    if (m_history.isRecording())
        m_history.record(EditRecord::NodeLife{false, snapshot_of(*node)});
    erase_node(node);
    return true;
}

void AppData::erase_node(DataNode* node)
{
    const auto position = m_nodePositions.find(node);
    m_nodeById.erase(node->getId());
    const auto count = m_nodeCountByType.find(node->getBlock()->getType());
    if (count != m_nodeCountByType.end() && --count->second == 0)
        m_nodeCountByType.erase(count);
    node->release();
    m_nodes.erase(position->second);
    m_nodePositions.erase(position);
}

void AppData::destroy_joints_of(DataNode* node)
{
    jVector<DataJoint*> joints;
    auto collect = [&](const DataAnchor* anchor) {
        joints.insert(joints.end(), anchor->m_asFirst.begin(), anchor->m_asFirst.end());
        joints.insert(joints.end(), anchor->m_asSecond.begin(), anchor->m_asSecond.end());
    };
    for (size_t i = 0; i < node->getInputLinkCount(); ++i)
        collect(node->getInputLink(i));
    for (size_t i = 0; i < node->getOutputLinkCount(); ++i)
        collect(node->getOutputLink(i));
    for (size_t i = 0; i < node->getInputPathCount(); ++i)
        collect(node->getInputPath(i));
    for (size_t i = 0; i < node->getOutputPathCount(); ++i)
        collect(node->getOutputPath(i));
    // A joint between two anchors of this node is collected twice; the
    // second destroyJoint finds nothing. Newest first: each joint is then
    // the last in the lists of this node's anchors, so removing a node with
    // a wide fan-out takes linear time.
    for (auto joint = joints.rbegin(); joint != joints.rend(); ++joint)
        destroyJoint(*joint);
}

DataNode* AppData::findNode(int32_t id) const
{
    return m_nodeById.find(id);
}

bool AppData::setNodeId(DataNode* node, int32_t id)
{
    if (!m_nodePositions.count(node)) {
        jLog::error("%s:%s", "AppData::setNodeId", "node is not in the document");
        return false;
    }
    if (id < 0) {
        jLog::error("%s: invalid node id %d", "AppData::setNodeId", id);
        return false;
    }
    if (node->getId() == id)
        return true;
    if (m_nodeById.contains(id)) {
        jLog::error("%s: node id %d is already in use", "AppData::setNodeId", id);
        return false;
    }
    if (node->getId() != DataNode::kPendingId)
        m_nodeById.erase(node->getId());
    m_nodeById.insert(id, node);
    node->m_id = id;
    if (int64_t(id) >= m_nextId)
        m_nextId = int64_t(id) + 1;
    return true;
}

int AppData::getNodeCountByType(const jString& type) const
{
    const auto found = m_nodeCountByType.find(type);
    return found == m_nodeCountByType.end() ? 0 : found->second;
}

DataNode* AppData::findNodeByUsage(int32_t usage) const
{
    for (const auto& node : m_nodes)
        if (node->getBlock()->getUsage() == usage)
            return node.get();
    return nullptr;
}

DataAnchor* AppData::findAnchor(int32_t nodeId, const jString& name) const
{
    const DataNode* node = findNode(nodeId);
    return node ? node->findAnchor(name) : nullptr;
}

DataJoint* AppData::createJoint(DataAnchor* anchor0, DataAnchor* anchor1)
{
    if (!anchor0 || !anchor1) {
        jLog::error("%s:%s", "AppData::createJoint", "anchor0&&anchor1");
        return nullptr;
    }
    auto joint = std::make_unique<DataJoint>();
    joint->node0 = anchor0->getNode();
    joint->node1 = anchor1->getNode();
    joint->anchor0 = anchor0;
    joint->anchor1 = anchor1;
    joint->serial = m_nextJointSerial++;
    m_joints.push_back(std::move(joint));
    DataJoint* created = m_joints.back().get();
    m_jointPositions.emplace(created, std::prev(m_joints.end()));
    // Serials only grow, so appending keeps each anchor's joints oldest first.
    anchor0->m_asFirst.push_back(created);
    anchor1->m_asSecond.push_back(created);
    if (m_history.isRecording())
        m_history.record(joint_record(*created, true));
    return created;
}

bool AppData::destroyJoint(DataJoint* joint)
{
    const auto position = m_jointPositions.find(joint);
    if (position == m_jointPositions.end())
        return false;
    if (m_history.isRecording())
        m_history.record(joint_record(*joint, false));
    unlink(joint->anchor0->m_asFirst, joint);
    unlink(joint->anchor1->m_asSecond, joint);
    m_joints.erase(position->second);
    m_jointPositions.erase(position);
    return true;
}

void AppData::unlink(jVector<DataJoint*>& joints, const DataJoint* joint)
{
    // Searched from the newest end, where removals usually happen.
    const auto found = std::find(joints.rbegin(), joints.rend(), joint);
    if (found != joints.rend())
        joints.erase(std::next(found).base());
}

DataJoint* AppData::findJoint(const DataAnchor* anchor) const
{
    if (!anchor)
        return nullptr;
    const DataJoint* first = anchor->m_asFirst.empty() ? nullptr : anchor->m_asFirst.front();
    const DataJoint* second = anchor->m_asSecond.empty() ? nullptr : anchor->m_asSecond.front();
    if (first && second)
        return const_cast<DataJoint*>(first->serial < second->serial ? first : second);
    return const_cast<DataJoint*>(first ? first : second);
}

DataJoint* AppData::findJointTo(const DataAnchor* anchor) const
{
    return !anchor || anchor->m_asSecond.empty() ? nullptr : anchor->m_asSecond.front();
}

DataSampler* AppData::getSampler(const jString& wrap, const jString& filter, uint32_t anisotropy)
{
    for (size_t i = 0; i < getSamplerCount(); ++i) {
        DataSampler* sampler = getSamplerAt(i);
        if (sampler->getWrap() == wrap && sampler->getFilter() == filter
            && sampler->getAnisotropy() == anisotropy)
            return sampler;
    }
    const auto index = static_cast<uint32_t>(getSamplerCount() + kDefaultSamplerIndex);
    m_madeSamplers.push_back(std::make_unique<DataSampler>(index, wrap, filter, anisotropy));
    m_history.record(EditRecord::SamplerMade{wrap, filter, anisotropy});
    return m_madeSamplers.back().get();
}

DataSampler* AppData::getSamplerAt(size_t index) const
{
    if (index == 0)
        return const_cast<DataSampler*>(&m_defaultSampler);
    return index <= m_madeSamplers.size() ? m_madeSamplers[index - 1].get() : nullptr;
}
