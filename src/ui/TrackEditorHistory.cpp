// Undo and redo. Every edit announces itself with a change message; the window then records the
// document's saved bytes as one step of the document's history, from the state of the last step to
// the new one. A gesture of the left button (a drag that moves keys over many frames) is one step:
// the change messages during it only note that a step is due, and the release records it. The
// title's modified mark follows the history's clean state.
#include "ui/TrackEditor.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FDocumentEdit.h"
#include "data/FTrack.h"
#include "editor/Locale.h"
#include "editor/ToolButton.h"
#include "editor/UndoStack.h"
#include "kit/jAllocator.h"
#include "kit/jTString.h"
#include "msg/MsgMngr.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"

namespace {

// The translation key of the step each change message records.
struct StepName {
    int message;
    const char* key;
};

constexpr StepName STEP_NAMES[] = {
    {TRACK_MSG_PARAMETER_NEW, "step_add_parameter"},
    {TRACK_MSG_PARAMETER_DELETED, "step_delete_parameters"},
    {TRACK_MSG_OPTION_CHANGED, "step_change_option"},
    {TRACK_MSG_BINDING_CHANGED, "step_bind_parameter"},
    {TRACK_MSG_KEYS_CHANGED, "step_edit_keys"},
    {TRACK_MSG_LIMITS_CHANGED, "step_change_limits"},
    {TRACK_MSG_PARAMETER_CHANGED, "step_change_switches"},
    {TRACK_MSG_KEYS_MOVED, "step_move_keys"},
    {TRACK_MSG_KEY_MADE, "step_make_key"},
    {TRACK_MSG_KEYS_DELETED, "step_delete_keys"},
};

const char* stepName(int message)
{
    for (const StepName& step : STEP_NAMES)
        if (step.message == message)
            return step.key;
    return "step_edit";
}

// Each step keeps the document's whole text: the history keeps as many steps as fit in about a
// gigabyte, within these bounds, and drops the oldest beyond them.
constexpr size_t HISTORY_BYTES = size_t(1) << 30;
constexpr size_t MOST_STEPS = 200;
constexpr size_t FEWEST_STEPS = 10;

UndoStack& history()
{
    return AppData::get()->getHistory();
}

// "Undo Move keys", or the bare action when there is no step.
jString stepTip(const char* action, const jString& step)
{
    jTString<256> tip;
    tip.append(tr(action));
    if (step.nempty()) {
        tip.append(" ");
        tip.append(step.c_str());
    }
    return jString(tip.c_str());
}

} // namespace

void TrackEditor::note_edit(int message)
{
    if (m_restoring)
        return;
    if (!m_edit_pending)
        m_edit_name = stepName(message);
    m_edit_pending = true;
    if (!m_gesture)
        commit_edit();
}

void TrackEditor::commit_edit()
{
    if (!m_edit_pending)
        return;
    m_edit_pending = false;
    auto now = std::make_shared<std::string>();
    if (!AppData::get()->snapshot(*now) || *now == *m_state)
        return; // a change message that changed nothing the file keeps is no step
    history().push(jNew<FDocumentEdit>("src/ui/TrackEditor", __LINE__, "TrackEditor::commit_edit",
                                       jString(tr(m_edit_name)), m_state, now));
    m_state = std::move(now);
}

void TrackEditor::begin_edit(const char* name)
{
    commit_edit();
    m_edit_pending = true;
    m_edit_name = name;
}

bool TrackEditor::undo()
{
    return step_history(&UndoStack::undo);
}

bool TrackEditor::redo()
{
    return step_history(&UndoStack::redo);
}

bool TrackEditor::step_history(bool (UndoStack::*step)())
{
    commit_edit();
    if (!(step == &UndoStack::undo ? history().canUndo() : history().canRedo()))
        return false;
    // The restored document has new rows, lines and keys: the views must let go of the old ones.
    clear_selected();
    m_restoring = true;
    (history().*step)();
    m_restoring = false;
    take_state();
    show_restored();
    return true;
}

bool TrackEditor::replaceDocument(const std::string& bytes, const char* step)
{
    commit_edit();
    clear_selected(); // the new document has new rows, lines and keys
    m_restoring = true;
    const bool replaced = AppData::get()->restore(bytes);
    if (!replaced)
        AppData::get()->restore(*m_state); // the bytes of the last step load: they were written so
    m_restoring = false;
    if (replaced) {
        begin_edit(step);
        commit_edit();
    }
    show_restored();
    return replaced;
}

// As after a load, but the shown range and the time stay where the user left them.
void TrackEditor::show_restored()
{
    AppData* data = AppData::get();
    Track* track = data->getTrack()->getEngineTrack();
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom}) {
        bar->setMin(track->getBeginTime());
        bar->setMax(track->getEndTime());
    }
    show_track_switches();
    m_node_panel_stale = true;
    refresh_settings();
    m_lines->setDirty();
    m_curves->setDirty();
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

void TrackEditor::reset_history(bool onDisk)
{
    m_edit_pending = false;
    history().clear();
    take_state();
    const size_t fit = HISTORY_BYTES / (m_state->size() + 1);
    history().setLimit(int(std::clamp(fit, FEWEST_STEPS, MOST_STEPS)));
    m_clean_on_disk = onDisk;
    if (!onDisk)
        history().resetClean();
    on_history_changed();
}

void TrackEditor::take_state()
{
    auto state = std::make_shared<std::string>();
    AppData::get()->snapshot(*state); // a failure was logged; the next edit then records from empty
    m_state = std::move(state);
}

void TrackEditor::mark_saved()
{
    commit_edit();
    history().setClean();
    on_history_changed();
}

bool TrackEditor::hasUnsavedEdits() const
{
    return !m_clean_on_disk || !AppData::get()->getHistory().isClean();
}

void TrackEditor::on_history_changed()
{
    m_modified = !history().isClean();
    update_window_name();
    if (!m_btn_undo || !m_btn_redo)
        return;
    m_btn_undo->setEnabled(history().canUndo());
    m_btn_undo->setTip(stepTip("undo", history().undoName()).c_str());
    m_btn_redo->setEnabled(history().canRedo());
    m_btn_redo->setTip(stepTip("redo", history().redoName()).c_str());
}

void TrackEditor::cb_undo(const UIEventMouse*, UIElement*)
{
    undo();
}

void TrackEditor::cb_redo(const UIEventMouse*, UIElement*)
{
    redo();
}
