// How the Track Editor window answers host messages, every one of them here: every change message
// marks the document modified and retitles the window; range and time messages move the time bars,
// time messages play the track at the current time, and selection messages push a selection made in
// one view (rows, key lines, curves) to the others and to the document's selected parameters.
#include "ui/TrackEditor.h"

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "msg/UiMsg.h"
#include "ui/SettingsPanel.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {

float clampTo(float v, float lo, float hi)
{
    return v < lo ? lo : (v < hi ? v : hi);
}

// The lists a selection is pushed to the views with.
struct ViewLists {
    jVector<UITrackRow*> rows;
    jVector<UITrackLine*> lines;
    jVector<UITrackLineKey*> lineKeys;
    jVector<UITrackCurve*> curves;
    jVector<UITrackCurveKey*> curveKeys;

    void addKey(FKey* key)
    {
        if (key->getLineKey())
            lineKeys.append(key->getLineKey());
        if (key->getCurveKey())
            curveKeys.append(key->getCurveKey());
        key->getParameter()->collectUI(rows, lines, curves);
    }

    jSet<FParameterSingle*> lineParameters() const
    {
        jSet<FParameterSingle*> parameters;
        for (UITrackLine* line : lines)
            parameters.insert(line->getData());
        return parameters;
    }
};

} // namespace

void TrackEditor::processMsg(UiMsg* msg)
{
    switch (msg->getID()) {
    case TRACK_MSG_PARAMETER_NEW:
    case TRACK_MSG_PARAMETER_DELETED:
    case TRACK_MSG_OPTION_CHANGED:
    case TRACK_MSG_BINDING_CHANGED:
    case TRACK_MSG_PARAMETER_CHANGED:
        m_node_panel_stale = true;
        note_edit(msg->getID());
        break;
    case TRACK_MSG_KEYS_CHANGED:
    case TRACK_MSG_KEYS_MOVED:
    case TRACK_MSG_KEYS_DELETED:
        on_keys_changed();
        note_edit(msg->getID());
        break;
    case TRACK_MSG_LIMITS_CHANGED:
        on_track_limits_changed();
        break;
    case TRACK_MSG_RANGE_CHANGED:
        on_range_changed();
        break;
    case TRACK_MSG_TIME_CHANGED:
        on_time_changed();
        break;
    case TRACK_MSG_KEY_MADE:
        on_key_made(msg);
        break;
    case TRACK_MSG_SELECTION_LISTS:
        on_selection_lists();
        break;
    case TRACK_MSG_LINE_SELECTION:
    case TRACK_MSG_ROW_SELECTION:
    case TRACK_MSG_CURVE_SELECTION:
        on_selection_changed(msg->getID());
        break;
    case TRACK_MSG_SAVED:
        mark_saved();
        break;
    case TRACK_MSG_LOADED:
        m_node_panel_stale = true;
        on_track_loaded();
        refresh_settings();
        break;
    default: // TRACK_MSG_CLEARED is the host's
        m_node_panel_stale = true;
        refresh_settings();
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
    m_curves->refit();
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    note_edit(TRACK_MSG_LIMITS_CHANGED);
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
    m_curves->refit();
    show_track_switches();
    reset_history(true);
}

void TrackEditor::show_track_switches()
{
    const Track* track = AppData::get()->getTrack()->getEngineTrack();
    m_btn_loop->setChecked(track && track->isLoop());
    m_btn_snap->setChecked(track && track->isSnapping());
    m_play_bar->updateButtons();
}

// An open settings window shows the document's times: a load or a clear replaced them.
void TrackEditor::refresh_settings()
{
    if (m_settings_panel)
        m_settings_panel->refresh();
}

void TrackEditor::on_range_changed()
{
    const AppData* data = AppData::get();
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom}) {
        bar->setBegin(clampTo(data->getBeginTime(), bar->getMin(), bar->getMax()));
        bar->setEnd(clampTo(data->getEndTime(), bar->getMin(), bar->getMax()));
    }
    m_lines->setDirty();
    m_curves->setDirty();
}

