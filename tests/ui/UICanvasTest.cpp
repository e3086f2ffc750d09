#include "UIFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"

namespace {

const vec4 k_red{1, 0, 0, 1};
const vec4 k_green{0, 1, 0, 1};
const vec4 k_blue{0, 0, 1, 1};

int add_rect(UICanvas* c, int order, float x0, float y0, float x1, float y1, const vec4& color)
{
    int id = c->addPolygon(order);
    c->addPolygonPoint(id, vec3(x0, y0, 0));
    c->addPolygonPoint(id, vec3(x1, y0, 0));
    c->addPolygonPoint(id, vec3(x1, y1, 0));
    c->addPolygonPoint(id, vec3(x0, y1, 0));
    c->setPolygonColor(id, color);
    return id;
}

bool near(const vec4& a, const vec4& b) { return std::abs(a.x - b.x) < 0.02f && std::abs(a.y - b.y) < 0.02f && std::abs(a.z - b.z) < 0.02f; }

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
    // The colour the canvas shows at (x, y), read back from a screenshot.
    vec4 pixel(int x, int y)
    {
        std::string path = dir.file("canvas.png");
        vec4 out{-1, -1, -1, -1};
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
        EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, out));
        return out;
    }

    UICanvas* canvas = nullptr;
    TempDir dir;
};

TEST_F(UICanvasTest, HigherOrdersDrawOnTopWhateverTheCreationOrder)
{
    add_rect(canvas, 5, 10, 10, 60, 60, k_red);
    add_rect(canvas, 1, 20, 20, 70, 70, k_green);
    EXPECT_TRUE(near(pixel(30, 30), k_red));
    EXPECT_TRUE(near(pixel(65, 65), k_green));
}

TEST_F(UICanvasTest, EqualOrdersDrawInCreationOrderAndSetOrderRaises)
{
    int first = add_rect(canvas, 2, 10, 10, 60, 60, k_red);
    add_rect(canvas, 2, 20, 20, 70, 70, k_green);
    EXPECT_TRUE(near(pixel(30, 30), k_green));
    ASSERT_TRUE(canvas->setOrder(first, 2));
    EXPECT_TRUE(near(pixel(30, 30), k_red));
    EXPECT_EQ(canvas->getOrder(first), 2);
}

TEST_F(UICanvasTest, HitTestReturnsTheTopmostPolygonOrMinusOne)
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
    EXPECT_EQ(canvas->getPolygonIntersection(-500, 5000), -1);
}

TEST_F(UICanvasTest, HitTestFollowsRefilledAndRemovedPolygons)
{
    int id = add_rect(canvas, 0, 0, 0, 10, 10, k_blue);
    EXPECT_EQ(canvas->getPolygonIntersection(5, 5), id);
    canvas->clearPolygonPoints(id);
    EXPECT_EQ(canvas->getPolygonIntersection(5, 5), -1);
    canvas->addPolygonPoint(id, vec3(500, 0, 0));
    canvas->addPolygonPoint(id, vec3(520, 0, 0));
    canvas->addPolygonPoint(id, vec3(510, 30, 0));
    EXPECT_EQ(canvas->getPolygonIntersection(510, 10), id);
    EXPECT_EQ(canvas->getPolygonIntersection(501, 29), -1); // outside the triangle, inside its box
    ASSERT_TRUE(canvas->removePolygon(id));
    EXPECT_EQ(canvas->getPolygonIntersection(510, 10), -1);
    EXPECT_EQ(canvas->getNumShapes(), 0);
}

TEST_F(UICanvasTest, LinesDrawTheirPointsInTheirColour)
{
    int line = canvas->addLine(0);
    canvas->addLinePoint(line, vec3(6, 8, 0));
    canvas->addLinePoint(line, vec3(94, 8, 0));
    canvas->addLinePoint(line, vec3(94, 72, 0));
    canvas->setLineColor(line, k_blue);
    EXPECT_TRUE(near(pixel(50, 8), k_blue));
    EXPECT_TRUE(near(pixel(94, 40), k_blue));
    EXPECT_FALSE(near(pixel(50, 40), k_blue));
    canvas->clearLinePoints(line);
    EXPECT_FALSE(near(pixel(50, 8), k_blue));
}

