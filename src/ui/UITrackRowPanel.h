#pragma once

#include "kit/SignalSlot.h"
#include "kit/jSet.h"
#include "kit/jString.h"
#include "kit/jVector.h"
#include "ui/UITrackRow.h"
#include "ui/UIVLayout.h"

class UICanvas;
class UIScrollBox;

// The row tree: one row per parameter, laid out 22 pixels apart on a canvas inside a scroll box.
// The panel holds the rows the parameters give it (it never creates or frees one), draws them and
// keeps the selection. There is one panel at a time, returned by get().
class UITrackRowPanel : public UIVLayout {
public:
    // Builds the panel; columns are the toggle buttons every row shows.
    UITrackRowPanel(UIRoot* root, const jVector<UITrackRow::RowData>& columns);
    ~UITrackRowPanel() override;

    // Returns the panel made last, or null when there is none.
    static UITrackRowPanel* get();

    // Lays the rows out again when the width, the panel or a row changed.
    void update(float dt) override;
    // Releases the layout; the rows stay with their parameters.
    void release() override;
    // A left press selects a row (extending the selection with the multi-select modifier),
    // toggles a row's button, or clears the selection on empty space. Returns true when it hit a
    // row or a button; a press on empty space travels on to the layout.
    bool onMouseDown(const UIEventMouse* e) override;
    // Over a row, gives the rows' canvas that row's description as its tooltip; the move then goes
    // on to the layout.
    bool onMouseMove(const UIEventMouse* e) override;

    // What a row's tooltip says (what its parameter is bound to, and its type).
    using Describer = Function<jString(const UITrackRow*)>;
    void setDescriber(const Describer& describe) { m_describe = describe; }
    // The tooltip the rows' canvas shows now ("" off the rows).
    const jString& getTooltip() const { return m_tooltip; }

    // Appends row and draws it on the panel's canvas; logs "<fn>: row is already defined" and
    // changes nothing when the panel holds it already.
    void addRow(UITrackRow* row);
    // Takes row out (later rows move up); logs "<fn>: can't find row" when it is not held.
    void removeRow(UITrackRow* row);
    // Puts a row of the panel right before another (at the end when before is null or not shown).
    void moveRow(UITrackRow* row, UITrackRow* before);
    const jVector<UITrackRow*>& getRows() const { return m_rows; }

    UITrackRow* getCurrent() const { return m_current; }
    // Sets the row last pressed; marks the panel dirty only when it changes.
    void setCurrent(UITrackRow* row);
    const jSet<UITrackRow*>& getSelected() const { return m_selected; }
    // Replaces the selection with rows.
    void setSelected(const jSet<UITrackRow*>& rows);
    // Replaces the selection with row alone (nothing for null).
    void select(UITrackRow* row);
    void setDirty() { m_dirty = true; }
    // What the last press hit: 0 nothing yet, 1 empty space, 2 a row.
    int getPress() const { return m_press; }

    UIScrollBox* getScroll() const { return m_scroll; }
    UICanvas* getCanvas() const { return m_canvas; }

    static constexpr int FONT_SIZE = 12;

private:
    bool any_row_dirty() const;
    void layout_rows();
    void press_empty(bool multiSelect);
    void press_band(UITrackRow* row, bool multiSelect);

    int m_width = -1;
    bool m_dirty = false;
    jVector<UITrackRow*> m_rows;
    UIScrollBox* m_scroll = nullptr;
    UICanvas* m_canvas = nullptr;
    int m_press = 0;
    UITrackRow* m_current = nullptr;
    jSet<UITrackRow*> m_selected;
    jSet<UITrackRow*> m_saved_selection;
    Describer m_describe;
    const UITrackRow* m_tooltip_row = nullptr;
    jString m_tooltip;
};
