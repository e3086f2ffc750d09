#pragma once

#include "kit/jSet.h"
#include "kit/jVector.h"
#include "ui/UITimeRuler.h"
#include "ui/UITrackCurveMapping.h"
#include "ui/UIVLayout.h"

class UICanvas;
class UIRubberBand;
class UIScrollBox;
class UITrackCurve;
class UITrackCurveGrid;
class UITrackCurveKey;

// The curve view: the value-over-time curves of the float and double parameters whose "T" switch
// is on, over the same time range as the key lines (so a key sits straight above its mark), with a
// value grid and the current time. Keys are selected with a click, a modifier-click or a
// rubber-band box, the selection being the key lines' too (205, 208), and dragged in time and value
// as one block; the handles of a selected key shape its Bezier sides. The wheel zooms about the
// pointer (with Ctrl the value axis only), a middle drag pans. The curves belong to their
// parameters; there is one panel at a time.
class UITrackCurvePanel : public UIVLayout {
public:
    explicit UITrackCurvePanel(UIRoot* root);
    ~UITrackCurvePanel() override;

    // Returns the panel made last, or null when there is none.
    static UITrackCurvePanel* get();

    // Draws again what changed: the view, a curve, the selection or the current time.
    void update(float dt) override;
    // Releases the layout; the curves stay with their parameters.
    void release() override;
    bool onMouseDown(const UIEventMouse* e) override;
    bool onMouseMove(const UIEventMouse* e) override;
    bool onMouseUp(const UIEventMouse* e) override;
    bool onMouseWheel(const UIEventMouse* e) override;

    // Adds curve to the shown list once.
    void showCurve(UITrackCurve* curve);
    // Takes curve off the view (and out of the selection).
    void hideCurve(UITrackCurve* curve);
    bool isShown(const UITrackCurve* curve) const;
    const jVector<UITrackCurve*>& getShownCurves() const { return m_shown; }

    const jSet<UITrackCurve*>& getSelectedCurves() const { return m_selected_curves; }
    const jSet<UITrackCurveKey*>& getSelectedKeys() const { return m_selected_keys; }
    // Replace the selections (each marks the panel for redraw).
    void setSelectedCurves(const jVector<UITrackCurve*>& curves);
    void setSelectedKeys(const jVector<UITrackCurveKey*>& keys);
    // Marks every shown curve for redraw.
    void setDirty();
    // Drops every reference to a curve (or point) that is going away.
    void forgetCurve(UITrackCurve* curve);
    void forgetKey(UITrackCurveKey* key);

    // Frames the selected keys (every shown curve when none is selected) along time (the shared
    // range the key lines show, posting 199), along value, or both, with a margin.
    void arrange(bool time, bool value);
    // Frames the values of every shown curve, keeping the time range.
    void refit();

    UIScrollBox* getScroll() const { return m_scroll; }
    UICanvas* getCanvas() const { return m_canvas; }
    const UITrackCurveMapping& getMapping() const { return m_mapping; }

private:
    void render();
    void send_selection();
    void press_key(UITrackCurveKey* key, bool extend);
    void start_box(bool extend);
    void drag_box(int x, int y);
    void drag_keys(int x, int y, bool constrain);
    void drag_handle(int x, int y);
    void pan(int x, int y);
    void zoom_time(float x, double factor);
    bool value_bounds(bool selectedOnly, double& low, double& high, float& begin, float& end) const;
    void to_canvas(const UIEventMouse* e, int& x, int& y) const;
    UITrackCurveKey* key_at(int polygon) const;
    // The selected point whose handle dot is polygon, with the handle's side; null when none is.
    UITrackCurveKey* handle_at(int polygon, int& side) const;

    UITrackCurveMapping m_mapping;
    UITrackCurveGrid* m_grid = nullptr;
    // Labelled times along the bottom edge: the shown range in seconds or frames, as the key lines
    // below it show it.
    UITimeRuler m_ruler;
    jVector<UITrackCurve*> m_shown;
    jSet<UITrackCurve*> m_selected_curves;
    jSet<UITrackCurveKey*> m_selected_keys;
    jSet<UITrackCurveKey*> m_saved_keys;
    UIScrollBox* m_scroll = nullptr;
    UICanvas* m_canvas = nullptr;
    int m_mode = 0;
    bool m_dragged = false;
    bool m_dirty = true;
    int m_press_x = 0;
    int m_press_y = 0;
    UITrackCurveKey* m_pressed = nullptr;
    int m_handle_side = 0;
    float m_press_time = 0.0f;
    double m_press_value = 0.0;
    int m_width = -1;
    int m_height = -1;
    float m_grid_time = -1.0f; // the current time the grid shows
    UIRubberBand* m_box = nullptr;
};
