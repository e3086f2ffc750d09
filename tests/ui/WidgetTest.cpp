#include "UIFixture.h"
#include "ui/UIWidget.h"
#include "ui/Widget.h"

using WidgetTest = UIFixture;

TEST_F(WidgetTest, MakeCenterCentresOnTheScreen)
{
    UIRect a = Widget::MakeCenter(800, 600);
    UIRect b = Widget::MakeCenter(200, 100);
    EXPECT_EQ(a.width, 800);
    EXPECT_EQ(a.height, 600);
    EXPECT_EQ(a.x + a.width / 2, b.x + b.width / 2);
    EXPECT_EQ(a.y + a.height / 2, b.y + b.height / 2);
    auto* widget = make<UIWidget>(root(), a);
    widget->setSize(200, 100);
    widget->center();
    widget->show();
    settle();
    int x = 0, y = 0;
    widget->localToScreen(x, y);
    EXPECT_NEAR(x, b.x, 2);
    EXPECT_NEAR(y, b.y, 40); // the frame's title bar may shift the client area down
    destroy(widget);
}
