#pragma once

#include <utility>

#include "kit/jMath.h"
#include "kit/jSet.h"
#include "kit/jVector.h"
#include "ui/UITrackCurveMapping.h"

class FParameterSingle;
class UICanvas;
class UITrackCurveKey;

// The value-over-time curve of a float or double parameter: its colour, the value bounds it is
// drawn within, and one point per key in time order. The parameter owns it; the curve panel lists
// the curves it shows and gives them its canvas, on which a curve draws itself (a polyline in its
// colour, as the engine evaluates the parameter) and its keys' points.
class UITrackCurve {
public:
    UITrackCurve() = default;
    virtual ~UITrackCurve() = default;
    UITrackCurve(const UITrackCurve&) = delete;
    UITrackCurve& operator=(const UITrackCurve&) = delete;

    virtual FParameterSingle* getData() const { return m_data; }
    virtual void setData(FParameterSingle* data) { m_data = data; }
    virtual const vec4& getColor() const { return m_color; }
    virtual void setColor(const vec4& color);
    virtual float getMinValue() const { return m_min; }
    virtual void setMinValue(float v) { m_min = v; }
    virtual float getMaxValue() const { return m_max; }
    virtual void setMaxValue(float v) { m_max = v; }
    virtual bool isDirty() const { return m_dirty; }
    virtual void setDirty(bool dirty) { m_dirty = dirty; }
    virtual jVector<UITrackCurveKey*>& getKeys() { return m_keys; }
    // Leaves the curve panel's lists (when it is shown there) and takes its shapes off the canvas.
    virtual void clearRender();

    // Adds a point (the caller then sorts); the point learns its curve.
    void addKey(UITrackCurveKey* key);
    // Takes a point out, with its shapes off the canvas; false when it is not there.
    bool removeKey(UITrackCurveKey* key);
    // Takes every point out at once, as removeKey does one (each forgets its curve): what a
    // parameter releasing its keys calls first, so that releasing them costs no search.
    void removeAllKeys();
    // Orders the points by their keys' times; points at one time keep their order (the keys' own).
    void sortKeys();

    // Draws on canvas from now on, making the polyline there (after taking every shape off the
    // canvas drawn on before; null leaves no canvas); the points make their shapes when they are
    // first drawn.
    void attach(UICanvas* canvas);
    UICanvas* getCanvas() const { return m_canvas; }
    // Draws the curve across the canvas columns x0 to x1 of mapping (nothing without a canvas or
    // a parameter): the polyline of the engine parameter's compiled curve (UITrackCurvePolyline;
    // the parameter's value at the data hub's time as a flat line when it has no keys), one
    // pixel wide, brighter when one of its points is in selected; then the point of every key
    // within those columns (the others are hidden), with the handles of the selected ones on
    // their Bezier sides where the engine places them: the key's tangents clamped into their
    // segments as TrackCurveKernel clamps them. Leaves the curve clean. Draws nothing again when
    // the engine's curve, the view, the points, the colour and the selected points are those of the
    // last render, and moves the last polyline when the view only moved (panned) within what it
    // covers.
    void render(const UITrackCurveMapping& mapping, int x0, int x1, const jSet<UITrackCurveKey*>& selected);
    // Takes the polyline and every point's shapes off the canvas and forgets it.
    void clearShapes();
    // The canvas id of the polyline, -1 when not attached.
    int getPolyline() const { return m_polyline; }
    // The polyline the last render drew, in canvas pixels before getOffset moves it, across at
    // least the columns x0 to x1 (a pan moves the last flattening as a whole).
    const jVector<vec3>& getPoints() const { return m_shows_flat ? m_flat : m_points; }
    // The whole pixels (z = 0) by which the canvas moves getPoints.
    const vec3& getOffset() const { return m_offset; }
    // The share by which the pixels per second or per value unit may change while the last
    // flattened polyline is moved rather than flattened again: its chords stay as close.
    static constexpr double REUSE_SCALE = 1e-3;
    // The most, in pixels, by which a point of the last flattening may miss its place in the view
    // while the flattening is moved by whole pixels rather than placed point by point: a pan moves
    // the view by a whole number of pixels up to the rounding of its times.
    static constexpr double SHIFT_TOLERANCE = 0.01;

private:
    // The colour of the polyline while one of the curve's points is selected: each channel half
    // way to white.
    vec4 bright_color() const;
    // The points of this curve in selected, in key order.
    jVector<UITrackCurveKey*> chosen_points(const jSet<UITrackCurveKey*>& selected) const;
    // What a render changed of the polyline on the canvas.
    enum class Redraw { None, Moved, Reshaped };
    // Brings m_points up to the engine parameter's curve in mapping across the columns x0 to x1:
    // flattened again when the curve changed or the view left what the last flattening covered,
    // else moved. Returns Moved when the canvas only moves the flattening it holds (and the marks
    // that follow it), None when the points are still those of the last render.
    template <class Engine>
    Redraw update_points(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1);
    // The keys of engine whose marks show across the columns x0 to x1 of mapping, first to end.
    template <class Engine>
    static std::pair<int, int> marked_keys(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1);
    // Flattens the curve of engine in mapping over the columns x0 to x1 and a quarter of their
    // width on either side, so that panning moves it.
    template <class Engine>
    void flatten(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1);
    // Whether the last flattening, moved into mapping, covers the columns x0 to x1 as closely.
    bool covers(const UITrackCurveMapping& mapping, int x0, int x1) const;
    // Sets m_points to the flattened polyline moved into mapping, cut at the columns x0 and x1.
    void place(const UITrackCurveMapping& mapping, int x0, int x1);
    // Whether mapping moves every point of the last flattening by whole pixels, to within
    // SHIFT_TOLERANCE; sets dx and dy to them.
    bool shift_of(const UITrackCurveMapping& mapping, int& dx, int& dy) const;
    // Gives the canvas m_points where they are.
    void show_placed();
    template <class Parameter>
    void render_as(const Parameter* parameter, const UITrackCurveMapping& mapping, int x0, int x1,
                   const jSet<UITrackCurveKey*>& selected);
    template <class Engine>
    void render_keys(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1,
                     const jSet<UITrackCurveKey*>& selected);

    FParameterSingle* m_data = nullptr;
    vec4 m_color{1.0f, 1.0f, 1.0f, 1.0f};
    float m_min = 0.0f;
    float m_max = 0.0f;
    bool m_dirty = true;
    jVector<UITrackCurveKey*> m_keys;
    UICanvas* m_canvas = nullptr;
    int m_polyline = -1;
    jVector<vec3> m_points;
    // The last flattening: its polyline in the pixels of its mapping, the times it covers, and the
    // engine parameter and the revision of its curve it was made from (none while begin > end).
    jVector<vec3> m_flat;
    UITrackCurveMapping m_flat_mapping;
    double m_flat_begin = 0.0;
    double m_flat_end = -1.0;
    unsigned m_flat_revision = 0;
    const void* m_flat_source = nullptr;
    double m_flat_reach = 0.0; // the largest coordinate of a point of it, across or down
    // Whether the canvas draws the last flattening (moved by m_offset) rather than m_points.
    bool m_shows_flat = false;
    vec3 m_offset;
    // What the last render drew: the view, its columns, the selected points and whether the
    // points or the colour changed since (m_stale).
    UITrackCurveMapping m_drawn_mapping;
    int m_drawn_x0 = 0;
    int m_drawn_x1 = -1;
    jVector<UITrackCurveKey*> m_chosen;
    std::pair<int, int> m_marked{0, 0}; // the keys whose marks it drew, first to end
    bool m_stale = true;
};
