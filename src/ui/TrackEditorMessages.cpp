// How the Track Editor window answers host messages: every change message marks the document
// modified and retitles the window; range and time messages move the time bars, time messages play
// the track at the current time, and selection messages bring the views into step.
#include "ui/TrackEditor.h"

#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "msg/UiMsg.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"

namespace {

float clampTo(float v, float lo, float hi)
{
    return v < lo ? lo : (v < hi ? v : hi);
}

} // namespace

void TrackEditor::processMsg(UiMsg* msg)
{
    switch (msg->getID()) {
    case 193: case 194: case 195: case 196: case 200:
        set_window_modified(true);
        break;
    case 197: case 202: case 204:
        on_keys_changed();
        break;
    case 198:
        on_track_limits_changed();
        break;
    case 199:
        on_range_changed();
        break;
    case 201:
        on_time_changed();
        break;
    case 203:
        on_key_made(msg);
        break;
    case 205:
        on_selection_lists();
        break;
    case 206: case 207: case 208:
        on_selection_changed(msg->getID());
        break;
    case 209:
        set_window_modified(false);
        break;
    case 210:
        on_track_loaded();
        break;
    default: // 211 is the host's
        break;
    }
}

void TrackEditor::on_track_limits_changed()
{
    AppData* data = AppData::get();
    Track* track = data->getTrack()->getEngineTrack();
    float lo = track->getBeginTime();
    float hi = track->getEndTime();
    data->setBeginTime(clampTo(data->getBeginTime(), lo, hi));
    data->setEndTime(clampTo(data->getEndTime(), lo, hi));
    data->setTime(clampTo(data->getTime(), lo, hi));
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom}) {
        bar->setMin(lo);
        bar->setMax(hi);
        bar->setTime(clampTo(data->getTime(), data->getBeginTime(), data->getEndTime()));
    }
    m_lines->setDirty();
    MsgMngr::get()->notifyHelper(199);
    set_window_modified(true);
}

void TrackEditor::on_track_loaded()
{
    Track* track = AppData::get()->getTrack()->getEngineTrack();
    const float lo = track->getBeginTime(), hi = track->getEndTime();
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom}) {
        bar->setMin(lo);
        bar->setMax(hi);
        bar->setBegin(clampTo(lo, lo, hi));
        bar->setEnd(clampTo(hi, lo, hi));
        bar->setTime(AppData::get()->getTime());
    }
    m_lines->setDirty();
    m_btn_loop->setChecked(track && track->isLoop());
    m_play_bar->updateButtons();
    set_window_modified(false);
}
