#pragma once

class UiMsg;

// A receiver on the message bus. A node receives messages only while it is
// attached; it detaches itself when destroyed, also during a delivery.
class MsgNode {
public:
    MsgNode() = default;
    virtual ~MsgNode();
    MsgNode(const MsgNode&) = delete;
    MsgNode& operator=(const MsgNode&) = delete;

    // Called for every message delivered while the node is attached.
    virtual void processMsg(UiMsg* msg);

    void attach();
    void detach();
    bool isAttached() const { return m_attached; }

private:
    friend class MsgMngr;
    bool m_attached = false;
};
