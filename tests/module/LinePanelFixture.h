#pragma once

#include "ModuleFixture.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "kit/KeyState.h"
#include "ui/UICanvas.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UIWindow.h"

// 600 pixels between the side margins: the pulse sample's two seconds are 300 pixels each, so a
// key at t seconds sits at x = 300 t + 6 and its mark covers x - 6 to x + 6:
//
//   t:        0      0.5       1      1.5       2
//   x:        6      156      306     456      606
//   row 0     ^       ^        ^       ^        ^     Bulb pulse (float)   y 0 to 21
//   row 1     ^                ^                ^     Glow (colour)        y 22 to 43
inline constexpr int PANEL_WIDTH = 612;
inline constexpr int ROW = 22;

// A key line panel 612 pixels wide in a shown window, driven by synthesized mouse events in the
// canvas's coordinates; the left button's state is recorded as the toolkit records it.
class LinePanelFixture : public ModuleFixture {
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
    // The pulse sample: row 0 "Bulb pulse" (float keys at 0, 0.5, 1, 1.5, 2), row 1 "Glow" (colour
    // keys at 0, 1, 2), over 0 to 2 s.
    void loadPulse()
    {
        ASSERT_TRUE(loadSample("pulse.anim"));
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
    // The pixel of time t on the canvas, by the same mapping as the time bar.
    int xOf(float t) const
    {
        const AppData* hub = AppData::get();
        const float begin = hub->getBeginTime(), end = hub->getEndTime();
        return int((t - begin) * float(canvas()->getWidth() - 12) / (end - begin) + 6.0f);
    }
    UITrackLineKey* mark(int row, int key) const { return single(row)->getKey(key)->getLineKey(); }

    bool press(int x, int y, int modifiers = 0)
    {
        SetKeyState(VK_LBUTTON, true);
        const UIEventMouse e = mouseAt(canvas(), x, y, UI_MOUSE_LEFT, 1 << UI_MOUSE_LEFT, modifiers);
        return m_panel->onMouseDown(&e);
    }
    bool move(int x, int y)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y, UI_MOUSE_NONE);
        return m_panel->onMouseMove(&e);
    }
    void release(int x, int y)
    {
        SetKeyState(VK_LBUTTON, false);
        const UIEventMouse e = mouseAt(canvas(), x, y, UI_MOUSE_LEFT, 0);
        m_panel->onMouseUp(&e);
    }
    bool dclick(int x, int y)
    {
        const UIEventMouse e = mouseAt(canvas(), x, y);
        return m_panel->onMouseDClick(&e);
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
        return ModuleFixture::pixel(canvas(), x, y);
    }

private:
    UIWindow* m_window = nullptr;
    UITrackLinePanel* m_panel = nullptr;
};
