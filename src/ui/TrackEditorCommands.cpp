// The Track Editor's track and playback commands: the callbacks of the new-parameter,
// delete-parameter, load, save, clear, settings, begin, play, end and loop buttons.
#include "ui/TrackEditor.h"

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/DialogFileEx.h"
#include "data/FParameterSingle.h"
#include "editor/Locale.h"
#include "editor/MsgBox.h"
#include "editor/ToolButton.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "ui/PickerDialog.h"
#include "ui/SettingsPanel.h"
#include "ui/TrackTypeSelectPanel.h"
#include "ui/UIWidget.h"
#include "ui/Widget.h"

namespace {

constexpr const char* TRACK_EXTENSION = ".anim";

// Appends the track extension unless the name holds it anywhere (a backup such as walk.anim.bak is
// kept as it is).
jString withTrackExtension(const jString& file)
{
    return file.contain(TRACK_EXTENSION) ? file : file + TRACK_EXTENSION;
}

} // namespace

void TrackEditor::cb_new_track(const UIEventMouse*, UIElement*)
{
    bool chosen = false;
    jString type;
    auto* panel = jNew<TrackTypeSelectPanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::cb_new_track", getRoot(),
                                             &chosen, &type);
    runPickerDialog(getRoot(), panel, "select_data_type", "TrackEditor::cb_new_track");
    if (!chosen)
        return;
    const TrackReg* reg = registration(type, "TrackEditor::cb_new_track");
    if (!reg)
        return;
    if (reg->isForNode()) {
        select_node_helper(type);
        return;
    }
    if (reg->isForMaterial()) {
        select_material_helper(type);
        return;
    }
    // A global setting or a nested track: bound to no node.
    FParameter* made = AppData::get()->getTrack()->createParameter(reg->getType(), type);
    if (made && AppData::get()->getTrack()->getEngineTrack()->bindNode(made->getTrackParameter(), m_world, -1,
                                                                       jString(), -1, jString(), type)) {
        made->retitle();
        MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_NEW);
    }
}

// A component row stands for its whole compound, which owns it: deleting an axis deletes the vector
// with all its axes (never the axis alone, which would free it twice), asked once.
void TrackEditor::cb_del_track(const UIEventMouse*, UIElement*)
{
    clear_selected();
    FTrack* document = AppData::get()->getTrack();
    jSet<FParameter*> doomed;
    for (FParameterSingle* selected : document->getSelectedParameters())
        doomed.insert(selected->getTopParameter());
    if (doomed.empty() || !msgBox(tr("delete_config"), tr("warning"), getRoot(), true))
        return;
    for (FParameter* parameter : doomed) // every one, before any is gone: each keeps its place
        AppData::get()->getEdits().touch(parameter);
    for (FParameter* parameter : doomed)
        AppData::get()->destoryParameter(parameter);
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_DELETED);
}

void TrackEditor::cb_load_track(const UIEventMouse*, UIElement*)
{
    auto* dialog = jNew<DialogFileEx>("src/ui/TrackEditor", __LINE__, "TrackEditor::cb_load_track", getRoot(),
                                      tr("load"), false);
    dialog->setCurrentPath(m_data_path.c_str());
    dialog->setFilter(TRACK_EXTENSION);
    if (dialog->modality()) {
        m_data_path = dialog->getPath();
        jString path = withTrackExtension(dialog->getPath());
        clear();
        if (AppData::get()->loadTrack(path, m_world))
            MsgMngr::get()->notifyHelper(TRACK_MSG_LOADED);
        else
            tell(TRACK_FILE_LOAD_FAILED, path.c_str());
    }
    jDelete(dialog, "src/ui/TrackEditor", __LINE__, "TrackEditor::cb_load_track");
}

void TrackEditor::cb_save_track(const UIEventMouse*, UIElement*)
{
    AppData* data = AppData::get();
    if (!is_window_modified() && data->getPath().nempty())
        return;
    if (data->getPath().nempty()) {
        save_to(data->getPath());
        return;
    }
    auto* dialog = jNew<DialogFileEx>("src/ui/TrackEditor", __LINE__, "TrackEditor::cb_save_track", getRoot(),
                                      tr("save"), true);
    dialog->setFilter(TRACK_EXTENSION);
    if (dialog->modality())
        save_to(withTrackExtension(dialog->getPath()));
    jDelete(dialog, "src/ui/TrackEditor", __LINE__, "TrackEditor::cb_save_track");
}

// Posts 209 whether or not the file was written, so the title loses its mark either way; a failed
// save is told to the file listener (the host shows it) and the edits stay unsaved.
void TrackEditor::save_to(const jString& path)
{
    m_clean_on_disk = AppData::get()->saveTrack(path);
    if (!m_clean_on_disk)
        tell(TRACK_FILE_SAVE_FAILED, path.c_str());
    MsgMngr::get()->notifyHelper(TRACK_MSG_SAVED);
}

void TrackEditor::cb_clear_track(const UIEventMouse*, UIElement*)
{
    clear();
}

void TrackEditor::cb_track_settings(const UIEventMouse*, UIElement*)
{
    if (!m_settings) {
        m_settings = jNew<UIWidget>("src/ui/TrackEditor", __LINE__, "TrackEditor::cb_track_settings", getRoot(),
                                    Widget::MakeCenter(SettingsPanel::PREFERRED_WIDTH, SettingsPanel::PREFERRED_HEIGHT));
        m_settings_panel = jNew<SettingsPanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::cb_track_settings",
                                               getRoot());
        m_settings->setUI(m_settings_panel, tr("settings"));
        m_settings->setIME(false);
        m_settings->setForceClose(false);
        m_settings->setEscClose(true);
        m_settings->center();
    }
    m_settings_panel->refresh();
    m_settings->show();
}

void TrackEditor::cb_begin(const UIEventMouse*, UIElement*)
{
    setToBegin();
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

void TrackEditor::cb_play(const UIEventMouse*, UIElement*)
{
    if (AppData::get()->isEmpty()) {
        m_btn_play->setChecked(false);
        return;
    }
    m_playing = m_btn_play->isChecked();
}

void TrackEditor::cb_end(const UIEventMouse*, UIElement*)
{
    AppData* data = AppData::get();
    if (data->isEmpty())
        return;
    data->setTime(data->getEndTime());
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

void TrackEditor::cb_loop(const UIEventMouse*, UIElement*)
{
    AppData* data = AppData::get();
    if (data->isEmpty()) {
        m_btn_loop->setChecked(false);
        return;
    }
    data->getTrack()->getEngineTrack()->setLoop(m_btn_loop->isChecked());
    MsgMngr::get()->notifyHelper(TRACK_MSG_OPTION_CHANGED);
}
