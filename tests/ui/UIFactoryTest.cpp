#include "ui/UIFactory.h"

#include "UIFixture.h"
#include "msg/MsgNode.h"
#include "msg/UiMsg.h"
#include "ui/UIAutomation.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

// A small owner of values with clamping setters, as a settings panel binds them: the start time
// stays at least 0 and below the end, the end stays above the start.
class TrackTimes {
public:
    float getStart() const { return start; }
    void setStart(float t) { start = std::max(std::min(t, end - 0.000001f), 0.0f); }
    float getEnd() const { return end; }
    void setEnd(float t) { end = std::max(t, start + 0.000001f); }
    int getFlags() const { return flags; }
    void setFlags(int f) { flags = f; }
    bool isLoop() const { return loop; }
    void setLoop(bool l) { loop = l; }
    jString getName() const { return name; }
    void setName(const jString& n) { name = n; }

    float start = 0.0f;
    float end = 3.0f;
    int flags = 0;
    bool loop = false;
    jString name = "walk";
};

// Records what the listeners and the host messages said, in order.
struct Heard : public MsgNode {
    Heard() { attach(); }
    void processMsg(UiMsg* msg) override { lines.push_back("message " + std::to_string(msg->getID())); }
    void first(const float& v) { lines.push_back("first " + std::string(ToString(v).c_str())); }
    void second(const float& v) { lines.push_back("second " + std::string(ToString(v).c_str())); }
    void flag(const bool& v) { lines.push_back(v ? "on" : "off"); }
    void text(const jString& v) { lines.push_back(std::string("text ") + v.c_str()); }
    void number(const int& v) { lines.push_back("int " + std::to_string(v)); }
    std::vector<std::string> lines;
};

class UIFactoryTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "Settings", 200, 120);
        column = make<UIVLayout>(root());
        window->addChild(column, UI_EXPAND_BOTH, -1);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }

    // What the toolkit does when the user typed text into a field and pressed Enter.
    static void typeAndCommit(UIEditLine* line, const char* text)
    {
        line->setText(text);
        line->sigCommit();
    }

    TrackTimes track;
    Heard heard;
    UIWindow* window = nullptr;
    UIVLayout* column = nullptr;
};

} // namespace

TEST_F(UIFactoryTest, FloatFieldShowsTheGetterAndJoinsTheLayout)
{
    track.start = 1.5f;
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    EXPECT_EQ(start.getID(), -1);
    EXPECT_EQ(start.getMessage(), 198);
    EXPECT_EQ(start.edit()->getText(), "1.5");
    EXPECT_EQ(start.edit()->getMode(), UI_EDIT_NUMBER);
    EXPECT_EQ(column->getNumChilds(), 1);
    EXPECT_EQ(column->getChild(0), start.getEditor());
}

TEST_F(UIFactoryTest, RefreshShowsANewValueOnlyWhileTheFieldIsNotFocused)
{
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    track.start = 0.25f;
    start.getEditor()->setFocus();
    start.refresh();
    EXPECT_EQ(start.edit()->getText(), "0");
    start.getEditor()->removeFocus();
    start.refresh();
    EXPECT_EQ(start.edit()->getText(), "0.25");
}

TEST_F(UIFactoryTest, CheckBoxFollowsTheGetterEvenWhenFocused)
{
    UIBool loop(&track, &TrackTimes::setLoop, &TrackTimes::isLoop, column, 195, "loop");
    EXPECT_FALSE(loop.box()->isChecked());
    EXPECT_EQ(loop.box()->getText(), "loop");
    loop.getEditor()->setFocus();
    track.loop = true;
    loop.refresh();
    EXPECT_TRUE(loop.box()->isChecked());
}

TEST_F(UIFactoryTest, SetValueShowsAndNotifiesListenersInOrder)
{
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    start.addListener(bind(&Heard::first, &heard));
    start.addListener(bind(&Heard::second, &heard));
    EXPECT_EQ(start.getNumListeners(), 2);
    start.setValue(2.5f);
    EXPECT_EQ(start.edit()->getText(), "2.5");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"first 2.5", "second 2.5"}));
    // Writing through the setter is the caller's step, and no message is posted.
    EXPECT_EQ(track.start, 0.0f);
}

