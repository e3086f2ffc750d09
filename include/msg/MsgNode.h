#pragma once

class UiMsg;

// A receiver of host messages. While attached to the message manager it gets every posted message
// through processMsg, in the order the nodes were attached.
class MsgNode {
public:
    MsgNode() = default;
    // Detaches the node, so a destroyed receiver is never called.
    virtual ~MsgNode();
    MsgNode(const MsgNode&) = delete;
    MsgNode& operator=(const MsgNode&) = delete;

    // Attaches the node to MsgMngr::get(); attaching twice has no effect.
    void attach();
    // Detaches the node; it receives nothing more, even from a delivery under way.
    void detach();
    bool isAttached() const;

    // Receives one message; the record is valid only during the call.
    virtual void processMsg(UiMsg* msg) = 0;
};
