#pragma once

#include <memory>
#include <string>

#include "TrackEditorPlugin.h"
#include "anim/TrackTypes.h"
#include "kit/jString.h"
#include "kit/jVector.h"
#include "msg/MsgNode.h"
#include "ui/UIWindow.h"

class FParameter;
class Node;
class SettingsPanel;
class ToolBar;
class ToolButton;
class TimeRangeView;
class TrackParameter;
class TrackReg;
class UIBool;
class UIButton;
class UIFloat;
class UIString;
template <class I>
class UIIntBase;
class UIRoot;
class UISpliter;
class UITimeBar;
class UITimeField;
class UITrackCurvePanel;
class UITrackLinePanel;
class UITrackRow;
class UITrackRowPanel;
class UIWidget;
class UndoStack;
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
    // The delete key (260) deletes the selected keys and posts 204; every key then goes on to the
    // window's elements, and what they leave is a shortcut (TrackEditorShortcuts.cpp) or not handled.
    bool onKeyPress(const UIEventKey* e) override;
    // Ctrl+wheel over the key lines or a time bar zooms the shown range about the pointer,
    // Shift+wheel pans it; anything else goes on to the window's elements.
    bool onMouseWheel(const UIEventMouse* e) override;
    // A middle drag on the key lines pans the shown range; other presses go on to the elements.
    bool onMouseDown(const UIEventMouse* e) override;
    bool onMouseMove(const UIEventMouse* e) override;
    bool onMouseUp(const UIEventMouse* e) override;
    // Brings the title, the modified mark and the played time up to date after a host message.
    void processMsg(UiMsg* msg) override;

    virtual World* getWorld() const { return m_world; }
    virtual void setWorld(World* world) { m_world = world; }
    virtual bool isPlay() const { return m_playing; }
    // Sets the playing flag; the play button's look is left as it is.
    virtual void setPlay(bool play) { m_playing = play; }

    // Tells the file listener that the document goes, stops playback, moves the cursor to the range
    // begin, empties the document and posts 211.
    void clear();
    // Clears, opens the track file at path as the document of the file named document ("" leaves
    // it untitled) and posts 210 and 201; edited marks it as holding unsaved edits. Returns false
    // (logged) when the file cannot be opened or the engine refuses it.
    bool loadAs(const jString& path, const jString& document, bool edited);
    // True when the document holds edits that no save has written.
    bool hasUnsavedEdits() const;
    // Undoes the newest step of the document's history (Ctrl+Z), or redoes the oldest undone one
    // (Ctrl+Shift+Z, Ctrl+Y); an edit still in progress is recorded first. The views show the
    // restored document with no key selected. Returns false (nothing done) when there is no step.
    bool undo();
    bool redo();
    // Makes the document the track written in bytes (a saved track file's text) as one step of the
    // history named by the translation key step, keeping the file's path, the shown range and the
    // time. Returns false (logged) when bytes are no track; the document then stays as it was.
    bool replaceDocument(const std::string& bytes, const char* step);
    // Saves the document to path, which becomes its file, and posts 209. Returns false (logged)
    // and posts nothing when it cannot be written.
    bool saveAs(const jString& path);
    // Makes listener hear the file events of the editor's own commands with context; null stops it.
    void setFileListener(TrackFileListener listener, void* context);
    // Moves the cursor to the range begin when the track has a parameter; posts nothing.
    void setToBegin();
    // Returns the toolbar button whose icon file stem or translation key is name, or null.
    ToolButton* findButton(const char* name) const;
    // Returns the canvas of a view by name ("lines", "rows", "timebar", "curves"), or null for another
    // name.
    UIElement* findView(const char* name) const;

