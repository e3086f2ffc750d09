#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UIEditLineWheel.h"
#include "ui/UIWindow.h"

namespace {

struct WheelEvents {
    void on_changed(const UIEventChanged*, UIElement*) { ++changes; }
    void on_commit() { ++commits; }
    int changes = 0;
    int commits = 0;
};

} // namespace

class UIEditLineWheelTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "wheel", 200, 60);
        field = make<UIEditLineWheel>(root(), "t");
        window->addChild(field, UI_EXPAND_ACROSS);
        window->show();
        settle();
        field->removeFocus();
        field->setValue(1.0f);
        field->sigChanged = bind(&WheelEvents::on_changed, &events);
        field->sigCommit = bind(&WheelEvents::on_commit, &events);
        root()->getAutomation()->elementPoint(field, field->getWidth() - 20, field->getHeight() / 2, x, y);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    UIWindow* window = nullptr;
    UIEditLineWheel* field = nullptr;
    WheelEvents events;
    int x = 0, y = 0;
};

TEST_F(UIEditLineWheelTest, IsANumberField)
{
    EXPECT_EQ(field->getMode(), UI_EDIT_NUMBER);
    EXPECT_FLOAT_EQ(field->getValue(), 1.0f);
    EXPECT_EQ(field->getText(), ToString(1.0f));
    EXPECT_EQ(events.changes, 0);
}

TEST_F(UIEditLineWheelTest, TheWheelStepsTheValueAndCommits)
{
    field->setStep(0.5f);
    ASSERT_TRUE(root()->getAutomation()->mouseWheel(x, y, 2));
    EXPECT_FLOAT_EQ(field->getValue(), 2.0f);
    ASSERT_TRUE(root()->getAutomation()->mouseWheel(x, y, -1));
    EXPECT_FLOAT_EQ(field->getValue(), 1.5f);
    EXPECT_EQ(events.changes, 2);
    EXPECT_EQ(events.commits, 2);
}

TEST_F(UIEditLineWheelTest, AHorizontalDragStepsTheValue)
{
    auto* hook = root()->getAutomation();
    ASSERT_TRUE(hook->mouseDown(x - 40, y));
    ASSERT_TRUE(hook->mouseMove(x - 30, y));
    ASSERT_TRUE(hook->mouseMove(x - 20, y));
    ASSERT_TRUE(hook->mouseUp(x - 20, y));
    EXPECT_FLOAT_EQ(field->getValue(), 1.5f); // 20 pixels: five steps of 0.1
    EXPECT_FALSE(field->hasFocus());
    EXPECT_GE(events.commits, 1);
}

TEST_F(UIEditLineWheelTest, AClickWithoutDragStartsEditing)
{
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    EXPECT_TRUE(field->hasFocus());
    EXPECT_FLOAT_EQ(field->getValue(), 1.0f);
    ASSERT_TRUE(root()->getAutomation()->typeText("7.25")); // replaces the selected text
    EXPECT_FLOAT_EQ(field->getValue(), 7.25f);
}
