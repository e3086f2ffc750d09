#include "ui/UITrackRowPanel.h"

#include <string>
#include <vector>

#include "ModuleFixture.h"
#include "ui/UICanvas.h"
#include "ui/UIWindow.h"

// Rows sit 22 pixels apart, each a 20-pixel band from its indent to R = W - 32, followed by the
// "E" and "T" buttons, 16 pixels each, against the canvas's right edge:
//
//   y = 0   [ a ............................ ][E][T]
//   y = 22  [ b ............................ ][E][T]
//   y = 44  [ c ............................ ][E][T]

namespace {

constexpr int SELECTION_CHANGED = 207;

jVector<UITrackRow::RowData> two_columns()
{
    jVector<UITrackRow::RowData> columns;
    columns.append(UITrackRow::RowData{jString("E"), false});
    columns.append(UITrackRow::RowData{jString("T"), true});
    return columns;
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
    bool press(int x, int y, int modifiers = 0, int button = UI_MOUSE_LEFT)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y, button, 1 << button, modifiers);
        return panel->onMouseDown(&e);
    }
    bool press_row(int i, int modifiers = 0) { return press(40, 22 * i + 10, modifiers); }
    bool is_selected(int i) const { return panel->getSelected().contains(rows[i]); }
    int selected_count() const { return panel->getSelected().size(); }
    bool shade(int x, int y, float grey) { return isGrey(pixel(canvas(), x, y), grey); }

    UIWindow* window = nullptr;
    UITrackRowPanel* panel = nullptr;
    UITrackRow* rows[3] = {};
};

// A row is held once, and a panel whose canvas is gone says so instead of drawing.
TEST_F(UITrackRowPanelTest, RowsAreHeldOnceAndAPanelWithoutCanvasDrawsNothing)
{
    panel->addRow(rows[0]);
    panel->addRow(rows[0]);
    expectLogged("UITrackRowPanel::addRow: row is already defined");
    panel->removeRow(rows[1]);
    expectLogged("UITrackRowPanel::removeRow: can't find row");
    EXPECT_EQ(panel->getRows().size(), 1);
    panel->release();
    EXPECT_EQ(panel->getCanvas(), nullptr);
    panel->update(0.0f);
    expectLogged("UITrackRowPanel::update:m_canvas");
}

// Later rows move up on the next update; a removed row's shapes stay until its owner clears them.
TEST_F(UITrackRowPanelTest, RemovedRowsLeaveTheLayoutOnTheNextUpdate)
{
    add_all();
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), rows[2]->getBandPolygon());
    rows[1]->clearRender(); // how a parameter leaves the panel: removeRow, then its shapes go
    EXPECT_EQ(panel->getRows().size(), 2);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), rows[2]->getBandPolygon()); // not yet
    panel->update(0.0f);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 32), rows[2]->getBandPolygon());
    EXPECT_EQ(rows[2]->findColumn(canvas()->getPolygonIntersection(right() + 8, 32)), 0); // its E button
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 54), -1);

    panel->removeRow(rows[2]);
    panel->update(0.0f);
    EXPECT_EQ(panel->getRows().size(), 1);
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 10), rows[0]->getBandPolygon());
    EXPECT_EQ(canvas()->getPolygonIntersection(40, 32), rows[2]->getBandPolygon());
}

// A button toggles its own column, calls the row's handlers, leaves the selection and is redrawn.
TEST_F(UITrackRowPanelTest, PressOnAButtonTogglesOnlyThatColumnAndKeepsTheSelection)
{
    add_all();
    std::vector<std::string> calls;
    UITrackRow* changed = nullptr;
    rows[1]->changed().append([&calls] { calls.push_back("changed"); });
    rows[1]->rowChanged().append([&](UITrackRow*&& row) {
        calls.push_back("row");
        changed = row;
    });
    EXPECT_TRUE(press(right() + 16 + 8, 22 + 10)); // row b, column T
    EXPECT_FALSE(rows[1]->getState(1));
    EXPECT_FALSE(rows[1]->getState(0));
    EXPECT_TRUE(rows[0]->getState(1));
    EXPECT_EQ(calls, (std::vector<std::string>{"changed", "row"}));
    EXPECT_EQ(changed, rows[1]);
    EXPECT_EQ(panel->getCurrent(), nullptr);
    EXPECT_TRUE(messages().empty());

    // Sampled beside and below the labels of row a.
    EXPECT_TRUE(shade(right() + 2, 18, 0.25f)); // E off
    EXPECT_TRUE(shade(right() + 18, 18, 0.5f)); // T on
    EXPECT_TRUE(press(right() + 8, 10));
    EXPECT_TRUE(rows[0]->getState(0));
    panel->update(0.0f);
    EXPECT_TRUE(shade(right() + 2, 18, 0.5f));
}

// A click selects its row alone; a modifier adds a row, or on a selected row makes it the only one.
TEST_F(UITrackRowPanelTest, ClickSelectsTheRowAloneAndAModifierAddsOne)
{
    add_all();
    EXPECT_TRUE(press_row(0));
    EXPECT_TRUE(is_selected(0));
    EXPECT_EQ(panel->getPress(), 2);
    EXPECT_TRUE(press_row(2));
    EXPECT_EQ(selected_count(), 1);
    EXPECT_TRUE(is_selected(2));
    EXPECT_EQ(panel->getCurrent(), rows[2]);
    EXPECT_EQ(messages(), (std::vector<int>{SELECTION_CHANGED, SELECTION_CHANGED}));
    EXPECT_TRUE(panel->hasFocus());

    EXPECT_TRUE(press_row(1, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 2);
    EXPECT_TRUE(press_row(0, UI_MOD_SHIFT));
    EXPECT_EQ(selected_count(), 3);
    EXPECT_TRUE(press_row(1, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 1);
    EXPECT_TRUE(is_selected(1));
    EXPECT_EQ(messages(), std::vector<int>(5, SELECTION_CHANGED));
    // Other buttons, and presses outside the panel once it lost the focus, change nothing.
    panel->removeFocus();
    EXPECT_FALSE(press(40, 10, 0, UI_MOUSE_RIGHT));
    EXPECT_FALSE(press(-400, -400));
    EXPECT_TRUE(is_selected(1));
    EXPECT_EQ(messages().size(), 5u);
}

// A press on empty space clears the selection, drawn lighter; with a modifier it tells no one.
TEST_F(UITrackRowPanelTest, PressOnEmptySpaceClearsTheSelectionDrawnLighter)
{
    add_all();
    press_row(1);
    clearMessages();
    EXPECT_FALSE(press(40, 22 * 3 + 30)); // below the last row: the press travels on
    EXPECT_EQ(selected_count(), 0);
    EXPECT_EQ(panel->getCurrent(), nullptr);
    EXPECT_EQ(panel->getPress(), 1);
    EXPECT_EQ(messages(), std::vector<int>{SELECTION_CHANGED});

    press_row(1);
    press_row(2, UI_MOD_CTRL);
    panel->update(0.0f);
    EXPECT_TRUE(shade(100, 22 + 10, 0.5f));
    EXPECT_TRUE(shade(100, 10, 0.25f));
    clearMessages();
    EXPECT_FALSE(press(40, 22 * 3 + 30, UI_MOD_CTRL));
    EXPECT_EQ(selected_count(), 0);
    EXPECT_TRUE(messages().empty());
    panel->update(0.0f);
    EXPECT_TRUE(shade(100, 22 + 10, 0.25f));
}
