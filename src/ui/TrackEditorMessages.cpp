// How the Track Editor window answers host messages: every change message marks the document
// modified and retitles the window; time messages play the track at the current time.
#include "ui/TrackEditor.h"

#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "msg/UiMsg.h"

namespace {

float clampTo(float v, float lo, float hi)
{
    return v < lo ? lo : (v < hi ? v : hi);
}

} // namespace

void TrackEditor::processMsg(UiMsg* msg)
{
    FTrack* document = AppData::get()->getTrack();
    Track* track = document ? document->getEngineTrack() : nullptr;
    switch (msg->getID()) {
    case 193: case 194: case 195: case 196: case 200:
    case 197: case 202: case 204: case 203:
        set_window_modified(true);
        break;
    case 198:
        on_track_limits_changed();
        break;
    case 201:
        if (track)
            track->set(AppData::get()->getTime());
        break;
    case 209:
        set_window_modified(false);
        break;
    case 210:
        on_track_loaded();
        break;
    default: // 199 moves the time bars' ranges, 205-208 the views' selections; 211 is the host's
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
    MsgMngr::get()->notifyHelper(199);
    set_window_modified(true);
}

void TrackEditor::on_track_loaded()
{
    Track* track = AppData::get()->getTrack()->getEngineTrack();
    m_btn_loop->setChecked(track && track->isLoop());
    m_play_bar->updateButtons();
    set_window_modified(false);
}
