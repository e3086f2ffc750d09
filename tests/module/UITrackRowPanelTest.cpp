#include "ui/UITrackRowPanel.h"

#include <cmath>
#include <string>
#include <vector>

#include "ModuleFixture.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"
#include "ui/UIWindow.h"

// Rows sit 22 pixels apart, each a 20-pixel band from its indent to R = W - 32, followed by the
// "E" and "T" buttons, 16 pixels each, against the canvas's right edge:
//
//   y = 0   [ a ............................ ][E][T]
//   y = 22  [ b ............................ ][E][T]
//   y = 44  [ c ............................ ][E][T]

namespace {

constexpr int SELECTION_CHANGED = 207;

struct Toggles {
    void on_changed() { calls.push_back("changed"); }
    void on_row_changed(UITrackRow*&& row)
    {
        calls.push_back("row");
        last = row;
    }
    std::vector<std::string> calls;
    UITrackRow* last = nullptr;
};

jVector<UITrackRow::RowData> two_columns()
{
    jVector<UITrackRow::RowData> columns;
    columns.append(UITrackRow::RowData{jString("E"), false});
    columns.append(UITrackRow::RowData{jString("T"), true});
    return columns;
}

bool near(const vec4& a, float grey, float eps = 0.02f)
{
    return std::fabs(a.x - grey) < eps && std::fabs(a.y - grey) < eps && std::fabs(a.z - grey) < eps;
}

} // namespace

class UITrackRowPanelTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        window = make<UIWindow>(root(), "rows", 300, 200);
        panel = make<UITrackRowPanel>(root(), two_columns());
        window->addChild(panel, UI_EXPAND_BOTH);
        for (UITrackRow*& row : rows)
            row = jNew<UITrackRow>("tests/module", __LINE__, "UITrackRowPanelTest", two_columns());
        window->show();
        settle();
    }
    void TearDown() override
    {
        destroy(window);
        for (UITrackRow* row : rows)
            jDelete(row, "tests/module", __LINE__, "UITrackRowPanelTest");
        ModuleFixture::TearDown();
    }

    UICanvas* canvas() const { return panel->getCanvas(); }
    // The band's right edge: where the buttons begin.
    int right() const { return canvas()->getWidth() - 32; }
    void add_all()
    {
        for (UITrackRow* row : rows)
            panel->addRow(row);
        panel->update(0.0f);
    }
    // A left press at a canvas-local point, delivered in screen coordinates.
    bool press(int lx, int ly, int modifiers = 0, int button = UI_MOUSE_LEFT)
    {
        UIEventMouse e;
        e.x = lx;
        e.y = ly;
        canvas()->localToScreen(e.x, e.y);
        e.button = button;
        e.buttons = 1 << button;
        e.modifiers = modifiers;
        return panel->onMouseDown(&e);
    }
    bool press_row(int i, int modifiers = 0) { return press(40, 22 * i + 10, modifiers); }
    bool is_selected(int i) const { return panel->getSelected().contains(rows[i]); }
    int selected_count() const { return panel->getSelected().size(); }
    int messages_of(int id) const
    {
        int n = 0;
        for (int m : messages())
            n += m == id ? 1 : 0;
        return n;
    }
    vec4 pixel(int x, int y)
    {
        std::string path = dir.file("rows.png");
        vec4 out{-1, -1, -1, -1};
        settle();
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas(), path.c_str()));
        EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, out));
        return out;
    }

    UIWindow* window = nullptr;
    UITrackRowPanel* panel = nullptr;
    UITrackRow* rows[3] = {};
    TempDir dir;
};

// Holding rows

TEST_F(UITrackRowPanelTest, IsTheOnePanelGetReturns)
{
    EXPECT_EQ(UITrackRowPanel::get(), panel);
}

TEST_F(UITrackRowPanelTest, AddingARowTwiceLogsOnceAndKeepsOneEntry)
{
    panel->addRow(rows[0]);
    panel->addRow(rows[0]);
    EXPECT_EQ(log().countAtLeast(jLogLevel::Error), 1u);
    expectLogged("UITrackRowPanel::addRow: row is already defined");
    EXPECT_EQ(panel->getRows().size(), 1);
    EXPECT_EQ(rows[0]->getPanel(), panel);
}

