#include "UIFixture.h"
#include "kit/KeyState.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UILabel.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

namespace {

// A layout that records the presses the tree offers it and consumes them on request.
class PressRecorder : public UIVLayout {
public:
    using UIVLayout::UIVLayout;
    bool onMouseDown(const UIEventMouse* e) override
    {
        ++presses;
        lastMulti = e->isMultiSelect();
        leftHeld = (GetKeyState(1) & 0x8000) != 0;
        if (consume && isHit(e->x, e->y))
            return true;
        return UIVLayout::onMouseDown(e);
    }
    bool onKeyPress(const UIEventKey* e) override
    {
        if (hasFocus()) {
            keys.append(e->key);
            return true;
        }
        return UIVLayout::onKeyPress(e);
    }
    bool consume = false;
    int presses = 0;
    bool lastMulti = false;
    bool leftHeld = false;
    jVector<int> keys;
};

struct Clicks {
    void on_click(const UIEventMouse*, UIElement* sender)
    {
        ++count;
        last = sender;
    }
    int count = 0;
    UIElement* last = nullptr;
};

} // namespace

using UIElementTest = UIFixture;

TEST_F(UIElementTest, ReleaseFreesEveryChildAndTheRegistryBalances)
{
    auto* window = make<UIWindow>(root(), "Tree", 200, 100);
    auto* column = make<UIVLayout>(root());
    ASSERT_TRUE(window->addChild(column, UI_EXPAND_BOTH));
    ASSERT_TRUE(column->addChild(make<UILabel>(root(), "a")));
    ASSERT_TRUE(column->addChild(make<UILabel>(root(), "b"), UI_EXPAND_NONE, 0));
    EXPECT_EQ(window->getNumChilds(), 1);
    EXPECT_EQ(column->getNumChilds(), 2);
    EXPECT_EQ(static_cast<UILabel*>(column->getChild(0))->getText(), "b");
    EXPECT_EQ(column->getParent(), window);
    window->release();
    EXPECT_EQ(window->getNumChilds(), 0);
    destroy(window);
}

TEST_F(UIElementTest, AddChildRefusesAChildThatAlreadyHasAParent)
{
    auto* a = make<UIVLayout>(root());
    auto* b = make<UIVLayout>(root());
    auto* label = make<UILabel>(root(), "x");
    ASSERT_TRUE(a->addChild(label));
    EXPECT_FALSE(b->addChild(label));
    expectLogged("UIElement::addChild");
    EXPECT_FALSE(a->addChild(a));
    expectLogged("UIElement::addChild");
    EXPECT_EQ(b->getNumChilds(), 0);
    destroy(a);
    destroy(b);
}

TEST_F(UIElementTest, DestroyingAChildTakesItOutOfItsParent)
{
    auto* column = make<UIVLayout>(root());
    auto* label = make<UILabel>(root(), "x");
    column->addChild(label);
    destroy(label);
    EXPECT_EQ(column->getNumChilds(), 0);
    destroy(column);
}

TEST_F(UIElementTest, AConsumedPressNeverReachesTheNativeButton)
{
    auto* window = make<UIWindow>(root(), "Dispatch", 240, 120);
    auto* panel = make<PressRecorder>(root());
    auto* button = make<UIButton>(root(), "Press");
    Clicks clicks;
    button->sigClick = bind(&Clicks::on_click, &clicks);
    window->addChild(panel, UI_EXPAND_BOTH);
    panel->addChild(button, UI_EXPAND_ACROSS);
    window->setPosition(50, 50);
    window->show();
    settle();
    int x = 0, y = 0;
    root()->getAutomation()->elementPoint(button, button->getWidth() / 2, button->getHeight() / 2, x, y);

    panel->consume = true;
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    EXPECT_EQ(panel->presses, 1);
    EXPECT_EQ(clicks.count, 0);

    panel->consume = false;
    ASSERT_TRUE(root()->getAutomation()->click(x, y, UI_MOUSE_LEFT, UI_MOD_CTRL));
    EXPECT_EQ(panel->presses, 2);
    EXPECT_TRUE(panel->lastMulti);
    EXPECT_TRUE(panel->leftHeld);
    EXPECT_EQ(clicks.count, 1);
    EXPECT_EQ(clicks.last, button);
    EXPECT_EQ(GetKeyState(1) & 0x8000, 0);
    destroy(window);
}

