#include "ui/UITrackCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ModuleFixture.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterVec3.h"
#include "data/FKeyFloat.h"
#include "data/FParameterSingle.h"
#include "ui/UICanvas.h"
#include "ui/UITrackCurveGrid.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurveMapping.h"

namespace {

// The demo sample's key-owning parameters by index: Lamp flicker (break keys), Pillar spin Y
// (linear), Camera breathe (auto) and the keyless X axis of Pillar spin.
constexpr int LAMP = 11;
constexpr int PILLAR_Y = 5;
constexpr int CAMERA = 12;
constexpr int PILLAR_X = 4;

// The engine's value of a float or double parameter at t.
double engineValue(const FParameterSingle* parameter, float t)
{
    bool found = false;
    const TrackParameter* engine = parameter->getTrackParameter();
    if (engine->getType() == TRACK_PARAMETER_DOUBLE)
        return static_cast<const TrackParameterDouble*>(engine)->getTrackValue(t, found);
    return static_cast<const TrackParameterFloat*>(engine)->getTrackValue(t, found);
}

// The y extent of a polyline at column x: every segment that covers x, a vertical step whole.
bool extentAt(const jVector<vec3>& points, double x, double& lo, double& hi)
{
    lo = std::numeric_limits<double>::infinity();
    hi = -lo;
    for (int i = 0; i + 1 < points.size(); ++i) {
        const vec3& a = points[i];
        const vec3& b = points[i + 1];
        if (x < a.x - 1e-3 || x > b.x + 1e-3)
            continue;
        const double f = b.x - a.x < 1e-6 ? 0.0 : std::clamp((x - a.x) / (b.x - a.x), 0.0, 1.0);
        const double ya = b.x - a.x < 1e-6 ? a.y : a.y + f * (b.y - a.y);
        const double yb = b.x - a.x < 1e-6 ? b.y : ya;
        lo = std::min({lo, ya, yb});
        hi = std::max({hi, ya, yb});
    }
    return lo <= hi;
}

// The demo sample on a 1612 x 400 canvas, whose 0 to 6 s put a key at t seconds at x = 6 + 800 t / 3.
class UITrackCurveTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_canvas = make<UICanvas>(root());
        ASSERT_TRUE(loadSample("demo.anim"));
        for (int i = 0; i < doc()->getNumSingleParameters(); ++i) { // a curve's keys get marks once it is shown
            single(i)->getTrackParameter()->setCurveShown(true);
            single(i)->showSwitches();
        }
        mapping.setSize(1612, 400);
        mapping.setTimeRange(AppData::get()->getBeginTime(), AppData::get()->getEndTime());
    }
    void TearDown() override
    {
        selected.clear();
        AppData::get()->reset();
        destroy(m_canvas);
        ModuleFixture::TearDown();
    }

    // Draws parameter i's curve across columns x0 to x1 and returns it.
    UITrackCurve* draw(int i, int x0, int x1)
    {
        UITrackCurve* curve = single(i)->getCurve();
        curve->attach(m_canvas);
        curve->render(mapping, x0, x1, selected);
        return curve;
    }

    UICanvas* m_canvas = nullptr;
    UITrackCurveMapping mapping;
    jSet<UITrackCurveKey*> selected;
};

} // namespace

