#include "ui/UITrackLinePanel.h"

#include <cmath>

#include "ModuleFixture.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterToggle.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterToggle.h"
#include "data/FTrack.h"
#include "kit/KeyState.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UITrackLineColor.h"
#include "ui/UITrackLineKey.h"
#include "ui/UIWindow.h"

namespace {

// 600 pixels between the side margins: the pulse sample's two seconds are 300 pixels each.
constexpr int PANEL_WIDTH = 612;
constexpr int ROW = 22;

bool near(const vec4& a, const vec4& b, float tolerance = 0.03f)
{
    return std::abs(a.x - b.x) < tolerance && std::abs(a.y - b.y) < tolerance && std::abs(a.z - b.z) < tolerance;
}

} // namespace

class UITrackLinePanelTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_window = make<UIWindow>(root(), "lines", PANEL_WIDTH + 40, 260);
        m_panel = make<UITrackLinePanel>(root());
        m_panel->setFixSize(PANEL_WIDTH, 200);
        m_window->addChild(m_panel, UI_EXPAND_NONE);
        m_window->show();
        settle();
    }
    void TearDown() override
    {
        SetKeyState(VK_LBUTTON, false);
        AppData::get()->reset();
        destroy(m_window);
        ModuleFixture::TearDown();
    }

    UITrackLinePanel* panel() const { return m_panel; }
    UICanvas* canvas() const { return m_panel->getCanvas(); }
    FParameterSingle* single(int i) const { return AppData::get()->getTrack()->getSingleParameters()[i]; }
    // The pulse sample: row 0 "Bulb pulse" (float keys at 0, 0.5, 1, 1.5, 2), row 1 "Glow" (colour
    // keys at 0, 1, 2), over 0 to 2 s.
    void loadPulse()
    {
        ASSERT_TRUE(AppData::get()->loadTrack(jString(samplePath("pulse.anim").c_str()), demoWorld()));
        redraw();
        ASSERT_EQ(canvas()->getWidth(), PANEL_WIDTH);
        clearMessages();
    }
    void redraw()
    {
        panel()->update(0.0f);
        settle();
        panel()->update(0.0f);
    }
    // The pixel of time t on the canvas.
    int xOf(float t) const
    {
        const AppData* hub = AppData::get();
        const float begin = hub->getBeginTime(), end = hub->getEndTime();
        return int((t - begin) * float(canvas()->getWidth() - 12) / (end - begin) + 6.0f);
    }
    UITrackLineKey* mark(int row, int key) const { return single(row)->getKey(key)->getLineKey(); }

    UIEventMouse event(int x, int y, int modifiers) const
    {
        UIEventMouse e;
        canvas()->localToScreen(x, y);
        e.x = x;
        e.y = y;
        e.button = UI_MOUSE_LEFT;
        e.buttons = 1 << UI_MOUSE_LEFT;
        e.modifiers = modifiers;
        return e;
    }
    bool press(int x, int y, int modifiers = 0)
    {
        SetKeyState(VK_LBUTTON, true);
        const UIEventMouse e = event(x, y, modifiers);
        return m_panel->onMouseDown(&e);
    }
    bool move(int x, int y)
    {
        UIEventMouse e = event(x, y, 0);
        e.button = UI_MOUSE_NONE;
        return m_panel->onMouseMove(&e);
    }
    void release(int x, int y)
    {
        SetKeyState(VK_LBUTTON, false);
        UIEventMouse e = event(x, y, 0);
        e.buttons = 0;
        m_panel->onMouseUp(&e);
    }
    // Presses and releases on the mark of key `key` of row `row`.
    void click(int row, int key, int modifiers = 0)
    {
        const int x = xOf(single(row)->getKey(key)->getTime()), y = ROW * row + 15;
        press(x, y, modifiers);
        release(x, y);
    }
    bool selected(const UITrackLineKey* key) const
    {
        return panel()->getSelectedKeys().contains(const_cast<UITrackLineKey*>(key));
    }
    vec4 pixel(int x, int y)
    {
        redraw();
        const std::string path = m_dir.file("lines.png");
        vec4 out{-1, -1, -1, -1};
        EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas(), path.c_str()));
        EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, out));
        return out;
    }

private:
    UIWindow* m_window = nullptr;
    UITrackLinePanel* m_panel = nullptr;
    TempDir m_dir;
};