TEST_F(UIElementTest, KeysReachTheFocusedElementThroughTheTree)
{
    auto* window = make<UIWindow>(root(), "Keys", 200, 100);
    auto* panel = make<PressRecorder>(root());
    window->addChild(panel, UI_EXPAND_BOTH);
    window->show();
    settle();
    EXPECT_FALSE(panel->hasFocus());
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_LEFT));
    EXPECT_TRUE(panel->keys.empty());

    panel->setFocus();
    EXPECT_TRUE(panel->hasFocus());
    EXPECT_EQ(root()->getFocus(), panel);
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_LEFT));
    ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_DELETE));
    ASSERT_TRUE(root()->getAutomation()->keyPress('k', UI_MOD_CTRL));
    ASSERT_EQ(panel->keys.size(), 3);
    EXPECT_EQ(panel->keys[0], 266);
    EXPECT_EQ(panel->keys[1], 260);
    EXPECT_EQ(panel->keys[2], 'K');

    panel->removeFocus();
    EXPECT_FALSE(panel->hasFocus());
    EXPECT_EQ(root()->getFocus(), nullptr);
    destroy(window);
}

namespace {

// Records every kind of pointer event the tree offers it, consuming what lands on it.
class Recorder : public UIElement {
public:
    using UIElement::UIElement;
    void update(float dt) override
    {
        elapsed += dt;
        UIElement::update(dt);
    }
    bool onMouseMove(const UIEventMouse* e) override { return note("move", e); }
    bool onMouseUp(const UIEventMouse* e) override { return note("up", e); }
    bool onMouseDClick(const UIEventMouse* e) override { return note("dclick", e); }
    bool onNonClient(const UIEventMouse*) override
    {
        seen += "leave ";
        return false;
    }
    bool note(const char* what, const UIEventMouse* e)
    {
        if (!isHit(e->x, e->y))
            return false;
        seen += what;
        seen += e->isLeftDown() ? "+L " : " ";
        return true;
    }
    std::string seen;
    float elapsed = 0.0f;
};

} // namespace

TEST_F(UIElementTest, MovesReleasesDoubleClicksAndLeavingReachTheTree)
{
    auto* window = make<UIWindow>(root(), "events", 200, 200);
    auto* top = make<Recorder>(root());
    auto* bottom = make<Recorder>(root());
    window->addChild(top, UI_EXPAND_BOTH);
    window->addChild(bottom, UI_EXPAND_BOTH);
    window->show();
    settle();
    int x = 0, y = 0;
    root()->getAutomation()->elementPoint(bottom, 10, 10, x, y);
    auto* hook = root()->getAutomation();
    ASSERT_TRUE(hook->mouseDown(x, y));
    ASSERT_TRUE(hook->mouseMove(x + 5, y));
    ASSERT_TRUE(hook->mouseUp(x + 5, y));
    ASSERT_TRUE(hook->mouseDClick(x, y));
    ASSERT_TRUE(hook->mouseLeave(window));
    EXPECT_EQ(top->seen, "leave ");
    EXPECT_EQ(bottom->seen, "move+L up up dclick+L up leave ");
    destroy(window);
}

TEST_F(UIElementTest, HitTestsAndCoordinatesAreInScreenPixels)
{
    auto* window = make<UIWindow>(root(), "hit", 200, 100);
    auto* left = make<UIElement>(root());
    left->setFixWidth(50);
    auto* row = make<UIElement>(root());
    window->addChild(row, UI_EXPAND_BOTH);
    row->addChild(left, UI_EXPAND_BOTH);
    window->setPosition(300, 200);
    window->show();
    settle();
    int x = 10, y = 20;
    left->localToScreen(x, y);
    EXPECT_GE(x, 310);
    EXPECT_GE(y, 220);
    EXPECT_TRUE(left->isHit(x, y));
    int lx = x, ly = y;
    left->screenToLocal(lx, ly);
    EXPECT_EQ(lx, 10);
    EXPECT_EQ(ly, 20);
    EXPECT_FALSE(left->isHit(x + 45, y)); // 55 pixels in: past its 50-pixel width
    EXPECT_TRUE(row->isHit(x + 45, y));
    destroy(window);
}

TEST_F(UIElementTest, UpdateReachesEveryDescendant)
{
    auto* parent = make<Recorder>(root());
    auto* child = make<Recorder>(root());
    auto* grandchild = make<Recorder>(root());
    parent->addChild(child);
    child->addChild(grandchild);
    parent->update(0.25f);
    parent->update(0.5f);
    EXPECT_FLOAT_EQ(grandchild->elapsed, 0.75f);
    EXPECT_FLOAT_EQ(child->elapsed, 0.75f);
    destroy(parent);
}
