#pragma once

#include <cmath>

#include "anim/TrackSegment.h"
#include "anim/TrackTypes.h"
#include "kit/jMath.h"

// Evaluation of float and double key arrays (TrackKeyFloat, TrackKeyDouble). The segment from key
// i to key i+1 is shaped by key i's type: constant holds key i's value, linear interpolates, and the
// three Bezier types run from (t_i, v_i) through key i's out handle and key i+1's in handle to
// (t_i+1, v_i+1). Before the first key the value is the first key's, after the last the last key's.
class TrackCurve {
public:
    // How close the solved curve time must come to the asked time, as a fraction of the segment.
    static constexpr double SOLVE_TOLERANCE = 1e-6;

    // Returns the value at t; keys must be sorted by time and count must be at least 1.
    template <class Key>
    static auto evaluate(const Key* keys, int count, float t, int& cursor) -> decltype(Key::value)
    {
        int i = TrackSegment::find(keys, count, t, cursor);
        if (i < 0)
            return keys[0].value;
        if (i + 1 >= count)
            return keys[count - 1].value;
        return segment(keys[i], keys[i + 1], t);
    }

    // Returns the value at t inside the segment from a to b (a.time <= t < b.time).
    template <class Key>
    static auto segment(const Key& a, const Key& b, float t) -> decltype(Key::value)
    {
        using Value = decltype(Key::value);
        if (a.type == TRACK_KEY_CONSTANT)
            return a.value;
        double d = static_cast<double>(b.time) - a.time;
        double u = (t - static_cast<double>(a.time)) / d;
        if (a.type == TRACK_KEY_LINEAR || a.type < 0 || a.type >= TRACK_KEY_TYPE_COUNT)
            return static_cast<Value>(a.value + (static_cast<double>(b.value) - a.value) * u);
        return static_cast<Value>(bezier(a.value, a.tangents.z, a.tangents.w, b.value, b.tangents.x,
                                         b.tangents.y, d, u));
    }

    // Returns the value of the Bezier segment from (0, v0) to (d, v1) with the out handle (odt, odv)
    // of the first key and the in handle (idt, idv) of the second, at the normalised time u in
    // [0, 1]. Handle times are clamped into the segment, scaling the handle's value offset by the
    // same factor so the tangent keeps its slope; the curve parameter is solved by safeguarded
    // Newton steps until its time is within SOLVE_TOLERANCE of u.
    static double bezier(double v0, double odt, double odv, double v1, double idt, double idv, double d,
                         double u)
    {
        if (odt > d) {
            odv *= d / odt;
            odt = d;
        } else if (odt < 0.0) {
            odt = 0.0;
        }
        if (-idt > d) {
            idv *= d / -idt;
            idt = -d;
        } else if (idt > 0.0) {
            idt = 0.0;
        }
        double h1 = odt / d;
        double h2 = 1.0 + idt / d;
        double cx = 3.0 * h1;
        double bx = 3.0 * (h2 - 2.0 * h1);
        double ax = 1.0 + 3.0 * (h1 - h2);
        double s = solve(ax, bx, cx, u);
        double p1 = v0 + odv;
        double p2 = v1 + idv;
        double cv = 3.0 * (p1 - v0);
        double bv = 3.0 * (p2 - 2.0 * p1 + v0);
        double av = v1 - v0 + 3.0 * (p1 - p2);
        return v0 + s * (cv + s * (bv + s * av));
    }

    // Returns s in [0, 1] with |((ax s + bx) s + cx) s - u| <= SOLVE_TOLERANCE; the polynomial must
    // be non-decreasing on [0, 1] with x(0) = 0 and x(1) = 1.
    static double solve(double ax, double bx, double cx, double u)
    {
        double lo = 0.0;
        double hi = 1.0;
        double s = u;
        for (int step = 0; step < 64; ++step) {
            double f = ((ax * s + bx) * s + cx) * s - u;
            if (std::fabs(f) <= SOLVE_TOLERANCE)
                break;
            if (f > 0.0)
                hi = s;
            else
                lo = s;
            double slope = (3.0 * ax * s + 2.0 * bx) * s + cx;
            double next = s - f / slope;
            s = (next > lo && next < hi) ? next : 0.5 * (lo + hi);
        }
        return s;
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
        return vec4(ax, ay, -ax, -ay);
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
};
