#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UILabel.h"
#include "ui/UIWindow.h"

namespace {

struct FocusLog {
    void on_a(const UIEventFocus* e, UIElement*) { log += e->focused ? "A+" : "A-"; }
    void on_b(const UIEventFocus* e, UIElement*) { log += e->focused ? "B+" : "B-"; }
    std::string log;
};

} // namespace

using UIRootTest = UIFixture;

TEST_F(UIRootTest, OneLiveRootRunsWithoutADisplay)
{
    EXPECT_EQ(UIRoot::get(), root());
    EXPECT_TRUE(root()->isHeadless());
    EXPECT_NE(root()->getAutomation(), nullptr);
}

TEST_F(UIRootTest, FocusMovesBetweenElementsWithEvents)
{
    auto* a = make<UILabel>(root(), "a");
    auto* b = make<UILabel>(root(), "b");
    FocusLog focus;
    a->sigFocus = bind(&FocusLog::on_a, &focus);
    b->sigFocus = bind(&FocusLog::on_b, &focus);
    a->setFocus();
    b->setFocus();
    b->setFocus();
    EXPECT_EQ(focus.log, "A+A-B+");
    EXPECT_EQ(root()->getFocus(), b);
    a->removeFocus(); // a has none: nothing happens
    EXPECT_EQ(focus.log, "A+A-B+");
    destroy(b);
    EXPECT_EQ(root()->getFocus(), nullptr);
    destroy(a);
}

TEST_F(UIRootTest, ReleaseClosesWindowsAndDropsAnswers)
{
    auto* window = make<UIWindow>(root(), "top-level", 100, 100);
    window->show();
    settle();
    root()->getAutomation()->answerOk();
    root()->release();
    EXPECT_FALSE(window->isShown());
    EXPECT_EQ(root()->getAutomation()->pendingAnswers(), 0);
    destroy(window);
}
