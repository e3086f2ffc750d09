// The keys and pointer gestures animators reach for without looking: Space plays and stops, Home
// and End go to the play range's ends, Left and Right step the play head a frame, Alt with them
// nudges the selected keys, Ctrl+A selects every key of the shown rows, Escape drops the selection;
// Ctrl+Y redoes as Ctrl+Shift+Z does; Ctrl+C, Ctrl+X, Ctrl+V and Ctrl+D copy, cut, paste and
// duplicate keys (TrackEditorClipboard.cpp);
// Ctrl+wheel zooms the shown range about the pointer over the key lines and time bars, Shift+wheel
// and a middle drag pan it, Shift+Home shows the whole track and F frames the selected keys. Zoom
// and pan move the range marks, so the key lines keep their mapping of the range.
#include "ui/TrackEditor.h"

#include <algorithm>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "ui/TimeRangeView.h"
#include "ui/TimeUnits.h"
#include "ui/UICanvas.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLinePanel.h"

namespace {

// A step without a frame rate: the time bar's own, 1 % of the track.
constexpr float TRACK_STEP = 0.01f;
// A Shift+wheel notch pans by this share of the shown range.
constexpr float NOTCH_PAN = 0.1f;

const Track* engineTrack()
{
    return AppData::get()->getTrack()->getEngineTrack();
}

TimeRangeView shownRange()
{
    const AppData* data = AppData::get();
    return TimeRangeView(data->getBeginTime(), data->getEndTime(), engineTrack()->getBeginTime(),
                         engineTrack()->getEndTime());
}

bool middleHeld(const UIEventMouse* e)
{
    return (e->buttons & (1 << UI_MOUSE_MIDDLE)) != 0;
}

} // namespace

float TrackEditor::frame_step() const
{
    const float fps = AppData::get()->getFrameRate();
    return fps > 0.0f ? 1.0f / fps : (engineTrack()->getEndTime() - engineTrack()->getBeginTime()) * TRACK_STEP;
}

bool TrackEditor::onKeyPress(const UIEventKey* e)
{
    if (e->key == UI_KEY_DELETE) {
        delete_key();
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_DELETED);
    }
    // A focused time bar steps its play head by its own rule first.
    return UIWindow::onKeyPress(e) || on_shortcut(e);
}

bool TrackEditor::on_shortcut(const UIEventKey* e)
{
    const bool plain = e->modifiers == 0;
    if (e->key == UI_KEY_SPACE && plain) {
        m_btn_play->setChecked(!m_btn_play->isChecked());
        cb_play(nullptr, nullptr);
    } else if (e->key == UI_KEY_HOME && e->isShift()) {
        cb_frame_all(nullptr, nullptr);
    } else if (e->key == UI_KEY_HOME && plain) {
        cb_begin(nullptr, nullptr);
    } else if (e->key == UI_KEY_END && plain) {
        cb_end(nullptr, nullptr);
    } else if ((e->key == UI_KEY_LEFT || e->key == UI_KEY_RIGHT) && (plain || e->isAlt())) {
        const int direction = e->key == UI_KEY_LEFT ? -1 : 1;
        if (e->isAlt())
            nudge_selected_keys(float(direction) * frame_step());
        else
            step_time(direction);
    } else if (e->key == 'A' && e->isCtrl()) {
        select_all_keys();
    } else if (e->key == 'Y' && e->modifiers == UI_MOD_CTRL) {
        redo();
    } else if (e->key == 'C' && e->modifiers == UI_MOD_CTRL) {
        copy_keys();
    } else if (e->key == 'X' && e->modifiers == UI_MOD_CTRL) {
        cut_keys();
    } else if (e->key == 'V' && e->modifiers == UI_MOD_CTRL) {
        paste_clipboard();
    } else if (e->key == 'D' && e->modifiers == UI_MOD_CTRL) {
        duplicate_keys();
    } else if (e->key == 'F' && plain) {
        frame_selected_keys();
    } else if (e->key == UI_KEY_ESCAPE && plain) {
        AppData::get()->getTrack()->clearMarks();
        MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    } else {
        return false;
    }
    return true;
}

void TrackEditor::cb_frame_all(const UIEventMouse*, UIElement*)
{
    if (AppData::get()->isEmpty())
        return;
    TimeRangeView view = shownRange();
    view.frameAll();
    show_range(view);
}

void TrackEditor::cb_snap(const UIEventMouse*, UIElement*)
{
    AppData* data = AppData::get();
    if (data->isEmpty()) {
        m_btn_snap->setChecked(false);
        return;
    }
    data->setSnapping(m_btn_snap->isChecked());
    MsgMngr::get()->notifyHelper(TRACK_MSG_OPTION_CHANGED);
}