TEST_F(UITrackRowPanelTest, RemovingARowItDoesNotHoldLogs)
{
    panel->addRow(rows[0]);
    panel->removeRow(rows[1]);
    expectLogged("UITrackRowPanel::removeRow: can't find row");
    EXPECT_EQ(panel->getRows().size(), 1);
}

TEST_F(UITrackRowPanelTest, RemovingAMiddleRowMovesTheLaterRowsUpOnTheNextUpdate)
{
    add_all();
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), rows[2]->getBandPolygon());
    rows[1]->clearRender(); // how a parameter leaves the panel: removeRow, then its shapes go
    EXPECT_EQ(rows[1]->getPanel(), nullptr);
    EXPECT_EQ(panel->getRows().size(), 2);
    EXPECT_EQ(panel->getRows()[1], rows[2]);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), rows[2]->getBandPolygon()); // not yet
    panel->update(0.0f);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 32), rows[2]->getBandPolygon());
    EXPECT_EQ(rows[2]->findColumn(canvas()->getPolygonIntersection(right() + 8, 32)), 0); // its E button
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), -1);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 10), rows[0]->getBandPolygon());
}

TEST_F(UITrackRowPanelTest, RemovingTheLastRowLeavesTheOthersAndTheRowItself)
{
    add_all();
    panel->removeRow(rows[2]);
    panel->update(0.0f);
    EXPECT_EQ(panel->getRows().size(), 2);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 10), rows[0]->getBandPolygon());
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 32), rows[1]->getBandPolygon());
    // The panel only stops laying the row out; its shapes stay until its owner clears them.
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), rows[2]->getBandPolygon());
}

TEST_F(UITrackRowPanelTest, UpdateFixesTheCanvasHeightToTheRows)
{
    add_all();
    settle();
    EXPECT_EQ(canvas()->getHeight(), 66);
    std::vector<UITrackRow*> rows_made;
    for (int i = 0; i < 10; ++i) {
        // More rows than the 200-pixel window shows make the box scroll.
        auto* extra = jNew<UITrackRow>("tests/module", __LINE__, "UITrackRowPanelTest", two_columns());
        panel->addRow(extra);
        panel->update(0.0f);
        settle();
        rows_made.push_back(extra);
    }
    EXPECT_EQ(canvas()->getHeight(), 22 * 13);
    EXPECT_GT(panel->getScroll()->getVScrollMax(), 0);
    for (UITrackRow* extra : rows_made) {
        extra->clearRender();
        jDelete(extra, "tests/module", __LINE__, "UITrackRowPanelTest");
    }
}

TEST_F(UITrackRowPanelTest, UpdateWithoutACanvasLogsAndDrawsNothing)
{
    panel->release();
    EXPECT_EQ(panel->getCanvas(), nullptr);
    panel->update(0.0f);
    expectLogged("UITrackRowPanel::update:m_canvas");
}

// Buttons

TEST_F(UITrackRowPanelTest, PressOnAButtonTogglesOnlyThatColumnAndKeepsTheSelection)
{
    add_all();
    Toggles toggles;
    rows[1]->changed().append(bind(&Toggles::on_changed, &toggles));
    rows[1]->rowChanged().append(bind(&Toggles::on_row_changed, &toggles));
    EXPECT_TRUE(press(right() + 16 + 8, 22 + 10)); // row b, column T
    EXPECT_FALSE(rows[1]->getState(1));
    EXPECT_FALSE(rows[1]->getState(0));
    EXPECT_TRUE(rows[0]->getState(1));
    EXPECT_EQ(toggles.calls, (std::vector<std::string>{"changed", "row"}));
    EXPECT_EQ(toggles.last, rows[1]);
    EXPECT_EQ(selected_count(), 0);
    EXPECT_EQ(panel->getCurrent(), nullptr);
    EXPECT_EQ(messages_of(SELECTION_CHANGED), 0);
    EXPECT_TRUE(press(right() + 8, 22 + 10)); // column E
    EXPECT_TRUE(rows[1]->getState(0));
}

TEST_F(UITrackRowPanelTest, AToggledButtonIsRedrawnOnTheNextUpdate)
{
    add_all();
    // Sampled beside and below the labels.
    EXPECT_TRUE(near(pixel(right() + 2, 18), 0.25f)); // E off
    EXPECT_TRUE(near(pixel(right() + 18, 18), 0.5f)); // T on
    press(right() + 8, 10);
    panel->update(0.0f);
    EXPECT_TRUE(near(pixel(right() + 2, 18), 0.5f));
}

