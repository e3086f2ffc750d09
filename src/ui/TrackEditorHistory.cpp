// Undo and redo. Whatever is about to change a parameter touches it in the document's recorder
// first, and every edit announces itself with a change message; the window then makes what the
// recorder gathered one step of the document's history: the touched parameters and the track's
// settings before and after. A gesture of the left button (a drag that moves keys over many
// frames) is one step: the change messages during it only note that a step is due, and the release
// records it. The title's modified mark follows the history's clean state.
#include "ui/TrackEditor.h"

#include <memory>
#include <string>

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

// The history keeps as many steps as their records fit in, and drops the oldest beyond: a key edit
// holds the touched parameters' records, an import two whole documents.
constexpr size_t HISTORY_BYTES = size_t(256) << 20;

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
    // Null (no step) when the change messages changed nothing the file keeps.
    history().push(AppData::get()->getEdits().finish(jString(tr(m_edit_name))));
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
    AppData::get()->getEdits().begin();
    show_restored();
    return true;
}

// The one step that records the whole document: the replaced document is in it on both sides.
bool TrackEditor::replaceDocument(const std::string& bytes, const char* step)
{
    commit_edit();
    auto before = std::make_shared<std::string>(), after = std::make_shared<std::string>();
    if (!AppData::get()->snapshot(*before))
        return false; // logged; a document that cannot be written could not be put back
    clear_selected(); // the new document has new rows, lines and keys
    m_restoring = true;
    const bool replaced = AppData::get()->restore(bytes);
    if (!replaced)
        AppData::get()->restore(*before); // the bytes load: the engine wrote them just now
    m_restoring = false;
    if (replaced && AppData::get()->snapshot(*after) && *after != *before)
        history().push(jNew<FDocumentEdit>("src/ui/TrackEditor", __LINE__, "TrackEditor::replaceDocument",
                                           jString(tr(step)), before, after));
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
    history().setByteLimit(HISTORY_BYTES);
    AppData::get()->getEdits().begin();
    m_clean_on_disk = onDisk;
    if (!onDisk)
        history().resetClean();
    on_history_changed();
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