// With a frame rate the play head lands on whole frames, whatever time it left from.
void TrackEditor::step_time(int direction)
{
    AppData* data = AppData::get();
    if (data->isEmpty())
        return;
    const float fps = data->getFrameRate();
    data->setTime(TimeUnits::toFrame(data->getTime() + float(direction) * frame_step(), fps));
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

void TrackEditor::select_all_keys()
{
    FTrack* document = AppData::get()->getTrack();
    document->clearMarks();
    for (UITrackLine* line : m_lines->getLines())
        for (int i = 0; i < line->getData()->getNumKeys(); ++i)
            FTrack::mark(line->getData()->getKey(i));
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
}

void TrackEditor::frame_selected_keys()
{
    bool any = false;
    float from = 0.0f, to = 0.0f;
    for (FParameterSingle* parameter : AppData::get()->getTrack()->getSingleParameters()) {
        for (FKey* key : parameter->getKeySet()) {
            from = any ? std::min(from, key->getTime()) : key->getTime();
            to = any ? std::max(to, key->getTime()) : key->getTime();
            any = true;
        }
    }
    if (!any)
        return;
    TimeRangeView view = shownRange();
    view.frame(from, to);
    show_range(view);
}

// The range marks move as if dragged: the data hub takes the range, the play head is pulled in.
void TrackEditor::show_range(const TimeRangeView& view)
{
    AppData* data = AppData::get();
    data->setBeginTime(view.begin());
    data->setEndTime(view.end());
    data->setTime(data->getTime());
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

// The time under screen point (x, y) on the key lines or a time bar, each by its own mapping;
// false when the point is on neither.
bool TrackEditor::time_under(int x, int y, float& t) const
{
    UICanvas* lines = m_lines->getCanvas();
    if (lines->isHit(x, y)) {
        lines->screenToLocal(x, y);
        t = UITrackLinePanel::pixelToTime(x, AppData::get()->getBeginTime(), AppData::get()->getEndTime(),
                                          lines->getWidth());
        return true;
    }
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom}) {
        if (bar->getCanvas()->isHit(x, y)) {
            bar->getCanvas()->screenToLocal(x, y);
            t = UITrackLinePanel::pixelToTime(x, bar->getMin(), bar->getMax(), int(bar->getCanvasWidth()));
            return true;
        }
    }
    return false;
}

bool TrackEditor::onMouseWheel(const UIEventMouse* e)
{
    float pivot = 0.0f;
    const bool ctrl = (e->modifiers & UI_MOD_CTRL) != 0, shift = (e->modifiers & UI_MOD_SHIFT) != 0;
    if (e->wheel == 0 || ctrl == shift || AppData::get()->isEmpty() || !time_under(e->x, e->y, pivot))
        return UIWindow::onMouseWheel(e);
    TimeRangeView view = shownRange();
    if (ctrl)
        view.zoom(pivot, e->wheel);
    else
        view.pan(-float(e->wheel) * (view.end() - view.begin()) * NOTCH_PAN);
    show_range(view);
    return true;
}

bool TrackEditor::onMouseDown(const UIEventMouse* e)
{
    m_gesture = m_gesture || e->button == UI_MOUSE_LEFT;
    if (e->button == UI_MOUSE_MIDDLE && !AppData::get()->isEmpty() && m_lines->getCanvas()->isHit(e->x, e->y)) {
        m_pan_x = e->x;
        m_panning = true;
        return true;
    }
    return UIWindow::onMouseDown(e);
}

// The range follows the pointer: the time grabbed stays under it.
bool TrackEditor::onMouseMove(const UIEventMouse* e)
{
    if (!m_panning || !middleHeld(e))
        return UIWindow::onMouseMove(e);
    const AppData* data = AppData::get();
    const float here = UITrackLinePanel::pixelToTime(e->x, data->getBeginTime(), data->getEndTime(),
                                                     m_lines->getCanvas()->getWidth());
    const float there = UITrackLinePanel::pixelToTime(m_pan_x, data->getBeginTime(), data->getEndTime(),
                                                      m_lines->getCanvas()->getWidth());
    m_pan_x = e->x;
    TimeRangeView view = shownRange();
    view.pan(there - here);
    show_range(view);
    return true;
}

bool TrackEditor::onMouseUp(const UIEventMouse* e)
{
    if (e->button == UI_MOUSE_MIDDLE)
        m_panning = false;
    const bool handled = UIWindow::onMouseUp(e);
    if (e->button == UI_MOUSE_LEFT) {
        m_gesture = false;
        commit_edit(); // the whole drag is one step
    }
    return handled;
}