TEST_F(UITrackLinePanelTest, LoadedParametersGiveOneLinePerRow)
{
    loadPulse();
    ASSERT_EQ(panel()->getLines().size(), 2);
    EXPECT_EQ(panel()->getLines()[0], single(0)->getLine());
    EXPECT_EQ(panel()->getLines()[1], single(1)->getLine());
    EXPECT_EQ(panel()->getLines()[0]->getKeys().size(), 5);
    EXPECT_EQ(xOf(0.5f), 156);
    EXPECT_EQ(canvas()->getPolygonIntersection(156, 15), mark(0, 1)->getHitPolygon());
    EXPECT_EQ(canvas()->getPolygonIntersection(306, ROW + 1), mark(1, 1)->getHitPolygon());
    EXPECT_EQ(canvas()->getPolygonIntersection(231, 15), single(0)->getLine()->getBandPolygon());
}

TEST_F(UITrackLinePanelTest, ClickSelectsOneKeyAndSendsTheSelectionPair)
{
    loadPulse();
    EXPECT_TRUE(press(xOf(0.5f), 15));
    EXPECT_EQ(messages(), (std::vector<int>{205, 206}));
    release(xOf(0.5f), 15);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(panel()->getCurrentKey(), mark(0, 1));
    EXPECT_EQ(panel()->getCurrentLine(), single(0)->getLine());
    EXPECT_EQ(panel()->getSelectedLines().size(), 1);
    EXPECT_EQ(messages().size(), 2u); // the release sends nothing

    click(1, 2); // another key alone replaces the selection
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(1, 2)));
    EXPECT_TRUE(panel()->getSelectedLines().contains(single(1)->getLine()));
    EXPECT_EQ(messages(), (std::vector<int>{205, 206, 205, 206}));
}

TEST_F(UITrackLinePanelTest, ModifierClickAddsAndPressOnASelectedKeyKeepsTheSet)
{
    loadPulse();
    click(0, 1);
    click(1, 1, UI_MOD_CTRL);
    click(0, 3, UI_MOD_SHIFT);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 3);
    EXPECT_EQ(panel()->getSelectedLines().size(), 2);
    click(1, 1); // already selected: the set stays for a following drag
    EXPECT_EQ(panel()->getSelectedKeys().size(), 3);
    EXPECT_EQ(panel()->getCurrentKey(), mark(1, 1));
    EXPECT_EQ(messages().size(), 8u);
    click(0, 4);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
}

TEST_F(UITrackLinePanelTest, ShortPressChangesNoKeyTime)
{
    loadPulse();
    const int x = xOf(0.5f);
    press(x, 15);
    move(x + 2, 16);
    move(x + 3, 15); // three pixels: still a click
    release(x + 3, 15);
    EXPECT_EQ(single(0)->getKey(1)->getTime(), 0.5f);
    const auto* engine = static_cast<const TrackParameterFloat*>(single(0)->getTrackParameter());
    EXPECT_EQ(engine->getKey(1).time, 0.5f);
    EXPECT_EQ(messages(), (std::vector<int>{205, 206}));
    EXPECT_TRUE(selected(mark(0, 1)));
}

TEST_F(UITrackLinePanelTest, PressOnEmptySpaceClearsBothSelections)
{
    loadPulse();
    click(0, 1);
    click(1, 1, UI_MOD_CTRL);
    clearMessages();
    press(231, 15); // on the band between two keys
    EXPECT_EQ(messages(), (std::vector<int>{205, 206}));
    EXPECT_EQ(panel()->getSelectedKeys().size(), 0);
    EXPECT_EQ(panel()->getSelectedLines().size(), 0);
    EXPECT_EQ(panel()->getCurrentKey(), nullptr);
    EXPECT_EQ(panel()->getCurrentLine(), nullptr);
    release(231, 15);
}

TEST_F(UITrackLinePanelTest, ModifierPressOnEmptySpaceExtendsWithABox)
{
    loadPulse();
    click(0, 1);
    clearMessages();
    press(380, ROW + 18, UI_MOD_CTRL);
    EXPECT_TRUE(messages().empty());
    EXPECT_TRUE(selected(mark(0, 1)));
    move(300, ROW + 13); // the box reaches the glow key at 1 s
    EXPECT_EQ(panel()->getSelectedKeys().size(), 2);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_TRUE(selected(mark(1, 1)));
    EXPECT_EQ(panel()->getSelectedLines().size(), 2);
    EXPECT_EQ(messages(), std::vector<int>{205});
    move(379, ROW + 17); // shrinking the box drops the glow key but keeps what was selected
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(0, 1)));
    release(379, ROW + 17);
}

TEST_F(UITrackLinePanelTest, BoxTakesKeysWhoseMarkAreaItTouches)
{
    loadPulse();
    // The glow key at 1 s: mark area x 300 to 312, y 30 to 44.
    press(250, ROW + 3);
    move(300, ROW + 8);
    EXPECT_TRUE(selected(mark(1, 1)));
    move(299, ROW + 8);
    EXPECT_FALSE(selected(mark(1, 1)));
    move(300, ROW + 7);
    EXPECT_FALSE(selected(mark(1, 1)));
    release(300, ROW + 7);
    // The bulb key at 0.5 s from below: mark area x 150 to 162, y 8 to 22.
    press(200, ROW + 18);
    move(162, 22);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    move(163, 22);
    EXPECT_FALSE(selected(mark(0, 1)));
    move(162, 23);
    EXPECT_FALSE(selected(mark(0, 1)));
    release(162, 23);
}

