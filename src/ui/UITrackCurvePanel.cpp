#include "ui/UITrackCurvePanel.h"

#include <algorithm>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "kit/jAllocator.h"
#include "msg/MsgMngr.h"
#include "ui/UICanvas.h"
#include "ui/UIRubberBand.h"
#include "ui/UIScrollBox.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveGrid.h"
#include "ui/UITrackCurveKey.h"

namespace {

constexpr const char* FILE_TAG = "src/ui/UITrackCurvePanel";
UITrackCurvePanel* g_instance = nullptr;

const vec4 BACKGROUND{0.12f, 0.12f, 0.12f, 1.0f};
// Draw orders: the grid beneath the curves, the time labels over them, the rubber-band box above
// everything.
constexpr int ORDER_RULER = 1 << 19;
constexpr int ORDER_BOX = 1 << 20;
// The ruler's ticks and labels take this many pixels above the bottom edge.
constexpr int RULER_HEIGHT = 15;

} // namespace

UITrackCurvePanel::UITrackCurvePanel(UIRoot* root)
    : UIVLayout(root, 0)
{
    setBackgroundColor(BACKGROUND);
    setMaskBackground(true);
    m_scroll = jNew<UIScrollBox>(FILE_TAG, __LINE__, "UITrackCurvePanel::UITrackCurvePanel", root);
    addChild(m_scroll, UI_EXPAND_BOTH, -1);
    m_canvas = jNew<UICanvas>(FILE_TAG, __LINE__, "UITrackCurvePanel::UITrackCurvePanel", root);
    m_scroll->addChild(m_canvas, UI_EXPAND_BOTH, -1);
    m_grid = jNew<UITrackCurveGrid>(FILE_TAG, __LINE__, "UITrackCurvePanel::UITrackCurvePanel");
    m_grid->attach(m_canvas);
    m_ruler.attach(m_canvas, ORDER_RULER);
    m_box = jNew<UIRubberBand>(FILE_TAG, __LINE__, "UITrackCurvePanel::UITrackCurvePanel", m_canvas, ORDER_BOX);
    g_instance = this;
}

UITrackCurvePanel::~UITrackCurvePanel()
{
    release();
    if (g_instance == this)
        g_instance = nullptr;
}

UITrackCurvePanel* UITrackCurvePanel::get()
{
    return g_instance;
}

void UITrackCurvePanel::release()
{
    for (UITrackCurve* curve : m_shown)
        curve->clearShapes();
    m_shown.clear();
    m_selected_curves.clear();
    m_selected_keys.clear();
    m_saved_keys.clear();
    m_pressed = nullptr;
    jDelete(m_grid, FILE_TAG, __LINE__, "UITrackCurvePanel::release");
    m_grid = nullptr;
    m_ruler.clearShapes();
    jDelete(m_box, FILE_TAG, __LINE__, "UITrackCurvePanel::release");
    m_box = nullptr;
    UIVLayout::release();
    m_scroll = nullptr;
    m_canvas = nullptr;
}

void UITrackCurvePanel::showCurve(UITrackCurve* curve)
{
    if (!m_shown.contains(curve)) {
        m_shown.append(curve);
        if (m_canvas)
            curve->attach(m_canvas);
    }
    curve->setDirty(true);
}

void UITrackCurvePanel::hideCurve(UITrackCurve* curve)
{
    if (!m_shown.removeValue(curve))
        return;
    curve->clearShapes();
    m_selected_curves.erase(curve);
    for (UITrackCurveKey* key : curve->getKeys())
        forgetKey(key);
}

bool UITrackCurvePanel::isShown(const UITrackCurve* curve) const
{
    return m_shown.contains(const_cast<UITrackCurve*>(curve));
}

void UITrackCurvePanel::setSelectedCurves(const jVector<UITrackCurve*>& curves)
{
    m_selected_curves = jSet<UITrackCurve*>::of(curves);
    setDirty();
}

void UITrackCurvePanel::setSelectedKeys(const jVector<UITrackCurveKey*>& keys)
{
    m_selected_keys = jSet<UITrackCurveKey*>::of(keys);
    setDirty();
}

void UITrackCurvePanel::setDirty()
{
    m_dirty = true;
}

void UITrackCurvePanel::forgetCurve(UITrackCurve* curve)
{
    hideCurve(curve);
}

