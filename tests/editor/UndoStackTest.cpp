#include "editor/UndoStack.h"

#include "editor/UndoCommand.h"
#include "kit/jAllocator.h"
#include "support/Scenario.h"

namespace {

// A step that sets a value, holding a given number of bytes of records.
class SetValue : public UndoCommand {
public:
    SetValue(int& value, int after, size_t bytes) : m_value(value), m_before(value), m_after(after), m_bytes(bytes)
    {
        m_value = after;
    }
    void undo() override { m_value = m_before; }
    void redo() override { m_value = m_after; }
    jString name() const override { return jString("Set value"); }
    size_t bytes() const override { return m_bytes; }

private:
    int& m_value;
    int m_before;
    int m_after;
    size_t m_bytes;
};

using UndoStackTest = Scenario;

} // namespace

// The history keeps the newest steps whose records fit in its bound and frees the older ones; the
// clean state stays where it was while a kept step leads back to it, and is gone with its step.
TEST_F(UndoStackTest, StepsBeyondTheByteBoundAreFreedOldestFirst)
{
    int value = 0;
    UndoStack history;
    history.setByteLimit(250);
    auto set = [&](int to, size_t bytes) {
        history.push(jNew<SetValue>("tests/editor/UndoStackTest", __LINE__, "UndoStackTest", value, to, bytes));
    };
    set(1, 100);
    history.setClean();
    set(2, 100);
    set(3, 100);
    EXPECT_EQ(history.count(), 2);
    EXPECT_FALSE(history.isClean());
    EXPECT_TRUE(history.undo() && history.undo());
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(history.isClean());
    EXPECT_FALSE(history.undo());
    EXPECT_TRUE(history.redo());
    set(4, 300); // alone beyond the bound: still kept, the only step
    EXPECT_EQ(history.count(), 1);
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(value, 2);
    EXPECT_FALSE(history.isClean());
}
