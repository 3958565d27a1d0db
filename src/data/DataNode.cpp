#include "DataNode.h"

#include "AppData.h"
#include "Block.h"
#include "DataSampler.h"
#include "jLog.h"

#include <optional>

namespace {

void log_check(const char* routine, const char* condition)
{
    jLog::error("%s:%s", routine, condition);
}

} // namespace

DataNode::DataNode(AppData* document, int32_t id, Block* block)
    : m_id(id)
    , m_block(block)
    , m_document(document)
{
    make_variables();
    make_anchors();
}

DataNode::~DataNode() = default;

void DataNode::make_variables()
{
    m_vars = FixedArray<DataVariable>(m_block->getVariableCount(), [this](DataVariable* where, size_t index) {
        std::construct_at(where, m_block->getVariable(index), this);
    });
}

void DataNode::make_anchors()
{
    struct Kind {
        size_t count;
        BlockAnchor* (Block::*definition)(size_t) const;
        int32_t direction;
    };
    const Kind kinds[] = {
        { m_block->getInputLinkCount(), &Block::getInputLink, DataAnchor::kInput },
        { m_block->getOutputLinkCount(), &Block::getOutputLink, DataAnchor::kOutput },
        { m_block->getInputPathCount(), &Block::getInputPath, DataAnchor::kInput },
        { m_block->getOutputPathCount(), &Block::getOutputPath, DataAnchor::kOutput },
    };
    size_t total = 0;
    for (const Kind& kind : kinds)
        total += kind.count;
    // Elements are made in order: each kind in turn, each in block order.
    size_t kind = 0;
    size_t inKind = 0;
    m_anchors = FixedArray<DataAnchor>(total, [&](DataAnchor* where, size_t) {
        while (inKind == kinds[kind].count) {
            ++kind;
            inKind = 0;
        }
        std::construct_at(where, (m_block->*kinds[kind].definition)(inKind++), this, kinds[kind].direction);
    });
    AnchorList* lists[] = { &m_inputLinks, &m_outputLinks, &m_inputPaths, &m_outputPaths };
    size_t first = 0;
    for (size_t k = 0; k < std::size(kinds); ++k) {
        *lists[k] = m_anchors.view().subspan(first, kinds[k].count);
        first += kinds[k].count;
    }
}

int DataNode::getVariableIndex(const jString& name) const
{
    for (size_t i = 0; i < m_vars.size(); ++i)
        if (m_vars[i].getName() == name)
            return static_cast<int>(i);
    return -1;
}

DataVariable* DataNode::findVariable(const jString& name) const
{
    const int index = getVariableIndex(name);
    return index < 0 ? nullptr : &m_vars[index];
}

jString DataNode::getVariableValue(const jString& name) const
{
    const DataVariable* var = findVariable(name);
    if (!var) {
        log_check("DataNode::getVariableValue", "var");
        return {};
    }
    return var->getValue();
}

bool DataNode::check_index(int index, const char* routine) const
{
    if (index >= 0 && static_cast<size_t>(index) < m_vars.size())
        return true;
    log_check(routine, "id < m_vars.size()");
    return false;
}

void DataNode::setPosX(int32_t x)
{
    if (x == m_posX)
        return;
    m_document->record_move(*this, x, m_posY);
    m_posX = x;
}

void DataNode::setPosY(int32_t y)
{
    if (y == m_posY)
        return;
    m_document->record_move(*this, m_posX, y);
    m_posY = y;
}

void DataNode::setPosition(int32_t x, int32_t y)
{
    EditHistory::Group group(m_document->getHistory());
    setPosX(x);
    setPosY(y);
}

void DataNode::setName(const jString& name)
{
    if (name == m_name)
        return;
    m_document->record_name(*this, name);
    m_name = name;
}

bool DataNode::setVariableValue(int index, const jString& value, const jString& format, const jString& wrap,
    const jString& filter, uint32_t anisotropy, bool asyn)
{
    const char* routine = "DataNode::setVariableValue";
    if (index == -1)
        log_check(routine, "id != -1");
    if (!check_index(index, routine))
        return false;
    DataVariable* var = &m_vars[index];
    // A sampler made for the new settings and the variable's change are one
    // step, the variable's change one record.
    EditHistory& history = m_document->getHistory();
    EditHistory::Group group(history);
    DataSampler* sampler = m_document->getSampler(wrap.empty() ? var->getWrap() : wrap,
        filter.empty() ? var->getFilter() : filter, anisotropy);
    std::optional<VariableState> before;
    if (history.isRecording())
        before = m_document->getVariableState(*var);
    {
        EditHistory::Pause oneRecord(history);
        var->setValue(value);
        if (!format.empty())
            var->setFormat(format);
        if (!wrap.empty())
            var->setWrap(wrap);
        if (!filter.empty())
            var->setFilter(filter);
        var->setAnisotropy(anisotropy);
        var->setSampler(sampler);
        var->setAsyn(asyn);
    }
    if (before)
        m_document->record_variable(*this, static_cast<size_t>(index), std::move(*before));
    return true;
}

bool DataNode::setVariableValueOnly(int index, const jString& value)
{
    if (!check_index(index, "DataNode::setVariableValueOnly"))
        return false;
    m_vars[index].setValue(value);
    return true;
}

bool DataNode::setSubValue(int index, size_t subIndex, const jString& value)
{
    if (!check_index(index, "DataNode::setSubValue"))
        return false;
    DataVariable::Value* sub = m_vars[index].getSubValue(subIndex);
    if (!sub) {
        log_check("DataNode::setSubValue", "subIndex < getSubValueCount()");
        return false;
    }
    sub->setValue(value);
    return true;
}

DataAnchor* DataNode::find_in(AnchorList list, const jString& name)
{
    for (DataAnchor& anchor : list)
        if (anchor.getName() == name)
            return &anchor;
    return nullptr;
}

jString DataNode::getInputLinkValue(const jString& name) const
{
    const DataAnchor* anchor = find_in(m_inputLinks, name);
    if (!anchor) {
        log_check("DataNode::getInputLinkValue", "var");
        return {};
    }
    return anchor->getLinkValue();
}

jString DataNode::getOutputLinkValue(const jString& name) const
{
    const DataAnchor* anchor = find_in(m_outputLinks, name);
    if (!anchor) {
        log_check("DataNode::getOutputLinkValue", "var");
        return {};
    }
    return anchor->getLinkValue();
}

void DataNode::setInputLinkValue(const jString& name, const jString& value)
{
    DataAnchor* anchor = find_in(m_inputLinks, name);
    if (!anchor)
        log_check("DataNode::setInputLinkValue", "var");
    else if (anchor->getLinkValue() != value)
        anchor->setLinkValue(value);
}

void DataNode::setOutputLinkValue(const jString& name, const jString& value)
{
    DataAnchor* anchor = find_in(m_outputLinks, name);
    if (!anchor)
        log_check("DataNode::setOutputLinkValue", "var");
    else if (anchor->getLinkValue() != value)
        anchor->setLinkValue(value);
}

DataAnchor* DataNode::findAnchor(const jString& name) const
{
    Block::AnchorSlot slot;
    if (!m_block->findAnchorSlot(name, slot))
        return nullptr;
    const AnchorList* lists[] = {&m_inputLinks, &m_outputLinks, &m_inputPaths, &m_outputPaths};
    return at(*lists[slot.list], slot.index);
}

void DataNode::release()
{
    for (DataVariable& var : m_vars)
        var.release();
    m_vars.clear();
    m_inputLinks = {};
    m_outputLinks = {};
    m_inputPaths = {};
    m_outputPaths = {};
    m_anchors.clear();
}
