#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackCurveKernel.h"
#include "anim/TrackSegment.h"
#include "kit/jPlatform.h"

// Where playback of one compiled curve stands: the segment the last sample fell in (ready for
// sampling, so that the frames that stay in it read nothing but this cursor), the compiled segment
// after it, and, on a Bezier segment, the curve parameter solved last. Playback moves forward a
// little each frame, so the next solution is predicted from the last one and its slope: three
// Newton steps from there settle about nineteen samples in twenty, where a cold start
// (TrackCurveKernel::cold) takes more and, near flat stretches of the timing curve, often the
// safeguarded search as well. Float and double parameters (TrackParameterCurve) evaluate through
// one: the editor's views and a parameter's own apply.
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
        m_next = nullptr;
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
        double u = TrackCurve::normalised(m_shape, t);
        if (m_shape.mode != TrackCurveSegment<Value>::BEZIER)
            return TrackCurve::value(m_shape, u);
        return TrackCurve::value(m_shape, solve(u));
    }

    // Moves the cursor onto the segment of the attached curve (which must have keys) that holds t.
    void seek(float t)
    {
        m_solved = false;
        if (m_next && t >= m_shape.t1 && t < m_next->t1)
            step(t);
        else
            search(t);
    }

private:
    // Moves onto the next segment. Playback does this all the time: the next segment starts where
    // this one ends and says itself where it ends, so neither the curve nor its time array is read.
    void step(float t)
    {
        const TrackCurveSegment<Value>* g = m_next;
        m_shape = TrackCurve::shape(*g, m_shape.t1);
        ++m_index;
        m_next = g + 1 < m_end ? g + 1 : nullptr;
        if (m_next)
            J_PREFETCH(m_next);
        // A jump (scrubbing) solves cold; a step starts from TrackCurveKernel::enter's guess.
        if (m_shape.mode == TrackCurveSegment<Value>::BEZIER) {
            double u = TrackCurve::normalised(m_shape, t);
            m_solved = true;
            m_s = static_cast<float>(TrackCurveKernel::enter(m_shape.bx, m_shape.cx, u));
            m_u = static_cast<float>(u);
            m_rate = 0.0f;
        }
    }

    // Finds the segment that holds t in the attached curve.
    void search(float t)
    {
        const float* times = m_curve->times.data();
        const TrackCurveSegment<Value>* segments = m_curve->segments.data();
        int count = m_curve->times.size();
        m_end = segments + count;
        int c = TrackSegment::find(times, count, t, m_index);
        m_index = c;
        if (c < 0) {
            m_shape = TrackCurve::before(segments[0], times[0]);
            m_next = segments;
            return;
        }
        m_shape = TrackCurve::shape(segments[c], times[c]);
        m_next = c + 1 < count ? segments + c + 1 : nullptr;
    }

    // Returns the curve parameter of normalised time u on the cursor's Bezier segment: the last
    // solution's prediction refined, or, on a cold start or when that did not settle, solved cold.
    double solve(double u)
    {
        using K = TrackCurveKernel;
        const double ax = m_shape.ax, bx = m_shape.bx, cx = m_shape.cx;
        K::Solution r;
        if (m_solved)
            r = K::refine(ax, bx, cx, u, K::predict(m_s, m_u, m_rate, u), K::WARM_STEPS);
        r = K::settle(ax, bx, cx, u, r);
        m_solved = true;
        m_s = static_cast<float>(r.s);
        m_u = static_cast<float>(u);
        m_rate = static_cast<float>(r.rate);
        return r.s;
    }

    TrackCurveShape<Value> m_shape = TrackCurve::none<Value>();
    const TrackCurveData<Value>* m_curve = nullptr;
    // The compiled segment after the cursor's (null after the last key's), and the end of the
    // segments as the last search found them (a recompiled curve resets the cursor first).
    const TrackCurveSegment<Value>* m_next = nullptr;
    const TrackCurveSegment<Value>* m_end = nullptr;
    // The cursor's segment (-1 before the first key).
    int m_index = 0;
    bool m_solved = false;
    // The last solution on this segment: curve parameter, normalised time, and ds/du there.
    float m_s = 0.0f;
    float m_u = 0.0f;
    float m_rate = 0.0f;
};
