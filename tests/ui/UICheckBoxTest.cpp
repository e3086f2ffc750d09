#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UICheckBox.h"
#include "ui/UIWindow.h"

namespace {

struct Toggles {
    void on_changed(const UIEventChanged* e, UIElement* sender)
    {
        ++count;
        state = static_cast<UICheckBox*>(sender)->isChecked();
        byUser = e->byUser;
    }
    int count = 0;
    bool state = false;
    int byUser = 0;
};

} // namespace

using UICheckBoxTest = UIFixture;

TEST_F(UICheckBoxTest, TheUsersClickTogglesAndRaisesChanged)
{
    auto* window = make<UIWindow>(root(), "c", 200, 60);
    auto* box = make<UICheckBox>(root(), "apply_hierarchy");
    window->addChild(box);
    window->show();
    settle();
    Toggles toggles;
    box->sigChanged = bind(&Toggles::on_changed, &toggles);
    int x = 0, y = 0;
    root()->getAutomation()->elementPoint(box, 8, box->getHeight() / 2, x, y);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    EXPECT_EQ(toggles.count, 1);
    EXPECT_TRUE(toggles.state);
    EXPECT_EQ(toggles.byUser, 1);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    EXPECT_EQ(toggles.count, 2);
    EXPECT_FALSE(box->isChecked());
    destroy(window);
}

TEST_F(UICheckBoxTest, SetCheckedIsSilent)
{
    auto* box = make<UICheckBox>(root(), "on");
    Toggles toggles;
    box->sigChanged = bind(&Toggles::on_changed, &toggles);
    box->setChecked(true);
    EXPECT_TRUE(box->isChecked());
    box->setChecked(false);
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(toggles.count, 0);
    EXPECT_EQ(box->getText(), "on");
    destroy(box);
}