// Every keyed float and double curve of the demo, in the whole range and zoomed onto the lamp's
// steepest stretch: at each column its polyline passes within half a pixel of the engine's value.
TEST_F(UITrackCurveTest, PolylineFollowsTheEngineAtEveryColumn)
{
    struct View {
        double begin, end;
        int width, x0, x1;
    };
    // The fourth view pans the third by a tenth of its width: the polyline is moved, not flattened;
    // the fifth pans it by whole pixels, and the canvas moves the polyline as a whole.
    const View views[] = {{0.0, 6.0, 1612, 0, 1611}, {0.35, 0.95, 800, 100, 700}, {1.1, 1.3, 400, 0, 399},
                          {1.12, 1.32, 400, 0, 399}, {1.1 + 50 * 0.2 / 388, 1.3 + 50 * 0.2 / 388, 400, 0, 399}};
    int drawn = 0;
    for (const View& view : views) {
        mapping.setSize(view.width, 400);
        mapping.setTimeRange(view.begin, view.end);
        for (int i = 0; i < doc()->getNumSingleParameters(); ++i) {
            const FParameterSingle* parameter = single(i);
            if (!parameter->getCurve() || parameter->getNumKeys() == 0)
                continue;
            double low = std::numeric_limits<double>::infinity(), high = -low;
            for (float t = 0.0f; t <= 6.0f; t += 0.01f) {
                low = std::min(low, engineValue(parameter, t));
                high = std::max(high, engineValue(parameter, t));
            }
            mapping.frameValues(low, high);
            const UITrackCurve* curve = draw(i, view.x0, view.x1);
            jVector<vec3> points;
            for (const vec3& p : curve->getPoints())
                points.append(p + curve->getOffset());
            ASSERT_GE(points.size(), 2) << i;
            if (&view == &views[4]) { // 50 pixels of the third view's 388 along its time axis
                EXPECT_EQ(curve->getOffset().x, -50.0f) << i;
            }
            EXPECT_LE(points[0].x, view.x0 + 1e-3) << i;
            EXPECT_GE(points.back().x, view.x1 - 1e-3) << i;
            for (int x = view.x0; x <= view.x1; ++x) {
                double lo = 0.0, hi = 0.0;
                ASSERT_TRUE(extentAt(points, x, lo, hi)) << i << " at " << x;
                const double y = mapping.yOfValue(engineValue(parameter, float(mapping.timeOfX(x))));
                EXPECT_TRUE(y >= lo - 0.5 && y <= hi + 0.5) << i << " at " << x << ": " << y << " vs " << lo;
            }
            ++drawn;
        }
    }
    EXPECT_EQ(drawn, 5 * 13);
}

// A straight curve is its corners alone; a Bezier curve takes far fewer points than columns; a
// keyless axis is a flat line at the bound node's value.
TEST_F(UITrackCurveTest, FlatStretchesTakeFewPoints)
{
    mapping.frameValues(0.0, 450.0);
    EXPECT_EQ(draw(PILLAR_Y, 0, 1611)->getPoints().size(), 4);
    mapping.frameValues(40.0, 52.0);
    const int bezier = draw(CAMERA, 0, 1611)->getPoints().size();
    EXPECT_GT(bezier, 10);
    EXPECT_LT(bezier, 1612 / 8);

    bool found = false;
    const auto* pillar = static_cast<const TrackParameterVec3*>(single(PILLAR_X)->getParent()->getTrackParameter());
    mapping.frameValues(-5.0, 5.0);
    const jVector<vec3>& flat = draw(PILLAR_X, 0, 1611)->getPoints();
    ASSERT_EQ(flat.size(), 2);
    EXPECT_FLOAT_EQ(flat[0].y, float(mapping.yOfValue(pillar->getTrackValue(0.0f, found).x)));
    EXPECT_EQ(flat[1].y, flat[0].y);
}

