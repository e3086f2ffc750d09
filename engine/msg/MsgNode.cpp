#include "msg/MsgNode.h"

#include "msg/MsgMngr.h"

MsgNode::~MsgNode()
{
    detach();
}

void MsgNode::attach()
{
    MsgMngr::get()->attach(this);
}

void MsgNode::detach()
{
    MsgMngr::get()->detach(this);
}

bool MsgNode::isAttached() const
{
    return MsgMngr::get()->isAttached(this);
}
