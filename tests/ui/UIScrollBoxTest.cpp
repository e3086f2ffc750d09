#include "UIFixture.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"
#include "ui/UIWindow.h"

namespace {

struct Scrolls {
    void on_scroll(const UIEventChanged*, UIElement*) { ++count; }
    int count = 0;
};

} // namespace

class UIScrollBoxTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "scroll", 300, 200);
        box = make<UIScrollBox>(root());
        canvas = make<UICanvas>(root());
        window->addChild(box, UI_EXPAND_BOTH);
        box->addChild(canvas, UI_EXPAND_BOTH);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    UIWindow* window = nullptr;
    UIScrollBox* box = nullptr;
    UICanvas* canvas = nullptr;
};

TEST_F(UIScrollBoxTest, ContentTallerThanTheBoxScrolls)
{
    canvas->setFixHeight(22 * 100);
    window->show();
    settle();
    EXPECT_EQ(canvas->getHeight(), 2200);
    EXPECT_EQ(box->getVScrollMax(), 2200 - 200);
    EXPECT_EQ(box->getHScrollMax(), 0);
    Scrolls scrolls;
    box->sigScrolled = bind(&Scrolls::on_scroll, &scrolls);
    box->setVScrollValue(440);
    EXPECT_EQ(box->getVScrollValue(), 440);
    EXPECT_EQ(scrolls.count, 1);
    int x, y, w, h;
    box->getVisibleArea(x, y, w, h);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 440);
    EXPECT_GT(h, 100);
    EXPECT_LE(h, 200);
    // The canvas moved up under the view: its row 440 is at the box's top edge.
    int sx = 0, sy = 0;
    box->localToScreen(sx, sy);
    canvas->screenToLocal(sx, sy);
    EXPECT_EQ(sy, 440);
    box->setVScrollValue(1000000);
    EXPECT_EQ(box->getVScrollValue(), box->getVScrollMax());
}

TEST_F(UIScrollBoxTest, WideContentScrollsAcrossAndOnlyTheViewIsHit)
{
    canvas->setMinWidth(3000);
    window->show();
    settle();
    EXPECT_GT(box->getHScrollMax(), 2000);
    box->setHScrollValue(500);
    EXPECT_EQ(box->getHScrollValue(), 500);
    int inside_x = 10, inside_y = 10;
    box->localToScreen(inside_x, inside_y);
    EXPECT_TRUE(canvas->isHit(inside_x, inside_y));
    int beyond_x = 0, beyond_y = 10;
    canvas->localToScreen(beyond_x, beyond_y); // the canvas's left edge is scrolled out of view
    EXPECT_FALSE(canvas->isHit(beyond_x, beyond_y));
}

TEST_F(UIScrollBoxTest, ScrollScaleIsKeptPositive)
{
    EXPECT_EQ(box->getScrollScale(), 1.0f);
    box->setScrollScale(2.5f);
    EXPECT_EQ(box->getScrollScale(), 2.5f);
    box->setScrollScale(0.0f);
    EXPECT_EQ(box->getScrollScale(), 1.0f);
}
