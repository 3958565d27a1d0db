#include "MsgNode.h"

#include "MsgMngr.h"

MsgNode::~MsgNode()
{
    // Only an attached node touches the bus, so nodes that never attached
    // may outlive it.
    if (m_attached)
        detach();
}

void MsgNode::processMsg(UiMsg*)
{
}

void MsgNode::attach()
{
    MsgMngr::instance().attach(this);
}

void MsgNode::detach()
{
    MsgMngr::instance().detach(this);
}
