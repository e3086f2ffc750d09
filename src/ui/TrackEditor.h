#pragma once

#include "kit/jString.h"
#include "kit/jVector.h"
#include "msg/MsgNode.h"
#include "ui/UIWindow.h"

class SettingsPanel;
class ToolBar;
class ToolButton;
class UIFloat;
class UIRoot;
class UISpliter;
class UITimeBar;
class UITrackCurvePanel;
class UITrackLinePanel;
class UITrackRowPanel;
class UIWidget;
class World;

// The Track Editor window the host creates, drives every frame and feeds host messages. It owns its
// widget tree and forwards the user's actions to the data hub (AppData); commands announce their
// changes with host messages, which processMsg turns into view, title and playback updates.
class TrackEditor : public UIWindow, public MsgNode {
public:
    // Builds the window, attaches it to the host message manager and makes it the instance.
    explicit TrackEditor(UIRoot* root);
    ~TrackEditor() override;

    // Returns the instance stored by the last constructor, or null after del().
    static TrackEditor* get();
    // Forgets the instance without destroying it (the host owns the window).
    static void del();

    // Advances playback by dt seconds and runs the window's per-frame work.
    void update(float dt) override;
    // Closes the settings dialog and releases the widget tree.
    void release() override;
    // The delete key (260) posts 204; every key then goes on to the window's elements.
    bool onKeyPress(const UIEventKey* e) override;
    // Brings the title, the modified mark and the played time up to date after a host message.
    void processMsg(UiMsg* msg) override;

    virtual World* getWorld() const { return m_world; }
    virtual void setWorld(World* world) { m_world = world; }
    virtual bool isPlay() const { return m_playing; }
    // Sets the playing flag; the play button's look is left as it is.
    virtual void setPlay(bool play) { m_playing = play; }

    // Stops playback, moves the cursor to the range begin, empties the document and posts 211.
    void clear();
    // Moves the cursor to the range begin when the track has a parameter; posts nothing.
    void setToBegin();
    // Returns the toolbar button whose icon file stem or translation key is name, or null.
    ToolButton* findButton(const char* name) const;
    // Returns the canvas of a view by name ("lines", "rows", "timebar"), or null for another name.
    UIElement* findView(const char* name) const;

private:
    bool is_window_modified() const { return m_modified; }
    void update_window_name();
    void set_window_modified(bool modified);
    void advance_time(float dt);
    void refresh_fields();

    void init_layout();
    void init_top_left();
    void init_top_right();
    void init_bottom();
    void show_document();
    UITimeBar* make_timebar(const char* tag);

    void on_track_limits_changed();
    void on_track_loaded();
    void on_keys_changed();
    void on_range_changed();
    void on_time_changed();
    void on_key_made(UiMsg* msg);
    void on_selection_lists();
    void on_selection_changed(int id);
    void update_select_track();
    void on_timebar_range_changed(const UIEventChanged* e, UIElement* sender);
    void on_timebar_cur_time_changed(const UIEventChanged* e, UIElement* sender);

    void cb_load_track(const UIEventMouse* e, UIElement* sender);
    void cb_save_track(const UIEventMouse* e, UIElement* sender);
    void cb_clear_track(const UIEventMouse* e, UIElement* sender);
    void cb_track_settings(const UIEventMouse* e, UIElement* sender);
    void cb_begin(const UIEventMouse* e, UIElement* sender);
    void cb_play(const UIEventMouse* e, UIElement* sender);
    void cb_end(const UIEventMouse* e, UIElement* sender);
    void cb_loop(const UIEventMouse* e, UIElement* sender);

    World* m_world = nullptr;
    UIWidget* m_settings = nullptr;
    SettingsPanel* m_settings_panel = nullptr;
    UIElement* m_top = nullptr;
    UIElement* m_left = nullptr;
    UIElement* m_right = nullptr;
    UIElement* m_bottom = nullptr;
    UISpliter* m_columns = nullptr;
    UITimeBar* m_timebar_top = nullptr;
    UITimeBar* m_timebar_bottom = nullptr;
    UITrackRowPanel* m_rows = nullptr;
    UITrackLinePanel* m_lines = nullptr;
    UITrackCurvePanel* m_curves = nullptr;
    ToolBar* m_file_bar = nullptr;
    ToolBar* m_settings_bar = nullptr;
    ToolBar* m_play_bar = nullptr;
    ToolButton* m_btn_loop = nullptr;
    ToolButton* m_btn_play = nullptr;
    jVector<UIFloat*> m_fields;
    bool m_modified = false;
    bool m_playing = false;
    jString m_data_path;
};