// Selection

TEST_F(UITrackRowPanelTest, ClickSelectsTheRowAloneAndTellsTheViews)
{
    add_all();
    EXPECT_TRUE(press_row(0));
    EXPECT_TRUE(is_selected(0));
    EXPECT_EQ(panel->getCurrent(), rows[0]);
    EXPECT_EQ(panel->getPress(), 2);
    EXPECT_TRUE(press_row(2));
    EXPECT_EQ(selected_count(), 1);
    EXPECT_TRUE(is_selected(2));
    EXPECT_EQ(panel->getCurrent(), rows[2]);
    EXPECT_EQ(messages(), (std::vector<int>{SELECTION_CHANGED, SELECTION_CHANGED}));
    EXPECT_TRUE(panel->hasFocus());
}

TEST_F(UITrackRowPanelTest, ModifierClickAddsARowAndKeepsASelectedOne)
{
    add_all();
    press_row(0);
    EXPECT_TRUE(press_row(1, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 2);
    EXPECT_TRUE(press_row(2, UI_MOD_SHIFT));
    EXPECT_EQ(selected_count(), 3);
    // A modifier click on a selected row makes it the only one rather than removing it.
    EXPECT_TRUE(press_row(1, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 1);
    EXPECT_TRUE(is_selected(1));
    EXPECT_EQ(messages_of(SELECTION_CHANGED), 4);
}

TEST_F(UITrackRowPanelTest, SelectedRowsAreDrawnLighter)
{
    add_all();
    press_row(1);
    panel->update(0.0f);
    EXPECT_TRUE(near(pixel(100, 22 + 10), 0.5f));
    EXPECT_TRUE(near(pixel(100, 10), 0.25f));
    panel->select(nullptr);
    panel->update(0.0f);
    EXPECT_TRUE(near(pixel(100, 22 + 10), 0.25f));
}

TEST_F(UITrackRowPanelTest, PressOnEmptySpaceClearsTheSelectionAndTellsTheViews)
{
    add_all();
    press_row(0);
    press_row(1, UI_MOD_CTRL);
    clearMessages();
    EXPECT_FALSE(press(40, 22 * 3 + 30)); // below the last row: the press travels on
    EXPECT_EQ(selected_count(), 0);
    EXPECT_EQ(panel->getCurrent(), nullptr);
    EXPECT_EQ(panel->getPress(), 1);
    EXPECT_EQ(messages(), std::vector<int>{SELECTION_CHANGED});
}

TEST_F(UITrackRowPanelTest, ModifierPressOnEmptySpaceAlsoClearsButTellsNoOne)
{
    add_all();
    press_row(0);
    press_row(1, UI_MOD_CTRL);
    clearMessages();
    EXPECT_FALSE(press(40, 22 * 3 + 30, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 0);
    EXPECT_EQ(panel->getCurrent(), nullptr);
    EXPECT_TRUE(messages().empty());
    panel->update(0.0f);
    EXPECT_TRUE(near(pixel(100, 10), 0.25f)); // drawn unselected at once
}

TEST_F(UITrackRowPanelTest, OtherButtonsAndPressesElsewhereChangeNothing)
{
    add_all();
    press_row(0);
    panel->removeFocus();
    clearMessages();
    EXPECT_FALSE(press(40, 10, 0, UI_MOUSE_RIGHT));
    EXPECT_FALSE(press(-400, -400)); // outside the panel, which has no focus
    EXPECT_TRUE(is_selected(0));
    EXPECT_EQ(panel->getCurrent(), rows[0]);
    EXPECT_TRUE(messages().empty());
}

TEST_F(UITrackRowPanelTest, SettersReplaceTheSelection)
{
    add_all();
    jSet<UITrackRow*> pair;
    pair.insert(rows[0]);
    pair.insert(rows[2]);
    panel->setSelected(pair);
    EXPECT_EQ(selected_count(), 2);
    panel->select(rows[1]);
    EXPECT_EQ(selected_count(), 1);
    EXPECT_TRUE(is_selected(1));
    panel->setCurrent(rows[1]);
    EXPECT_EQ(panel->getCurrent(), rows[1]);
    EXPECT_TRUE(messages().empty()); // only the mouse tells the views
}