void UITrackCurvePanel::forgetKey(UITrackCurveKey* key)
{
    m_selected_keys.erase(key);
    m_saved_keys.erase(key);
    if (m_pressed == key)
        m_pressed = nullptr;
    m_dirty = true;
}

void UITrackCurvePanel::update(float dt)
{
    if (m_canvas && (m_canvas->getWidth() != m_width || m_canvas->getHeight() != m_height)) {
        m_width = m_canvas->getWidth();
        m_height = m_canvas->getHeight();
        m_mapping.setSize(m_width, m_height);
        m_dirty = true;
    }
    if (m_canvas)
        render();
    UIVLayout::update(dt);
}

// Draws the grid and every curve again when the view, the time, a curve or the selection changed;
// otherwise only the curves that say they changed.
void UITrackCurvePanel::render()
{
    const AppData* hub = AppData::get();
    const bool moved = m_mapping.getBeginTime() != double(hub->getBeginTime()) ||
                       m_mapping.getEndTime() != double(hub->getEndTime());
    if (moved)
        m_mapping.setTimeRange(hub->getBeginTime(), hub->getEndTime());
    const bool all = m_dirty || moved;
    if (all || m_grid_time != hub->getTime()) {
        m_grid_time = hub->getTime();
        m_grid->render(m_mapping, m_grid_time);
    }
    // Unchanged, the ruler returns at once; a new frame rate changes it without marking the view.
    m_ruler.render(hub->getBeginTime(), hub->getEndTime(), m_mapping.getWidth(), m_mapping.getHeight() - RULER_HEIGHT,
                   hub->getFrameRate());
    int x0 = 0, y0 = 0, w = 0, h = 0;
    m_scroll->getVisibleArea(x0, y0, w, h);
    for (UITrackCurve* curve : m_shown) {
        if (!all && !curve->isDirty())
            continue;
        curve->render(m_mapping, x0, x0 + w, m_selected_keys);
        curve->setDirty(false);
    }
    m_dirty = false;
}

// The parameters keep which of their keys are marked: the window rebuilds every view's selection
// from them when it hears 205, then takes the curves' rows as the selected rows on 208.
void UITrackCurvePanel::send_selection()
{
    AppData::get()->getTrack()->clearMarks();
    for (UITrackCurveKey* point : m_selected_keys)
        FTrack::mark(point->getKey());
    m_selected_curves.clear();
    for (UITrackCurveKey* point : m_selected_keys)
        m_selected_curves.insert(point->getCurve());
    m_dirty = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    MsgMngr::get()->notifyHelper(TRACK_MSG_CURVE_SELECTION);
}

bool UITrackCurvePanel::value_bounds(bool selectedOnly, double& low, double& high, float& begin, float& end) const
{
    bool any = false;
    auto take = [&](UITrackCurveKey* point) {
        const double v = point->getValue();
        const float t = point->getTime();
        low = any ? std::min(low, v) : v;
        high = any ? std::max(high, v) : v;
        begin = any ? std::min(begin, t) : t;
        end = any ? std::max(end, t) : t;
        any = true;
    };
    for (UITrackCurve* curve : m_shown)
        for (UITrackCurveKey* point : curve->getKeys())
            if (!selectedOnly || m_selected_keys.contains(point))
                take(point);
    return any;
}

void UITrackCurvePanel::arrange(bool time, bool value)
{
    double low = 0.0, high = 0.0;
    float begin = 0.0f, end = 0.0f;
    if (!value_bounds(!m_selected_keys.empty(), low, high, begin, end))
        return;
    if (value)
        m_mapping.frameValues(low, high);
    if (time) {
        AppData* hub = AppData::get();
        const Track* track = hub->getTrack()->getEngineTrack();
        const float margin = std::max(end - begin, track->getEndTime() - track->getBeginTime()) * 0.02f;
        hub->setBeginTime(std::max(track->getBeginTime(), begin - margin));
        hub->setEndTime(std::min(track->getEndTime(), std::max(end + margin, begin - margin + 1e-3f)));
        MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    }
    m_dirty = true;
}

void UITrackCurvePanel::refit()
{
    double low = 0.0, high = 0.0;
    float begin = 0.0f, end = 0.0f;
    if (value_bounds(false, low, high, begin, end))
        m_mapping.frameValues(low, high);
    m_dirty = true;
}
