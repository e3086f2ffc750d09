#pragma once

#include "kit/jVector.h"

class MsgNode;

// The host message manager. Delivery is synchronous: notifyHelper returns after every attached node
// has processed the message, in attach order. A receiver may post further messages while handling
// one (the nested message is delivered completely first). A node attached during a delivery gets
// the messages posted after it attached; a node detached during a delivery is not called again.
class MsgMngr {
public:
    // Returns the process-wide manager (one instance shared by the host, the module and the tools).
    static MsgMngr* get();

    // Adds a receiver at the end of the delivery order; returns false when it was already attached.
    bool attach(MsgNode* node);
    // Removes a receiver; returns false when it was not attached.
    bool detach(MsgNode* node);
    bool isAttached(const MsgNode* node) const;
    // Returns the number of attached receivers.
    int getNumNodes() const;

    // Delivers message id to every attached receiver.
    void notifyHelper(int id);
    // Delivers message id with a pointer (as a UiMsgPTR) to every attached receiver.
    void notifyHelperPtr(int id, void* ptr);

private:
    void deliver(class UiMsg& msg);
    void compact();

    jVector<MsgNode*> m_nodes; // null entries are nodes detached during a delivery
    int m_depth = 0;
};
