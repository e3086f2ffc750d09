#include "ui/UITimeBar.h"

#include <limits>
#include <string>
#include <vector>

#include "ModuleFixture.h"
#include "ui/UICanvas.h"
#include "ui/UIWindow.h"

// The bar spans 0 to 4 s on a 412 x 40 canvas, so the usable 400 pixels give 100 pixels a second:
//
//   x:    6        106       206       306       406
//   t:    0         1         2         3         4
//        [begin]                                [end]
//   frame and band from y = 8 to 32; marks from y = 26 (tip) to 39; play head from y = 1 to 39.

namespace {

constexpr int W = 412;
constexpr int H = 40;

using Calls = std::vector<std::string>;

} // namespace

class UITimeBarTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        window = make<UIWindow>(root(), "time bar", 500, 100);
        bar = make<UITimeBar>(root(), 0.0f, 4.0f);
        window->addChild(bar, UI_EXPAND_BOTH);
        bar->getCanvas()->setFixSize(W, H);
        bar->rangeChanged().append([this](const UIEventChanged* e, UIElement* by) { record("range", e, by); });
        bar->timeChanged().append([this](const UIEventChanged* e, UIElement* by) { record("time", e, by); });
        window->show();
        settle();
    }
    void TearDown() override
    {
        destroy(window);
        ModuleFixture::TearDown();
    }

    UICanvas* canvas() const { return bar->getCanvas(); }
    bool press(int x, int y)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y);
        return bar->onMouseDown(&e);
    }
    bool drag(int x, int y)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y, UI_MOUSE_NONE);
        return bar->onMouseMove(&e);
    }
    bool lift(int x, int y)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y, UI_MOUSE_LEFT, 0);
        return bar->onMouseUp(&e);
    }
    bool key(int code)
    {
        UIEventKey e;
        e.key = code;
        return bar->onKeyPress(&e);
    }
    bool shade(int x, int y, float grey) { return isGrey(pixel(canvas(), x, y), grey); }
    // Records a signal: which one, and whether it came from the bar flagged as a change by the user.
    void record(const char* what, const UIEventChanged* e, UIElement* sender)
    {
        calls.push_back(what);
        flags_set = flags_set && e->changed == 1 && e->byUser == 1 && sender == bar;
    }

    UIWindow* window = nullptr;
    UITimeBar* bar = nullptr;
    Calls calls;
    bool flags_set = true;
};

// Each shape is drawn in its own shade, the marks over the play head and the end over the begin.
TEST_F(UITimeBarTest, ShowsEachShapeInItsShadeWithTheMarksOverThePlayHead)
{
    bar->update(0.0f); // play head and begin mark both at x = 6
    EXPECT_TRUE(shade(6, 36, 0.5f)); // begin mark fill
    EXPECT_TRUE(shade(6, 4, 0.8f)); // above the mark the play head shows
    bar->setTime(2.0f);
    bar->update(0.0f);
    EXPECT_TRUE(shade(206, 4, 0.8f)); // play head fill
    EXPECT_TRUE(shade(201, 20, 0.1f)); // play head outline
    EXPECT_TRUE(shade(406, 36, 1.0f)); // end mark fill
    EXPECT_TRUE(shade(100, 8, 0.1f)); // frame and band outline
    bar->setBegin(4.0f);
    bar->update(0.0f);
    EXPECT_TRUE(shade(406, 36, 1.0f));
}

// A pressed mark or play head stays put until the pointer moves, then keeps its grab offset.
TEST_F(UITimeBarTest, PressedMarkOrPlayHeadFollowsThePointerFromWhereItWasGrabbed)
{
    bar->setTime(2.0f);
    bar->update(0.0f);
    EXPECT_TRUE(press(209, 20)); // three pixels right of the play head's centre
    EXPECT_EQ(bar->getTime(), 2.0f);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(drag(259, 20));
    EXPECT_EQ(bar->getTime(), 2.5f); // not 2.53
    EXPECT_FALSE(drag(259, 20));
    EXPECT_EQ(calls, Calls{"time"});
    lift(259, 20);
    bar->update(0.0f);
    EXPECT_TRUE(press(404, 36)); // two pixels left of the end mark's centre
    EXPECT_EQ(bar->getEnd(), 4.0f);
    EXPECT_TRUE(drag(304, 36));
    EXPECT_EQ(bar->getEnd(), 3.0f);
    EXPECT_EQ(calls, (Calls{"time", "range"}));
}

