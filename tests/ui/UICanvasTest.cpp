#include <QImage>
#include <functional>

#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIWindow.h"

namespace {

const vec4 k_red{1, 0, 0, 1};
const vec4 k_green{0, 1, 0, 1};
const vec4 k_blue{0, 0, 1, 1};

int add_rect(UICanvas* c, int order, float x0, float y0, float x1, float y1, const vec4& color)
{
    const vec3 corners[4] = {vec3(x0, y0, 0), vec3(x1, y0, 0), vec3(x1, y1, 0), vec3(x0, y1, 0)};
    int id = c->addPolygon(order);
    c->setPolygonPoints(id, corners, 4);
    c->setPolygonColor(id, color);
    return id;
}

} // namespace

class UICanvasTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        canvas = make<UICanvas>(root());
        canvas->setFixSize(100, 80);
    }
    void TearDown() override
    {
        destroy(canvas);
        UIFixture::TearDown();
    }
    // Saves what the canvas shows; returns whether pixel (x, y) is near colour.
    bool shows(int x, int y, const vec4& color)
    {
        return inked(y, color, x, x + 1) == 1;
    }
    // Saves what the canvas shows and returns the number of pixels near colour in row y, from x0 up
    // to x1.
    int inked(int y, const vec4& color, int x0 = 0, int x1 = 100)
    {
        std::string path = dir.file("canvas.png");
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
        int n = 0;
        for (int x = x0; x < x1; ++x) {
            vec4 c{-1, -1, -1, -1};
            EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, c));
            n += std::abs(c.x - color.x) + std::abs(c.y - color.y) + std::abs(c.z - color.z) < 0.05f ? 1 : 0;
        }
        return n;
    }

    // What the canvas shows now, freshly painted.
    QImage picture()
    {
        const std::string path = dir.file("picture.png");
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
        return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
    }

    UICanvas* canvas = nullptr;
    TempDir dir;
};

// A selected key is drawn with a higher order so that it shows over its neighbours whenever it
// was made; among equal orders the later shape is on top, and setOrder moves a shape there.
TEST_F(UICanvasTest, HigherOrdersDrawOnTopThenLaterShapes)
{
    int red = add_rect(canvas, 5, 10, 10, 60, 60, k_red);
    add_rect(canvas, 1, 20, 20, 70, 70, k_green);
    add_rect(canvas, 5, 40, 40, 90, 75, k_blue);
    EXPECT_TRUE(shows(30, 30, k_red));
    EXPECT_TRUE(shows(65, 35, k_green));
    EXPECT_TRUE(shows(50, 50, k_blue));
    ASSERT_TRUE(canvas->setOrder(red, 5));
    EXPECT_TRUE(shows(50, 50, k_red));
}

// A click picks the topmost polygon under the pointer, following the points it has now; lines
// are never picked.
TEST_F(UICanvasTest, HitTestsPickTheTopmostPolygonUnderItsCurrentPoints)
{
    int low = add_rect(canvas, 1, 10, 10, 60, 60, k_red);
    int high = add_rect(canvas, 3, 40, 40, 90, 70, k_green);
    int line = canvas->addLine(9);
    canvas->addLinePoint(line, vec3(0, 50, 0));
    canvas->addLinePoint(line, vec3(100, 50, 0));
    EXPECT_EQ(canvas->getPolygonIntersection(20, 20), low);
    EXPECT_EQ(canvas->getPolygonIntersection(50, 50), high);
    EXPECT_EQ(canvas->getPolygonIntersection(90, 70), high); // the corner counts
    EXPECT_EQ(canvas->getPolygonIntersection(95, 5), -1);
    canvas->clearPolygonPoints(low);
    canvas->addPolygonPoint(low, vec3(500, 0, 0));
    canvas->addPolygonPoint(low, vec3(520, 0, 0));
    canvas->addPolygonPoint(low, vec3(510, 30, 0));
    EXPECT_EQ(canvas->getPolygonIntersection(20, 20), -1);
    EXPECT_EQ(canvas->getPolygonIntersection(510, 10), low);
    EXPECT_EQ(canvas->getPolygonIntersection(501, 29), -1); // outside the triangle, inside its box
    const int trace = canvas->addTrace(0); // high moves with it, into other cells of the grid
    ASSERT_TRUE(canvas->followTrace(high, trace));
    canvas->setTraceOffset(trace, 200, -30);
    EXPECT_EQ(canvas->getPolygonIntersection(50, 50), -1);
    EXPECT_EQ(canvas->getPolygonIntersection(290, 40), high);
    ASSERT_TRUE(canvas->removeTrace(trace)); // back where its points put it
    EXPECT_EQ(canvas->getPolygonIntersection(50, 50), high);
    EXPECT_FALSE(canvas->followTrace(high, trace));
    expectLogged("UICanvas::followTrace:id");
    ASSERT_TRUE(canvas->removePolygon(high));
    EXPECT_EQ(canvas->getPolygonIntersection(50, 50), -1);
}

