#include "UIFixture.h"
#include "ui/UIWindow.h"

using UIWindowTest = UIFixture;

TEST_F(UIWindowTest, KeepsItsTitleSizeAndTitleBar)
{
    auto* window = make<UIWindow>(root(), "", 0, 0);
    auto* body = make<UIElement>(root());
    window->addChild(body, UI_EXPAND_BOTH);
    EXPECT_EQ(window->getTitle(), "");
    window->setTitle("Anim - New Track*");
    EXPECT_EQ(window->getTitle(), "Anim - New Track*");
    window->setSize(800, 600);
    window->show();
    settle();
    EXPECT_TRUE(window->isShown());
    EXPECT_EQ(window->getWidth(), 800);
    EXPECT_EQ(window->getHeight(), 600);
    EXPECT_EQ(body->getHeight(), 600);
    window->setTitleable(true);
    settle();
    EXPECT_TRUE(window->isTitleable());
    EXPECT_LT(body->getHeight(), 600); // the title bar takes the top
    EXPECT_GT(body->getHeight(), 560);
    window->hide();
    EXPECT_FALSE(window->isShown());
    destroy(window);
}
