#include "UIFixture.h"
#include "ui/UIHLayout.h"
#include "ui/UIWindow.h"

using UIHLayoutTest = UIFixture;

TEST_F(UIHLayoutTest, ChildrenRunLeftToRightAndWidthWeightsShareTheRest)
{
    auto* window = make<UIWindow>(root(), "row", 400, 100);
    auto* row = make<UIHLayout>(root(), 0, 0);
    window->addChild(row, UI_EXPAND_BOTH);
    auto* fixed = make<UIElement>(root());
    fixed->setFixWidth(100);
    auto* narrow = make<UIElement>(root());
    auto* wide = make<UIElement>(root());
    row->addChild(fixed, UI_EXPAND_ACROSS);
    row->addChild(narrow, UI_EXPAND_BOTH);
    row->addChild(wide, UI_EXPAND_BOTH);
    wide->setWidthWeight(4.0f);
    window->show();
    settle();
    EXPECT_EQ(fixed->getWidth(), 100);
    EXPECT_EQ(fixed->getHeight(), row->getHeight()); // "across" is vertical in a row
    EXPECT_NEAR(wide->getWidth(), 4 * narrow->getWidth(), 4);
    EXPECT_EQ(fixed->getWidth() + narrow->getWidth() + wide->getWidth(), row->getWidth());
    int x = 0, y = 0;
    narrow->localToScreen(x, y);
    row->screenToLocal(x, y);
    EXPECT_EQ(x, 100);
    destroy(window);
}

TEST_F(UIHLayoutTest, SpacingSeparatesChildren)
{
    auto* window = make<UIWindow>(root(), "row", 400, 100);
    auto* row = make<UIHLayout>(root(), 4, 0);
    window->addChild(row, UI_EXPAND_BOTH);
    auto* a = make<UIElement>(root());
    a->setMinSize(30, 10);
    auto* b = make<UIElement>(root());
    b->setMinSize(30, 10);
    row->addChild(a);
    row->addChild(b);
    window->show();
    settle();
    int x = 0, y = 0;
    b->localToScreen(x, y);
    row->screenToLocal(x, y);
    EXPECT_EQ(x, 34);
    destroy(window);
}
