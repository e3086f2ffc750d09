#include "ui/UITimeBar.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "../ui/UIFixture.h"
#include "ui/UIAutomation.h"
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

struct Listener {
    void on_range(const UIEventChanged* e, UIElement* sender) { record("range", e, sender); }
    void on_time(const UIEventChanged* e, UIElement* sender) { record("time", e, sender); }
    void record(const char* what, const UIEventChanged* e, UIElement* sender)
    {
        calls.push_back(what);
        flags_set = flags_set && e->changed == 1 && e->byUser == 1;
        last_sender = sender;
    }
    std::vector<std::string> calls;
    bool flags_set = true;
    UIElement* last_sender = nullptr;
};

bool near(const vec4& a, float grey, float eps = 0.02f)
{
    return std::fabs(a.x - grey) < eps && std::fabs(a.y - grey) < eps && std::fabs(a.z - grey) < eps;
}

using Calls = std::vector<std::string>;

} // namespace

class UITimeBarTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "time bar", 500, 100);
        bar = make<UITimeBar>(root(), 0.0f, 4.0f);
        window->addChild(bar, UI_EXPAND_BOTH);
        bar->getCanvas()->setFixSize(W, H);
        bar->rangeChanged().append(bind(&Listener::on_range, &listener));
        bar->timeChanged().append(bind(&Listener::on_time, &listener));
        window->show();
        settle();
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }

    UICanvas* canvas() const { return bar->getCanvas(); }
    // A mouse event at a canvas-local point, in screen coordinates as the toolkit delivers it.
    UIEventMouse at(int lx, int ly, int button, int buttons, int modifiers = 0) const
    {
        UIEventMouse e;
        e.x = lx;
        e.y = ly;
        canvas()->localToScreen(e.x, e.y);
        e.button = button;
        e.buttons = buttons;
        e.modifiers = modifiers;
        return e;
    }
    bool press(int lx, int ly)
    {
        UIEventMouse e = at(lx, ly, UI_MOUSE_LEFT, 1 << UI_MOUSE_LEFT);
        return bar->onMouseDown(&e);
    }
    bool drag(int lx, int ly)
    {
        UIEventMouse e = at(lx, ly, UI_MOUSE_NONE, 1 << UI_MOUSE_LEFT);
        return bar->onMouseMove(&e);
    }
    bool lift(int lx, int ly)
    {
        UIEventMouse e = at(lx, ly, UI_MOUSE_LEFT, 0);
        return bar->onMouseUp(&e);
    }
    bool key(int code)
    {
        UIEventKey e;
        e.key = code;
        return bar->onKeyPress(&e);
    }
    // The shade of grey the canvas shows at a local point, read from a screenshot.
    vec4 pixel(int x, int y)
    {
        std::string path = dir.file("bar.png");
        vec4 out{-1, -1, -1, -1};
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas(), path.c_str()));
        EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, out));
        return out;
    }

    UIWindow* window = nullptr;
    UITimeBar* bar = nullptr;
    Listener listener;
    TempDir dir;
};

// Construction and drawing

TEST_F(UITimeBarTest, StartsWithTheRangeOverTheWholeAxisAndThePlayHeadAtItsStart)
{
    EXPECT_EQ(bar->getMin(), 0.0f);
    EXPECT_EQ(bar->getMax(), 4.0f);
    EXPECT_EQ(bar->getTime(), 0.0f);
    EXPECT_EQ(bar->getBegin(), 0.0f);
    EXPECT_EQ(bar->getEnd(), 4.0f);
    EXPECT_EQ(bar->getSnapTime(), 1000000000.0f);
    EXPECT_EQ(bar->getCanvasWidth(), 0u);
    EXPECT_EQ(bar->getCanvasHeight(), 0u);
    EXPECT_EQ(bar->getNumChilds(), 1);
    EXPECT_EQ(bar->getChild(0), canvas());
}

TEST_F(UITimeBarTest, MakesNineShapesInAFixedOrderWithTheirDrawOrders)
{
    ASSERT_EQ(canvas()->getNumShapes(), 9);
    // Created as frame, range outline and fill, begin, end and play head outlines and fills.
    const int orders[] = {0, 2, 1, 6, 5, 8, 7, 4, 3};
    for (int id = 0; id < 9; ++id)
        EXPECT_EQ(canvas()->getOrder(id), orders[id]) << "shape " << id;
}

