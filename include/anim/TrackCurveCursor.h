#pragma once

#include <cmath>

#include "anim/TrackCurve.h"
#include "anim/TrackSegment.h"

// Where playback of one compiled curve stands: the segment the last sample fell in (ready for
// sampling, so that the frames that stay in it read nothing but this cursor) and, on a Bezier
// segment, the curve parameter solved last. Playback moves forward a little each frame, so the
// next solution is predicted from the last one and its slope: Newton steps from the prediction
// settle where a cold start from the normalised time (near flat stretches of the timing curve)
// would need the safeguarded search, about one sample in twenty on curves with long handles.
template <class Value>
class TrackCurveCursor {
public:
    // Starts on no segment of no curve.
    TrackCurveCursor() = default;

    // Plays curve from now on (null: none); the next sample searches for its segment.
    void attach(const TrackCurveData<Value>* curve)
    {
        m_curve = curve;
        reset();
    }
    // Forgets the segment (the curve changed); the next sample searches for it.
    void reset()
    {
        m_shape = TrackCurve::none<Value>();
        m_index = 0;
        m_solved = false;
    }

    // Returns whether t is in the segment the cursor is on.
    bool holds(float t) const { return t >= m_shape.t0 && t < m_shape.t1; }

    // Returns the value at t of the attached curve, which must have keys.
    Value value(float t)
    {
        if (!holds(t))
            seek(t);
        return sample(t);
    }

    // Returns the value at t, which the cursor's segment must hold.
    Value sample(float t)
    {
        if (m_shape.mode != TrackCurveSegment<Value>::BEZIER)
            return TrackCurve::value(m_shape, TrackCurve::normalised(m_shape, t));
        double u = TrackCurve::normalised(m_shape, t);
        double s = solve(u);
        return TrackCurve::value(m_shape, s);
    }

    // Moves the cursor onto the segment of the attached curve (which must have keys) that holds t.
    void seek(float t)
    {
        const float* times = m_curve->times.data();
        const TrackCurveSegment<Value>* segments = m_curve->segments.data();
        int count = m_curve->times.size();
        int previous = m_index;
        int c = TrackSegment::find(times, count, t, m_index);
        m_solved = false;
        if (c < 0) {
            m_shape = TrackCurve::before(segments[0], times[0]);
            return;
        }
        // Playback reaches the next segment a few frames after it entered this one, and by then
        // the other channels of a large track have pushed this curve out of the nearest caches:
        // loading it now hides that wait.
        if (c == previous + 1 && c + 2 < count) {
            __builtin_prefetch(segments + c + 1);
            __builtin_prefetch(times + c + 2);
        }
        m_shape = TrackCurve::shape(times, segments, count, c);
    }

private:
    // Returns the curve parameter of normalised time u on the cursor's Bezier segment: Newton steps
    // from the prediction, checked as TrackCurve::solve checks its own.
    // The first sample on a segment, and a prediction that did not settle, take solve's path.
    double solve(double u)
    {
        const double ax = m_shape.ax, bx = m_shape.bx, cx = m_shape.cx;
        double s = 0.0, f = 1.0, slope = 1.0;
        if (m_solved) {
            s = predict(u);
            for (int step = 0; step < 4; ++step) {
                f = ((ax * s + bx) * s + cx) * s - u;
                slope = (3.0 * ax * s + 2.0 * bx) * s + cx;
                s -= f / slope;
            }
        }
        if (!(std::fabs(f) <= TrackCurve::SOLVE_TOLERANCE && s >= 0.0 && s <= 1.0)) {
            s = TrackCurve::solve(ax, bx, cx, u, u);
            slope = (3.0 * ax * s + 2.0 * bx) * s + cx;
        }
        m_solved = true;
        m_s = s;
        m_u = u;
        m_rate = 1.0 / slope;
        return s;
    }

    // The last solution moved along its slope to u, kept inside [0, 1].
    double predict(double u) const
    {
        double s = m_s + (u - m_u) * m_rate;
        return s < 0.0 ? 0.0 : (s > 1.0 ? 1.0 : s);
    }

    TrackCurveShape<Value> m_shape = TrackCurve::none<Value>();
    const TrackCurveData<Value>* m_curve = nullptr;
    int m_index = 0;
    bool m_solved = false;
    // The last solution on this segment: curve parameter, normalised time, and ds/du there.
    double m_s = 0.0;
    double m_u = 0.0;
    double m_rate = 0.0;
};