// Key labels are placed by their measured size in the fixed font; they paint at their position in
// their colour, and an outline rings the strokes so that they stay readable over curves.
TEST_F(UICanvasTest, TextsAreMeasuredAndPaintAtTheirPositionWithAnOutline)
{
    int t = canvas->addText(0);
    EXPECT_EQ(canvas->getTextWidth(t), 0);
    canvas->setText(t, "II");
    int narrow = canvas->getTextWidth(t);
    canvas->setText(t, "IIII");
    EXPECT_GT(canvas->getTextWidth(t), narrow);
    EXPECT_GE(canvas->getTextHeight(t), 12);
    EXPECT_LE(canvas->getTextHeight(t), 16);
    int small = canvas->getTextWidth(t);
    canvas->setTextFontSize(t, 20);
    EXPECT_GT(canvas->getTextWidth(t), small * 3 / 2);
    canvas->setTextColor(t, k_green);
    canvas->setTextOutlineColor(t, k_blue);
    canvas->setTextPosition(t, 10, 30);
    EXPECT_GT(inked(40, k_green), 3);
    EXPECT_EQ(inked(28, k_green), 0);
    EXPECT_EQ(inked(42, k_blue), 0);
    canvas->setTextOutline(t, 2);
    EXPECT_GE(inked(42, k_blue), 8); // both sides of each of the four strokes
}

// Each operation on an id of no shape, or of a shape of another kind, is refused and reported.
TEST_F(UICanvasTest, BadIdsAreReportedAndChangeNothing)
{
    int line = canvas->addLine(0);
    EXPECT_FALSE(canvas->addPolygonPoint(line, vec3(1, 1, 0)));
    expectLogged("UICanvas::addPolygonPoint:id");
    EXPECT_FALSE(canvas->setPolygonPoints(line, nullptr, 0));
    expectLogged("UICanvas::setPolygonPoints:id");
    EXPECT_FALSE(canvas->removeText(line));
    expectLogged("UICanvas::removeText:id");
    EXPECT_FALSE(canvas->setText(12345, "x"));
    expectLogged("UICanvas::setText:id");
    EXPECT_TRUE(canvas->removeLine(line));
    EXPECT_FALSE(canvas->removeLine(line));
    expectLogged("UICanvas::removeLine:id");
    EXPECT_EQ(canvas->getNumShapes(), 0);
}

// A track of hundreds of keys stays fluid because a repaint looks only at the shapes in the
// exposed area.
TEST_F(UICanvasTest, PaintingLooksOnlyAtShapesInTheExposedArea)
{
    canvas->setFixSize(4000, 80);
    for (int i = 0; i < 400; ++i)
        add_rect(canvas, 0, i * 10.0f, 10, i * 10.0f + 6, 20, k_red);
    ASSERT_EQ(root()->getAutomation()->renderRegion(canvas, 1000, 0, 100, 80), 8000);
    EXPECT_GE(canvas->getLastPaintCount(), 10);
    EXPECT_LE(canvas->getLastPaintCount(), 12);
    canvas->removeAll();
    root()->getAutomation()->renderRegion(canvas, 1000, 0, 100, 80);
    EXPECT_EQ(canvas->getLastPaintCount(), 0);
}