TEST_F(UITimeBarTest, NothingIsDrawnBeforeTheFirstUpdate)
{
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), -1);
    bar->update(0.0f);
    EXPECT_EQ(bar->getCanvasWidth(), static_cast<unsigned>(W));
    EXPECT_EQ(bar->getCanvasHeight(), static_cast<unsigned>(H));
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), 2); // the range fill
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 4), -1); // above the band
}

TEST_F(UITimeBarTest, ShowsTheColoursOfEachShape)
{
    bar->setTime(2.0f);
    bar->update(0.0f);
    settle();
    EXPECT_TRUE(near(pixel(206, 4), 0.8f)); // play head fill
    EXPECT_TRUE(near(pixel(201, 20), 0.1f)); // play head outline
    EXPECT_TRUE(near(pixel(6, 36), 0.5f)); // begin mark fill
    EXPECT_TRUE(near(pixel(406, 36), 1.0f)); // end mark fill
    EXPECT_TRUE(near(pixel(100, 8), 0.1f)); // frame and band outline
    EXPECT_TRUE(near(pixel(406, 20), 0.1f));
}

TEST_F(UITimeBarTest, MarksAreDrawnOverThePlayHeadAndTheEndOverTheBegin)
{
    bar->update(0.0f); // play head and begin mark both at x = 6
    settle();
    EXPECT_TRUE(near(pixel(6, 36), 0.5f));
    EXPECT_TRUE(near(pixel(6, 4), 0.8f)); // above the mark the play head shows
    bar->setBegin(4.0f);
    bar->update(0.0f);
    settle();
    EXPECT_TRUE(near(pixel(406, 36), 1.0f));
}

TEST_F(UITimeBarTest, RebuildsAfterTheFirstChangeOnEveryFrame)
{
    bar->update(0.0f);
    canvas()->clearPolygonPoints(2);
    bar->update(0.0f); // nothing changed: the emptied band stays empty
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), -1);
    bar->setEnd(3.0f);
    bar->update(0.0f);
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), 2);
    EXPECT_EQ(canvas()->getPolygonIntersection(350, 20), -1); // the band now ends at x = 306
    canvas()->clearPolygonPoints(2);
    bar->update(0.0f); // still rebuilt, though nothing changed since the last frame
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), 2);
}

// Mapping between time and pixels

TEST_F(UITimeBarTest, MapsTheAxisOntoTheWidthLessBothMargins)
{
    bar->update(0.0f);
    EXPECT_EQ(bar->timeToPixel(0.0f), 6);
    EXPECT_EQ(bar->timeToPixel(1.0f), 106);
    EXPECT_EQ(bar->timeToPixel(4.0f), 406);
    EXPECT_EQ(bar->timeToPixel(0.019f), 7); // truncated toward zero
    EXPECT_EQ(bar->pixelToTime(106), 1.0f);
    EXPECT_EQ(bar->pixelToTime(256), 2.5f);
    EXPECT_EQ(bar->pixelToTime(0), 0.0f); // clamped to the axis
    EXPECT_EQ(bar->pixelToTime(480), 4.0f);
}

TEST_F(UITimeBarTest, SnapReachIsEightPixelsOfTheFullWidth)
{
    bar->update(0.0f);
    // Reach 4 * 8 / 412 = 0.0777 s; measured against W - 12 it would be 0.08 s.
    bar->setSnapTime(2.0021f);
    EXPECT_EQ(bar->pixelToTime(213), 2.0021f); // 0.0679 s away
    EXPECT_EQ(bar->pixelToTime(214), 2.08f); // 0.0779 s away: outside, though within 0.08
    bar->setSnapTime(4.05f);
    EXPECT_EQ(bar->pixelToTime(406), 4.05f); // a snap past the axis is returned as it is
}

// Mouse

TEST_F(UITimeBarTest, PressOnEmptyAreaOrTheBandMovesThePlayHeadThere)
{
    bar->update(0.0f);
    EXPECT_TRUE(press(206, 4));
    EXPECT_EQ(bar->getTime(), 2.0f);
    EXPECT_EQ(listener.calls, Calls{"time"});
    EXPECT_TRUE(listener.flags_set);
    EXPECT_EQ(listener.last_sender, bar);
    lift(206, 4);
    bar->update(0.0f);
    EXPECT_TRUE(press(306, 20));
    EXPECT_EQ(bar->getTime(), 3.0f);
    EXPECT_EQ(listener.calls, (Calls{"time", "time"}));
    EXPECT_TRUE(canvas()->hasFocus());
}

