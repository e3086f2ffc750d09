#include "UIFixture.h"
#include "ui/UIGridLayout.h"
#include "ui/UILabel.h"
#include "ui/UIWindow.h"

using UIGridLayoutTest = UIFixture;

TEST_F(UIGridLayoutTest, ChildrenFillRowsOfTheGivenColumns)
{
    auto* window = make<UIWindow>(root(), "grid", 300, 200);
    auto* grid = make<UIGridLayout>(root(), 2, 4);
    window->addChild(grid, UI_EXPAND_ACROSS);
    UIElement* cells[5];
    for (UIElement*& c : cells) {
        c = make<UIElement>(root());
        c->setMinSize(20, 20);
        grid->addChild(c, UI_EXPAND_ACROSS);
    }
    window->show();
    settle();
    auto pos = [&](UIElement* e, int& x, int& y) {
        x = 0;
        y = 0;
        e->localToScreen(x, y);
        grid->screenToLocal(x, y);
    };
    int x0, y0, x1, y1, x2, y2, x4, y4;
    pos(cells[0], x0, y0);
    pos(cells[1], x1, y1);
    pos(cells[2], x2, y2);
    pos(cells[4], x4, y4);
    EXPECT_EQ(y0, y1);
    EXPECT_GT(x1, x0);
    EXPECT_EQ(x2, x0);
    EXPECT_GT(y2, y0);
    EXPECT_EQ(x4, x0);
    EXPECT_GT(y4, y2);
    EXPECT_EQ(grid->getColumns(), 2);
    destroy(window);
}

TEST_F(UIGridLayoutTest, ColumnRatiosShareTheWidth)
{
    auto* window = make<UIWindow>(root(), "grid", 400, 100);
    auto* grid = make<UIGridLayout>(root(), 2, 0);
    window->addChild(grid, UI_EXPAND_ACROSS);
    auto* label = make<UIElement>(root());
    auto* value = make<UIElement>(root());
    grid->addChild(label, UI_EXPAND_ACROSS);
    grid->addChild(value, UI_EXPAND_ACROSS);
    grid->setColumnRatio(0, 1.0f);
    grid->setColumnRatio(1, 3.0f);
    window->show();
    settle();
    EXPECT_NEAR(value->getWidth(), 3 * label->getWidth(), 3);
    EXPECT_EQ(grid->getColumnRatio(1), 3.0f);
    grid->setColumnRatio(2, 1.0f);
    expectLogged("UIGridLayout::setColumnRatio:column 2 outside 0..1");
    destroy(window);
}

TEST_F(UIGridLayoutTest, RemovingAChildMovesTheLaterOnesUp)
{
    auto* grid = make<UIGridLayout>(root(), 2, 0);
    auto* a = make<UILabel>(root(), "a");
    auto* b = make<UILabel>(root(), "b");
    auto* c = make<UILabel>(root(), "c");
    grid->addChild(a);
    grid->addChild(b);
    grid->addChild(c);
    destroy(a);
    EXPECT_EQ(grid->getNumChilds(), 2);
    EXPECT_EQ(grid->getChild(0), b);
    grid->setColumns(1);
    EXPECT_EQ(grid->getColumns(), 1);
    destroy(grid);
}
