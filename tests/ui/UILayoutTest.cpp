#include "UIFixture.h"
#include "ui/UICanvas.h"
#include "ui/UIGridLayout.h"
#include "ui/UIHLayout.h"
#include "ui/UIScrollBox.h"
#include "ui/UISpliter.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

#include <utility>

// The editor's panes are layouts inside one 400 by 300 window; each test fills it with one kind.
class UILayoutTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        window = make<UIWindow>(root(), "layout", 400, 300);
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    void show()
    {
        window->show();
        settle();
    }
    // Adds a new element, made with args after the root, to parent.
    template <class T = UIElement, class... Args>
    T* add(UIElement* parent, int expand, Args&&... args)
    {
        auto* e = make<T>(root(), std::forward<Args>(args)...);
        parent->addChild(e, expand);
        return e;
    }
    // Adds an empty element of a natural size to parent.
    UIElement* block(UIElement* parent, int w, int h, int expand = UI_EXPAND_NONE)
    {
        UIElement* e = add(parent, expand);
        e->setMinSize(w, h);
        return e;
    }
    // Returns the element's top-left corner in the coordinates of other.
    static std::pair<int, int> origin(const UIElement* e, const UIElement* other)
    {
        int x = 0, y = 0;
        e->localToScreen(x, y);
        other->screenToLocal(x, y);
        return {x, y};
    }
    UIWindow* window = nullptr;
};

// A column stacks its children top-down in position order: natural ones keep their size and sit
// by the content alignment, "across" ones fill its width, "both" ones also take the height left
// over; hidden ones take no room.
TEST_F(UILayoutTest, AColumnStacksChildrenAndSizesThemByExpandType)
{
    auto* column = add<UIVLayout>(window, UI_EXPAND_BOTH, 0, 0);
    UIElement* across = block(column, 40, 20, UI_EXPAND_ACROSS);
    UIElement* both = block(column, 40, 20, UI_EXPAND_BOTH);
    UIElement* hidden = block(column, 40, 20);
    hidden->setHidden(true);
    auto* natural = make<UIElement>(root());
    natural->setMinSize(40, 10);
    column->addChild(natural, UI_EXPAND_NONE, 0);
    show();
    EXPECT_EQ(natural->getWidth(), 40);
    EXPECT_EQ(across->getWidth(), column->getWidth());
    EXPECT_EQ(across->getHeight(), 20);
    EXPECT_EQ(both->getWidth(), column->getWidth());
    EXPECT_EQ(both->getHeight(), column->getHeight() - 30);
    EXPECT_EQ(origin(across, column).second, 10);
    EXPECT_EQ(origin(both, column).second, 30);
    column->setContentAligns(UI_ALIGN_CENTER);
    hidden->setHidden(false);
    settle();
    EXPECT_EQ(origin(natural, column).first, (column->getWidth() - 40) / 2);
    EXPECT_EQ(both->getHeight(), column->getHeight() - 50);
}

// The track editor gives its key lines four times the width of the rows: weights share the free
// space along a row or a column, after the fixed sizes.
TEST_F(UILayoutTest, WeightsShareTheSpaceLeftByFixedSizes)
{
    auto* row = add<UIHLayout>(window, UI_EXPAND_BOTH, 0, 0);
    UIElement* fixed = add(row, UI_EXPAND_ACROSS);
    fixed->setFixWidth(100);
    UIElement* narrow = add(row, UI_EXPAND_BOTH);
    auto* column = add<UIVLayout>(row, UI_EXPAND_BOTH, 0, 0);
    column->setWidthWeight(4.0f);
    UIElement* one = add(column, UI_EXPAND_BOTH);
    UIElement* three = add(column, UI_EXPAND_BOTH);
    three->setHeightWeight(3.0f);
    one->setFixHeight(40);
    show();
    EXPECT_EQ(fixed->getWidth(), 100);
    EXPECT_EQ(fixed->getHeight(), row->getHeight()); // "across" is vertical in a row
    EXPECT_NEAR(column->getWidth(), 4 * narrow->getWidth(), 4);
    EXPECT_EQ(fixed->getWidth() + narrow->getWidth() + column->getWidth(), row->getWidth());
    EXPECT_EQ(three->getHeight(), column->getHeight() - 40);
    one->setFixSize(-1, -1);
    settle();
    EXPECT_NEAR(three->getHeight(), 3 * one->getHeight(), 2);
}

