#pragma once

#include <climits>

#include "kit/jSet.h"
#include "kit/jVector.h"
#include "ui/UIVLayout.h"

class UICanvas;
class UIRubberBand;
class UIScrollBox;
class UITrackLine;
class UITrackLineKey;

// The key lines beside the row tree: one line per parameter row, 22 pixels apart, with a mark per
// key placed by its time in the visible range of the data hub. Keys are selected with a click, a
// modifier-click or a rubber-band box and dragged in time as one block; a double click edits the
// key under the pointer, or makes a key on an empty spot of a line. The panel holds lines the
// parameters own; there is one panel at a time.
class UITrackLinePanel : public UIVLayout {
public:
    explicit UITrackLinePanel(UIRoot* root);
    ~UITrackLinePanel() override;

    // Returns the panel made last, or null when there is none.
    static UITrackLinePanel* get();

    // Draws the lines and marks again when the size, a line or the selection changed.
    void update(float dt) override;
    // Releases the layout; the lines stay with their parameters.
    void release() override;
    bool onMouseDown(const UIEventMouse* e) override;
    bool onMouseMove(const UIEventMouse* e) override;
    bool onMouseUp(const UIEventMouse* e) override;
    bool onMouseDClick(const UIEventMouse* e) override;

    // Appends line and draws it on the panel's canvas; logs "<fn>: curve is already defined" and
    // changes nothing when the panel holds it already.
    void addLine(UITrackLine* line);
    // Takes line out (later lines move up); logs "<fn>: can't find curve" when it is not held.
    void removeLine(UITrackLine* line);
    // Puts a line of the panel right before another (at the end when before is null or not shown).
    void moveLine(UITrackLine* line, UITrackLine* before);
    bool hasLine(const UITrackLine* line) const;
    // Drops every reference to a mark that is going away (selection, saved box selection, current).
    void forgetKey(UITrackLineKey* key);
    const jVector<UITrackLine*>& getLines() const { return m_lines; }

    UITrackLine* getCurrentLine() const { return m_current_line; }
    UITrackLineKey* getCurrentKey() const { return m_current_key; }
    void setCurrentLine(UITrackLine* line);
    void setCurrentKey(UITrackLineKey* key);
    const jSet<UITrackLine*>& getSelectedLines() const { return m_selected_lines; }
    const jSet<UITrackLineKey*>& getSelectedKeys() const { return m_selected_keys; }
    // Replace the selections (each marks the panel for redraw).
    void setSelectedLines(const jVector<UITrackLine*>& lines);
    void setSelectedKeys(const jVector<UITrackLineKey*>& keys);
    // Marks every line for redraw.
    void setDirty();

    UIScrollBox* getScroll() const { return m_scroll; }
    UICanvas* getCanvas() const { return m_canvas; }

    // The pixel of time t in the visible range [begin, end] on a canvas width pixels wide, and back:
    // x = (t - begin) * (width - 12) / (end - begin) + 6. An inverted range maps as its ordered form;
    // a range without width maps every time to x = 6 and every x to its one time.
    static int timeToPixel(float t, float begin, float end, int width);
    static float pixelToTime(int x, float begin, float end, int width);

private:
    void render_lines();
    // Moves the current-time line to the data hub's time when it or the mapping changed.
    void render_cursor();
    void render_line(UITrackLine* line, int y);
    void leave_view(UITrackLine* line);
    void start_box(bool extend);
    void press_key(UITrackLine* line, UITrackLineKey* key, bool extend);
    void drag_box(int x, int y);
    void drag_keys(int x);
    // The time the pressed key may take when the pointer asks for wanted.
    float held_time(float wanted) const;
    // Moves the selected keys so that the pressed key is at target, into the engine.
    void move_block(float target);
    void auto_scroll(int x);
    void on_dclick(int x, int y);
    void make_key(int x, int y);
    // The mark whose hit area is at the canvas point, or null.
    UITrackLineKey* mark_at(int x, int y) const;
    void refresh_marks();
    void send_selection();
    void send_selection_lists();
    void to_canvas(const UIEventMouse* e, int& x, int& y) const;

    int m_mode = 0;
    bool m_lines_dirty = true;
    bool m_keys_dirty = true;
    int m_order = 10;
    int m_press_x = 0;
    int m_press_y = 0;
    int m_release_x = 0;
    int m_release_y = 0;
    bool m_dragged = false;
    float m_press_time = 0.0f; // the pressed key's time when the press came
    int m_width = -1;
    int m_height = -1;
    jVector<UITrackLine*> m_lines;
    UITrackLine* m_current_line = nullptr;
    UITrackLineKey* m_current_key = nullptr;
    jSet<UITrackLine*> m_selected_lines;
    jSet<UITrackLineKey*> m_selected_keys;
    jSet<UITrackLine*> m_saved_lines;
    jSet<UITrackLineKey*> m_saved_keys;
    UIScrollBox* m_scroll = nullptr;
    UICanvas* m_canvas = nullptr;
    UIRubberBand* m_box = nullptr;
    int m_cursor = -1; // the current-time line across every key line
    int m_cursor_x = INT_MIN;
    int m_cursor_height = -1;
};
