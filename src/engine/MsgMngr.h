#pragma once

#include "UiMsg.h"

#include <deque>
#include <memory>
#include <vector>

class MsgNode;

// The process-wide message bus. post() queues a message; the host drains the
// queue once per frame with dispatch(), which delivers every queued message,
// in post order, to every attached node in attach order. notifyNow()
// delivers at once.
//
// Changes during a delivery are safe: a node detached (or destroyed) while a
// message is being delivered gets nothing more, a node attached meanwhile
// starts with the next message, and messages posted during a drain wait for
// the next one.
class MsgMngr {
public:
    static MsgMngr& instance();

    MsgMngr() = default;
    MsgMngr(const MsgMngr&) = delete;
    MsgMngr& operator=(const MsgMngr&) = delete;

    void post(std::unique_ptr<UiMsg> msg);
    void post(int code);
    void postStr(int code, jString text);
    void postPtr(int code, void* ptr);

    // Delivers msg to every attached node before returning; the caller keeps
    // ownership.
    void notifyNow(UiMsg* msg);
    void notifyNow(int code);

    // Delivers the messages queued before the call; returns how many. Does
    // nothing when called from inside a delivery of the same drain.
    size_t dispatch();
    size_t getPendingCount() const { return m_queue.size(); }
    // Drops every queued message undelivered.
    void clearQueue() { m_queue.clear(); }

    void attach(MsgNode* node);
    void detach(MsgNode* node);
    size_t getNodeCount() const;

private:
    void deliver(UiMsg* msg);
    void removeDetachedSlots();

    std::deque<std::unique_ptr<UiMsg>> m_queue;
    // Detaching during a delivery leaves a null slot, removed when the
    // outermost delivery ends, so that running loops keep their indexes.
    std::vector<MsgNode*> m_nodes;
    int m_deliveryDepth = 0;
    bool m_draining = false;
};
