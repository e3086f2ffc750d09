#pragma once

#include "kit/SignalSlot.h"
#include "kit/jVector.h"
#include "ui/UITimeRuler.h"
#include "ui/UIVLayout.h"

class UICanvas;

// The strip on which the user sets the playback range (a begin and an end mark) and the current
// time (the play head) along a time axis from min to max, under a ruler of labelled ticks in
// seconds or frames. Everything is drawn as shapes of one canvas, rebuilt in update.
class UITimeBar : public UIVLayout {
public:
    // A signal: every handler is called with the event and the bar.
    using Signal = jVector<Function<void(const UIEventChanged*, UIElement*)>>;

    // "No snap": a time far outside any axis.
    static constexpr float NO_SNAP = 1000000000.0f;

    // Builds the bar over [min, max] with the range covering the whole axis and the play head at min.
    UITimeBar(UIRoot* root, float min, float max);
    ~UITimeBar() override;

    // Rebuilds the shapes when a value or the canvas size changed, then updates the children.
    void update(float dt) override;
    // Frees the canvas, then the layout; the bar stays usable, empty.
    void release() override;
    // Ends any drag, then lets the layout handle the event; returns what the layout returns.
    bool onNonClient(const UIEventMouse* e) override;
    // Starts a drag of a mark or the play head; true when the press hit the canvas.
    bool onMouseDown(const UIEventMouse* e) override;
    // Drags the grabbed mark or play head; true when it moved.
    bool onMouseMove(const UIEventMouse* e) override;
    // Ends the drag on a left release; returns what the layout returns.
    bool onMouseUp(const UIEventMouse* e) override;
    // Steps the play head by 1 % of the axis on the step keys while the canvas has focus.
    bool onKeyPress(const UIEventKey* e) override;

    // Plain accessors: each returns or stores its field and nothing else (no redraw is asked).
    virtual float getMin() const;
    virtual float getMax() const;
    virtual float getTime() const;
    virtual float getBegin() const;
    virtual float getEnd() const;
    virtual float getSnapTime() const;
    virtual void setSnapTime(float t);
    virtual unsigned getCanvasWidth() const;
    virtual void setCanvasWidth(unsigned width);
    virtual unsigned getCanvasHeight() const;
    virtual void setCanvasHeight(unsigned height);
    virtual UICanvas* getCanvas() const;
    virtual void setCanvas(UICanvas* canvas);

    // Value setters for the window; each clamps, asks for a redraw and raises no signal.
    // Sets the axis start as given.
    void setMin(float t);
    // Sets the axis end as given.
    void setMax(float t);
    // Sets the range begin, clamped to the axis.
    void setBegin(float t);
    // Sets the range end, clamped to the axis.
    void setEnd(float t);
    // Sets the current time, clamped to the range.
    void setTime(float t);
    // Sets the frame rate the ruler counts in (0: seconds); a redraw is asked only on a change.
    void setFrameRate(float fps);
    float getFrameRate() const { return m_frame_rate; }
    // The ruler drawn along the axis.
    const UITimeRuler& getRuler() const { return m_ruler; }

    // Raised when the user moves the begin or end mark.
    Signal& rangeChanged() { return m_range_changed; }
    // Raised when the user moves the play head (or steps it with the keys).
    Signal& timeChanged() { return m_time_changed; }

    // Canvas x of time t at the cached canvas width, truncated toward zero; the axis's start when the
    // range is empty or inverted.
    int timeToPixel(float t) const;
    // The time under canvas x for the running drag: clamped to the axis, then snapped.
    float pixelToTime(int x) const;

private:
    void create_shapes();
    void rebuild_frame();
    void rebuild_range(int xb, int xe);
    void rebuild_mark(int lineId, int polygonId, int x);
    void rebuild_play_head(int xt);
    void grab(int x, int y);
    bool drag_begin(float t, const UIEventMouse* e);
    bool drag_end(float t, const UIEventMouse* e);
    bool drag_time(float t, const UIEventMouse* e);
    void pull_time_into_range();
    void raise(const Signal& signal);

    float m_min;
    float m_max;
    float m_time;
    float m_begin;
    float m_end;
    float m_snap_time = NO_SNAP;
    unsigned m_canvas_width = 0;
    unsigned m_canvas_height = 0;
    UICanvas* m_canvas = nullptr;
    int m_drag = -1;
    int m_drag_offset = 0;
    bool m_dirty = false;
    int m_frame_line = -1;
    int m_range_line = -1;
    int m_range_polygon = -1;
    int m_begin_line = -1;
    int m_begin_polygon = -1;
    int m_end_line = -1;
    int m_end_polygon = -1;
    int m_time_line = -1;
    int m_time_polygon = -1;
    Signal m_range_changed;
    Signal m_time_changed;
    float m_frame_rate = 0.0f;
    UITimeRuler m_ruler;
};