// Selected keys show the handles the engine uses: the tangents clamped into their Bezier
// segments, the value offset scaled with the time; a side whose segment is linear (or missing) has
// none, and an unselected key none at all. A press on a dot or a mark finds it, up to its edge
// (a mark's half width is 3.5 px, a dot's radius 3 px) and not a pixel beyond.
TEST_F(UITrackCurveTest, HandlesSitWhereTheClampedTangentsSay)
{
    FParameterSingle* lamp = single(LAMP);
    static_cast<FKeyFloat*>(lamp->getKey(3))->setTangents(vec4(-0.1f, -0.3f, 1.6f, 0.8f));
    lamp->applyKeys();
    mapping.frameValues(1.0, 4.0);
    for (int k : {0, 3, 4, 5})
        selected.insert(lamp->getKey(k)->getCurveKey());
    struct Handle {
        int key, side;
        bool shown;
        double t, v;
    };
    const Handle table[] = {{0, 0, false, 0, 0},     {0, 1, true, 0.1, 2.5},  {1, 0, false, 0, 0},
                            {3, 0, true, 1.1, 1.7},  {3, 1, true, 2.0, 2.4},  {4, 0, true, 2.0, 3.0},
                            {4, 1, false, 0, 0},     {5, 0, false, 0, 0},     {5, 1, false, 0, 0}};
    // Drawn, then panned by whole pixels, which the canvas moves the curve and its shapes by.
    const double pixel = mapping.timePerPixel();
    for (const int pan : {0, 5}) {
        SCOPED_TRACE(pan);
        mapping.setTimeRange(pan * pixel, 6.0 + pan * pixel);
        EXPECT_EQ(draw(LAMP, 0, 1611)->getOffset().x, float(-pan));
        for (const Handle& h : table) {
            const UITrackCurveKey* point = lamp->getKey(h.key)->getCurveKey();
            const int dot = point->getHandlePolygon(h.side);
            ASSERT_EQ(dot != INVALID_INDEX, h.shown) << h.key << "/" << h.side;
            if (!h.shown)
                continue;
            const vec3 at = point->getHandlePoint(h.side);
            EXPECT_NEAR(at.x, mapping.xOfTime(h.t), 1e-3) << h.key << "/" << h.side;
            EXPECT_NEAR(at.y, mapping.yOfValue(h.v), 1e-3) << h.key << "/" << h.side;
            if (h.key == 4)
                continue; // key 4's handle lies under its own mark
            const int x = int(std::lround(at.x)), y = int(std::lround(at.y));
            for (const int d : {-2, 2}) {
                EXPECT_EQ(m_canvas->getPolygonIntersection(x + d, y), dot) << h.key << "/" << h.side << " " << d;
                EXPECT_EQ(m_canvas->getPolygonIntersection(x, y + d), dot) << h.key << "/" << h.side << " " << d;
                EXPECT_NE(m_canvas->getPolygonIntersection(x + 2 * d, y), dot) << h.key << "/" << h.side << " " << d;
            }
        }
        const int mark = lamp->getKey(1)->getCurveKey()->getMarkPolygon();
        const double cx = mapping.xOfTime(0.4), cy = mapping.yOfValue(1.2);
        const int left = int(std::ceil(cx - 3.5)), right = int(std::floor(cx + 3.5));
        const int top = int(std::ceil(cy - 3.5)), bottom = int(std::floor(cy + 3.5));
        for (const int x : {left, right}) {
            for (const int y : {top, bottom})
                EXPECT_EQ(m_canvas->getPolygonIntersection(x, y), mark) << x << ", " << y;
        }
        EXPECT_NE(m_canvas->getPolygonIntersection(left - 1, top), mark);
        EXPECT_NE(m_canvas->getPolygonIntersection(right + 1, bottom), mark);
        EXPECT_NE(m_canvas->getPolygonIntersection(left, top - 1), mark);
        EXPECT_NE(m_canvas->getPolygonIntersection(right, bottom + 1), mark);
    }
}

// Taking a curve off the canvas, or a key off the curve, takes its shapes with it.
TEST_F(UITrackCurveTest, ShapesLeaveTheCanvasWithTheirCurveAndKeys)
{
    const int empty = m_canvas->getNumShapes();
    mapping.frameValues(40.0, 52.0);
    UITrackCurve* curve = draw(CAMERA, 0, 1611);
    EXPECT_EQ(m_canvas->getNumShapes(), empty + 1 + 3);
    FKey* middle = single(CAMERA)->getKey(1);
    const int x = int(std::lround(mapping.xOfTime(3.0))), y = int(std::lround(mapping.yOfValue(42.0)));
    EXPECT_EQ(m_canvas->getPolygonIntersection(x, y), middle->getCurveKey()->getMarkPolygon());
    middle->releaseUI();
    EXPECT_EQ(m_canvas->getNumShapes(), empty + 1 + 2);
    EXPECT_EQ(m_canvas->getPolygonIntersection(x, y), INVALID_INDEX);
    curve->clearShapes();
    EXPECT_EQ(m_canvas->getNumShapes(), empty);
    EXPECT_EQ(curve->getPolyline(), INVALID_INDEX);
}

// A constant curve frames to a span around its value; a real range fills the view inside its
// margins.
TEST_F(UITrackCurveTest, ConstantCurvesFrameToAUsableRange)
{
    const double table[][3] = {{0.0, -0.5, 0.5}, {3.0, 2.5, 3.5}, {405.0, 364.5, 445.5}, {-1e6, -1.1e6, -0.9e6}};
    for (const auto& row : table) {
        mapping.frameValues(row[0], row[0] + row[0] * 1e-8);
        EXPECT_NEAR(mapping.getLowValue(), row[1], 1e-6 * std::max(1.0, std::fabs(row[0]))) << row[0];
        EXPECT_NEAR(mapping.getHighValue(), row[2], 1e-6 * std::max(1.0, std::fabs(row[0]))) << row[0];
        EXPECT_NEAR(mapping.yOfValue(row[0]), 200.0, 1e-3);
    }
    mapping.frameValues(0.8, 0.2);
    EXPECT_NEAR(mapping.yOfValue(0.8), UITrackCurveMapping::VALUE_MARGIN, 1e-9);
    EXPECT_NEAR(mapping.yOfValue(0.2), 400 - UITrackCurveMapping::VALUE_MARGIN, 1e-9);
}