TEST_F(UIFactoryTest, SetValueDoesNothingWhenGetterAndFieldAlreadyHoldIt)
{
    track.start = 1.0f;
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    start.addListener(bind(&Heard::first, &heard));
    start.setValue(1.0f);
    EXPECT_TRUE(heard.lines.empty());
    // The getter holds the value but the field shows another text: it is shown and announced.
    start.edit()->setText("7");
    start.setValue(1.0f);
    EXPECT_EQ(start.edit()->getText(), "1");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"first 1"}));
}

TEST_F(UIFactoryTest, CommittedEditIsWrittenAnnouncedAndPosted)
{
    UIFloat end(&track, &TrackTimes::setEnd, &TrackTimes::getEnd, column, 198, "");
    end.addListener(bind(&Heard::first, &heard));
    typeAndCommit(end.edit(), "4.5");
    EXPECT_EQ(track.end, 4.5f);
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"first 4.5", "message 198"}));
    // Committing the same value again changes nothing and posts nothing.
    typeAndCommit(end.edit(), "4.50");
    EXPECT_EQ(heard.lines.size(), 2u);
}

TEST_F(UIFactoryTest, StartTimeTypedPastTheEndStopsJustBeforeIt)
{
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    typeAndCommit(start.edit(), "5");
    EXPECT_EQ(track.start, 3.0f - 0.000001f);
    EXPECT_EQ(start.edit()->getText(), "2.999999");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"message 198"}));
}

TEST_F(UIFactoryTest, NegativeStartTimeBecomesZero)
{
    track.start = 1.0f;
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    typeAndCommit(start.edit(), "-1");
    EXPECT_EQ(track.start, 0.0f);
    EXPECT_EQ(start.edit()->getText(), "0");
}

TEST_F(UIFactoryTest, EndTimeTypedBeforeTheStartStopsJustAfterIt)
{
    track.start = 2.0f;
    track.end = 5.0f;
    UIFloat end(&track, &TrackTimes::setEnd, &TrackTimes::getEnd, column, 198, "");
    typeAndCommit(end.edit(), "1");
    EXPECT_EQ(track.end, 2.0f + 0.000001f);
    EXPECT_EQ(end.edit()->getText(), "2.000001");
}

TEST_F(UIFactoryTest, TypedTextSurvivesASourceChangeUntilTheFieldLosesFocus)
{
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    start.getEditor()->setFocus();
    start.edit()->setText("1.25"); // the user is typing
    track.start = 0.5f;            // meanwhile the track changes
    start.refresh();
    EXPECT_EQ(start.edit()->getText(), "1.25");
    start.getEditor()->removeFocus();
    EXPECT_EQ(track.start, 1.25f);
    EXPECT_EQ(start.edit()->getText(), "1.25");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"message 198"}));
}

TEST_F(UIFactoryTest, LeavingAnUntouchedFieldShowsTheSourceAndWritesNothing)
{
    UIFloat start(&track, &TrackTimes::setStart, &TrackTimes::getStart, column, 198, "");
    start.getEditor()->setFocus();
    track.start = 0.5f;
    start.refresh();
    EXPECT_EQ(start.edit()->getText(), "0");
    start.getEditor()->removeFocus();
    EXPECT_EQ(track.start, 0.5f);
    EXPECT_EQ(start.edit()->getText(), "0.5");
    EXPECT_TRUE(heard.lines.empty());
}

TEST_F(UIFactoryTest, TypingIntoTheShownWindowCommitsOnEnter)
{
    UIFloat end(&track, &TrackTimes::setEnd, &TrackTimes::getEnd, column, 198, "");
    window->show();
    settle();
    int x = 0;
    int y = 0;
    root()->getAutomation()->elementPoint(end.getEditor(), 4, 4, x, y);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    settle();
    ASSERT_TRUE(end.getEditor()->hasFocus());
    end.edit()->setText("");
    ASSERT_TRUE(root()->getAutomation()->typeText("6.5"));
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_ENTER));
    settle();
    EXPECT_EQ(track.end, 6.5f);
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"message 198"}));
}

