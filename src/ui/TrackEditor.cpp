#include "ui/TrackEditor.h"

#include <cstring>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ButtonLookup.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "kit/KeyState.h"
#include "data/FParameterSingle.h"
#include "kit/jTString.h"
#include "msg/MsgMngr.h"
#include "ui/SettingsPanel.h"
#include "ui/UIScrollBox.h"
#include "ui/UITimeBar.h"
#include "ui/UITimeField.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRowPanel.h"
#include "ui/UIFactory.h"
#include "ui/UIWidget.h"

namespace {

TrackEditor* s_instance = nullptr;

constexpr int WINDOW_WIDTH = 800;
constexpr int WINDOW_HEIGHT = 600;

} // namespace

TrackEditor::TrackEditor(UIRoot* root)
    : UIWindow(root, "", 0, 0), m_data_path("data/")
{
    setSize(WINDOW_WIDTH, WINDOW_HEIGHT);
    setTitleable(true);
    AppData::get();
    init_layout();
    init_top_left();
    init_top_right();
    init_bottom();
    show_document();
    attach();
    AppData::get()->getHistory().setListener(bind(&TrackEditor::on_history_changed, this));
    reset_history(true);
    s_instance = this;
}

TrackEditor::~TrackEditor()
{
    if (s_instance == this)
        s_instance = nullptr;
}

TrackEditor* TrackEditor::get()
{
    return s_instance;
}

void TrackEditor::del()
{
    s_instance = nullptr;
}

void TrackEditor::update_window_name()
{
    jTString<256> title;
    if (AppData::get()->getPath().nempty()) {
        title.append(AppData::get()->getPath().c_str());
        title.append(" - ");
        title.append("Anim");
    } else {
        title.append("Anim");
        title.append(" - ");
        title.append("New Track");
    }
    if (m_modified)
        title.append("*");
    setTitle(title.c_str());
}

void TrackEditor::update(float dt)
{
    // A release outside the window never reached onMouseUp: the gesture ended all the same.
    m_gesture = m_gesture && GetKeyState(VK_LBUTTON) < 0;
    if (!m_gesture)
        commit_edit();
    if (m_playing)
        advance_time(dt);
    update_node_panel();
    refresh_fields();
    for (UITimeBar* bar : {m_timebar_top, m_timebar_bottom})
        if (bar)
            bar->setFrameRate(AppData::get()->getFrameRate());
    if (m_rows && m_lines && m_rows->getScroll() && m_lines->getScroll())
        m_lines->getScroll()->setVScrollValue(m_rows->getScroll()->getVScrollValue());
    UIWindow::update(dt);
}

void TrackEditor::advance_time(float dt)
{
    AppData* data = AppData::get();
    float t = data->getTime() + dt;
    if (t > data->getEndTime()) {
        Track* track = data->getTrack()->getEngineTrack();
        if (track && track->isLoop()) {
            t = data->getBeginTime();
        } else {
            t = data->getEndTime();
            m_btn_play->setChecked(false);
            m_playing = false;
        }
    }
    data->setTime(t);
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
}

// The node panel shows what the current row's parameter is bound to. Re-binding to a node means
// nothing for a material parameter or a nested track, file or material name; the hierarchy switch
// only for a material parameter.
void TrackEditor::update_node_panel()
{
    const FParameter* param = selected_parameter();
    if (!m_node_panel || (param == m_node_panel_shows && !m_node_panel_stale))
        return;
    m_node_panel_shows = param;
    m_node_panel_stale = false;
    if (!param) {
        m_node_panel->setHidden(true);
        return;
    }
    const TrackReg* reg = Track::GetRegByName(param->getTypeName());
    const int kind = param->getTopParameter()->getType();
    const bool material = reg && reg->isForMaterial();
    m_btn_select_node->setHidden(material || kind == TRACK_PARAMETER_TRACK || kind == TRACK_PARAMETER_STRING_FILE ||
                                 kind == TRACK_PARAMETER_STRING_MATERIAL);
    set_mat_hierarchy_ui_hidden(!material);
    m_node_panel->setHidden(false);
    m_node_name->refresh();
    m_node_id->refresh();
    m_node_type->refresh();
    m_node_attribute->refresh();
    m_hierarchy->refresh();
}

void TrackEditor::refresh_fields()
{
    for (UIFloat* field : m_fields)
        field->refresh();
    for (UITimeField* field : m_time_fields)
        field->refresh();
}

void TrackEditor::clear()
{
    tell(TRACK_FILE_DISCARDING, "");
    m_playing = false;
    m_btn_play->setChecked(false);
    m_btn_loop->setChecked(false);
    m_btn_snap->setChecked(false);
    AppData* data = AppData::get();
    if (!data->isEmpty())
        data->setTime(data->getBeginTime());
    clear_selected();
    data->reset();
    reset_history(true);
    MsgMngr::get()->notifyHelper(TRACK_MSG_CLEARED);
}

bool TrackEditor::loadAs(const jString& path, const jString& document, bool edited)
{
    clear();
    if (!AppData::get()->loadTrackAs(path, document, m_world))
        return false;
    MsgMngr::get()->notifyHelper(TRACK_MSG_LOADED);
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
    if (edited)
        reset_history(false);
    return true;
}

bool TrackEditor::saveAs(const jString& path)
{
    if (!AppData::get()->saveTrack(path))
        return false;
    m_clean_on_disk = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_SAVED);
    return true;
}

void TrackEditor::setFileListener(TrackFileListener listener, void* context)
{
    m_file_listener = listener;
    m_file_listener_context = context;
}

void TrackEditor::tell(TrackFileEvent event, const char* path)
{
    if (m_file_listener)
        m_file_listener(m_file_listener_context, event, path);
}

void TrackEditor::setToBegin()
{
    AppData* data = AppData::get();
    if (!data->isEmpty())
        data->setTime(data->getBeginTime());
}

ToolButton* TrackEditor::findButton(const char* name) const
{
    return dynamic_cast<ToolButton*>(ButtonLookup::find(const_cast<TrackEditor*>(this), name));
}

void TrackEditor::release()
{
    AppData::get()->getHistory().setListener(Function<void()>());
    m_btn_undo = m_btn_redo = nullptr;
    if (m_settings) {
        m_settings->close();
        m_settings->release();
        jDelete(m_settings, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
        m_settings = nullptr;
    }
    if (m_settings_panel) {
        m_settings_panel->release();
        jDelete(m_settings_panel, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
        m_settings_panel = nullptr;
    }
    for (UIFloat* field : m_fields)
        jDelete(field, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    m_fields.release();
    for (UITimeField* field : m_time_fields)
        jDelete(field, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    m_time_fields.release();
    jDelete(m_node_name, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    jDelete(m_node_id, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    jDelete(m_node_type, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    jDelete(m_node_attribute, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    jDelete(m_hierarchy, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    m_node_name = m_node_type = m_node_attribute = nullptr;
    m_node_id = nullptr;
    m_hierarchy = nullptr;
    m_mat_hierarchy_ui.release();
    UIWindow::release();
    m_rows = nullptr;
    m_lines = nullptr;
    m_node_panel = nullptr;
    m_timebar_top = m_timebar_bottom = nullptr;
    m_curves = nullptr;
}
