#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

namespace {

// An empty element of a fixed natural size.
UIElement* block(UIRoot* root, int w, int h)
{
    auto* e = make<UIElement>(root);
    e->setMinSize(w, h);
    return e;
}

} // namespace

class UIVLayoutTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "layout", 300, 200);
        column = make<UIVLayout>(root(), 0, 0);
        window->addChild(column, UI_EXPAND_BOTH);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    void show()
    {
        window->show();
        settle();
    }
    // The element's top-left corner in the column's coordinates.
    void origin(UIElement* e, int& x, int& y)
    {
        x = 0;
        y = 0;
        e->localToScreen(x, y);
        column->screenToLocal(x, y);
    }
    UIWindow* window = nullptr;
    UIVLayout* column = nullptr;
};

TEST_F(UIVLayoutTest, ExpandTypesGiveNaturalFillAcrossAndFillBoth)
{
    UIElement* natural = block(root(), 40, 20);
    UIElement* across = block(root(), 40, 20);
    UIElement* both = block(root(), 40, 20);
    column->addChild(natural, UI_EXPAND_NONE);
    column->addChild(across, UI_EXPAND_ACROSS);
    column->addChild(both, UI_EXPAND_BOTH);
    show();
    EXPECT_EQ(natural->getWidth(), 40);
    EXPECT_EQ(natural->getHeight(), 20);
    EXPECT_EQ(across->getWidth(), column->getWidth());
    EXPECT_EQ(across->getHeight(), 20);
    EXPECT_EQ(both->getWidth(), column->getWidth());
    EXPECT_EQ(both->getHeight(), column->getHeight() - 40);
}

TEST_F(UIVLayoutTest, ChildrenStackTopToBottomInPositionOrder)
{
    UIElement* a = block(root(), 10, 20);
    UIElement* b = block(root(), 10, 30);
    UIElement* c = block(root(), 10, 10);
    column->addChild(a);
    column->addChild(b);
    column->addChild(c, UI_EXPAND_NONE, 0);
    show();
    int x, y;
    origin(c, x, y);
    EXPECT_EQ(y, 0);
    origin(a, x, y);
    EXPECT_EQ(y, 10);
    origin(b, x, y);
    EXPECT_EQ(y, 30);
}

TEST_F(UIVLayoutTest, HeightWeightsDivideTheFreeSpace)
{
    UIElement* one = make<UIElement>(root());
    UIElement* three = make<UIElement>(root());
    column->addChild(one, UI_EXPAND_BOTH);
    column->addChild(three, UI_EXPAND_BOTH);
    three->setHeightWeight(3.0f);
    show();
    EXPECT_NEAR(three->getHeight(), 3 * one->getHeight(), 2);
    EXPECT_EQ(three->getHeightWeight(), 3.0f);
}

TEST_F(UIVLayoutTest, ContentAlignmentPlacesNaturalChildrenAcross)
{
    UIElement* e = block(root(), 40, 20);
    column->addChild(e);
    column->setContentAligns(UI_ALIGN_CENTER);
    show();
    int x, y;
    origin(e, x, y);
    EXPECT_EQ(x, (column->getWidth() - 40) / 2);
    column->setContentAligns(UI_ALIGN_END);
    settle();
    origin(e, x, y);
    EXPECT_EQ(x, column->getWidth() - 40);
}

TEST_F(UIVLayoutTest, HiddenChildrenTakeNoRoomAndGetNoInput)
{
    UIElement* a = block(root(), 40, 20);
    UIElement* b = block(root(), 40, 20);
    column->addChild(a);
    column->addChild(b);
    a->setHidden(true);
    show();
    EXPECT_TRUE(a->isHidden());
    int x, y;
    origin(b, x, y);
    EXPECT_EQ(y, 0);
    int sx = 5, sy = 5;
    a->localToScreen(sx, sy);
    EXPECT_FALSE(a->isHit(sx, sy));
    a->setHidden(false);
    settle();
    origin(b, x, y);
    EXPECT_EQ(y, 20);
}

TEST_F(UIVLayoutTest, FixedSizesHoldAndCanBeFreedAgain)
{
    UIElement* e = make<UIElement>(root());
    column->addChild(e, UI_EXPAND_BOTH);
    e->setFixHeight(33);
    e->setFixWidth(64);
    show();
    EXPECT_EQ(e->getHeight(), 33);
    EXPECT_EQ(e->getWidth(), 64);
    e->setFixSize(-1, -1);
    settle();
    EXPECT_EQ(e->getHeight(), column->getHeight());
}
