// The document's side of the edit history: recording what its mutators
// change, and putting changes back (undo) or forward again (redo).
#include "AppData.h"

#include "Block.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "HistoryObserver.h"
#include "jLog.h"

#include <algorithm>
#include <iterator>

namespace {

template <typename Notify>
void tell(HistoryObserver* observer, Notify notify)
{
    if (observer)
        notify(*observer);
}

} // namespace

// ---- Recording ----

void AppData::change(jString AppData::*field, const jString& value)
{
    if (this->*field == value)
        return;
    if (m_history.isRecording())
        m_history.record(EditRecord::TextSetting{field, this->*field, value});
    this->*field = value;
}

void AppData::change(int32_t AppData::*field, int32_t value)
{
    if (this->*field == value)
        return;
    m_history.record(EditRecord::NumberSetting{field, this->*field, value});
    this->*field = value;
}

void AppData::change(bool AppData::*field, bool value)
{
    if (this->*field == value)
        return;
    m_history.record(EditRecord::FlagSetting{field, this->*field, value});
    this->*field = value;
}

bool AppData::createStates()
{
    if (!m_history.isRecording())
        return build_states();
    jVector<MaterialState> before = m_states;
    const bool built = build_states();
    recordStatesChange(std::move(before));
    return built;
}

void AppData::setStateValue(size_t index, uint8_t value)
{
    if (index >= m_states.size()) {
        jLog::error("%s:%s", "AppData::setStateValue", "index < m_states.size()");
        return;
    }
    MaterialState& state = m_states[index];
    if (state.value == value)
        return;
    m_history.record(EditRecord::StateValue{static_cast<uint32_t>(index), state.value, value});
    state.value = value;
}

void AppData::clearStates()
{
    if (m_states.empty())
        return;
    m_history.record(EditRecord::States{std::move(m_states), {}});
    m_states.clear();
}

void AppData::recordStatesChange(jVector<MaterialState> before)
{
    if (before != m_states)
        m_history.record(EditRecord::States{std::move(before), m_states});
}

void AppData::record_move(const DataNode& node, int32_t x, int32_t y)
{
    m_history.record(EditRecord::NodeMove{node.getId(), node.m_posX, node.m_posY, x, y});
}

void AppData::record_name(const DataNode& node, const jString& name)
{
    if (m_history.isRecording())
        m_history.record(EditRecord::NodeName{node.getId(), node.m_name, name});
}

void AppData::record_variable(const DataNode& node, size_t index, VariableState before)
{
    VariableState after = getVariableState(node.m_vars[index]);
    if (after != before)
        m_history.record(EditRecord::Variable{node.getId(), static_cast<uint32_t>(index), std::move(before),
            std::move(after)});
}

VariableState AppData::getVariableState(const DataVariable& variable) const
{
    VariableState state{variable.getValue(), variable.getFormat(), variable.getWrap(), variable.getFilter(),
        variable.getAnisotropy(), 0, variable.getAsyn(), {}};
    for (size_t i = 0; i < getSamplerCount(); ++i) {
        if (getSamplerAt(i) == variable.getSampler()) {
            state.sampler = static_cast<uint32_t>(i);
            break;
        }
    }
    state.subValues.reserve(variable.getSubValueCount());
    for (size_t i = 0; i < variable.getSubValueCount(); ++i)
        state.subValues.push_back(variable.getSubValue(i)->getValue());
    return state;
}

void AppData::setVariableState(DataVariable& variable, const VariableState& state)
{
    variable.setValue(state.value);
    variable.setFormat(state.format);
    variable.setWrap(state.wrap);
    variable.setFilter(state.filter);
    variable.setAnisotropy(state.anisotropy);
    DataSampler* sampler = getSamplerAt(state.sampler);
    variable.setSampler(sampler ? sampler : getDefaultSampler());
    variable.setAsyn(state.asyn);
    for (size_t i = 0; i < state.subValues.size() && i < variable.getSubValueCount(); ++i)
        variable.getSubValue(i)->setValue(state.subValues[i]);
}

NodeSnapshot AppData::snapshot_of(const DataNode& node) const
{
    NodeSnapshot snapshot;
    snapshot.id = node.getId();
    const auto next = std::next(m_nodePositions.at(&node));
    snapshot.next = next == m_nodes.end() ? NodeSnapshot::kAtEnd : (*next)->getId();
    snapshot.type = node.getBlock()->getType();
    snapshot.x = node.m_posX;
    snapshot.y = node.m_posY;
    snapshot.name = node.m_name;
    snapshot.variables.reserve(node.m_vars.size());
    for (const DataVariable& variable : node.m_vars)
        snapshot.variables.push_back(getVariableState(variable));
    snapshot.linkValues.reserve(node.m_anchors.size());
    for (const DataAnchor& anchor : node.m_anchors)
        snapshot.linkValues.push_back(anchor.getLinkValue());
    return snapshot;
}