TEST_F(UITimeBarTest, PressOnThePlayHeadKeepsItUntilThePointerMoves)
{
    bar->setTime(2.0f);
    bar->update(0.0f);
    EXPECT_TRUE(press(209, 20)); // three pixels right of its centre
    EXPECT_EQ(bar->getTime(), 2.0f);
    EXPECT_TRUE(listener.calls.empty());
    EXPECT_TRUE(drag(259, 20));
    EXPECT_EQ(bar->getTime(), 2.5f); // the grab offset is kept: not 2.53
    EXPECT_EQ(listener.calls, Calls{"time"});
    EXPECT_FALSE(drag(259, 20)); // no change, no signal
    EXPECT_EQ(listener.calls.size(), 1u);
}

TEST_F(UITimeBarTest, PressOnAMarkDoesNotMoveIt)
{
    bar->update(0.0f);
    EXPECT_TRUE(press(404, 36));
    EXPECT_EQ(bar->getEnd(), 4.0f);
    EXPECT_EQ(bar->getTime(), 0.0f);
    EXPECT_TRUE(listener.calls.empty());
    EXPECT_TRUE(drag(304, 36)); // grabbed 2 pixels left of the centre
    EXPECT_EQ(bar->getEnd(), 3.0f);
    EXPECT_EQ(listener.calls, Calls{"range"});
}

TEST_F(UITimeBarTest, BeginDraggedPastTheEndPushesItAndPullsThePlayHead)
{
    bar->setEnd(1.0f);
    bar->setTime(0.5f);
    bar->update(0.0f);
    EXPECT_TRUE(press(8, 36)); // the begin mark is drawn over the play head here
    EXPECT_TRUE(drag(258, 36));
    EXPECT_EQ(bar->getBegin(), 2.5f);
    EXPECT_EQ(bar->getEnd(), 2.5f + 0.000001f);
    EXPECT_GT(bar->getEnd(), bar->getBegin());
    EXPECT_EQ(bar->getTime(), 2.5f);
    EXPECT_EQ(listener.calls, (Calls{"range", "time"}));
}

TEST_F(UITimeBarTest, EndDraggedBeforeTheBeginPushesItBack)
{
    bar->setBegin(3.0f);
    bar->setTime(3.5f);
    bar->update(0.0f);
    EXPECT_TRUE(press(406, 36));
    EXPECT_TRUE(drag(206, 36));
    EXPECT_EQ(bar->getEnd(), 2.0f);
    EXPECT_EQ(bar->getBegin(), 2.0f - 0.000001f);
    EXPECT_EQ(bar->getTime(), 2.0f);
    EXPECT_EQ(listener.calls, (Calls{"range", "time"}));
}

TEST_F(UITimeBarTest, EmptyRangeLeavesThePlayHeadWhereItIs)
{
    bar->setTime(1.0f);
    bar->update(0.0f);
    EXPECT_TRUE(press(8, 36));
    EXPECT_TRUE(drag(480, 36)); // begin reaches the end of the axis, where the end mark already is
    EXPECT_EQ(bar->getBegin(), 4.0f);
    EXPECT_EQ(bar->getEnd(), 4.0f);
    EXPECT_EQ(bar->getTime(), 1.0f);
    EXPECT_EQ(listener.calls, Calls{"range"});
}

TEST_F(UITimeBarTest, DraggedPlayHeadLandsExactlyOnTheSnapTime)
{
    bar->setSnapTime(2.0021f);
    bar->update(0.0f);
    EXPECT_TRUE(press(213, 4));
    EXPECT_EQ(bar->getTime(), 2.0021f);
    EXPECT_TRUE(drag(214, 4));
    EXPECT_EQ(bar->getTime(), 2.08f);
    EXPECT_TRUE(drag(199, 4));
    EXPECT_EQ(bar->getTime(), 2.0021f);
    EXPECT_EQ(listener.calls.size(), 3u);
}

TEST_F(UITimeBarTest, ReleaseOrLeavingEndsTheDrag)
{
    bar->update(0.0f);
    EXPECT_TRUE(press(206, 4));
    EXPECT_FALSE(lift(206, 4)); // the bar lets the release travel on
    EXPECT_FALSE(drag(306, 4));
    EXPECT_EQ(bar->getTime(), 2.0f);
    EXPECT_TRUE(press(206, 4));
    UIEventMouse leave = at(0, 0, UI_MOUSE_NONE, 0);
    bar->onNonClient(&leave);
    EXPECT_FALSE(drag(306, 4));
    EXPECT_EQ(bar->getTime(), 2.0f);
}

