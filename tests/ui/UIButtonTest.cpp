#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIWindow.h"

namespace {

struct Clicks {
    void on_click(const UIEventMouse* e, UIElement* sender)
    {
        ++count;
        sender_ = sender;
        button = e->button;
    }
    int count = 0;
    int button = 0;
    UIElement* sender_ = nullptr;
};

} // namespace

using UIButtonTest = UIFixture;

TEST_F(UIButtonTest, AClickOnTheButtonRaisesItsClickWithTheButtonAsSender)
{
    auto* window = make<UIWindow>(root(), "b", 200, 80);
    auto* button = make<UIButton>(root(), "Load");
    window->addChild(button);
    window->show();
    settle();
    Clicks clicks;
    button->sigClick = bind(&Clicks::on_click, &clicks);
    int x = 0, y = 0;
    root()->getAutomation()->elementPoint(button, 5, 5, x, y);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    EXPECT_EQ(clicks.count, 1);
    EXPECT_EQ(clicks.sender_, button);
    EXPECT_EQ(clicks.button, UI_MOUSE_LEFT);
    // A press outside the button and a release on it is no click.
    ASSERT_TRUE(root()->getAutomation()->mouseDown(x, y + 40));
    ASSERT_TRUE(root()->getAutomation()->mouseUp(x, y));
    EXPECT_EQ(clicks.count, 1);
    destroy(window);
}

TEST_F(UIButtonTest, BindingAgainReplacesTheHandler)
{
    auto* button = make<UIButton>(root(), "x");
    Clicks first, second;
    button->sigClick = bind(&Clicks::on_click, &first);
    button->sigClick = bind(&Clicks::on_click, &second);
    button->click();
    EXPECT_EQ(first.count, 0);
    EXPECT_EQ(second.count, 1);
    destroy(button);
}

TEST_F(UIButtonTest, TextAndIconsAreKeptOrReported)
{
    auto* button = make<UIButton>(root(), "Save");
    EXPECT_EQ(button->getText(), "Save");
    button->setText("Save as");
    EXPECT_EQ(button->getText(), "Save as");
    EXPECT_FALSE(button->setIcon("/no/such/icon.png"));
    expectLogged("UIButton::setIcon:cannot read icon \"/no/such/icon.png\"");
    TempDir dir;
    std::string icon = dir.file("i.png");
    ASSERT_TRUE(root()->getAutomation()->saveScreenshot(button, icon.c_str()));
    EXPECT_TRUE(button->setIcon(icon.c_str()));
    destroy(button);
}
