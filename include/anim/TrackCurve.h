#pragma once

#include <cmath>
#include <limits>

#include "anim/TrackCurveIndex.h"
#include "anim/TrackCurveKernel.h"
#include "anim/TrackSegment.h"
#include "anim/TrackTypes.h"
#include "kit/jMath.h"
#include "kit/jVector.h"

// One compiled segment, from a key to the next (the last key's segment runs forever), as a curve
// stores it: v(s) = v0 + s (cv + s (bv + s av)), with the handle times from which the curve's
// timing follows. Kept small because random access (scrubbing a long curve) reads one per sample:
// the timing polynomial is derived from the handles when a segment is entered (TrackCurveShape).
// The segment's start is its key's entry in the curve's time array.
template <class Value>
struct TrackCurveSegment {
    enum MODE { CONSTANT = 0, LINEAR = 1, BEZIER_EVEN = 2, BEZIER = 3 };
    Value v0 = 0, cv = 0, bv = 0, av = 0;
    // The time of the next key (infinity for the last key's segment): playback that steps on
    // from one segment to the next finds everything it needs here.
    float t1 = std::numeric_limits<float>::infinity();
    // The out handle's time offset from the segment's first key and the in handle's (negative)
    // offset from its second key, as stored in the keys; clamped into the segment on use.
    float out = 0.0f;
    float in = 0.0f;
    int mode = CONSTANT;
};

// A segment ready for sampling: its range, the normalised-time scale and, for Bezier segments,
// the timing polynomial ((ax s + bx) s + cx) s = (t - t0) / (t1 - t0).
template <class Value>
struct TrackCurveShape {
    float t0 = 0.0f;
    float t1 = 0.0f;
    // 1 / (t1 - t0), 0 for segments that hold one value. In double: near a handle that flattens
    // the timing curve the value is steep enough in time that a float's rounding here shows.
    double inv = 0.0;
    int mode = TrackCurveSegment<Value>::CONSTANT;
    // Kept in double: rounding them to float would move the curve's timing by up to a few 1e-7 of the
    // segment, which steep segments turn into value errors above a millionth.
    double ax = 0.0, bx = 0.0, cx = 0.0;
    Value v0 = 0, cv = 0, bv = 0, av = 0;
};

// A compiled curve: one time and one segment per key.
template <class Value>
struct TrackCurveData {
    jVector<float> times;
    jVector<TrackCurveSegment<Value>> segments;
    // Built by the compile that fills a whole TrackCurveData; sampling at random times uses it
    // when it is there (TrackCurveBatch). Recompiling times and segments alone leaves it stale:
    // release it then.
    TrackCurveIndex index;

    // Frees the times, the segments and the index.
    void release()
    {
        times.release();
        segments.release();
        index.release();
    }
};

// Evaluation of float and double key arrays (TrackKeyFloat, TrackKeyDouble). The segment from key
// i to key i+1 is shaped by key i's type: constant holds key i's value, linear interpolates, and the
// three Bezier types run from (t_i, v_i) through key i's out handle and key i+1's in handle to
// (t_i+1, v_i+1). Before the first key the value is the first key's, after the last the last key's.
// Keys are compiled once into polynomial segments so that sampling needs no key arithmetic; the
// arithmetic of a segment is TrackCurveKernel's. evaluate samples a compiled curve with nothing but
// a key index as its cursor, which the four channels of a colour share (TrackParameterColor).
class TrackCurve {
public:
    // Rebuilds times (one per key) and segments (one per key) from time-sorted keys.
    template <class Key, class Value>
    static void compile(const Key* keys, int count, jVector<float>& times, jVector<TrackCurveSegment<Value>>& segments)
    {
        times.clear();
        segments.clear();
        times.reserve(count);
        segments.reserve(count);
        for (int i = 0; i < count; ++i) {
            times.append(keys[i].time);
            segments.append(i + 1 < count ? segment<Key, Value>(keys[i], keys[i + 1]) : hold<Key, Value>(keys[i]));
        }
    }

    // Rebuilds curve (times, segments and the time index) from count time-sorted keys.
    template <class Key, class Value>
    static void compile(const Key* keys, int count, TrackCurveData<Value>& curve)
    {
        compile(keys, count, curve.times, curve.segments);
        curve.index.build(curve.times.data(), count);
    }

    // Returns the value at t of a compiled curve with count >= 1 keys.
    template <class Value>
    static Value evaluate(const float* times, const TrackCurveSegment<Value>* segments, int count, float t, int& cursor)
    {
        int c = TrackSegment::find(times, count, t, cursor);
        TrackCurveShape<Value> s = c >= 0 ? shape(segments[c], times[c]) : before(segments[0], times[0]);
        return sample(s, t);
    }

    // Returns compiled segment g, which starts at t0, ready for sampling.
    template <class Value>
    static TrackCurveShape<Value> shape(const TrackCurveSegment<Value>& g, float t0)
    {
        using S = TrackCurveSegment<Value>;
        TrackCurveShape<Value> s;
        s.t0 = t0;
        s.t1 = g.t1;
        s.mode = g.mode;
        s.v0 = g.v0;
        s.cv = g.cv;
        s.bv = g.bv;
        s.av = g.av;
        if (g.mode == S::CONSTANT)
            return s;
        double scale = 1.0 / (static_cast<double>(s.t1) - s.t0);
        s.inv = scale;
        if (g.mode == S::BEZIER)
            timing(g, scale, s);
        return s;
    }

