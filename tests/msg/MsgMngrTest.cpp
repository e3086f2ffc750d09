#include "msg/MsgMngr.h"

#include <functional>
#include <string>
#include <vector>

#include "msg/MsgNode.h"
#include "msg/UiMsg.h"
#include "support/Scenario.h"

namespace {

// Records what it receives into a shared journal as "name:id" or "name:id*" for pointer messages.
class Recorder : public MsgNode {
public:
    Recorder(std::string name, std::vector<std::string>& journal) : m_name(std::move(name)), m_journal(journal) {}

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
    std::vector<std::string>& m_journal;
};

using Journal = std::vector<std::string>;

} // namespace

using MsgMngrTest = Scenario;

TEST_F(MsgMngrTest, DeliversToEveryNodeInAttachOrder)
{
    Journal journal;
    Recorder a("a", journal), b("b", journal), c("c", journal);
    b.attach();
    a.attach();
    c.attach();
    a.attach(); // a second attach changes nothing
    MsgMngr::get()->notifyHelper(207);
    EXPECT_EQ(journal, (Journal{"b:207", "a:207", "c:207"}));
    EXPECT_EQ(MsgMngr::get()->getNumNodes(), 3);
}

TEST_F(MsgMngrTest, PointerMessagesAreRecognisedAtRunTime)
{
    Journal journal;
    Recorder a("a", journal);
    a.attach();
    int key = 0;
    MsgMngr::get()->notifyHelperPtr(203, &key);
    EXPECT_EQ(a.lastPtr, &key);
    MsgMngr::get()->notifyHelper(204);
    EXPECT_EQ(a.lastPtr, nullptr);
    MsgMngr::get()->notifyHelperPtr(203, nullptr);
    EXPECT_EQ(journal, (Journal{"a:203*", "a:204", "a:203*"}));
}

TEST_F(MsgMngrTest, NestedMessagesAreDeliveredCompletelyFirst)
{
    Journal journal;
    Recorder a("a", journal), b("b", journal);
    a.onMessage = [](int id) {
        if (id == 198)
            MsgMngr::get()->notifyHelper(199);
    };
    a.attach();
    b.attach();
    MsgMngr::get()->notifyHelper(198);
    EXPECT_EQ(journal, (Journal{"a:198", "a:199", "b:199", "b:198"}));
}

TEST_F(MsgMngrTest, NodeDetachedDuringDeliveryIsNotCalledAgain)
{
    Journal journal;
    Recorder a("a", journal), b("b", journal), c("c", journal);
    a.onMessage = [&b](int) { b.detach(); };
    a.attach();
    b.attach();
    c.attach();
    MsgMngr::get()->notifyHelper(205);
    MsgMngr::get()->notifyHelper(206);
    EXPECT_EQ(journal, (Journal{"a:205", "c:205", "a:206", "c:206"}));
    EXPECT_FALSE(b.isAttached());
    EXPECT_EQ(MsgMngr::get()->getNumNodes(), 2);
}

TEST_F(MsgMngrTest, NodeAttachedDuringDeliveryWaitsForTheNextMessage)
{
    Journal journal;
    Recorder a("a", journal), late("late", journal);
    a.onMessage = [&late](int) { late.attach(); };
    a.attach();
    MsgMngr::get()->notifyHelper(193);
    MsgMngr::get()->notifyHelper(194);
    EXPECT_EQ(journal, (Journal{"a:193", "a:194", "late:194"}));
}

TEST_F(MsgMngrTest, DestroyedNodesDetachThemselvesAndTheIdleManagerHoldsNoMemory)
{
    Journal journal;
    size_t before = jMemRegistry::liveCount();
    {
        Recorder a("a", journal);
        a.attach();
        EXPECT_TRUE(MsgMngr::get()->isAttached(&a));
    }
    EXPECT_EQ(MsgMngr::get()->getNumNodes(), 0);
    MsgMngr::get()->notifyHelper(211);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(jMemRegistry::liveCount(), before);
    EXPECT_FALSE(MsgMngr::get()->detach(nullptr));
}