TEST_F(UITimeBarTest, OnlyTheLeftButtonOnTheCanvasEdits)
{
    bar->update(0.0f);
    UIEventMouse right = at(206, 4, UI_MOUSE_RIGHT, 1 << UI_MOUSE_RIGHT);
    EXPECT_FALSE(bar->onMouseDown(&right));
    UIEventMouse outside = at(206, H + 20, UI_MOUSE_LEFT, 1 << UI_MOUSE_LEFT);
    EXPECT_FALSE(bar->onMouseDown(&outside));
    EXPECT_FALSE(drag(306, 4)); // nothing was grabbed
    EXPECT_EQ(bar->getTime(), 0.0f);
    EXPECT_TRUE(listener.calls.empty());
}

// Keyboard

TEST_F(UITimeBarTest, StepKeysMoveThePlayHeadByOnePercentWhileFocused)
{
    bar->setTime(2.0f);
    EXPECT_FALSE(key(UI_KEY_RIGHT)); // no focus yet
    EXPECT_EQ(bar->getTime(), 2.0f);
    canvas()->setFocus();
    EXPECT_TRUE(key(UI_KEY_RIGHT));
    EXPECT_FLOAT_EQ(bar->getTime(), 2.04f);
    EXPECT_TRUE(key(UI_KEY_LEFT));
    EXPECT_TRUE(key(UI_KEY_LEFT));
    EXPECT_FLOAT_EQ(bar->getTime(), 1.96f);
    EXPECT_FALSE(key(UI_KEY_UP));
    EXPECT_EQ(listener.calls, (Calls{"time", "time", "time"}));
}

TEST_F(UITimeBarTest, StepKeysRaiseTheSignalEvenAtTheRangeEnd)
{
    bar->setEnd(3.0f);
    bar->setTime(3.0f);
    canvas()->setFocus();
    EXPECT_TRUE(key(UI_KEY_RIGHT));
    EXPECT_EQ(bar->getTime(), 3.0f);
    EXPECT_EQ(listener.calls, Calls{"time"});
}

// Setters

TEST_F(UITimeBarTest, SettersClampAndRaiseNoSignal)
{
    bar->setBegin(-1.0f);
    EXPECT_EQ(bar->getBegin(), 0.0f);
    bar->setEnd(9.0f);
    EXPECT_EQ(bar->getEnd(), 4.0f);
    bar->setBegin(1.0f);
    bar->setTime(0.5f);
    EXPECT_EQ(bar->getTime(), 1.0f);
    bar->setTime(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(bar->getTime(), 1.0f); // NaN takes the low end
    bar->setMin(-2.0f); // the axis itself is never clamped
    bar->setMax(-3.0f);
    EXPECT_EQ(bar->getMin(), -2.0f);
    EXPECT_EQ(bar->getMax(), -3.0f);
    EXPECT_TRUE(listener.calls.empty());
}

TEST_F(UITimeBarTest, AnInvertedIntervalClampsToItsHighEnd)
{
    bar->setBegin(3.0f);
    bar->setEnd(1.0f);
    bar->setTime(3.5f);
    EXPECT_EQ(bar->getTime(), 1.0f);
    bar->setTime(2.0f); // below the low end
    EXPECT_EQ(bar->getTime(), 3.0f);
}

TEST_F(UITimeBarTest, AccessorsStoreWithoutAskingForARedraw)
{
    bar->update(0.0f);
    canvas()->clearPolygonPoints(2);
    bar->setSnapTime(1.0f);
    EXPECT_EQ(bar->getSnapTime(), 1.0f);
    bar->update(0.0f);
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), -1);
    // A cached size that differs from the canvas's makes the next frame rebuild at the real size.
    bar->setCanvasWidth(100u);
    EXPECT_EQ(bar->getCanvasWidth(), 100u);
    bar->update(0.0f);
    EXPECT_EQ(bar->getCanvasWidth(), static_cast<unsigned>(W));
    EXPECT_EQ(canvas()->getPolygonIntersection(206, 20), 2);
}

TEST_F(UITimeBarTest, ReleaseFreesTheCanvasAndLeavesAnInertBar)
{
    auto* loose = make<UITimeBar>(root(), 0.0f, 1.0f);
    loose->release();
    EXPECT_EQ(loose->getCanvas(), nullptr);
    EXPECT_EQ(loose->getNumChilds(), 0);
    loose->update(0.0f);
    EXPECT_EQ(loose->getCanvasWidth(), 0u);
    destroy(loose);
}
