#include "UIFixture.h"
#include "kit/KeyState.h"
#include "msg/MsgNode.h"
#include "msg/UiMsg.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UICheckBox.h"
#include "ui/UIFactory.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

#include <algorithm>
#include <optional>
#include <tuple>
#include <vector>

namespace {

// A layout that records the pointer events that land on it, consuming them on request, and takes
// the keys while it holds the focus.
class Recorder : public UIVLayout {
public:
    using UIVLayout::UIVLayout;
    bool onMouseDown(const UIEventMouse* e) override
    {
        leftHeld = (GetKeyState(1) & 0x8000) != 0;
        return note(e->isMultiSelect() ? "down+multi" : "down", e) || UIVLayout::onMouseDown(e);
    }
    bool onMouseMove(const UIEventMouse* e) override { return note("move", e); }
    bool onMouseUp(const UIEventMouse* e) override { return note("up", e); }
    bool onMouseDClick(const UIEventMouse* e) override { return note("dclick", e); }
    bool onNonClient(const UIEventMouse*) override
    {
        seen += "leave ";
        return false;
    }
    bool onKeyPress(const UIEventKey* e) override
    {
        if (!hasFocus())
            return UIVLayout::onKeyPress(e);
        keys.push_back(e->key);
        return true;
    }
    bool note(const char* what, const UIEventMouse* e)
    {
        if (!isHit(e->x, e->y))
            return false;
        seen += what;
        seen += e->isLeftDown() ? "+L " : " ";
        return consume;
    }
    bool consume = true;
    bool leftHeld = false;
    std::string seen;
    std::vector<int> keys;
};

// The track times as the editor binds them to its fields: the start stays at least 0 and below
// the end.
struct TrackTimes {
    float getStart() const { return start; }
    void setStart(float t) { start = std::max(std::min(t, end - 0.000001f), 0.0f); }
    float start = 1.0f;
    float end = 3.0f;
};

// Counts the host messages the fields post.
struct Posted : public MsgNode {
    Posted() { attach(); }
    void processMsg(UiMsg* msg) override { ids.push_back(msg->getID()); }
    std::vector<int> ids;
};

} // namespace

// A shown window holding two recorders, the lower one with a button, then a text field and the
// number field of the track's start time, bound as the editor binds it (message 198).
class UIInputTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "input", 260, 240);
        top = make<Recorder>(root());
        bottom = make<Recorder>(root());
        button = make<UIButton>(root(), "Press");
        line = make<UIEditLine>(root(), "");
        button->sigClick = [this](const UIEventMouse*, UIElement* sender) { clicked.push_back(sender); };
        window->addChild(top, UI_EXPAND_BOTH);
        window->addChild(bottom, UI_EXPAND_BOTH);
        bottom->addChild(button, UI_EXPAND_ACROSS);
        window->addChild(line, UI_EXPAND_ACROSS);
        start.emplace(&times, &TrackTimes::setStart, &TrackTimes::getStart, window, 198, "t");
        window->setPosition(300, 200);
        window->show();
        settle();
        line->removeFocus();
        start->getEditor()->removeFocus();
        line->sigChanged = [this](const UIEventChanged*, UIElement*) { ++changes; };
        line->sigCommit = [this]() { ++commits; };
        line->sigFocus = [this](const UIEventFocus* f, UIElement*) { focused = f->focused; };
        hook()->elementPoint(button, button->getWidth() / 2, button->getHeight() / 2, x, y);
        UIElement* field = start->getEditor();
        hook()->elementPoint(field, field->getWidth() - 20, field->getHeight() / 2, fx, fy);
    }
    void TearDown() override
    {
        start.reset();
        destroy(window);
        UIFixture::TearDown();
    }
    UIAutomation* hook() { return root()->getAutomation(); }
    UIWindow* window = nullptr;
    Recorder* top = nullptr;
    Recorder* bottom = nullptr;
    UIButton* button = nullptr;
    UIEditLine* line = nullptr;
    TrackTimes times;
    Posted posted;
    std::optional<UIFloat> start;
    std::vector<UIElement*> clicked;
    int changes = 0;
    int commits = 0;
    bool focused = false;
    int x = 0, y = 0;
    int fx = 0, fy = 0;
};