private:
    friend class TrackEditorTest; // reads the settings window, a top-level window of its own

    // What the node pickers returned: the chosen node and, inside a prefab, the internal node.
    struct NodeChoice {
        bool chosen = false;
        bool internal = false;
        int node = -1;
        int internalId = -1;
        jString internalName;
    };

    bool is_window_modified() const { return m_modified; }
    void update_window_name();

    // The document's history (TrackEditorHistory.cpp). A change message notes that a step is due;
    // it is recorded at once, or at the end of the pointer gesture that is under way.
    void note_edit(int message);
    void commit_edit();
    bool step_history(bool (UndoStack::*step)());
    void show_restored();
    // Empties the history after a load or a clear; onDisk false when the document is not its file's.
    void reset_history(bool onDisk);
    // The document was saved, or a save failed (m_clean_on_disk tells); either way the title loses
    // its mark.
    void mark_saved();
    void on_history_changed();
    void cb_undo(const UIEventMouse* e, UIElement* sender);
    void cb_redo(const UIEventMouse* e, UIElement* sender);
    // Starts a step of the history with a name of its own; the next record ends it.
    void begin_edit(const char* name);

    // The key clipboard (TrackEditorClipboard.cpp). Copy returns false when no key is selected;
    // paste returns false (logged) when the text holds no keys or no row takes them.
    bool copy_keys();
    void cut_keys();
    bool paste_keys(const std::string& text, const char* step);
    void paste_clipboard();
    void duplicate_keys();
    void advance_time(float dt);
    void refresh_fields();

    void init_layout();
    void init_top_left();
    void init_node_panel(UIElement* parent);
    void init_key_bar(UIElement* bar);
    void init_top_right();
    void init_bottom();
    void show_document();
    UITimeBar* make_timebar(const char* tag);

    void on_track_limits_changed();
    void on_track_loaded();
    // Shows the document track's loop and snap switches on their buttons.
    void show_track_switches();
    void on_keys_changed();
    void on_range_changed();
    void refresh_settings();
    void on_time_changed();
    void on_key_made(UiMsg* msg);
    void on_selection_lists();
    void on_selection_changed(int id);
    void update_select_track();
    void on_timebar_range_changed(const UIEventChanged* e, UIElement* sender);
    void on_timebar_cur_time_changed(const UIEventChanged* e, UIElement* sender);
    void cb_track_lines_size_changed(const UIEventChanged* e, UIElement* sender);
    void cb_track_table_size_changed(const UIEventChanged* e, UIElement* sender);

    void update_node_panel();

    // The key bar's commands, the key fields and the views' selection (TrackEditorKeys.cpp).
    void cb_arrange_x(const UIEventMouse* e, UIElement* sender);
    void cb_arrange_y(const UIEventMouse* e, UIElement* sender);
    void cb_arrange_xy(const UIEventMouse* e, UIElement* sender);
    void cb_make_key(const UIEventMouse* e, UIElement* sender);
    void cb_del_key(const UIEventMouse* e, UIElement* sender);
    void cb_key_const(const UIEventMouse* e, UIElement* sender);
    void cb_key_linear(const UIEventMouse* e, UIElement* sender);
    void cb_key_smooth(const UIEventMouse* e, UIElement* sender);
    void cb_key_break(const UIEventMouse* e, UIElement* sender);
    void cb_key_auto(const UIEventMouse* e, UIElement* sender);
    void delete_key();
    void clear_selected();
    void setSelectedKeysType(TRACK_KEY_TYPE kind);
    float getSelectedKeysValue() const;
    void setSelectedKeysValue(float value);
    float getSelectedKeysTime() const;
    void setSelectedKeysTime(float t);
    // Moves every selected key by dt seconds, each kept within the track's limits; posts 202.
    void nudge_selected_keys(float dt);

    // Keyboard and pointer navigation in time (TrackEditorShortcuts.cpp).
    bool on_shortcut(const UIEventKey* e);
    // One frame, or 1 % of the track without a frame rate.
    float frame_step() const;
    void step_time(int direction);
    void select_all_keys();
    void frame_selected_keys();
    void show_range(const TimeRangeView& view);
    bool time_under(int x, int y, float& t) const;

    // Binding parameters to nodes and materials (TrackEditorBinding.cpp).
    // The registration of a type name; null, logged as "<function>:r", when the type is not registered.
    static const TrackReg* registration(const jString& type, const char* function);
    void cb_select_node(const UIEventMouse* e, UIElement* sender);
    void change_node(FParameter* param);
    void change_material(FParameter* param);
    TrackParameter* gen_param(TRACK_PARAMETER_TYPE kind, const jString& type, FParameter** out);
    void select_node_helper(const jString& type);
    void select_material_helper(const jString& type);
    void set_mat_hierarchy_ui_hidden(bool hidden);
    bool pick_node(const jString& type, NodeChoice& choice);
    bool pick_internal_node(Node* node, const jString& type, NodeChoice& choice, const char* function);
    TrackParameter* binding_target(FParameter* param, int kind, const char* function) const;
    // A row's tooltip: the node ("Cube (Node.position)") or material its parameter is bound to, and
    // its type; only the type for a global setting.
    static jString describe_row(const UITrackRow* row);
    // The parameter of the row panel's current row, or null.
    FParameter* selected_parameter() const;
    // The node a bound parameter names: by id, else by its saved name, else by id in the current
    // world; null without a world, or when none is found (logged under function as an error, or as
    // a warning).
    const Node* find_bound_node(const FParameter* param, const char* function, bool error) const;
    const jString& getNodeName() const;
    int getNodeID() const;
    const jString& getNodeTypeString() const;
    const jString& getTrackDataType() const;
    bool isMaterialHierarchy() const;
    bool isForMaterail() const;
    void setMaterialHierarchy(bool hierarchy);

    void cb_new_track(const UIEventMouse* e, UIElement* sender);
    void cb_del_track(const UIEventMouse* e, UIElement* sender);
    void cb_load_track(const UIEventMouse* e, UIElement* sender);
    void cb_save_track(const UIEventMouse* e, UIElement* sender);
    void cb_clear_track(const UIEventMouse* e, UIElement* sender);
    void save_to(const jString& path);
    void tell(TrackFileEvent event, const char* path);
    void cb_track_settings(const UIEventMouse* e, UIElement* sender);
    void cb_begin(const UIEventMouse* e, UIElement* sender);
    void cb_play(const UIEventMouse* e, UIElement* sender);
    void cb_end(const UIEventMouse* e, UIElement* sender);
    void cb_loop(const UIEventMouse* e, UIElement* sender);
    // The snap switch: the document's snapping follows the button (posts 195); an empty document
    // cannot snap.
    void cb_snap(const UIEventMouse* e, UIElement* sender);
    // Shows the whole track between the range marks.
    void cb_frame_all(const UIEventMouse* e, UIElement* sender);

    World* m_world = nullptr;
    UIWidget* m_settings = nullptr;
    SettingsPanel* m_settings_panel = nullptr;
    UIElement* m_top = nullptr;
    UIElement* m_left = nullptr;
    UIElement* m_right = nullptr;
    UIElement* m_bottom = nullptr;
    UISpliter* m_columns = nullptr;
    UISpliter* m_left_bands = nullptr;
    UISpliter* m_right_bands = nullptr;
    ToolBar* m_track_bar = nullptr;
    UIElement* m_node_panel = nullptr;
    UIButton* m_btn_select_node = nullptr;
    UIString* m_node_name = nullptr;
    UIIntBase<int>* m_node_id = nullptr;
    UIString* m_node_type = nullptr;
    UIString* m_node_attribute = nullptr;
    UIBool* m_hierarchy = nullptr;
    jVector<UIElement*> m_mat_hierarchy_ui;
    // The parameter the node panel shows, and whether its binding changed since it was shown; the
    // panel reads the binding again only then (a missing node is logged once, not every frame).
    const FParameter* m_node_panel_shows = nullptr;
    bool m_node_panel_stale = true;
    // The last texts the node-info accessors composed; they return references into these.
    mutable jString m_node_name_text;
    mutable jString m_node_type_text;
    UITimeBar* m_timebar_top = nullptr;
    UITimeBar* m_timebar_bottom = nullptr;
    UITrackRowPanel* m_rows = nullptr;
    UITrackLinePanel* m_lines = nullptr;
    UITrackCurvePanel* m_curves = nullptr;
    ToolBar* m_file_bar = nullptr;
    ToolBar* m_key_bar = nullptr;
    ToolBar* m_settings_bar = nullptr;
    ToolBar* m_play_bar = nullptr;
    ToolButton* m_btn_loop = nullptr;
    ToolButton* m_btn_play = nullptr;
    ToolButton* m_btn_snap = nullptr;
    jVector<UIFloat*> m_fields;
    jVector<UITimeField*> m_time_fields;
    bool m_modified = false;
    // Whether the history's clean state is what the document's file holds: false after a failed
    // save, which still clears the title's mark, and for a document restored from a recovery copy.
    bool m_clean_on_disk = true;
    bool m_edit_pending = false;
    const char* m_edit_name = "";
    // The left button is held: edits wait for its release to become one step.
    bool m_gesture = false;
    bool m_restoring = false;
    ToolButton* m_btn_undo = nullptr;
    ToolButton* m_btn_redo = nullptr;
    TrackFileListener m_file_listener = nullptr;
    void* m_file_listener_context = nullptr;
    bool m_playing = false;
    // A middle drag panning the shown range, and the pointer's last x.
    bool m_panning = false;
    int m_pan_x = 0;
    jString m_data_path;
};
