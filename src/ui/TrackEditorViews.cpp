// The Track Editor window's views: finding them by name, showing the document's rows, lines and
// curves in them, and posting what the user changed on the time bars.
#include "ui/TrackEditor.h"

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "msg/MsgMngr.h"
#include "ui/TimeUnits.h"
#include "ui/UICanvas.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

UIElement* TrackEditor::findView(const char* name) const
{
    const jString view(name);
    if (view == "lines" && m_lines)
        return m_lines->getCanvas();
    if (view == "rows" && m_rows)
        return m_rows->getCanvas();
    if (view == "timebar" && m_timebar_top)
        return m_timebar_top->getCanvas();
    if (view == "curves" && m_curves)
        return m_curves->getCanvas();
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
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
}

void TrackEditor::on_timebar_cur_time_changed(const UIEventChanged*, UIElement* sender)
{
    // The bar keeps its own rules; with snapping the play head then lands on the frame.
    AppData::get()->setTime(TimeUnits::landing(static_cast<const UITimeBar*>(sender)->getTime()));
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