// A mark dragged past the other pushes it along and pulls the play head in, unless the range is empty.
TEST_F(UITimeBarTest, DraggedMarkPushesTheOtherAndPullsThePlayHead)
{
    const struct {
        const char* what;
        float begin, end, time;
        int from, to;
        float newBegin, newEnd, newTime;
        Calls calls;
    } cases[] = {
        {"begin past the end", 0.0f, 1.0f, 0.5f, 8, 258, 2.5f, 2.5f + 0.000001f, 2.5f, {"range", "time"}},
        {"end before the begin", 3.0f, 4.0f, 3.5f, 406, 206, 2.0f - 0.000001f, 2.0f, 2.0f, {"range", "time"}},
        {"begin onto the end", 0.0f, 4.0f, 1.0f, 8, 480, 4.0f, 4.0f, 1.0f, {"range"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        bar->setBegin(c.begin);
        bar->setEnd(c.end);
        bar->setTime(c.time);
        bar->update(0.0f);
        calls.clear();
        EXPECT_TRUE(press(c.from, 36));
        EXPECT_TRUE(drag(c.to, 36));
        lift(c.to, 36);
        EXPECT_EQ(bar->getBegin(), c.newBegin);
        EXPECT_EQ(bar->getEnd(), c.newEnd);
        EXPECT_EQ(bar->getTime(), c.newTime);
        EXPECT_EQ(calls, c.calls);
    }
    EXPECT_TRUE(flags_set);
}

// The play head lands exactly on the snap time within 8 pixels of the full width (4 * 8 / 412 =
// 0.0777 s, not 0.08 s of the usable width), even a snap time past the axis.
TEST_F(UITimeBarTest, DraggedPlayHeadLandsExactlyOnTheSnapTime)
{
    bar->setSnapTime(2.0021f);
    bar->update(0.0f);
    EXPECT_EQ(bar->timeToPixel(0.019f), 7); // truncated toward zero
    EXPECT_TRUE(press(213, 4)); // 0.0679 s away
    EXPECT_EQ(bar->getTime(), 2.0021f);
    EXPECT_TRUE(canvas()->hasFocus());
    EXPECT_TRUE(drag(214, 4)); // 0.0779 s away: outside, though within 0.08
    EXPECT_EQ(bar->getTime(), 2.08f);
    EXPECT_TRUE(drag(199, 4));
    EXPECT_EQ(bar->getTime(), 2.0021f);
    EXPECT_TRUE(drag(0, 4));
    EXPECT_EQ(bar->getTime(), 0.0f); // clamped to the axis
    bar->setSnapTime(4.05f);
    EXPECT_EQ(bar->pixelToTime(406), 4.05f);
}

// Only a left press on the canvas starts a drag; a release, or the pointer leaving, ends it.
TEST_F(UITimeBarTest, OnlyALeftPressOnTheCanvasDragsUntilReleaseOrLeaving)
{
    bar->update(0.0f);
    const UIEventMouse right = mouseAt(canvas(), 206, 4, UI_MOUSE_RIGHT, 1 << UI_MOUSE_RIGHT);
    EXPECT_FALSE(bar->onMouseDown(&right));
    EXPECT_FALSE(press(206, H + 20));
    EXPECT_FALSE(drag(306, 4)); // nothing was grabbed
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(press(206, 4));
    EXPECT_FALSE(lift(206, 4)); // the bar lets the release travel on
    EXPECT_FALSE(drag(306, 4));
    EXPECT_TRUE(press(206, 4));
    const UIEventMouse leave = mouseAt(canvas(), 0, 0, UI_MOUSE_NONE, 0);
    bar->onNonClient(&leave);
    EXPECT_FALSE(drag(306, 4));
    EXPECT_EQ(bar->getTime(), 2.0f);
}

// The step keys move the play head by 1 % of the axis while focused, signalling even at the end.
TEST_F(UITimeBarTest, StepKeysMoveThePlayHeadByOnePercentWhileFocused)
{
    bar->setTime(2.0f);
    EXPECT_FALSE(key(UI_KEY_RIGHT)); // no focus yet
    canvas()->setFocus();
    EXPECT_TRUE(key(UI_KEY_RIGHT));
    EXPECT_FLOAT_EQ(bar->getTime(), 2.04f);
    EXPECT_TRUE(key(UI_KEY_LEFT));
    EXPECT_TRUE(key(UI_KEY_LEFT));
    EXPECT_FLOAT_EQ(bar->getTime(), 1.96f);
    EXPECT_FALSE(key(UI_KEY_UP));
    bar->setEnd(3.0f);
    bar->setTime(3.0f);
    EXPECT_TRUE(key(UI_KEY_RIGHT));
    EXPECT_EQ(bar->getTime(), 3.0f);
    EXPECT_EQ(calls, (Calls{"time", "time", "time", "time"}));
}

// The setters clamp silently: a NaN time to the low end, in an inverted range to the high end.
TEST_F(UITimeBarTest, SettersClampSilentlyAndReleaseLeavesAnInertBar)
{
    bar->setEnd(9.0f);
    EXPECT_EQ(bar->getEnd(), 4.0f);
    bar->setBegin(1.0f);
    bar->setTime(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(bar->getTime(), 1.0f);
    bar->setBegin(3.0f);
    bar->setEnd(1.0f);
    bar->setTime(3.5f);
    EXPECT_EQ(bar->getTime(), 1.0f);
    bar->setTime(2.0f);
    EXPECT_EQ(bar->getTime(), 3.0f);
    bar->setMin(-2.0f);
    bar->setMax(-3.0f);
    EXPECT_EQ(bar->getMax(), -3.0f);
    bar->setMax(-2.0f); // an empty track: every time sits at the axis's start
    EXPECT_EQ(bar->timeToPixel(-2.0f), 6);
    EXPECT_EQ(bar->timeToPixel(5.0f), 6);
    EXPECT_TRUE(calls.empty());
    // Released, a bar has no canvas left and its updates draw nothing.
    auto* loose = make<UITimeBar>(root(), 0.0f, 1.0f);
    loose->release();
    EXPECT_EQ(loose->getNumChilds(), 0);
    loose->update(0.0f);
    EXPECT_EQ(loose->getCanvasWidth(), 0u);
    destroy(loose);
}

// The ruler's step follows the zoom and the unit: at 100 pixels a second it ticks every half second,
// or every 10 frames at 24 fps; labels never come closer than 6 pixels to the next tick, so a wide
// label ("3500000" frames 50 pixels apart) takes the next round step.
TEST_F(UITimeBarTest, RulerTicksAtRoundStepsWhoseLabelsNeverTouch)
{
    struct Case {
        float max;
        float fps;
        double step;
        const char* second; // the label of the second tick
    } cases[] = {
        {4.0f, 0.0f, 0.5, "0.5"},           {4.0f, 24.0f, 10.0 / 24.0, "10"}, {0.125f, 0.0f, 0.02, "0.02"},
        {400.0f, 0.0f, 50.0, "50"},         {400.0f, 60.0f, 5000.0 / 60.0, "5000"},
        {4000.0f, 1000.0f, 1000.0, "1000000"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.max);
        bar->setMax(c.max);
        bar->setFrameRate(c.fps);
        bar->update(0.0f);
        const UITimeRuler& ruler = bar->getRuler();
        EXPECT_NEAR(ruler.getStep(), c.step, c.step * 1e-6);
        ASSERT_GE(ruler.getLabels().size(), 3);
        EXPECT_EQ(ruler.getLabels().size(), int(c.max / c.step + 1e-3) + 1);
        EXPECT_EQ(ruler.getTexts()[0], "0");
        EXPECT_EQ(ruler.getTexts()[1], c.second);
        const double pixels = ruler.getStep() * (W - 12) / c.max;
        for (int i = 0; i < ruler.getLabels().size(); ++i)
            EXPECT_LT(2 + canvas()->getTextWidth(ruler.getLabels()[i]) + UITimeRuler::LABEL_GAP, pixels) << i;
    }
}