TEST_F(UITrackLinePanelTest, DragMovesSelectedKeysTogetherAndWritesTheEngine)
{
    loadPulse();
    click(0, 1);              // bulb 0.5 s
    click(1, 1, UI_MOD_CTRL); // glow 1 s
    clearMessages();
    press(xOf(0.5f), 15);
    move(xOf(0.5f) + 75, 15); // a quarter second later
    release(xOf(0.5f) + 75, 15);
    EXPECT_EQ(mark(0, 1)->getTime(), 0.75f);
    EXPECT_EQ(mark(1, 1)->getTime(), 1.25f);
    EXPECT_EQ(messages(), (std::vector<int>{205, 206, 202}));
    const auto* bulb = static_cast<const TrackParameterFloat*>(single(0)->getTrackParameter());
    EXPECT_EQ(bulb->getKey(1).time, 0.75f);
    EXPECT_EQ(bulb->getKey(1).value, 4.0f);
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    EXPECT_EQ(glow->getKey(1).time, 1.25f);
    EXPECT_EQ(glow->getKey(2).time, 2.0f);
    EXPECT_EQ(single(1)->getKeyTimes()[1], 1.25f);
}

TEST_F(UITrackLinePanelTest, DraggedBlockStaysInsideTheRange)
{
    loadPulse();
    UITrackLineKey* bulbKey = mark(0, 3); // 1.5 s
    UITrackLineKey* glowKey = mark(1, 2); // 2 s
    click(0, 3);
    click(1, 2, UI_MOD_CTRL);
    press(xOf(1.5f), 15);
    move(xOf(2.0f), 15); // the glow key is at the end already: nothing can move right
    EXPECT_EQ(bulbKey->getTime(), 1.5f);
    EXPECT_EQ(glowKey->getTime(), 2.0f);
    move(xOf(0.0f), 15);
    EXPECT_EQ(bulbKey->getTime(), 0.0f);
    EXPECT_EQ(glowKey->getTime(), 0.5f); // half a second behind, as before
    EXPECT_EQ(single(1)->getKey(1)->getLineKey(), glowKey); // re-sorted
    release(xOf(0.0f), 15);
    const auto* bulb = static_cast<const TrackParameterFloat*>(single(0)->getTrackParameter());
    EXPECT_EQ(bulb->getKey(0).time, 0.0f);
    EXPECT_EQ(bulb->getKey(1).time, 0.0f);
    EXPECT_EQ(bulb->getKey(4).time, 2.0f);
}

TEST_F(UITrackLinePanelTest, PressDuringAGestureIsSwallowed)
{
    loadPulse();
    press(xOf(0.5f), 15);
    EXPECT_TRUE(press(xOf(1.0f), ROW + 15)); // no release came in between
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(messages(), (std::vector<int>{205, 206}));
    release(xOf(1.0f), ROW + 15);
    click(1, 1);
    EXPECT_TRUE(selected(mark(1, 1)));
}

TEST_F(UITrackLinePanelTest, MoveAfterTheButtonWentUpElsewhereIsIgnored)
{
    loadPulse();
    press(xOf(0.5f), 15);
    SetKeyState(VK_LBUTTON, false); // released outside the panel
    EXPECT_FALSE(move(xOf(0.5f) + 90, 15));
    EXPECT_EQ(mark(0, 1)->getTime(), 0.5f);
    EXPECT_FALSE(canvas()->hasFocus());
    release(xOf(0.5f) + 90, 15);
}

TEST_F(UITrackLinePanelTest, DoubleClickOnASwitchKeyFlipsIt)
{
    loadPulse();
    FParameterToggle* lamp = AppData::get()->getTrack()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->sortKeys();
    lamp->applyKeys();
    redraw();
    clearMessages();
    const UIEventMouse e = event(xOf(0.5f), 2 * ROW + 15, 0);
    EXPECT_TRUE(panel()->onMouseDClick(&e));
    EXPECT_TRUE(static_cast<FKeyToggle*>(lamp->getKey(0))->getValue());
    bool found = false;
    EXPECT_EQ(lamp->engine_parameter()->getTrackValue(0.5f, found), 1);
    EXPECT_EQ(messages(), std::vector<int>{197});
}

