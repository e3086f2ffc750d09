#include "ui/TrackEditor.h"

#include <cstring>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ButtonLookup.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "kit/jTString.h"
#include "msg/MsgMngr.h"
#include "ui/SettingsPanel.h"
#include "ui/UIScrollBox.h"
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
    m_modified = false;
    update_window_name();
    s_instance = this;
}

TrackEditor::~TrackEditor()
{
    jDelete(m_curves, "src/ui/TrackEditor", __LINE__, "TrackEditor::~TrackEditor");
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

void TrackEditor::set_window_modified(bool modified)
{
    m_modified = modified;
    update_window_name();
}

void TrackEditor::update(float dt)
{
    if (m_playing)
        advance_time(dt);
    refresh_fields();
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

void TrackEditor::refresh_fields()
{
    for (UIFloat* field : m_fields)
        field->refresh();
}

bool TrackEditor::onKeyPress(const UIEventKey* e)
{
    if (e->key == UI_KEY_DELETE)
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_DELETED);
    return UIWindow::onKeyPress(e);
}

void TrackEditor::clear()
{
    m_playing = false;
    m_btn_play->setChecked(false);
    m_btn_loop->setChecked(false);
    AppData* data = AppData::get();
    if (!data->isEmpty())
        data->setTime(data->getBeginTime());
    data->reset();
    set_window_modified(false);
    MsgMngr::get()->notifyHelper(TRACK_MSG_CLEARED);
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
    UIWindow::release();
    m_rows = nullptr;
    m_lines = nullptr;
    m_timebar_top = m_timebar_bottom = nullptr;
    jDelete(m_curves, "src/ui/TrackEditor", __LINE__, "TrackEditor::release");
    m_curves = nullptr;
}
