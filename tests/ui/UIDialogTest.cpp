#include "UIFixture.h"
#include "ui/UIButton.h"
#include "ui/UIDialog.h"
#include "ui/UIHLayout.h"
#include "ui/UILabel.h"
#include "ui/UIWidget.h"

using UIDialogTest = UIFixture;

TEST_F(UIDialogTest, ChildrenGoToTheContentAboveTheButtonRow)
{
    auto* dialog = make<UIDialog>(root());
    auto* label = make<UILabel>(root(), "find");
    ASSERT_TRUE(dialog->addChild(label, UI_EXPAND_ACROSS));
    EXPECT_EQ(label->getParent(), dialog->getContent());
    EXPECT_EQ(dialog->getButtonRow()->getNumChilds(), 2);
    EXPECT_EQ(dialog->getButtonRow()->getChild(0), dialog->getOkButton());
    EXPECT_EQ(dialog->getOkButton()->getText(), "OK");
    EXPECT_EQ(dialog->getCancelButton()->getText(), "Cancel");
    auto* extra = make<UIButton>(root(), "internal_node");
    dialog->getButtonRow()->addChild(extra, UI_EXPAND_NONE);
    extra->setHidden(true);
    EXPECT_EQ(dialog->getButtonRow()->getNumChilds(), 3);
    destroy(dialog);
}

TEST_F(UIDialogTest, CloseDialogHidesAndReleasesTheWidgetHoldingIt)
{
    auto* dialog = make<UIDialog>(root());
    dialog->closeDialog(); // not shown in a widget: nothing to close
    auto* widget = make<UIWidget>(root(), Widget::MakeCenter(200, 200));
    widget->setUI(dialog, "dialog");
    widget->show();
    settle();
    dialog->closeDialog();
    EXPECT_FALSE(widget->isShown());
    EXPECT_EQ(widget->getUI(), nullptr);
    EXPECT_EQ(dialog->getParent(), nullptr);
    destroy(widget);
    destroy(dialog);
}