// Curves of thousands of keys are traces: each pixel column is filled from where the trace enters
// it to where it leaves it, so a steep stretch is never broken; a later trace covers an earlier one,
// a translucent one blends over it, and draw orders hold between traces and other shapes.
TEST_F(UICanvasTest, TracesFillEachColumnTheyCrossAndKeepTheDrawOrder)
{
    const vec3 zigzag[] = {vec3(20, 50, 0), vec3(60, 50, 0), vec3(60.5f, 10, 0), vec3(61.5f, 70, 0)};
    const int green = canvas->addTrace(2);
    canvas->setTracePoints(green, zigzag, 4);
    canvas->setTraceColor(green, k_green);
    EXPECT_EQ(inked(50, k_green, 0, 60), 40); // the flat stretch, one row high
    EXPECT_EQ(inked(49, k_green, 0, 60), 0);
    EXPECT_TRUE(shows(60, 11, k_green)); // up to 10 and half way down again: rows 10 to 50
    EXPECT_TRUE(shows(61, 69, k_green)); // the rest of the way down: rows 40 to 70
    EXPECT_FALSE(shows(61, 30, k_green));
    EXPECT_FALSE(shows(60, 60, k_green));
    ASSERT_TRUE(canvas->setTraceOffset(green, 3, -5)); // moved whole, new points keep the move
    EXPECT_EQ(inked(45, k_green, 0, 60), 37);
    canvas->setTracePoints(green, zigzag, 4);
    EXPECT_TRUE(shows(63, 6, k_green));
    EXPECT_FALSE(shows(60, 11, k_green));
    canvas->setTraceOffset(green, 0, 0);

    const vec3 across[] = {vec3(0, 30, 0), vec3(99, 30, 0)};
    const int red = canvas->addTrace(2);
    canvas->setTracePoints(red, across, 2);
    canvas->setTraceColor(red, k_red);
    const int under = add_rect(canvas, 1, 0, 0, 100, 80, k_blue);
    EXPECT_TRUE(shows(60, 30, k_red));
    EXPECT_TRUE(shows(60, 20, k_green));
    EXPECT_TRUE(shows(5, 5, k_blue));
    canvas->setTraceColor(red, vec4(1, 0, 0, 0.5f));
    EXPECT_TRUE(shows(60, 30, vec4(0.5f, 0.5f, 0, 1)));
    ASSERT_TRUE(canvas->setOrder(under, 3));
    EXPECT_TRUE(shows(60, 20, k_blue));
    // A trace turning back crosses its columns twice and keeps the rows between clear.
    canvas->setTraceColor(red, k_red);
    const vec3 turn[] = {vec3(70, 20, 0), vec3(80, 20, 0), vec3(80, 60, 0), vec3(70, 60, 0)};
    const int back = canvas->addTrace(4);
    canvas->setTracePoints(back, turn, 4);
    canvas->setTraceColor(back, k_green);
    EXPECT_EQ(inked(20, k_green, 70, 81), 11);
    EXPECT_EQ(inked(60, k_green, 70, 81), 11);
    EXPECT_TRUE(shows(75, 40, k_blue));
    EXPECT_TRUE(shows(80, 40, k_green));
    EXPECT_TRUE(canvas->removeTrace(green));
    EXPECT_FALSE(canvas->setTracePoints(green, across, 2));
    expectLogged("UICanvas::setTracePoints:id");
    EXPECT_FALSE(canvas->setTraceOffset(green, 1, 1));
    expectLogged("UICanvas::setTraceOffset:id");
}