// The track views consume the presses they handle; the native widget under the pointer must then
// not act on them too. What the tree leaves alone reaches it, with the button state recorded.
TEST_F(UIInputTest, AConsumedPressNeverReachesTheNativeButton)
{
    ASSERT_TRUE(hook()->click(x, y));
    EXPECT_EQ(bottom->seen, "down+L up ");
    EXPECT_TRUE(clicked.empty());

    bottom->consume = false;
    ASSERT_TRUE(hook()->click(x, y, UI_MOUSE_LEFT, UI_MOD_CTRL));
    EXPECT_EQ(bottom->seen, "down+L up down+multi+L up ");
    EXPECT_TRUE(bottom->leftHeld);
    EXPECT_EQ(clicked, std::vector<UIElement*>{button});
    EXPECT_EQ(GetKeyState(1) & 0x8000, 0);
    ASSERT_TRUE(hook()->mouseDown(fx, fy)); // a press elsewhere and a release on it is no click
    ASSERT_TRUE(hook()->mouseUp(x, y));
    EXPECT_EQ(clicked.size(), 1u);
}

// Drags end with a release and a double click opens a key's editor: each reaches the element
// under the pointer with the button state of the moment, and leaving the window reaches all. The
// key line's arrow and Delete commands reach it only while it holds the focus.
TEST_F(UIInputTest, PointerEventsAndKeysReachTheTree)
{
    ASSERT_TRUE(hook()->mouseDown(x, y));
    ASSERT_TRUE(hook()->mouseMove(x + 5, y));
    ASSERT_TRUE(hook()->mouseUp(x + 5, y));
    ASSERT_TRUE(hook()->mouseDClick(x, y));
    ASSERT_TRUE(hook()->mouseLeave(window));
    EXPECT_EQ(top->seen, "leave ");
    EXPECT_EQ(bottom->seen, "down+L move+L up down+L up dclick+L up leave ");
    ASSERT_TRUE(hook()->keyPress(UI_KEY_LEFT));
    EXPECT_TRUE(bottom->keys.empty());
    bottom->setFocus();
    ASSERT_TRUE(hook()->keyPress(UI_KEY_LEFT));
    ASSERT_TRUE(hook()->keyPress(UI_KEY_DELETE));
    ASSERT_TRUE(hook()->keyPress('k', UI_MOD_CTRL));
    EXPECT_EQ(bottom->keys, (std::vector<int>{UI_KEY_LEFT, UI_KEY_DELETE, 'K'}));
    bottom->removeFocus();
    EXPECT_EQ(root()->getFocus(), nullptr);
}

// A script aimed at nothing, an image that cannot be written or read, or an element put in a
// second place fails with a message naming what went wrong instead of passing silently.
TEST_F(UIInputTest, BadRequestsAreReportedAndChangeNothing)
{
    auto* other = make<UIVLayout>(root());
    EXPECT_FALSE(other->addChild(button));
    expectLogged("UIElement::addChild");
    EXPECT_FALSE(other->addChild(other));
    expectLogged("UIElement::addChild");
    EXPECT_FALSE(window->removeChild(other));
    EXPECT_EQ(button->getParent(), bottom);
    destroy(other);
    EXPECT_FALSE(hook()->mouseDown(-5000, -5000));
    expectLogged("UIAutomation::mouseDown:no window at -5000, -5000");
    window->hide();
    EXPECT_FALSE(button->isHit(x, y));
    EXPECT_FALSE(hook()->mouseLeave(window));
    expectLogged("UIAutomation::mouseLeave:the window is not shown");
    TempDir dir;
    std::string bad = dir.file("missing/dir/shot.png");
    EXPECT_FALSE(hook()->saveScreenshot(window, bad.c_str()));
    expectLogged("UIAutomation::saveScreenshot:cannot write screenshot \"" + bad + "\"");
    vec4 c;
    EXPECT_FALSE(hook()->readPixel(bad.c_str(), 0, 0, c));
    expectLogged("UIAutomation::readPixel:cannot read image");
    std::string good = dir.file("window.png");
    ASSERT_TRUE(hook()->saveScreenshot(window, good.c_str()));
    EXPECT_FALSE(hook()->readPixel(good.c_str(), 5000, 0, c));
    expectLogged("UIAutomation::readPixel:point 5000, 0 outside");
    EXPECT_FALSE(button->setIcon("/no/such/icon.png"));
    expectLogged("UIButton::setIcon:cannot read icon \"/no/such/icon.png\"");
    EXPECT_TRUE(button->setIcon(KUVO_DATA_DIR "/core/editor/gui/key.png"));
}

