#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UIEditLine.h"
#include "ui/UIWindow.h"

namespace {

struct EditEvents {
    void on_changed(const UIEventChanged*, UIElement* sender)
    {
        ++changes;
        seen = static_cast<UIEditLine*>(sender)->getText().c_str();
    }
    void on_commit() { ++commits; }
    void on_focus(const UIEventFocus* e, UIElement*) { focused = e->focused; }
    int changes = 0;
    int commits = 0;
    bool focused = false;
    std::string seen;
};

} // namespace

class UIEditLineTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "edit", 240, 80);
        line = make<UIEditLine>(root(), "");
        window->addChild(line, UI_EXPAND_ACROSS);
        window->show();
        settle();
        line->sigChanged = bind(&EditEvents::on_changed, &events);
        line->sigCommit = bind(&EditEvents::on_commit, &events);
        line->sigFocus = bind(&EditEvents::on_focus, &events);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    UIWindow* window = nullptr;
    UIEditLine* line = nullptr;
    EditEvents events;
};

TEST_F(UIEditLineTest, TypingRaisesChangedAndEnterCommits)
{
    line->removeFocus();
    EXPECT_FALSE(line->hasFocus());
    line->setFocus();
    EXPECT_TRUE(line->hasFocus());
    EXPECT_TRUE(events.focused);
    events.commits = 0; // leaving the field a moment ago committed it
    ASSERT_TRUE(root()->getAutomation()->typeText("Node"));
    EXPECT_EQ(line->getText(), "Node");
    EXPECT_EQ(events.changes, 4);
    EXPECT_EQ(events.seen, "Node");
    EXPECT_EQ(events.commits, 0);
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_ENTER));
    EXPECT_EQ(events.commits, 1);
    // Leaving the field commits it again only when it changed since.
    line->removeFocus();
    EXPECT_EQ(events.commits, 1);
    line->setFocus();
    ASSERT_TRUE(root()->getAutomation()->typeText("s"));
    line->removeFocus();
    EXPECT_FALSE(events.focused);
    EXPECT_EQ(events.commits, 2);
}

TEST_F(UIEditLineTest, SetTextIsSilent)
{
    line->setText("1.5");
    EXPECT_EQ(line->getText(), "1.5");
    EXPECT_EQ(events.changes, 0);
    EXPECT_EQ(events.commits, 0);
}

TEST_F(UIEditLineTest, NumberModeRefusesLetters)
{
    line->setMode(UI_EDIT_NUMBER);
    EXPECT_EQ(line->getMode(), 3);
    line->setFocus();
    ASSERT_TRUE(root()->getAutomation()->typeText("-1.5x2"));
    EXPECT_EQ(line->getText(), "-1.52");
    line->setMode(UI_EDIT_TEXT);
    ASSERT_TRUE(root()->getAutomation()->typeText("x"));
    EXPECT_EQ(line->getText(), "-1.52x");
    line->setMode(7);
    expectLogged("UIEditLine::setMode:unknown edit mode 7");
    EXPECT_EQ(line->getMode(), 0);
}

TEST_F(UIEditLineTest, ReadOnlyFieldsIgnoreTyping)
{
    line->setText("cube");
    line->setReadOnly(true);
    EXPECT_TRUE(line->isReadOnly());
    line->setFocus();
    ASSERT_TRUE(root()->getAutomation()->typeText("x"));
    EXPECT_EQ(line->getText(), "cube");
    EXPECT_EQ(events.changes, 0);
}

TEST_F(UIEditLineTest, KeysTypedIntoAFieldAreNotTreeCommands)
{
    // The field holds the focus: Delete edits the text and never reaches the window's handlers.
    line->setText("abc");
    line->setFocus();
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_HOME));
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_DELETE));
    EXPECT_EQ(line->getText(), "bc");
}
