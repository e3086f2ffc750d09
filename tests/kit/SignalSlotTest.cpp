#include "kit/SignalSlot.h"

#include <string>

#include "support/Scenario.h"

namespace {

// Stands in for a panel whose member functions handle toolkit events.
struct Panel {
    explicit Panel(const char* n = "") : name(n) {}
    void cb_click(const int* x, Panel* from) { seen += name + ":" + std::to_string(*x) + " from " + from->name + ";"; }
    void cb_commit() { ++commits; }
    int cb_twice(int value) { return value * 2; }

    std::string name;
    std::string seen;
    int commits = 0;
};

} // namespace

using SignalSlotTest = Scenario;

// A slot calls the handler bound last, on its object, with the event and sender, and returns its result.
TEST_F(SignalSlotTest, BoundMemberFunctionRunsOnItsObjectWithTheArguments)
{
    Panel first("first");
    Panel second("second");
    Function<void(const int*, Panel*)> slot = bind(&Panel::cb_click, &first);
    int x = 12;
    slot(&x, &second);
    slot = bind(&Panel::cb_click, &second);
    slot(&x, &first);
    EXPECT_EQ(first.seen, "first:12 from second;");
    EXPECT_EQ(second.seen, "second:12 from first;");
    EXPECT_EQ(Function<int(int)>(bind(&Panel::cb_twice, &first))(21), 42);
}

// Widgets keep copies of their slots: a copy outlives the original, an empty slot does nothing (and
// gives the default result), and every handler is registered exactly while it is held.
TEST_F(SignalSlotTest, CopiesOutliveTheOriginalAndEmptySlotsDoNothing)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    Panel owner;
    Function<void()> copy;
    {
        Function<void()> original = bind(&Panel::cb_commit, &owner);
        copy = original;
        EXPECT_EQ(jMemRegistry::snapshot().count("Function::bind"), before.count("Function::bind") + 2);
        original();
    }
    copy();
    Function<void()> moved(std::move(copy));
    moved();
    EXPECT_FALSE(static_cast<bool>(copy));
    copy();
    moved.reset();
    moved();
    EXPECT_EQ(owner.commits, 3);
    EXPECT_EQ(Function<int(int)>()(5), 0);
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}
