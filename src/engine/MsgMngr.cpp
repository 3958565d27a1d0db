#include "MsgMngr.h"

#include "MsgNode.h"

#include <algorithm>

namespace {

class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag) : m_flag(flag) { m_flag = true; }
    ~ScopedFlag() { m_flag = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& m_flag;
};

} // namespace

MsgMngr& MsgMngr::instance()
{
    static MsgMngr manager;
    return manager;
}

void MsgMngr::post(std::unique_ptr<UiMsg> msg)
{
    if (msg)
        m_queue.push_back(std::move(msg));
}

void MsgMngr::post(int code)
{
    post(std::make_unique<UiMsg>(code));
}

void MsgMngr::postStr(int code, jString text)
{
    post(std::make_unique<UiMsgStr>(code, std::move(text)));
}

void MsgMngr::postPtr(int code, void* ptr)
{
    post(std::make_unique<UiMsgPTR>(code, ptr));
}

void MsgMngr::notifyNow(UiMsg* msg)
{
    if (msg)
        deliver(msg);
}

void MsgMngr::notifyNow(int code)
{
    UiMsg msg(code);
    deliver(&msg);
}

size_t MsgMngr::dispatch()
{
    if (m_draining)
        return 0;
    ScopedFlag draining(m_draining);
    std::deque<std::unique_ptr<UiMsg>> batch;
    batch.swap(m_queue);
    for (const std::unique_ptr<UiMsg>& msg : batch)
        deliver(msg.get());
    return batch.size();
}

void MsgMngr::attach(MsgNode* node)
{
    if (!node || node->m_attached)
        return;
    m_nodes.push_back(node);
    node->m_attached = true;
}

void MsgMngr::detach(MsgNode* node)
{
    if (!node || !node->m_attached)
        return;
    node->m_attached = false;
    auto slot = std::find(m_nodes.begin(), m_nodes.end(), node);
    if (slot == m_nodes.end())
        return;
    if (m_deliveryDepth > 0)
        *slot = nullptr;
    else
        m_nodes.erase(slot);
}

size_t MsgMngr::getNodeCount() const
{
    return static_cast<size_t>(std::count_if(m_nodes.begin(), m_nodes.end(), [](const MsgNode* n) { return n != nullptr; }));
}

void MsgMngr::deliver(UiMsg* msg)
{
    ++m_deliveryDepth;
    // Nodes attached during this delivery sit beyond the count taken here.
    const size_t count = m_nodes.size();
    for (size_t i = 0; i < count; ++i) {
        if (MsgNode* node = m_nodes[i])
            node->processMsg(msg);
    }
    if (--m_deliveryDepth == 0)
        removeDetachedSlots();
}

void MsgMngr::removeDetachedSlots()
{
    std::erase(m_nodes, nullptr);
}
