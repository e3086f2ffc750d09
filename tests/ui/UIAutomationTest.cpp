#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UILabel.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

namespace {

bool near(const vec4& a, const vec4& b, float eps = 0.02f)
{
    return std::abs(a.x - b.x) < eps && std::abs(a.y - b.y) < eps && std::abs(a.z - b.z) < eps;
}

} // namespace

class UIAutomationTest : public UIFixture {
protected:
    UIAutomation* hook() { return root()->getAutomation(); }
    TempDir dir;
};

TEST_F(UIAutomationTest, ASampleWindowScreenshotShowsItsColoursWhereTheyBelong)
{
    // A dark panel on top holding a label and a red canvas; the window's own background below.
    auto* window = make<UIWindow>(root(), "sample", 320, 200);
    auto* panel = make<UIVLayout>(root(), 4, 8);
    panel->setBackgroundColor(vec4(0.1f, 0.1f, 0.1f, 1.0f));
    panel->setMaskBackground(true);
    panel->setFixHeight(120);
    window->addChild(panel, UI_EXPAND_ACROSS);
    panel->addChild(make<UILabel>(root(), "Track"));
    auto* canvas = make<UICanvas>(root());
    canvas->setFixSize(100, 50);
    panel->addChild(canvas);
    int fill = canvas->addPolygon(0);
    for (vec3 p : {vec3(0, 0, 0), vec3(100, 0, 0), vec3(100, 50, 0), vec3(0, 50, 0)})
        canvas->addPolygonPoint(fill, p);
    canvas->setPolygonColor(fill, vec4(0.8f, 0.1f, 0.1f, 1.0f));
    int mark = canvas->addPolygon(1);
    for (vec3 p : {vec3(44, 14, 0), vec3(50, 8, 0), vec3(56, 14, 0), vec3(56, 21, 0), vec3(44, 21, 0)})
        canvas->addPolygonPoint(mark, p);
    canvas->setPolygonColor(mark, vec4(1, 1, 1, 1));
    window->show();
    settle();

    std::string shot = dir.file("sample.png");
    ASSERT_TRUE(hook()->saveScreenshot(window, shot.c_str()));
    auto probe = [&](const UIElement* e, int lx, int ly) {
        int x = lx, y = ly;
        e->localToScreen(x, y);
        window->screenToLocal(x, y);
        vec4 c;
        EXPECT_TRUE(hook()->readPixel(shot.c_str(), x, y, c));
        return c;
    };
    EXPECT_TRUE(near(probe(canvas, 10, 40), vec4(0.8f, 0.1f, 0.1f, 1)));
    EXPECT_TRUE(near(probe(canvas, 50, 18), vec4(1, 1, 1, 1))); // the mark over the fill
    EXPECT_TRUE(near(probe(panel, panel->getWidth() - 5, 115), vec4(0.1f, 0.1f, 0.1f, 1)));
    // Below the panel: the dark theme's window colour.
    EXPECT_TRUE(near(probe(window, 160, 180), vec4(45 / 255.0f, 45 / 255.0f, 48 / 255.0f, 1)));
    destroy(window);
}

TEST_F(UIAutomationTest, AnswersAreTakenOldestFirst)
{
    hook()->answerOk();
    hook()->answerFile("data/a.anim");
    hook()->answerColor(vec4(0, 1, 0, 1));
    EXPECT_EQ(hook()->pendingAnswers(), 3);
    UIAnswer a;
    ASSERT_TRUE(hook()->takeAnswer(a));
    EXPECT_EQ(a.kind, UIAnswerKind::Ok);
    ASSERT_TRUE(hook()->takeAnswer(a));
    EXPECT_EQ(a.kind, UIAnswerKind::FilePath);
    EXPECT_EQ(a.text, "data/a.anim");
    hook()->clearAnswers();
    EXPECT_FALSE(hook()->takeAnswer(a));
    EXPECT_EQ(hook()->pendingAnswers(), 0);
}

TEST_F(UIAutomationTest, InputWithNowhereToGoIsReported)
{
    EXPECT_FALSE(hook()->mouseDown(-5000, -5000));
    expectLogged("UIAutomation::mouseDown:no window at -5000, -5000");
    auto* window = make<UIWindow>(root(), "hidden", 100, 100);
    EXPECT_FALSE(hook()->mouseLeave(window));
    expectLogged("UIAutomation::mouseLeave:the window is not shown");
    destroy(window);
}

TEST_F(UIAutomationTest, ImageFilesThatCannotBeWrittenOrReadAreReported)
{
    auto* label = make<UILabel>(root(), "x");
    std::string bad = dir.file("missing/dir/shot.png");
    EXPECT_FALSE(hook()->saveScreenshot(label, bad.c_str()));
    expectLogged("UIAutomation::saveScreenshot:cannot write screenshot \"" + bad + "\"");
    vec4 c;
    EXPECT_FALSE(hook()->readPixel(bad.c_str(), 0, 0, c));
    expectLogged("UIAutomation::readPixel:cannot read image");
    std::string good = dir.file("label.png");
    ASSERT_TRUE(hook()->saveScreenshot(label, good.c_str()));
    EXPECT_FALSE(hook()->readPixel(good.c_str(), 5000, 0, c));
    expectLogged("UIAutomation::readPixel:point 5000, 0 outside");
    destroy(label);
}