// The settings panel is a grid of label and value columns, filled row by row in child order.
TEST_F(UILayoutTest, AGridFillsRowsAndSharesTheWidthByColumnRatios)
{
    auto* grid = add<UIGridLayout>(window, UI_EXPAND_ACROSS, 2, 4);
    UIElement* label = block(grid, 20, 20, UI_EXPAND_ACROSS);
    UIElement* value = block(grid, 20, 20, UI_EXPAND_ACROSS);
    UIElement* next = block(grid, 20, 20, UI_EXPAND_ACROSS);
    grid->setColumnRatio(1, 3.0f);
    grid->setColumnRatio(2, 1.0f);
    expectLogged("UIGridLayout::setColumnRatio:column 2 outside 0..1");
    show();
    EXPECT_EQ(origin(value, grid).second, 0);
    EXPECT_EQ(origin(next, grid), std::make_pair(0, 24));
    EXPECT_NEAR(value->getWidth(), 3 * label->getWidth(), 3);
    EXPECT_EQ(grid->getColumnRatio(1), 3.0f);
    // A removed child leaves its cell: the others move up one cell each.
    destroy(label);
    settle();
    EXPECT_EQ(grid->getChild(0), value);
    EXPECT_EQ(grid->getNumChilds(), 2);
    EXPECT_EQ(origin(value, grid), std::make_pair(0, 0));
    EXPECT_EQ(origin(next, grid).second, 0);
}

// The key lines take four fifths of the width beside the rows; dragging a handle resizes the
// parts, keeps the new sizes as their weights and says so.
TEST_F(UILayoutTest, AMovedSplitterHandleBecomesTheNewWeights)
{
    auto* columns = add<UISpliter>(window, UI_EXPAND_BOTH, UI_SPLITER_HORIZONTAL);
    UIElement* rows = add(columns, UI_EXPAND_BOTH);
    auto* lines = add<UISpliter>(columns, UI_EXPAND_BOTH);
    lines->setWidthWeight(4.0f);
    add(lines, UI_EXPAND_BOTH);
    add(lines, UI_EXPAND_BOTH);
    show();
    EXPECT_NEAR(lines->getWidth(), 4 * rows->getWidth(), 8);
    int changes = 0;
    lines->sigSizeChanged = [&changes](const UIEventChanged*, UIElement*) { ++changes; };
    lines->moveHandle(0, 50);
    settle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(lines->getChild(0)->getHeight(), 50);
    EXPECT_EQ(lines->getChild(0)->getHeightWeight(), 50.0f);
    EXPECT_EQ(lines->getChild(1)->getHeightWeight(), static_cast<float>(lines->getChild(1)->getHeight()));
}

// The key lines scroll both ways; the canvas moves under the view by the scrolled amounts.
TEST_F(UILayoutTest, ContentLargerThanTheScrollBoxScrollsBothWays)
{
    auto* box = add<UIScrollBox>(window, UI_EXPAND_BOTH);
    auto* canvas = add<UICanvas>(box, UI_EXPAND_BOTH);
    canvas->setMinWidth(3000);
    canvas->setFixHeight(2200);
    show();
    int scrolls = 0;
    box->sigScrolled = [&scrolls](const UIEventChanged*, UIElement*) { ++scrolls; };
    box->setVScrollValue(440);
    box->setHScrollValue(500);
    EXPECT_EQ(scrolls, 2);
    int x, y, w, h;
    box->getVisibleArea(x, y, w, h);
    EXPECT_EQ(y, 440);
    EXPECT_EQ(box->getVScrollMax(), 2200 - h);
    EXPECT_EQ(box->getHScrollMax(), 3000 - w);
    EXPECT_EQ(box->getHScrollValue(), 500);
    EXPECT_EQ(origin(box, canvas), std::make_pair(500, 440));
}