// Closing the editor hides its windows and drops the answers no dialog took, so that they cannot
// answer a dialog of the next session.
TEST_F(UIInputTest, ReleasingTheRootClosesWindowsAndDropsAnswers)
{
    hook()->answerOk();
    root()->release();
    EXPECT_FALSE(window->isShown());
    EXPECT_EQ(hook()->pendingAnswers(), 0);
}

// The editor writes a field's value when it is committed: on Enter, or on leaving the field after
// a change. Showing a value from the document is silent, and keys typed into the field (Delete)
// edit its text instead of deleting keys in the views.
TEST_F(UIInputTest, TypingRaisesChangedAndEnterOrLeavingCommits)
{
    line->setText("abc");
    EXPECT_EQ(changes, 0);
    line->setFocus();
    EXPECT_TRUE(focused);
    ASSERT_TRUE(hook()->keyPress(UI_KEY_HOME));
    ASSERT_TRUE(hook()->keyPress(UI_KEY_DELETE));
    ASSERT_TRUE(hook()->typeText("Node"));
    EXPECT_EQ(line->getText(), "Nodebc");
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(commits, 0);
    ASSERT_TRUE(hook()->keyPress(UI_KEY_ENTER));
    EXPECT_EQ(commits, 1);
    line->removeFocus();
    EXPECT_EQ(commits, 1); // nothing changed since Enter
    line->setFocus();
    ASSERT_TRUE(hook()->typeText("s"));
    line->removeFocus();
    EXPECT_FALSE(focused);
    EXPECT_EQ(commits, 2);
}

// Each mode lets through only what can make its kind of value; an unknown mode is refused, and
// a read-only field takes nothing.
TEST_F(UIInputTest, EditModesRefuseWhatTheirValuesCannotHold)
{
    const std::tuple<int, const char*, const char*> cases[] = {
        {UI_EDIT_TEXT, "-1.5x2", "-1.5x2"},
        {UI_EDIT_INTEGER, "-1.5x2", "-152"},
        {UI_EDIT_HEX, "0x1fg", "0x1f"},
        {UI_EDIT_NUMBER, "-1.5x2", "-1.52"},
    };
    line->setFocus();
    for (const auto& [mode, typed, kept] : cases) {
        SCOPED_TRACE(typed);
        line->setText("");
        line->setMode(mode);
        ASSERT_TRUE(hook()->typeText(typed));
        EXPECT_EQ(line->getText(), kept);
    }
    line->setMode(7);
    expectLogged("UIEditLine::setMode:unknown edit mode 7");
    EXPECT_EQ(line->getMode(), UI_EDIT_NUMBER);
    line->setReadOnly(true);
    EXPECT_TRUE(line->isReadOnly());
    ASSERT_TRUE(hook()->typeText("5"));
    EXPECT_EQ(line->getText(), "-1.52");
}

