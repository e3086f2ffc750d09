#pragma once

#include <cmath>

#include "anim/TrackCurve.h"
#include "anim/TrackSegment.h"

// Where playback of one compiled curve stands: the segment the last sample fell in (ready for
// sampling, so that the frames that stay in it read nothing but this cursor) and, on a Bezier
// segment, the curve parameter solved last. Playback moves forward a little each frame, so the
// next solution is predicted from the last one and its slope: three Newton steps from there settle
// about nineteen samples in twenty, where a cold start from the normalised time takes four and,
// near flat stretches of the timing curve, often the safeguarded search as well.
template <class Value>
class TrackCurveCursor {
public:
    // The largest last Newton correction of a predicted solution that is taken as settled.
    static constexpr double CONVERGED = 1e-5;

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
        bool forward = c == previous + 1;
        if (forward && c + 2 < count) {
            __builtin_prefetch(segments + c + 1);
            __builtin_prefetch(times + c + 2);
        }
        m_shape = TrackCurve::shape(times, segments, count, c);
        // Stepping onto the next segment, playback is just past its start, where the timing curve
        // is close to its quadratic part bx s^2 + cx s: solving that beats a cold start. A jump
        // (scrubbing) solves cold.
        if (forward && m_shape.mode == TrackCurveSegment<Value>::BEZIER) {
            double u = TrackCurve::normalised(m_shape, t);
            double disc = m_shape.cx * m_shape.cx + 4.0 * m_shape.bx * u;
            m_solved = true;
            m_s = disc > 0.0 ? 2.0 * u / (m_shape.cx + std::sqrt(disc)) : u;
            m_u = u;
            m_rate = 0.0;
        }
    }

private:
    // Returns the curve parameter of normalised time u on the cursor's Bezier segment: three Newton
    // steps from the prediction, taken when the last correction was below CONVERGED (the error
    // left after it is then about its square). A cold start, or a prediction that did not settle,
    // takes TrackCurve::solve's path.
    double solve(double u)
    {
        const double ax = m_shape.ax, bx = m_shape.bx, cx = m_shape.cx;
        double s = 0.0, step = 1.0, slope = 1.0;
        if (m_solved) {
            s = predict(u);
            for (int i = 0; i < 3; ++i) {
                slope = (3.0 * ax * s + 2.0 * bx) * s + cx;
                step = (((ax * s + bx) * s + cx) * s - u) / slope;
                s -= step;
            }
        }
        if (!(std::fabs(step) <= CONVERGED && s >= 0.0 && s <= 1.0)) {
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