EditRecord::JointLife AppData::joint_record(const DataJoint& joint, bool created) const
{
    const auto anchorIndex = [](const DataAnchor* anchor) {
        return static_cast<uint32_t>(anchor - anchor->getNode()->m_anchors.begin());
    };
    EditRecord::JointLife record{created, joint.node0->getId(), joint.node1->getId(), anchorIndex(joint.anchor0),
        anchorIndex(joint.anchor1), joint.serial, EditRecord::JointLife::kAtEnd};
    const auto next = std::next(m_jointPositions.at(&joint));
    if (next != m_joints.end()) {
        record.next = (*next)->serial;
        record.nextNode = (*next)->node0->getId();
        record.nextAnchor = anchorIndex((*next)->anchor0);
    }
    return record;
}

// ---- Undo and redo ----

bool AppData::undo()
{
    EditHistory::Step* step = m_history.takeUndo();
    if (!step)
        return false;
    EditHistory::Pause pause(m_history);
    for (auto record = step->rbegin(); record != step->rend(); ++record)
        apply(*record, true);
    return true;
}

bool AppData::redo()
{
    EditHistory::Step* step = m_history.takeRedo();
    if (!step)
        return false;
    EditHistory::Pause pause(m_history);
    for (EditRecord::Any& record : *step)
        apply(record, false);
    return true;
}

void AppData::apply(EditRecord::Any& any, bool undo)
{
    HistoryObserver* observer = m_history.getObserver();
    if (auto* node = std::get_if<EditRecord::NodeLife>(&any)) {
        apply_node(*node, node->created != undo);
    } else if (const auto* joint = std::get_if<EditRecord::JointLife>(&any)) {
        apply_joint(*joint, joint->created != undo);
    } else if (const auto* move = std::get_if<EditRecord::NodeMove>(&any)) {
        apply_move(*move, undo);
    } else if (const auto* variable = std::get_if<EditRecord::Variable>(&any)) {
        apply_variable(*variable, undo);
    } else if (const auto* sampler = std::get_if<EditRecord::SamplerMade>(&any)) {
        apply_sampler(*sampler, undo);
    } else if (const auto* name = std::get_if<EditRecord::NodeName>(&any)) {
        if (DataNode* node = findNode(name->id)) {
            node->m_name = undo ? name->before : name->after;
            tell(observer, [node](HistoryObserver& o) { o.nodeChanged(node); });
        }
    } else {
        if (const auto* text = std::get_if<EditRecord::TextSetting>(&any))
            this->*(text->field) = undo ? text->before : text->after;
        else if (const auto* number = std::get_if<EditRecord::NumberSetting>(&any))
            this->*(number->field) = undo ? number->before : number->after;
        else if (const auto* flag = std::get_if<EditRecord::FlagSetting>(&any))
            this->*(flag->field) = undo ? flag->before : flag->after;
        else if (const auto* state = std::get_if<EditRecord::StateValue>(&any)) {
            if (state->index < m_states.size())
                m_states[state->index].value = undo ? state->before : state->after;
        } else if (const auto* states = std::get_if<EditRecord::States>(&any)) {
            m_states = undo ? states->before : states->after;
        }
        tell(observer, [](HistoryObserver& o) { o.documentChanged(); });
    }
}

void AppData::apply_node(EditRecord::NodeLife& record, bool present)
{
    if (present)
        restore_node(record.node);
    else
        remove_node(record);
}

void AppData::remove_node(EditRecord::NodeLife& record)
{
    DataNode* node = findNode(record.node.id);
    if (!node)
        return;
    tell(m_history.getObserver(), [node](HistoryObserver& o) { o.nodeRemoving(node); });
    // A node made by this step is captured as it stands now, for redo.
    record.node = snapshot_of(*node);
    erase_node(node);
}

