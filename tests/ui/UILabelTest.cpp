#include "UIFixture.h"
#include "ui/UILabel.h"

using UILabelTest = UIFixture;

TEST_F(UILabelTest, ShowsItsTextAndTakesRoomForIt)
{
    auto* label = make<UILabel>(root(), "time");
    EXPECT_EQ(label->getText(), "time");
    int narrow = label->getPreferredWidth();
    label->setText("a much longer caption");
    EXPECT_EQ(label->getText(), "a much longer caption");
    EXPECT_GT(label->getPreferredWidth(), narrow * 2);
    label->setText(nullptr);
    EXPECT_EQ(label->getText(), "");
    destroy(label);
}