void TrackEditor::on_time_changed()
{
    const float t = AppData::get()->getTime();
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom})
        bar->setTime(clampTo(t, bar->getBegin(), bar->getEnd()));
    if (Track* track = AppData::get()->getTrack()->getEngineTrack())
        track->set(t);
}

// The editor keys are what the user edits; the engine keys were rewritten from them already, so
// refreshing means re-sorting them and drawing again.
void TrackEditor::on_keys_changed()
{
    for (FParameterSingle* parameter : AppData::get()->getTrack()->getSingleParameters()) {
        parameter->sortKeys();
        parameter->markDirty();
    }
    m_lines->setDirty();
    m_curves->setDirty();
}

void TrackEditor::on_key_made(UiMsg* msg)
{
    auto* withKey = dynamic_cast<UiMsgPTR*>(msg);
    auto* key = withKey ? static_cast<FKey*>(withKey->getPtr()) : nullptr;
    if (key && key->getParameter()) {
        // The key commands act on the key sets: they must hold what the views show selected.
        AppData::get()->getTrack()->clearMarks();
        FTrack::mark(key);
        ViewLists lists;
        lists.addKey(key);
        m_lines->setCurrentLine(lists.lines.empty() ? nullptr : lists.lines[0]);
        m_lines->setCurrentKey(lists.lineKeys.empty() ? nullptr : lists.lineKeys[0]);
        m_lines->setSelectedKeys(lists.lineKeys);
        m_lines->setSelectedLines(lists.lines);
        m_rows->setSelected(jSet<UITrackRow*>::of(lists.rows));
        m_curves->setSelectedKeys(lists.curveKeys);
        m_curves->setSelectedCurves(lists.curves);
        AppData::get()->getTrack()->setSelectedParameters(lists.lineParameters());
        key->getParameter()->sortKeys();
    }
    note_edit(TRACK_MSG_KEY_MADE);
}

void TrackEditor::on_selection_lists()
{
    FTrack* document = AppData::get()->getTrack();
    ViewLists lists;
    for (FParameterSingle* parameter : document->getSingleParameters())
        for (FKey* key : parameter->getKeySet())
            lists.addKey(key);
    document->setSelectedParameters(lists.lineParameters());
    m_lines->setSelectedLines(lists.lines);
    m_lines->setSelectedKeys(lists.lineKeys);
    m_curves->setSelectedKeys(lists.curveKeys);
    m_curves->setSelectedCurves(lists.curves);
    m_rows->setSelected(jSet<UITrackRow*>::of(lists.rows));
}

void TrackEditor::on_selection_changed(int id)
{
    jSet<FParameterSingle*> parameters;
    if (id == TRACK_MSG_LINE_SELECTION) {
        for (UITrackLine* line : m_lines->getSelectedLines())
            parameters.insert(line->getData());
    } else if (id == TRACK_MSG_ROW_SELECTION) {
        for (UITrackRow* row : m_rows->getSelected())
            parameters.insert(static_cast<FParameterSingle*>(row->getData()));
    } else {
        for (UITrackCurve* curve : m_curves->getSelectedCurves())
            parameters.insert(curve->getData());
    }
    AppData::get()->getTrack()->setSelectedParameters(parameters);
    update_select_track();
}

void TrackEditor::update_select_track()
{
    jVector<UITrackRow*> rows;
    jVector<UITrackLine*> lines;
    jVector<UITrackCurve*> curves;
    for (FParameterSingle* parameter : AppData::get()->getTrack()->getSelectedParameters())
        parameter->collectUI(rows, lines, curves);
    if (lines.empty() && rows.empty())
        return;
    m_lines->setSelectedLines(lines);
    m_lines->setCurrentLine(lines.empty() ? nullptr : lines[0]);
    m_rows->setCurrent(rows.empty() ? nullptr : rows[0]);
    m_rows->setSelected(jSet<UITrackRow*>::of(rows));
    m_curves->setSelectedCurves(curves);
}