void AppData::restore_node(const NodeSnapshot& snapshot)
{
    Block* block = find_block(snapshot.type);
    if (!block || findNode(snapshot.id))
        return;
    const DataNode* next = snapshot.next == NodeSnapshot::kAtEnd ? nullptr : findNode(snapshot.next);
    const auto where = next ? m_nodePositions.at(next) : m_nodes.end();
    const auto position = m_nodes.insert(where, std::unique_ptr<DataNode>(new DataNode(this, snapshot.id, block)));
    DataNode* node = position->get();
    m_nodeById.insert(snapshot.id, node);
    m_nodePositions.emplace(node, position);
    ++m_nodeCountByType[block->getType()];
    if (int64_t(snapshot.id) >= m_nextId)
        m_nextId = int64_t(snapshot.id) + 1;

    node->m_posX = snapshot.x;
    node->m_posY = snapshot.y;
    node->m_name = snapshot.name;
    for (size_t i = 0; i < snapshot.variables.size() && i < node->m_vars.size(); ++i)
        setVariableState(node->m_vars[i], snapshot.variables[i]);
    for (size_t i = 0; i < snapshot.linkValues.size() && i < node->m_anchors.size(); ++i)
        node->m_anchors[i].setLinkValue(snapshot.linkValues[i]);
    tell(m_history.getObserver(), [node](HistoryObserver& o) { o.nodeAdded(node); });
}

DataAnchor* AppData::anchor_at(int32_t nodeId, uint32_t anchor) const
{
    const DataNode* node = findNode(nodeId);
    return node ? node->m_anchors.at(anchor) : nullptr;
}

DataJoint* AppData::find_joint(int32_t nodeId, uint32_t anchor, uint64_t serial) const
{
    const DataAnchor* first = anchor_at(nodeId, anchor);
    if (!first)
        return nullptr;
    for (DataJoint* joint : first->m_asFirst) {
        if (joint->serial == serial)
            return joint;
    }
    return nullptr;
}

void AppData::apply_joint(const EditRecord::JointLife& record, bool present)
{
    if (present) {
        restore_joint(record);
        return;
    }
    DataJoint* joint = find_joint(record.node0, record.anchor0, record.serial);
    if (!joint)
        return;
    tell(m_history.getObserver(), [joint](HistoryObserver& o) { o.jointRemoving(joint); });
    destroyJoint(joint);
}

// Joints are kept in serial order, in the document's list and in each
// anchor's lists; a joint put back takes its old serial and its old place.
void AppData::restore_joint(const EditRecord::JointLife& record)
{
    DataAnchor* anchor0 = anchor_at(record.node0, record.anchor0);
    DataAnchor* anchor1 = anchor_at(record.node1, record.anchor1);
    if (!anchor0 || !anchor1)
        return;
    const DataJoint* next = record.next == EditRecord::JointLife::kAtEnd
        ? nullptr
        : find_joint(record.nextNode, record.nextAnchor, record.next);
    auto joint = std::make_unique<DataJoint>();
    joint->node0 = anchor0->getNode();
    joint->node1 = anchor1->getNode();
    joint->anchor0 = anchor0;
    joint->anchor1 = anchor1;
    joint->serial = record.serial;
    const auto where = next ? m_jointPositions.at(next) : m_joints.end();
    const auto position = m_joints.insert(where, std::move(joint));
    DataJoint* restored = position->get();
    m_jointPositions.emplace(restored, position);
    insert_by_serial(anchor0->m_asFirst, restored);
    insert_by_serial(anchor1->m_asSecond, restored);
    m_nextJointSerial = std::max(m_nextJointSerial, record.serial + 1);
    tell(m_history.getObserver(), [restored](HistoryObserver& o) { o.jointAdded(restored); });
}

void AppData::insert_by_serial(jVector<DataJoint*>& joints, DataJoint* joint)
{
    const auto where = std::upper_bound(joints.begin(), joints.end(), joint,
        [](const DataJoint* a, const DataJoint* b) { return a->serial < b->serial; });
    joints.insert(where, joint);
}

void AppData::apply_move(const EditRecord::NodeMove& record, bool undo)
{
    DataNode* node = findNode(record.id);
    if (!node)
        return;
    const int32_t sign = undo ? -1 : 1;
    node->m_posX += sign * (record.x1 - record.x0);
    node->m_posY += sign * (record.y1 - record.y0);
    tell(m_history.getObserver(), [node](HistoryObserver& o) { o.nodeMoved(node); });
}

void AppData::apply_variable(const EditRecord::Variable& record, bool undo)
{
    DataNode* node = findNode(record.id);
    if (!node || record.index >= node->m_vars.size())
        return;
    setVariableState(node->m_vars[record.index], undo ? record.before : record.after);
    tell(m_history.getObserver(), [node](HistoryObserver& o) { o.nodeChanged(node); });
}

// The sampler a step made is the last of the list when the step is undone.
void AppData::apply_sampler(const EditRecord::SamplerMade& record, bool undo)
{
    if (undo) {
        if (!m_madeSamplers.empty())
            m_madeSamplers.pop_back();
        return;
    }
    const auto index = static_cast<uint32_t>(getSamplerCount() + kDefaultSamplerIndex);
    m_madeSamplers.push_back(std::make_unique<DataSampler>(index, record.wrap, record.filter, record.anisotropy));
}
