#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class UICanvas;
class UITrackCurveMapping;

// The backdrop of the curve view, beneath the curves: horizontal lines at round values, each
// labelled with its value at the left edge, vertical lines at round times, and a light vertical
// line at the current time. Steps come from UITrackCurveMapping::gridStep, so that lines stay
// VALUE_PIXELS (TIME_PIXELS) apart whatever the zoom.
class UITrackCurveGrid {
public:
    // The least distance between value lines and between time lines, in pixels.
    static constexpr int VALUE_PIXELS = 40;
    static constexpr int TIME_PIXELS = 80;

    UITrackCurveGrid() = default;
    UITrackCurveGrid(const UITrackCurveGrid&) = delete;
    UITrackCurveGrid& operator=(const UITrackCurveGrid&) = delete;

    // Draws on canvas from now on (after taking its shapes off the canvas drawn on before; null
    // leaves no canvas).
    void attach(UICanvas* canvas);
    UICanvas* getCanvas() const { return m_canvas; }
    // Draws the lines of mapping's view and the current-time line at time (the data hub's,
    // AppData::getTime), making or removing shapes as the number of lines changes (nothing
    // without a canvas).
    void render(const UITrackCurveMapping& mapping, double time);
    // Takes every shape off the canvas and forgets it.
    void clearShapes();

    // The canvas ids of the value lines, of their labels (in the same order, bottom up) and of the
    // time lines (left to right) the last render drew.
    const jVector<int>& getValueLines() const { return m_value_lines; }
    const jVector<int>& getValueLabels() const { return m_labels; }
    const jVector<int>& getTimeLines() const { return m_time_lines; }
    // The canvas id of the current-time line, -1 when not attached.
    int getTimeCursor() const { return m_cursor; }

    // The label of value on a grid of step: the fewest significant digits that tell multiples of
    // step apart ("0.5", "-2"), in plain digits below a million and in exponent form only when
    // those digits cannot show the value otherwise ("1e+06", "1e-05").
    static jString formatValue(double value, double step);

private:
    void render_values(const UITrackCurveMapping& mapping);
    void render_times(const UITrackCurveMapping& mapping);
    void render_cursor(const UITrackCurveMapping& mapping, double time);
    // Keeps count lines of color in ids (count labels), making or removing the difference.
    void fit_lines(jVector<int>& ids, int count, const vec4& color);
    void fit_labels(int count);
    // Sets line id to the segment from (x0, y0) to (x1, y1).
    void set_line(int id, double x0, double y0, double x1, double y1);

    UICanvas* m_canvas = nullptr;
    jVector<int> m_value_lines;
    jVector<int> m_labels;
    jVector<int> m_time_lines;
    int m_cursor = -1;
};