// Small opaque marks at whole pixels are drawn from a stamp made once per look: each covers
// exactly the pixels the painter fills and strokes for it, as a nearly opaque copy (which the
// painter draws) 40 pixels to the right shows; marks at fractions of a pixel are painted. Marks
// moved by whole pixels (as a pan moves them) still cover the pixels the painter draws there, and
// so do lines along an axis (a grid's), drawn as boxes, either way round and of either width.
TEST_F(UICanvasTest, StampedMarksCoverThePixelsThePainterDraws)
{
    const vec3 pentagon[5] = {{4, 16, 0}, {10, 10, 0}, {16, 16, 0}, {16, 23, 0}, {4, 23, 0}};
    int fills[4], outlines[4];
    struct Line {
        vec3 from, to;
        float width;
    };
    const Line lines[] = {{{1, 2, 0}, {27, 2, 0}, 1}, {{27, 6, 0}, {1, 6, 0}, 3}, {{25, 5, 0}, {25, 58, 0}, 1},
                          {{28, 58, 0}, {28, 5, 0}, 3}};
    for (int copy = 0; copy < 8; ++copy) {
        const Line& l = lines[copy / 2];
        const vec3 at(40.0f * (copy % 2), 0, 0), points[2] = {l.from + at, l.to + at};
        const int line = canvas->addLine(3);
        canvas->setLinePoints(line, points, 2, false);
        canvas->setLineWidth(line, l.width);
        canvas->setLineColor(line, vec4(0, 1, 0, copy % 2 ? 254.0f / 255.0f : 1.0f));
    }
    for (int copy = 0; copy < 4; ++copy) {
        fills[copy] = canvas->addPolygon(1);
        outlines[copy] = canvas->addLine(2);
        const float alpha = copy % 2 ? 254.0f / 255.0f : 1.0f;
        canvas->setPolygonColor(fills[copy], vec4(1, 0, 0, alpha));
        canvas->setLineColor(outlines[copy], vec4(0, 1, 0, alpha));
    }
    for (const vec3& move : {vec3(), vec3(3, 5, 0)}) {
        for (int copy = 0; copy < 4; ++copy) {
            const vec3 at(40.0f * (copy % 2) + (copy / 2) * 0.375f, (copy / 2) * 30.0f, 0.0f);
            vec3 mark[5];
            for (int i = 0; i < 5; ++i)
                mark[i] = pentagon[i] + at + move;
            canvas->setPolygonPoints(fills[copy], mark, 5);
            canvas->setLinePoints(outlines[copy], mark, 5, true);
        }
        const QImage shown = picture();
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 30; ++x) {
                SCOPED_TRACE(testing::Message() << x << "," << y << " moved by " << move.y);
                const QColor stamped = shown.pixelColor(x, y), painted = shown.pixelColor(x + 40, y);
                EXPECT_NEAR(stamped.red(), painted.red(), 1);
                EXPECT_NEAR(stamped.green(), painted.green(), 1);
            }
    }
}

// A change repaints only around what it touches (a long trace only where its points changed), and
// never less: after each change, what the window shows is a fresh painting, pixel for pixel.
TEST_F(UICanvasTest, EachChangeRepaintsAllItTouches)
{
    UIWindow* window = make<UIWindow>(root(), "canvas", 100, 80);
    window->addChild(canvas, UI_EXPAND_NONE);
    const int a = add_rect(canvas, 0, 10, 10, 30, 30, k_red);
    const int b = add_rect(canvas, 1, 20, 20, 40, 40, k_green);
    vec3 wave[10];
    for (int i = 0; i < 10; ++i)
        wave[i] = vec3(5.0f + 10 * i, 40.0f + (i % 3) * 10.0f, 0);
    const int trace = canvas->addTrace(2);
    canvas->setTracePoints(trace, wave, 10);
    canvas->setTraceColor(trace, k_blue);
    const int label = canvas->addText(3);
    canvas->setText(label, "12");
    canvas->setTextPosition(label, 60, 5);
    window->show();
    settle();
    const std::function<void()> changes[] = {
        [&] { add_rect(canvas, 0, 50, 50, 70, 70, k_red); },
        [&] { canvas->setPolygonColor(b, k_blue); },
        [&] { canvas->setOrder(a, 2); },
        [&] { canvas->setTraceOffset(trace, -4, 7); },
        [&] { canvas->followTrace(a, trace); },
        [&] { canvas->setTraceOffset(trace, 30, -3); },
        [&] {
            wave[5].y = 5.0f;
            canvas->setTracePoints(trace, wave, 10);
        },
        [&] { canvas->setTracePoints(trace, wave + 2, 6); },
        [&] { canvas->setTextPosition(label, 40, 60); },
        [&] { canvas->setText(label, "3456"); },
        [&] { canvas->setTextOutline(label, 2); },
        [&] { canvas->setLinePoints(canvas->addLine(4), wave + 1, 3, true); },
        [&] { canvas->removePolygon(b); },
        [&] { canvas->removeTrace(trace); },
        [&] { canvas->removeAll(); },
    };
    const std::string shown = dir.file("shown.png"), fresh = dir.file("fresh.png");
    for (size_t i = 0; i < std::size(changes); ++i) {
        SCOPED_TRACE(i);
        changes[i]();
        settle();
        ASSERT_TRUE(root()->getAutomation()->saveShown(canvas, shown.c_str()));
        ASSERT_TRUE(root()->getAutomation()->saveScreenshot(canvas, fresh.c_str()));
        const QImage seen = QImage(QString::fromStdString(shown)).convertToFormat(QImage::Format_RGB32);
        EXPECT_EQ(seen, QImage(QString::fromStdString(fresh)).convertToFormat(QImage::Format_RGB32));
    }
    window->removeChild(canvas);
    destroy(window);
}