TEST_F(UITrackLinePanelTest, SelectedColourKeyIsWhite)
{
    loadPulse();
    const int x = xOf(1.0f), y = ROW + 17;
    EXPECT_TRUE(near(pixel(x, y), vec4(1.0f, 0.8f, 0.4f, 1.0f))) << "the key's own colour";
    click(1, 1);
    EXPECT_TRUE(near(pixel(x, y), vec4(1.0f, 1.0f, 1.0f, 1.0f)));
    const vec4 bulb = pixel(xOf(0.5f), 17); // a float key stays grey until selected
    EXPECT_TRUE(near(bulb, vec4(0.4f, 0.4f, 0.4f, 1.0f)));
}

TEST_F(UITrackLinePanelTest, EmptyStringKeyHasNoLabelAndPointsDown)
{
    loadPulse();
    FParameterStringFile* mesh = AppData::get()->getTrack()->createParameterStringFile("Mesh");
    mesh->createKey(0.5f, jString());
    mesh->createKey(1.5f, jString("meshes/post.mesh"));
    mesh->sortKeys();
    const int top = 2 * ROW;
    const vec4 grey(0.4f, 0.4f, 0.4f, 1.0f);
    const int empty = xOf(0.5f), named = xOf(1.5f);
    // The empty key's mark is wide at the top and narrow at the bottom; the named one the reverse.
    EXPECT_TRUE(near(pixel(empty - 5, top + 9), grey));
    EXPECT_FALSE(near(pixel(empty - 5, top + 20), grey));
    EXPECT_FALSE(near(pixel(named - 5, top + 9), grey));
    EXPECT_TRUE(near(pixel(named - 5, top + 20), grey));
    EXPECT_EQ(canvas()->getTextWidth(mesh->getKey(0)->getLineKey()->getTextId()), 0);
    EXPECT_GT(canvas()->getTextWidth(mesh->getKey(1)->getLineKey()->getTextId()), 0);
    EXPECT_EQ(mesh->getKey(1)->getLineKey()->getText(), "post.mesh");
}

TEST_F(UITrackLinePanelTest, SwitchMarksUseTheLinesLightAndDarkShades)
{
    loadPulse();
    FParameterToggle* lamp = AppData::get()->getTrack()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->createKey(1.5f, true);
    lamp->sortKeys();
    const UITrackLine* line = lamp->getLine();
    EXPECT_TRUE(near(pixel(xOf(0.5f), 2 * ROW + 17), line->getDarkColor()));
    EXPECT_TRUE(near(pixel(xOf(1.5f), 2 * ROW + 17), line->getLightColor()));
    EXPECT_FALSE(near(line->getDarkColor(), line->getLightColor()));
}

TEST_F(UITrackLinePanelTest, LineShadesAreClamped)
{
    UITrackLine line;
    line.setDirty(false);
    line.setColor(vec4(0.9f, 0.1f, 0.5f, 0.3f));
    EXPECT_TRUE(line.isDirty());
    EXPECT_TRUE(near(line.getLightColor(), vec4(1.0f, 0.35f, 0.75f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.225f, 0.025f, 0.125f, 1.0f), 1e-6f));
    EXPECT_EQ(line.getLightColor().w, 1.0f);
    line.setColor(vec4(-1.0f, 5.0f, 0.0f, 1.0f));
    EXPECT_TRUE(near(line.getLightColor(), vec4(0.0f, 1.0f, 0.25f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.0f, 1.0f, 0.0f, 1.0f), 1e-6f));
}

TEST_F(UITrackLinePanelTest, ColourStripFollowsTheAnimatedColour)
{
    loadPulse();
    auto* strip = static_cast<UITrackLineColor*>(single(1)->getLine());
    strip->setStripWidth(0);
    strip->refreshStrip(0.5f, 0.0f);
    EXPECT_EQ(strip->getStripWidth(), 0);
    strip->setStripWidth(5);
    strip->refreshStrip(0.5f, 0.0f);
    ASSERT_EQ(strip->getStripWidth(), 5);
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    for (int i = 0; i < 5; ++i) {
        bool found = false;
        EXPECT_TRUE(near(strip->getStripPixel(i), glow->getTrackValue(0.5f * float(i), found), 1e-6f)) << i;
    }
    EXPECT_TRUE(near(strip->getStripPixel(2), vec4(1.0f, 0.8f, 0.4f, 1.0f), 1e-6f));
    EXPECT_FALSE(near(strip->getStripPixel(1), strip->getStripPixel(2)));
}

TEST_F(UITrackLinePanelTest, LinesAreHeldOnce)
{
    loadPulse();
    panel()->addLine(single(0)->getLine());
    expectLogged("UITrackLinePanel::addLine: curve is already defined");
    EXPECT_EQ(panel()->getLines().size(), 2);
    UITrackLine stranger;
    panel()->removeLine(&stranger);
    expectLogged("UITrackLinePanel::removeLine: can't find curve");
    EXPECT_EQ(panel()->getLines().size(), 2);
}
