#include "msg/MsgMngr.h"

#include <functional>
#include <string>
#include <vector>

#include "msg/MsgNode.h"
#include "msg/UiMsg.h"
#include "support/Scenario.h"

namespace {

using Journal = std::vector<std::string>;

// Records what it receives into a shared journal as "name:id", or "name:id*" for pointer messages.
class Recorder : public MsgNode {
public:
    Recorder(std::string name, Journal& journal) : m_name(std::move(name)), m_journal(journal) {}

    void processMsg(UiMsg* msg) override
    {
        auto* withPtr = dynamic_cast<UiMsgPTR*>(msg);
        m_journal.push_back(m_name + ":" + std::to_string(msg->getID()) + (withPtr ? "*" : ""));
        lastPtr = withPtr ? withPtr->getPtr() : nullptr;
        if (onMessage)
            onMessage(msg->getID());
    }

    std::function<void(int)> onMessage;
    void* lastPtr = nullptr;

private:
    std::string m_name;
    Journal& m_journal;
};

} // namespace

using MsgMngrTest = Scenario;

// Panels react to host messages at once, in attach order; pointer messages carry their pointer and
// are told apart at run time. A message posted during a delivery reaches everyone first.
TEST_F(MsgMngrTest, DeliversInAttachOrderAndNestedMessagesFirst)
{
    Journal journal;
    Recorder a("a", journal), b("b", journal), c("c", journal);
    b.attach();
    a.attach();
    c.attach();
    a.attach(); // a second attach changes nothing
    int key = 0;
    MsgMngr::get()->notifyHelperPtr(203, &key);
    EXPECT_EQ(c.lastPtr, &key);
    a.onMessage = [](int id) {
        if (id == 198)
            MsgMngr::get()->notifyHelper(199);
    };
    MsgMngr::get()->notifyHelper(198);
    EXPECT_EQ(c.lastPtr, nullptr);
    EXPECT_EQ(journal, (Journal{"b:203*", "a:203*", "c:203*", "b:198", "a:198", "b:199", "a:199", "c:199", "c:198"}));
}

// A node detached during a delivery gets nothing more, not even the rest of that delivery, while
// the others get theirs; a node attached during one waits for the next message. A destroyed node
// is never called, and an idle manager holds no memory, so leak reports at exit stay clean.
TEST_F(MsgMngrTest, AttachAndDetachDuringDeliveryAndDestroyedNodes)
{
    Journal journal;
    size_t before = jMemRegistry::liveCount();
    {
        Recorder a("a", journal), b("b", journal), c("c", journal), late("late", journal);
        b.onMessage = [&](int) {
            a.detach();
            c.detach();
            late.attach();
        };
        a.attach();
        b.attach();
        c.attach();
        MsgMngr::get()->notifyHelper(205);
        MsgMngr::get()->notifyHelper(206);
        EXPECT_FALSE(c.isAttached());
        EXPECT_EQ(MsgMngr::get()->getNumNodes(), 2);
    }
    EXPECT_EQ(journal, (Journal{"a:205", "b:205", "b:206", "late:206"}));
    EXPECT_EQ(MsgMngr::get()->getNumNodes(), 0);
    MsgMngr::get()->notifyHelper(211);
    EXPECT_EQ(journal.size(), 4u);
    EXPECT_EQ(jMemRegistry::liveCount(), before);
    EXPECT_FALSE(MsgMngr::get()->detach(nullptr));
}