// Zooming keeps the value under the pointer there; panning moves the curves with the pointer.
TEST_F(UITrackCurveTest, ZoomKeepsTheValueUnderThePointer)
{
    mapping.frameValues(-2.0, 7.0);
    for (double y : {0.0, 37.5, 200.0, 399.0}) {
        for (double factor : {0.5, 1.25, 3.0}) {
            const double value = mapping.valueOfY(y);
            const double span = mapping.getHighValue() - mapping.getLowValue();
            mapping.zoomValue(y, factor);
            EXPECT_NEAR(mapping.valueOfY(y), value, 1e-9) << y << " x" << factor;
            EXPECT_NEAR(mapping.getHighValue() - mapping.getLowValue(), span * factor, 1e-9);
        }
    }
    const double y = mapping.yOfValue(1.0);
    mapping.panValue(12.0);
    EXPECT_NEAR(mapping.yOfValue(1.0), y + 12.0, 1e-9);
    mapping.zoomValue(100.0, 0.0);
    mapping.zoomValue(100.0, 1e-30);
    EXPECT_NEAR(mapping.yOfValue(1.0), y + 12.0, 1e-9);
}

// Grid steps are the smallest 1, 2 or 5 x 10^n at least so many pixels apart; labels are short.
TEST_F(UITrackCurveTest, GridStepsAndLabels)
{
    const struct {
        double perPixel;
        int pixels;
        double step;
    } steps[] = {{0.01, 20, 0.2}, {0.01, 40, 0.5}, {1.0, 40, 50.0}, {0.0123, 40, 0.5},
                 {2.5, 40, 100.0}, {1e-7, 40, 5e-6}, {0.025, 40, 1.0}, {0.0, 40, 0.0}};
    for (const auto& row : steps)
        EXPECT_DOUBLE_EQ(UITrackCurveMapping::gridStep(row.perPixel, row.pixels), row.step) << row.perPixel;
    const struct {
        double value, step;
        const char* text;
    } labels[] = {{0.5, 0.5, "0.5"}, {-2.0, 1.0, "-2"}, {1e6, 2e5, "1e+06"}, {100.0, 50.0, "100"},
                  {0.1 * 3, 0.1, "0.3"}, {1234567.0, 1.0, "1234567"}, {0.0, 0.2, "0"}, {2.2, 0.2, "2.2"}};
    for (const auto& row : labels)
        EXPECT_EQ(UITrackCurveGrid::formatValue(row.value, row.step), row.text) << row.value;

    // 500 px of 0 to 1 inside the margins: lines every 0.1; 1600 px of 6 s: every 0.5 s.
    mapping.setSize(1612, 520);
    mapping.frameValues(0.0, 1.0);
    const int empty = m_canvas->getNumShapes();
    UITrackCurveGrid grid;
    grid.attach(m_canvas);
    grid.render(mapping, 2.0);
    EXPECT_EQ(grid.getValueLines().size(), 11);
    EXPECT_EQ(grid.getValueLabels().size(), 11);
    EXPECT_EQ(grid.getTimeLines().size(), 13);
    EXPECT_GT(m_canvas->getTextWidth(grid.getValueLabels()[5]), 0);
    EXPECT_EQ(m_canvas->getNumShapes(), empty + 11 + 11 + 13 + 1);
    grid.clearShapes();
    EXPECT_EQ(m_canvas->getNumShapes(), empty);
}

// A zero-width or inverted time range, an empty canvas and a flat value range still map to
// finite pixels, the zero width to x = 6.
TEST_F(UITrackCurveTest, DegenerateRangesGiveFiniteCoordinates)
{
    mapping.setTimeRange(6.0, 0.0);
    EXPECT_DOUBLE_EQ(mapping.xOfTime(3.0), 806.0);
    mapping.setTimeRange(2.0, 2.0);
    mapping.setValueRange(1.0, 1.0);
    EXPECT_EQ(mapping.xOfTime(5.0), 6.0);
    EXPECT_EQ(mapping.timeOfX(300.0), 2.0);
    EXPECT_TRUE(std::isfinite(mapping.yOfValue(1.0)));
    mapping.setSize(0, 0);
    for (int i : {LAMP, CAMERA}) {
        for (const vec3& p : draw(i, 0, 20)->getPoints())
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << i;
    }
}
