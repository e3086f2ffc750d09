#include "msg/MsgMngr.h"

#include "msg/MsgNode.h"
#include "msg/UiMsg.h"

MsgMngr* MsgMngr::get()
{
    static MsgMngr* manager = new MsgMngr; // never destroyed: receivers may detach during exit
    return manager;
}

bool MsgMngr::attach(MsgNode* node)
{
    if (!node || isAttached(node))
        return false;
    m_nodes.append(node);
    return true;
}

bool MsgMngr::detach(MsgNode* node)
{
    int index = node ? m_nodes.find(node) : -1;
    if (index < 0)
        return false;
    m_nodes[index] = nullptr; // a delivery may be walking the list: keep indices stable
    if (m_depth == 0)
        compact();
    return true;
}

bool MsgMngr::isAttached(const MsgNode* node) const
{
    return node && m_nodes.find(const_cast<MsgNode*>(node)) >= 0;
}

int MsgMngr::getNumNodes() const
{
    int count = 0;
    for (MsgNode* node : m_nodes)
        count += node ? 1 : 0;
    return count;
}

void MsgMngr::notifyHelper(int id)
{
    UiMsg msg(id);
    deliver(msg);
}

void MsgMngr::notifyHelperPtr(int id, void* ptr)
{
    UiMsgPTR msg(id, ptr);
    deliver(msg);
}

void MsgMngr::deliver(UiMsg& msg)
{
    ++m_depth;
    int count = m_nodes.size(); // nodes attached during this delivery wait for the next message
    for (int i = 0; i < count; ++i) {
        if (m_nodes[i])
            m_nodes[i]->processMsg(&msg);
    }
    if (--m_depth == 0)
        compact();
}

void MsgMngr::compact()
{
    while (m_nodes.removeValue(nullptr)) {
    }
    if (m_nodes.empty())
        m_nodes.release(); // an idle manager holds no memory, so leak reports stay clean
}