// A time changes by the wheel or a horizontal drag over its field, each step written and posted
// at once; a click without a drag starts editing with the text selected, so typing replaces it,
// and Enter writes it, shown as the track kept it.
TEST_F(UIInputTest, TheWheelADragAndTypingWriteTheNumberField)
{
    start->edit()->setStep(0.5f);
    ASSERT_TRUE(hook()->mouseWheel(fx, fy, 2));
    EXPECT_FLOAT_EQ(times.start, 2.0f);
    ASSERT_TRUE(hook()->mouseWheel(fx, fy, -1));
    EXPECT_FLOAT_EQ(times.start, 1.5f);
    start->edit()->setStep(0.1f);
    ASSERT_TRUE(hook()->mouseDown(fx - 40, fy));
    ASSERT_TRUE(hook()->mouseMove(fx - 30, fy));
    ASSERT_TRUE(hook()->mouseMove(fx - 20, fy));
    ASSERT_TRUE(hook()->mouseUp(fx - 20, fy));
    EXPECT_FLOAT_EQ(times.start, 2.0f); // 20 pixels: five steps of 0.1
    EXPECT_EQ(posted.ids, (std::vector<int>{198, 198, 198, 198})); // the drag took two moves
    EXPECT_FALSE(start->getEditor()->hasFocus());
    ASSERT_TRUE(hook()->click(fx, fy));
    EXPECT_TRUE(start->getEditor()->hasFocus());
    ASSERT_TRUE(hook()->typeText("7.25"));
    ASSERT_TRUE(hook()->click(fx, fy)); // while editing, a click only places the cursor
    EXPECT_EQ(start->edit()->getText(), "7.25");
    ASSERT_TRUE(hook()->keyPress(UI_KEY_ENTER));
    EXPECT_EQ(times.start, 3.0f - 0.000001f);
    EXPECT_EQ(start->edit()->getText(), "2.999999");
    EXPECT_EQ(posted.ids.size(), 5u);
}

// While the user types, a change of the track must not overwrite the field; leaving it writes
// what was typed, or, when nothing was typed, shows the track's newer value and writes nothing.
TEST_F(UIInputTest, TheFocusedNumberFieldKeepsWhatIsTypedUntilItIsLeft)
{
    start->getEditor()->setFocus();
    times.start = 0.5f;
    start->refresh();
    EXPECT_EQ(start->edit()->getText(), "1");
    start->getEditor()->removeFocus();
    EXPECT_EQ(times.start, 0.5f);
    EXPECT_EQ(start->edit()->getText(), "0.5");
    EXPECT_TRUE(posted.ids.empty());
    start->getEditor()->setFocus();
    start->edit()->setText("1.25");
    times.start = 0.75f;
    start->refresh();
    EXPECT_EQ(start->edit()->getText(), "1.25");
    start->getEditor()->removeFocus();
    EXPECT_EQ(times.start, 1.25f);
    EXPECT_EQ(posted.ids, std::vector<int>{198});
    // Typing back the value the field showed before that edit is an edit too.
    start->getEditor()->setFocus();
    start->edit()->setText("0.5");
    start->getEditor()->removeFocus();
    EXPECT_EQ(times.start, 0.5f);
    EXPECT_EQ(posted.ids, (std::vector<int>{198, 198}));
}

// The user's click toggles a check box and says so; setting it from the document is silent.
TEST_F(UIInputTest, AClickTogglesACheckBoxAndSetCheckedIsSilent)
{
    auto* box = make<UICheckBox>(root(), "apply_hierarchy");
    window->addChild(box);
    settle();
    box->sigChanged = [this](const UIEventChanged*, UIElement*) { ++changes; };
    box->setChecked(true);
    box->setChecked(false);
    EXPECT_EQ(changes, 0);
    int bx = 0, by = 0;
    hook()->elementPoint(box, 8, box->getHeight() / 2, bx, by);
    ASSERT_TRUE(hook()->click(bx, by));
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(box->isChecked());
    ASSERT_TRUE(hook()->click(bx, by));
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(box->getText(), "apply_hierarchy");
}