TEST_F(UIFactoryTest, WheelOverTheFloatFieldWritesTheNudgedValue)
{
    UIFloat end(&track, &TrackTimes::setEnd, &TrackTimes::getEnd, column, 198, "");
    end.addListener(bind(&Heard::first, &heard));
    window->show();
    settle();
    int x = 0;
    int y = 0;
    root()->getAutomation()->elementPoint(end.getEditor(), 4, 4, x, y);
    ASSERT_TRUE(root()->getAutomation()->mouseWheel(x, y, 2));
    settle();
    EXPECT_FLOAT_EQ(track.end, 3.2f);
    EXPECT_EQ(heard.lines.back(), "message 198");
    EXPECT_EQ(end.getShown(), track.end);
}

TEST_F(UIFactoryTest, IntegerFieldReadsDecimalOrHexadecimal)
{
    track.flags = 31;
    UIIntBase<int> dec(&track, &TrackTimes::setFlags, &TrackTimes::getFlags, column, 0, "flags");
    UIIntBase<int> hex(&track, &TrackTimes::setFlags, &TrackTimes::getFlags, column, 0, "flags", 1);
    EXPECT_EQ(dec.edit()->getText(), "31");
    EXPECT_EQ(hex.edit()->getText(), "0x1F");
    EXPECT_EQ(hex.getBase(), 1);
    hex.addListener(bind(&Heard::number, &heard));
    typeAndCommit(hex.edit(), "ff");
    EXPECT_EQ(track.flags, 255);
    typeAndCommit(hex.edit(), "0X10");
    EXPECT_EQ(track.flags, 16);
    EXPECT_EQ(hex.edit()->getText(), "0X10");
    dec.refresh();
    EXPECT_EQ(dec.edit()->getText(), "16");
    typeAndCommit(dec.edit(), "-42");
    EXPECT_EQ(track.flags, -42);
    hex.refresh();
    EXPECT_EQ(hex.edit()->getText(), "0xFFFFFFD6");
    EXPECT_EQ(hex.getShown(), -42);
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"int 255", "int 16"}));
}

TEST_F(UIFactoryTest, CheckBoxToggleWritesThroughTheSetter)
{
    UIBool loop(&track, &TrackTimes::setLoop, &TrackTimes::isLoop, column, 195, "loop");
    loop.addListener(bind(&Heard::flag, &heard));
    loop.box()->setChecked(true);
    UIEventChanged changed;
    loop.box()->sigChanged(&changed, loop.box());
    EXPECT_TRUE(track.loop);
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"on", "message 195"}));
    loop.setValue(true);
    EXPECT_EQ(heard.lines.size(), 2u);
}

TEST_F(UIFactoryTest, TextFieldWritesAsTheUserTypes)
{
    UIString name(&track, &TrackTimes::setName, &TrackTimes::getName, column, 0, "name");
    EXPECT_EQ(name.edit()->getText(), "walk");
    EXPECT_EQ(name.getButton(), nullptr);
    name.addListener(bind(&Heard::text, &heard));
    name.edit()->setText("run");
    UIEventChanged changed;
    name.edit()->sigChanged(&changed, name.edit());
    EXPECT_EQ(track.name, "run");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"text run"}));
}

TEST_F(UIFactoryTest, TextFieldWithoutSetterIsReadOnly)
{
    UIString name(&track, nullptr, &TrackTimes::getName, column, 0, "name");
    EXPECT_TRUE(name.edit()->isReadOnly());
    EXPECT_TRUE(name.getData().isReadOnly());
    track.name = "jump";
    name.refresh();
    EXPECT_EQ(name.edit()->getText(), "jump");
}

TEST_F(UIFactoryTest, TextButtonAppliesAndAnnouncesTheText)
{
    UIString name(&track, &TrackTimes::setName, &TrackTimes::getName, column, 0, "name", "Apply");
    ASSERT_NE(name.getButton(), nullptr);
    EXPECT_EQ(name.getButton()->getText(), "Apply");
    EXPECT_EQ(column->getNumChilds(), 2);
    name.addListener(bind(&Heard::text, &heard));
    name.getButton()->click();
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"text walk"}));
    name.edit()->setText("idle");
    name.getButton()->click();
    EXPECT_EQ(track.name, "idle");
    EXPECT_EQ(heard.lines, (std::vector<std::string>{"text walk", "text idle"}));
}
