#include "UIFixture.h"
#include "ui/DialogColor.h"
#include "ui/UIAutomation.h"

namespace {

// Stores the chosen colour as a colour key's handler does.
struct ColorKey {
    void on_color(const UIEventChanged*, UIElement* sender)
    {
        color = static_cast<DialogColor*>(sender)->getColor();
        ++changes;
    }
    vec4 color{0.2f, 0.3f, 0.4f, 1.0f};
    int changes = 0;
};

} // namespace

class DialogColorTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        dialog = make<DialogColor>(root());
        dialog->setColor(key.color);
        dialog->sigChanged = bind(&ColorKey::on_color, &key);
    }
    void TearDown() override
    {
        destroy(dialog);
        UIFixture::TearDown();
    }
    DialogColor* dialog = nullptr;
    ColorKey key;
};

TEST_F(DialogColorTest, AQueuedColourIsAcceptedAndReachesTheHandler)
{
    EXPECT_EQ(dialog->getColor(), vec4(0.2f, 0.3f, 0.4f, 1.0f));
    root()->getAutomation()->answerColor(vec4(1.0f, 0.5f, 0.0f, 0.25f));
    EXPECT_TRUE(dialog->modality());
    EXPECT_EQ(key.changes, 1);
    EXPECT_EQ(key.color, vec4(1.0f, 0.5f, 0.0f, 0.25f));
}

TEST_F(DialogColorTest, CancelLeavesTheColourAlone)
{
    root()->getAutomation()->answerCancel();
    EXPECT_FALSE(dialog->modality());
    EXPECT_EQ(key.changes, 0);
    EXPECT_EQ(dialog->getColor(), vec4(0.2f, 0.3f, 0.4f, 1.0f));
}

TEST_F(DialogColorTest, HeadlessWithoutAnswerClosesAsCancelled)
{
    EXPECT_FALSE(dialog->modality());
    expectLogged("DialogColor::modality:no answer queued for \"Color\", closed as cancelled");
    root()->getAutomation()->answerYes();
    EXPECT_FALSE(dialog->modality());
    expectLogged("DialogColor::modality:the answer queued for \"Color\" is not a colour");
    EXPECT_EQ(key.changes, 0);
}
