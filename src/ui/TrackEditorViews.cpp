// How the Track Editor window keeps its views in step: the time bars follow the play range and the
// current time, and a selection made in one view (rows, key lines, curves) is pushed to the others
// and to the document's selected parameters.
#include "ui/TrackEditor.h"

#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "msg/MsgMngr.h"
#include "msg/UiMsg.h"
#include "ui/UICanvas.h"
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

constexpr int MSG_RANGE_CHANGED = 199;
constexpr int MSG_TIME_CHANGED = 201;
constexpr int MSG_LINE_SELECTION = 206;
constexpr int MSG_ROW_SELECTION = 207;

template <class T>
jSet<T*> toSet(const jVector<T*>& items)
{
    jSet<T*> set;
    for (T* item : items)
        set.insert(item);
    return set;
}

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

UIElement* TrackEditor::findView(const char* name) const
{
    const jString view(name);
    if (view == "lines" && m_lines)
        return m_lines->getCanvas();
    if (view == "rows" && m_rows)
        return m_rows->getCanvas();
    if (view == "timebar" && m_timebar_top)
        return m_timebar_top->getCanvas();
    return nullptr;
}

void TrackEditor::show_document()
{
    for (FParameterSingle* parameter : AppData::get()->getTrack()->getSingleParameters()) {
        if (parameter->getRow() && !parameter->getRow()->getPanel())
            m_rows->addRow(parameter->getRow());
        if (parameter->getLine() && !m_lines->hasLine(parameter->getLine()))
            m_lines->addLine(parameter->getLine());
        if (parameter->getCurve() && parameter->getTrackParameter()->isCurveShown())
            m_curves->showCurve(parameter->getCurve());
    }
}

void TrackEditor::on_timebar_range_changed(const UIEventChanged*, UIElement* sender)
{
    const auto* bar = static_cast<const UITimeBar*>(sender);
    AppData::get()->setBeginTime(bar->getBegin());
    AppData::get()->setEndTime(bar->getEnd());
    MsgMngr::get()->notifyHelper(MSG_RANGE_CHANGED);
}

void TrackEditor::on_timebar_cur_time_changed(const UIEventChanged*, UIElement* sender)
{
    AppData::get()->setTime(static_cast<const UITimeBar*>(sender)->getTime());
    MsgMngr::get()->notifyHelper(MSG_TIME_CHANGED);
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
    set_window_modified(true);
}

void TrackEditor::on_key_made(UiMsg* msg)
{
    auto* withKey = dynamic_cast<UiMsgPTR*>(msg);
    auto* key = withKey ? static_cast<FKey*>(withKey->getPtr()) : nullptr;
    if (key && key->getParameter()) {
        ViewLists lists;
        lists.addKey(key);
        m_lines->setCurrentLine(lists.lines.empty() ? nullptr : lists.lines[0]);
        m_lines->setCurrentKey(lists.lineKeys.empty() ? nullptr : lists.lineKeys[0]);
        m_lines->setSelectedKeys(lists.lineKeys);
        m_lines->setSelectedLines(lists.lines);
        m_rows->setSelected(toSet(lists.rows));
        m_curves->setSelectedKeys(lists.curveKeys);
        m_curves->setSelectedCurves(lists.curves);
        AppData::get()->getTrack()->setSelectedParameters(lists.lineParameters());
        key->getParameter()->sortKeys();
    }
    set_window_modified(true);
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
    m_rows->setSelected(toSet(lists.rows));
}

void TrackEditor::on_selection_changed(int id)
{
    jSet<FParameterSingle*> parameters;
    if (id == MSG_LINE_SELECTION) {
        for (UITrackLine* line : m_lines->getSelectedLines())
            parameters.insert(line->getData());
    } else if (id == MSG_ROW_SELECTION) {
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
    m_rows->setSelected(toSet(rows));
    m_curves->setSelectedCurves(curves);
}