    // Returns the segment before the first key (the first segment g starting at t0): the first
    // key's value from minus infinity up to it.
    template <class Value>
    static TrackCurveShape<Value> before(const TrackCurveSegment<Value>& g, float t0)
    {
        TrackCurveShape<Value> s;
        s.t0 = -std::numeric_limits<float>::infinity();
        s.t1 = t0;
        s.v0 = g.v0;
        return s;
    }

    // Returns a segment that holds no time at all (t0 > t1), so that every range check fails.
    template <class Value>
    static TrackCurveShape<Value> none()
    {
        TrackCurveShape<Value> s;
        s.t0 = std::numeric_limits<float>::infinity();
        s.t1 = -std::numeric_limits<float>::infinity();
        return s;
    }

    // Returns the normalised time of t in s (0 for segments that hold one value).
    template <class Value>
    static double normalised(const TrackCurveShape<Value>& s, float t)
    {
        return s.mode == TrackCurveSegment<Value>::CONSTANT ? 0.0 : static_cast<double>(t - s.t0) * s.inv;
    }

    // Returns the value of s at t (t0 <= t < t1).
    template <class Value>
    static Value sample(const TrackCurveShape<Value>& s, float t)
    {
        double u = normalised(s, t);
        double p = s.mode == TrackCurveSegment<Value>::BEZIER ? TrackCurveKernel::solve(s.ax, s.bx, s.cx, u) : u;
        return value(s, p);
    }

    // Returns the value of s at curve parameter p.
    template <class Value>
    static Value value(const TrackCurveShape<Value>& s, double p)
    {
        return static_cast<Value>(TrackCurveKernel::value(s.v0, s.cv, s.bv, s.av, p));
    }

    // Returns the tangents (in_dt, in_dv, out_dt, out_dv) that the automatic rule gives key i: a
    // third of the way to each neighbour, averaged into one straight handle through the key.
    template <class Key>
    static vec4 autoTangents(const Key* keys, int count, int i)
    {
        using Value = decltype(Key::value);
        const float third = 0.33333334f;
        const Value valueThird = static_cast<Value>(sizeof(Value) == sizeof(float) ? third : 1.0 / 3.0);
        float inT = 0.0f, outT = 0.0f;
        Value inV = 0, outV = 0;
        if (i > 0) {
            inT = (keys[i - 1].time - keys[i].time) * third;
            inV = (keys[i - 1].value - keys[i].value) * valueThird;
        }
        if (i + 1 < count) {
            outT = (keys[i + 1].time - keys[i].time) * third;
            outV = (keys[i + 1].value - keys[i].value) * valueThird;
        }
        float ax = (inT - outT) / 2.0f;
        float ay = static_cast<float>((inV - outV) / 2);
        // 0 - a rather than -a: a flat handle is stored as 0, never as -0.
        return vec4(ax, ay, 0.0f - ax, 0.0f - ay);
    }

    // Recomputes the tangents of every smooth key from its neighbours.
    template <class Key>
    static void smoothTangents(Key* keys, int count)
    {
        for (int i = 0; i < count; ++i) {
            if (keys[i].type == TRACK_KEY_SMOOTH)
                keys[i].tangents = autoTangents(keys, count, i);
        }
    }

private:
    // Fills the timing polynomial of a Bezier segment from its handles (scale is 1 / its length).
    template <class Value>
    static void timing(const TrackCurveSegment<Value>& g, double scale, TrackCurveShape<Value>& s)
    {
        TrackCurveKernel::timing(g.out, g.in, scale, s.ax, s.bx, s.cx);
    }

    // The segment after the last key: its value forever.
    template <class Key, class Value>
    static TrackCurveSegment<Value> hold(const Key& a)
    {
        TrackCurveSegment<Value> s;
        s.v0 = a.value;
        return s;
    }

    // Compiles the segment from a to b. Bezier handle times are clamped into the segment, scaling
    // the handle's value offset by the same factor so the tangent keeps its slope.
    template <class Key, class Value>
    static TrackCurveSegment<Value> segment(const Key& a, const Key& b)
    {
        using S = TrackCurveSegment<Value>;
        S s = hold<Key, Value>(a);
        s.t1 = b.time;
        double d = static_cast<double>(b.time) - a.time;
        if (d <= 0.0 || a.type == TRACK_KEY_CONSTANT)
            return s; // a zero-length segment is never sampled: the next key takes over at once
        double v0 = a.value, v1 = b.value;
        if (a.type < TRACK_KEY_SMOOTH || a.type >= TRACK_KEY_TYPE_COUNT) {
            s.mode = S::LINEAR;
            s.cv = static_cast<Value>(v1 - v0);
            return s;
        }
        s.out = a.tangents.z;
        s.in = b.tangents.x;
        double p1 = v0 + TrackCurveKernel::handleValue(a.tangents.w, a.tangents.z, d);
        double p2 = v1 + TrackCurveKernel::handleValue(b.tangents.y, -static_cast<double>(b.tangents.x), d);
        s.cv = static_cast<Value>(3.0 * (p1 - v0));
        s.bv = static_cast<Value>(3.0 * (p2 - 2.0 * p1 + v0));
        s.av = static_cast<Value>(v1 - v0 + 3.0 * (p1 - p2));
        // Handles at a third and two thirds of the segment make time linear in s: no solving.
        TrackCurveShape<Value> t;
        timing(s, 1.0 / d, t);
        bool even = std::fabs(t.ax) + std::fabs(t.bx) + std::fabs(t.cx - 1.0) <= 1e-7;
        s.mode = even ? S::BEZIER_EVEN : S::BEZIER;
        return s;
    }
};
