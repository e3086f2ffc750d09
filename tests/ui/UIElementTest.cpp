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
