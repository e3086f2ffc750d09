#pragma once

#include "anim/TrackCurve.h"
#include "kit/jMath.h"
#include "kit/jVector.h"

class UITrackCurveMapping;

// Flattens a compiled float or double curve (TrackParameterCurve::getCurve) into the canvas
// polyline that draws it, exactly as the engine evaluates it: constant segments as steps, linear
// ones as straight lines, Bezier ones as the parametric cubic (time from TrackCurveKernel's timing
// polynomial with the handles clamped as the engine clamps them, value from TrackCurve::value),
// the first key's value held before it and the last key's after it. Bezier segments are split in
// halves until every chord stays within TOLERANCE pixels of the curve, so that a steep stretch
// gets as many points as it needs and a flat one few. The distance is measured straight up or
// down at the same x, except on chords steeper than 4 pixels per pixel, where it is four times
// the distance across the chord (a column-by-column measure would split a near-vertical stretch
// without end).
class UITrackCurvePolyline {
public:
    // The largest distance, in pixels, between a chord and the curve it stands for.
    static constexpr double TOLERANCE = 0.25;
    // The deepest split of one segment, a safeguard: a stretch 2^-MAX_DEPTH of a segment long is
    // far below a pixel long in any view that shows the segment.
    static constexpr int MAX_DEPTH = 30;

    // Appends to points (canvas pixels, z = 0) through mapping.
    UITrackCurvePolyline(const UITrackCurveMapping& mapping, jVector<vec3>& points);

    // Appends the polyline of curve across the canvas columns x0 to x1 (nothing when x0 > x1),
    // from x0 to x1, points in order of time; a jump (the end of a constant segment) is a vertical
    // step at its key. A curve without keys is the flat line of value flat.
    template <class Value>
    void append(const TrackCurveData<Value>& curve, Value flat, int x0, int x1);

private:
    // Appends the part of shape (a segment, or the hold before the first key) between the times
    // ta and tb.
    template <class Value>
    void piece(const TrackCurveShape<Value>& shape, double ta, double tb);
    // Appends the curve from parameter sa (at pa, already appended) to sb (at pb), split in
    // halves while a chord strays from the curve.
    template <class Value>
    void split(const TrackCurveShape<Value>& shape, double sa, double sb, const dvec3& pa, const dvec3& pb, int depth);
    // Whether the chord pa-pb strays more than TOLERANCE from the curve between sa and sb.
    template <class Value>
    bool strays(const TrackCurveShape<Value>& shape, double sa, double sb, const dvec3& pa, const dvec3& pb) const;
    // The canvas point of curve parameter s of shape (kept in double while the curve is split).
    template <class Value>
    dvec3 at(const TrackCurveShape<Value>& shape, double s) const;
    // The curve parameter of time t in shape (0 to 1).
    template <class Value>
    static double parameter(const TrackCurveShape<Value>& shape, double t);
    // Appends a point unless it repeats the last one.
    void add(const dvec3& p);

    const UITrackCurveMapping& m_mapping;
    jVector<vec3>& m_points;
};
