#include "UIFixture.h"
#include "ui/UITreeBox.h"

namespace {

struct TreeEvents {
    void on_changed(const UIEventChanged*, UIElement*) { ++changed; }
    void on_mouse(const UIEventMouse*, UIElement* sender) { activated = static_cast<UITreeBox*>(sender)->getCurrentItem(); }
    int changed = 0;
    int activated = -2;
};

} // namespace

class UITreeBoxTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        tree = make<UITreeBox>(root());
    }
    void TearDown() override
    {
        destroy(tree);
        UIFixture::TearDown();
    }
    UITreeBox* tree = nullptr;
};

TEST_F(UITreeBoxTest, ItemsKeepTheirParentsChildrenAndTexts)
{
    int node = tree->addItem("Node");
    int pos = tree->addItem("position", node);
    int rot = tree->addItem("rotation", node);
    int light = tree->addItem("Light");
    EXPECT_EQ(tree->getNumItems(), 4);
    EXPECT_EQ(tree->getItemParent(pos), node);
    EXPECT_EQ(tree->getItemParent(node), -1);
    ASSERT_EQ(tree->getItemNumChilds(node), 2);
    EXPECT_EQ(tree->getItemChild(node, 0), pos);
    EXPECT_EQ(tree->getItemChild(node, 1), rot);
    EXPECT_EQ(tree->getItemChild(node, 2), -1);
    EXPECT_EQ(tree->getItemNumChilds(light), 0);
    EXPECT_EQ(tree->getItemText(rot), "rotation");
    tree->setItemText(rot, "rotate");
    EXPECT_EQ(tree->getItemText(rot), "rotate");
}

TEST_F(UITreeBoxTest, SetItemParentMovesBranchesAndRefusesCycles)
{
    int a = tree->addItem("a");
    int b = tree->addItem("b");
    int c = tree->addItem("c");
    ASSERT_TRUE(tree->setItemParent(b, a));
    ASSERT_TRUE(tree->setItemParent(c, b));
    EXPECT_EQ(tree->findItem("a.b.c"), c);
    EXPECT_FALSE(tree->setItemParent(a, c));
    expectLogged("UITreeBox::setItemParent");
    EXPECT_EQ(tree->getItemParent(a), -1);
    ASSERT_TRUE(tree->setItemParent(c, -1));
    EXPECT_EQ(tree->findItem("c"), c);
    EXPECT_EQ(tree->findItem("a.b.c"), -1);
}

TEST_F(UITreeBoxTest, TagsDataAndColoursStayWithTheirItems)
{
    int a = tree->addItem("a");
    int b = tree->addItem("b");
    int payload = 7;
    tree->setItemTag(a, 42);
    tree->setItemData(b, &payload);
    EXPECT_EQ(tree->getItemTag(a), 42);
    EXPECT_EQ(tree->getItemTag(b), 0);
    EXPECT_EQ(tree->getItemData(b), &payload);
    EXPECT_EQ(tree->getItemData(a), nullptr);
    EXPECT_TRUE(tree->setItemColor(a, vec4(0.298f, 0.502f, 0.851f, 1.0f)));
}

TEST_F(UITreeBoxTest, TheHiddenFlagFoldsTheBranch)
{
    int a = tree->addItem("a");
    int b = tree->addItem("b");
    int c = tree->addItem("c");
    tree->setItemParent(b, a);
    tree->setItemHidden(a, true);
    EXPECT_TRUE(tree->isItemHidden(a));
    EXPECT_TRUE(tree->isItemShown(a));
    EXPECT_FALSE(tree->isItemShown(b));
    tree->setItemHidden(a, false);
    EXPECT_FALSE(tree->isItemHidden(a));
    EXPECT_TRUE(tree->isItemShown(b));
    // The flag survives moving the item: c folds b's branch wherever b goes.
    tree->setItemParent(c, b);
    tree->setItemHidden(b, true);
    EXPECT_FALSE(tree->isItemShown(c));
    tree->setItemParent(b, -1);
    EXPECT_TRUE(tree->isItemHidden(b));
    EXPECT_FALSE(tree->isItemShown(c));
}

TEST_F(UITreeBoxTest, CurrentItemChangesAndActivationRaiseTheirEvents)
{
    TreeEvents events;
    tree->sigChanged = bind(&TreeEvents::on_changed, &events);
    tree->sigMouse = bind(&TreeEvents::on_mouse, &events);
    int a = tree->addItem("a");
    int b = tree->addItem("b", a);
    EXPECT_EQ(tree->getCurrentItem(), -1);
    tree->setCurrentItem(a);
    EXPECT_EQ(tree->getCurrentItem(), a);
    EXPECT_EQ(events.changed, 1);
    tree->activateItem(b);
    EXPECT_EQ(events.activated, b);
    EXPECT_EQ(events.changed, 2);
    tree->clear();
    EXPECT_EQ(tree->getNumItems(), 0);
    EXPECT_EQ(tree->getCurrentItem(), -1);
}

TEST_F(UITreeBoxTest, BadIdsAreReported)
{
    EXPECT_EQ(tree->addItem("x", 3), -1);
    expectLogged("UITreeBox::addItem:item");
    EXPECT_FALSE(tree->setItemTag(9, 1));
    expectLogged("UITreeBox::setItemTag:item");
    EXPECT_EQ(tree->getItemText(0), "");
    expectLogged("UITreeBox::getItemText:item");
    EXPECT_EQ(tree->getNumItems(), 0);
}