TEST_F(UICanvasTest, SettingAllPointsReplacesTheOldOnesAndClosesLinesOnRequest)
{
    const vec3 square[4] = {vec3(10, 10, 0), vec3(40, 10, 0), vec3(40, 40, 0), vec3(10, 40, 0)};
    int polygon = add_rect(canvas, 0, 60, 60, 90, 70, k_green);
    ASSERT_TRUE(canvas->setPolygonPoints(polygon, square, 4));
    EXPECT_EQ(canvas->getPolygonIntersection(25, 25), polygon);
    EXPECT_EQ(canvas->getPolygonIntersection(75, 65), -1); // the old points are gone

    int open = canvas->addLine(1);
    int closed = canvas->addLine(1);
    canvas->setLineColor(open, k_red);
    canvas->setLineColor(closed, k_blue);
    const vec3 left[4] = {vec3(50, 50, 0), vec3(60, 50, 0), vec3(60, 60, 0), vec3(50, 60, 0)};
    const vec3 right[4] = {vec3(70, 50, 0), vec3(80, 50, 0), vec3(80, 60, 0), vec3(70, 60, 0)};
    canvas->setLinePoints(open, left, 4, false);
    canvas->setLinePoints(closed, right, 4, true);
    EXPECT_FALSE(near(pixel(50, 55), k_red)); // no closing side
    EXPECT_TRUE(near(pixel(70, 55), k_blue));

    EXPECT_FALSE(canvas->setPolygonPoints(open, square, 4));
    expectLogged("UICanvas::setPolygonPoints");
}

TEST_F(UICanvasTest, TextsAreMeasuredWithTheFixedFont)
{
    int a = canvas->addText(0);
    int b = canvas->addText(0);
    EXPECT_EQ(canvas->getTextWidth(a), 0);
    EXPECT_EQ(canvas->getTextHeight(a), 0);
    canvas->setText(a, "key");
    canvas->setText(b, "key frame");
    EXPECT_GT(canvas->getTextWidth(a), 10);
    EXPECT_GT(canvas->getTextWidth(b), canvas->getTextWidth(a));
    EXPECT_EQ(canvas->getTextHeight(a), canvas->getTextHeight(b));
    EXPECT_GE(canvas->getTextHeight(a), 12);
    EXPECT_LE(canvas->getTextHeight(a), 16);
    int small = canvas->getTextWidth(a);
    canvas->setTextFontSize(a, 24);
    EXPECT_GT(canvas->getTextWidth(a), small * 3 / 2);
}

TEST_F(UICanvasTest, TextsPaintAtTheirPosition)
{
    int t = canvas->addText(0);
    canvas->setText(t, "MMMM");
    canvas->setTextFontSize(t, 20);
    canvas->setTextColor(t, k_green);
    canvas->setTextPosition(t, 10, 30);
    // The middle row of the glyphs carries ink; the rows above the text carry none.
    std::string path = dir.file("text.png");
    ASSERT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
    auto inked = [&](int y) {
        int n = 0;
        for (int x = 0; x < 100; ++x) {
            vec4 c;
            EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, c));
            n += near(c, k_green) ? 1 : 0;
        }
        return n;
    };
    EXPECT_GT(inked(40), 8);
    EXPECT_EQ(inked(28), 0);
    EXPECT_EQ(inked(5), 0);
}

TEST_F(UICanvasTest, OutlinedTextsAreRingedInTheOutlineColour)
{
    int t = canvas->addText(0);
    canvas->setText(t, "IIII");
    canvas->setTextFontSize(t, 20);
    canvas->setTextColor(t, k_green);
    canvas->setTextOutlineColor(t, k_blue);
    canvas->setTextPosition(t, 10, 30);
    auto blue_in_row = [&](int y) {
        std::string path = dir.file("outline.png");
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
        int n = 0;
        for (int x = 0; x < 100; ++x) {
            vec4 c;
            EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, c));
            n += near(c, k_blue) ? 1 : 0;
        }
        return n;
    };
    EXPECT_EQ(blue_in_row(42), 0);
    canvas->setTextOutline(t, 2);
    EXPECT_GE(blue_in_row(42), 8); // both sides of each of the four strokes
}

TEST_F(UICanvasTest, BadIdsAreReportedAndChangeNothing)
{
    int line = canvas->addLine(0);
    EXPECT_FALSE(canvas->addPolygonPoint(line, vec3(1, 1, 0)));
    expectLogged("UICanvas::addPolygonPoint:id");
    EXPECT_FALSE(canvas->removeText(line));
    expectLogged("UICanvas::removeText:id");
    EXPECT_FALSE(canvas->setText(12345, "x"));
    expectLogged("UICanvas::setText:id");
    EXPECT_TRUE(canvas->removeLine(line));
    EXPECT_FALSE(canvas->removeLine(line));
    expectLogged("UICanvas::removeLine:id");
    EXPECT_EQ(canvas->getNumShapes(), 0);
}

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
