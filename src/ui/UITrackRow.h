#pragma once

#include "kit/SignalSlot.h"
#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class UICanvas;
class UITrackRowPanel;

// One row of the row tree: a parameter's name on the left, a value text on the right and one small
// toggle button per column. The editor-side parameter owns the row and binds its toggle handlers;
// the row panel holds it, lays it out and hit-tests it. A row draws into its panel's canvas once
// attached; until then every canvas id is -1.
class UITrackRow {
public:
    // One toggle column: the label drawn inside the button and its on/off state.
    struct RowData {
        jString text;
        bool state = false;
    };

    // Copies the column list; the row starts unbound, unattached and dark grey.
    explicit UITrackRow(const jVector<RowData>& columns);
    virtual ~UITrackRow();
    UITrackRow(const UITrackRow&) = delete;
    UITrackRow& operator=(const UITrackRow&) = delete;

    // The opaque pointer the owner stores (the editor-side parameter).
    virtual void* getData() const { return m_data; }
    virtual void setData(void* data) { m_data = data; }
    virtual int getId() const { return m_id; }
    virtual void setId(int id) { m_id = id; }
    virtual UITrackRowPanel* getPanel() const { return m_panel; }
    virtual void setPanel(UITrackRowPanel* panel) { m_panel = panel; }
    virtual jString& getName() { return m_name; }
    virtual jString& getText() { return m_text; }
    virtual int getIndent() const { return m_indent; }
    virtual vec4& getColor() { return m_color; }
    virtual vec4& getSelectedColor() { return m_selected_color; }
    virtual bool isDirty() const { return m_dirty; }
    virtual void setDirty(bool dirty) { m_dirty = dirty; }
    // Leaves the panel (when in one), removes every shape from the canvas and resets the ids.
    virtual void clearRender();

    // Forgets the panel and the canvas without touching them, for when the panel goes first.
    void forgetRender();

    // Each setter marks the row for a new layout.
    void setName(const jString& name);
    void setText(const jString& text);
    void setIndent(int indent);
    void setColor(const vec4& color);

    int getNumColumns() const { return m_columns.size(); }
    // The state of column k; false for a column that does not exist.
    bool getState(int k) const;
    // Sets column k without calling the handlers (the owner mirrors the engine's state).
    void setState(int k, bool on);
    // Flips column k, marks the row dirty, then calls every changed and row-changed handler.
    void toggleColumn(int k);

    // Handlers called when the user toggles a column.
    jVector<Function<void()>>& changed() { return m_changed; }
    jVector<Function<void(UITrackRow*&&)>>& rowChanged() { return m_row_changed; }

    // Creates the row's shapes on canvas; does nothing when the row already draws there.
    void attach(UICanvas* canvas);
    // Places the row's shapes with its top at y on a canvas width pixels wide.
    void layout(int y, bool selected, int width, int fontSize);
    int getBandPolygon() const { return m_band_polygon; }
    // Returns the column whose button polygon has this canvas id, or -1.
    int findColumn(int polygon) const;

    static constexpr int ROW_PITCH = 22;
    static constexpr int BAND_HEIGHT = 20;
    static constexpr int BUTTON_WIDTH = 16;

private:
    void reset_ids();
    void layout_column(int k, int x, int y);

    void* m_data = nullptr;
    int m_id = -1;
    jVector<RowData> m_columns;
    UITrackRowPanel* m_panel = nullptr;
    jString m_name;
    jString m_text;
    int m_indent = 0;
    vec4 m_color{0.25f, 0.25f, 0.25f, 1.0f};
    vec4 m_selected_color{0.5f, 0.5f, 0.5f, 1.0f};
    int m_name_text = -1;
    int m_value_text = -1;
    int m_band_line = -1;
    int m_band_polygon = -1;
    jVector<int> m_column_texts;
    jVector<int> m_column_lines;
    jVector<int> m_column_polygons;
    UICanvas* m_canvas = nullptr;
    bool m_dirty = false;
    jVector<Function<void()>> m_changed;
    jVector<Function<void(UITrackRow*&&)>> m_row_changed;
};
