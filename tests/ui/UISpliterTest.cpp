#include "UIFixture.h"
#include "ui/UISpliter.h"
#include "ui/UIWindow.h"

namespace {

struct SizeEvents {
    void on_size(const UIEventChanged*, UIElement* sender)
    {
        ++count;
        from = static_cast<UISpliter*>(sender);
    }
    int count = 0;
    UISpliter* from = nullptr;
};

} // namespace

class UISpliterTest : public UIFixture {
protected:
    UISpliter* add_spliter(UIElement* parent, int orientation, int parts)
    {
        auto* s = make<UISpliter>(root(), orientation);
        parent->addChild(s, UI_EXPAND_BOTH);
        for (int i = 0; i < parts; ++i)
            s->addChild(make<UIElement>(root()), UI_EXPAND_BOTH);
        return s;
    }
};

TEST_F(UISpliterTest, WeightsDivideTheSplitterAlongItsOrientation)
{
    auto* window = make<UIWindow>(root(), "split", 400, 300);
    UISpliter* columns = add_spliter(window, UI_SPLITER_HORIZONTAL, 2);
    columns->getChild(1)->setWidthWeight(4.0f);
    window->show();
    settle();
    EXPECT_EQ(columns->getNumChilds(), 2);
    EXPECT_EQ(columns->getOrientation(), 1);
    EXPECT_NEAR(columns->getChild(1)->getWidth(), 4 * columns->getChild(0)->getWidth(), 8);
    EXPECT_EQ(columns->getChild(0)->getHeight(), columns->getHeight());
    destroy(window);
}

TEST_F(UISpliterTest, MovingAHandleUpdatesWeightsAndRaisesSizeChanged)
{
    auto* window = make<UIWindow>(root(), "split", 400, 300);
    UISpliter* right = add_spliter(window, UI_SPLITER_VERTICAL, 3);
    window->show();
    settle();
    SizeEvents events;
    right->sigSizeChanged = bind(&SizeEvents::on_size, &events);
    right->moveHandle(0, 50);
    settle();
    EXPECT_EQ(events.count, 1);
    EXPECT_EQ(events.from, right);
    EXPECT_EQ(right->getChild(0)->getHeight(), 50);
    EXPECT_EQ(right->getChild(0)->getHeightWeight(), 50.0f);
    EXPECT_EQ(right->getChild(1)->getHeightWeight(), static_cast<float>(right->getChild(1)->getHeight()));
    destroy(window);
}

TEST_F(UISpliterTest, CopyingWeightsGivesTheOtherSplitterTheSameBands)
{
    auto* window = make<UIWindow>(root(), "split", 400, 300);
    UISpliter* columns = add_spliter(window, UI_SPLITER_HORIZONTAL, 0);
    UISpliter* left = add_spliter(columns, UI_SPLITER_VERTICAL, 2);
    UISpliter* right = add_spliter(columns, UI_SPLITER_VERTICAL, 2);
    window->show();
    settle();
    right->moveHandle(0, 200);
    for (int i = 0; i < right->getNumChilds(); ++i)
        left->getChild(i)->setHeightWeight(right->getChild(i)->getHeightWeight());
    settle();
    EXPECT_EQ(left->getChild(0)->getHeight(), right->getChild(0)->getHeight());
    EXPECT_EQ(left->getChild(1)->getHeight(), right->getChild(1)->getHeight());
    destroy(window);
}
