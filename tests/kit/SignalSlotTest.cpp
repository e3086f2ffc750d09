#include "kit/SignalSlot.h"

#include <string>

#include "kit/jString.h"
#include "kit/jVector.h"
#include "support/Scenario.h"

namespace {

struct EventRecord {
    int x;
};

// Stands in for a panel whose member functions handle toolkit events.
class Panel {
public:
    explicit Panel(const char* name) : m_name(name) {}
    void cb_click(const EventRecord* event, Panel* sender)
    {
        m_seen += m_name + ":" + std::to_string(event->x) + " from " + sender->m_name + "; ";
    }
    void cb_commit() { ++m_commits; }
    int cb_twice(int value) { return value * 2; }

    std::string m_name;
    std::string m_seen;
    int m_commits = 0;
};

using ClickSlot = Function<void(const EventRecord*, Panel*)>;

} // namespace

using SignalSlotTest = Scenario;

TEST_F(SignalSlotTest, BoundMemberFunctionRunsOnItsObjectWithTheArguments)
{
    Panel owner("owner");
    Panel button("button");
    ClickSlot slot = bind(&Panel::cb_click, &owner);
    EventRecord event{12};
    slot(&event, &button);
    EXPECT_EQ(owner.m_seen, "owner:12 from button; ");
    EXPECT_EQ(button.m_seen, "");
    Function<int(int)> twice = bind(&Panel::cb_twice, &owner);
    EXPECT_EQ(twice(21), 42);
}

TEST_F(SignalSlotTest, BindingReplacesWhatTheSlotHeld)
{
    Panel first("first");
    Panel second("second");
    ClickSlot slot = bind(&Panel::cb_click, &first);
    slot = bind(&Panel::cb_click, &second);
    EventRecord event{1};
    slot(&event, &first);
    EXPECT_EQ(first.m_seen, "");
    EXPECT_EQ(second.m_seen, "second:1 from first; ");
}

TEST_F(SignalSlotTest, CopiesOutliveTheOriginal)
{
    Panel owner("owner");
    Function<void()> copy;
    {
        Function<void()> original = bind(&Panel::cb_commit, &owner);
        copy = original;
        original();
    }
    copy();
    Function<void()> moved(std::move(copy));
    moved();
    EXPECT_TRUE(copy.empty());
    EXPECT_EQ(owner.m_commits, 3);
}

TEST_F(SignalSlotTest, AnEmptyFunctionDoesNothing)
{
    Function<void(int)> nothing;
    EXPECT_TRUE(nothing.empty());
    EXPECT_FALSE(static_cast<bool>(nothing));
    nothing(3);
    Function<int(int)> noValue;
    EXPECT_EQ(noValue(5), 0);
    Panel owner("owner");
    Function<void()> reset = bind(&Panel::cb_commit, &owner);
    reset.reset();
    reset();
    EXPECT_EQ(owner.m_commits, 0);
}

TEST_F(SignalSlotTest, LambdasAndListenersRunInOrder)
{
    std::string order;
    jVector<Function<void(const jString&)>> listeners;
    listeners.append([&order](const jString& v) { order += std::string("a") + v.c_str(); });
    listeners.append([&order](const jString& v) { order += std::string("b") + v.c_str(); });
    for (const auto& listener : listeners)
        listener("1");
    jVector<Function<void(const jString&)>> copies(listeners);
    listeners.release();
    for (const auto& listener : copies)
        listener("2");
    EXPECT_EQ(order, "a1b1a2b2");
}

TEST_F(SignalSlotTest, HandlersAreRegisteredWhileHeld)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    Panel owner("owner");
    Function<void()> a = bind(&Panel::cb_commit, &owner);
    Function<void()> b = a;
    EXPECT_EQ(jMemRegistry::snapshot().count("Function::bind"), before.count("Function::bind") + 2);
    a = Function<void()>();
    b.reset();
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}
