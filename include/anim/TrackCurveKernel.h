#pragma once

#include <algorithm>
#include <cmath>

// The arithmetic of one compiled curve segment, shared by every evaluator of compiled curves
// (TrackCurve, TrackCurveCursor, TrackCurvePlayer, TrackCurveBatch), so that they all give the
// value docs/anim-format.md defines and a change of it is made here once.
//
// A segment from a key at t0 to the next at t1 has the value
//   v(s) = v0 + s (cv + s (bv + s av))
// in the curve parameter s in [0, 1]. On linear segments s is the normalised time
// u = (t - t0) / (t1 - t0); on Bezier segments time follows the handles,
//   u = x(s) = ((ax s + bx) s + cx) s,
// which is non-decreasing on [0, 1] because the handle times are clamped into the segment, and s
// is solved for by Newton or Halley steps. A solution has settled when s is in [0, 1] and the last
// step moved it by at most TOLERANCE: the error left is then about the square of that step (the
// cube after a Halley step), far below a float time's resolution of the segment.
//
// Functions are small and free of branches where the vector passes of the player and the batch
// call them for several segments side by side.
class TrackCurveKernel {
public:
    // The largest last step of a settled solution, in the curve parameter.
    static constexpr double TOLERANCE = 1e-5;
    // Steps of a solve without history (COLD: fixed-point steps, then Halley steps) and Newton steps
    // from a prediction along the last solution's rate (WARM, playback moving on a frame).
    static constexpr int COLD_FIXED_STEPS = 2;
    static constexpr int COLD_STEPS = 3;
    static constexpr int WARM_STEPS = 3;
    // The most steps bracket takes, a safeguard: its steps settle long before.
    static constexpr int BRACKET_STEPS = 64;

    // Where the steps of a solve end: the curve parameter, the last step, and the reciprocal of the
    // slope the last Newton step was taken with (ds/du, along which the next frame's solution is
    // predicted).
    struct Solution {
        double s = 0.0;
        double step = 1.0; // a solution nobody refined has not settled
        double rate = 1.0;

        // Returns whether the solution settled inside its segment.
        bool settled() const { return TrackCurveKernel::settled(s, step); }
    };

    // Returns whether a solution s whose last step was step settled inside its segment.
    static bool settled(double s, double step) { return (std::fabs(step) <= TOLERANCE) & (s >= 0.0) & (s <= 1.0); }

    // Returns the value v(s).
    static double value(double v0, double cv, double bv, double av, double s)
    {
        return v0 + s * (cv + s * (bv + s * av));
    }

    // Returns the curve time x(s) and its slope x'(s).
    static double time(double ax, double bx, double cx, double s) { return ((ax * s + bx) * s + cx) * s; }
    static double slope(double ax, double bx, double cx, double s) { return (3.0 * ax * s + 2.0 * bx) * s + cx; }

    // Fills the timing polynomial of a Bezier segment from its handle times: out, the out handle's
    // offset from the first key, and in, the in handle's (negative) offset from the second, clamped
    // into the segment (scale is 1 / its length).
    static void timing(double out, double in, double scale, double& ax, double& bx, double& cx)
    {
        double h1 = 0.0, h2 = 0.0;
        handleTimes(out, in, scale, h1, h2);
        cx = 3.0 * h1;
        bx = 3.0 * (h2 - 2.0 * h1);
        ax = 1.0 + 3.0 * (h1 - h2);
    }

    // Fills the normalised times (0 at the first key, 1 at the second) of a Bezier segment's two
    // handles from their time offsets: out, the out handle's from the first key, and in, the in
    // handle's (negative) from the second, each clamped into the segment (scale is 1 / its length),
    // a handle pointing the wrong way in time onto its own key.
    static void handleTimes(double out, double in, double scale, double& h1, double& h2)
    {
        h1 = std::clamp(out * scale, 0.0, 1.0);
        h2 = 1.0 + std::clamp(in * scale, -1.0, 0.0);
    }

    // Returns a handle's value offset dv for a handle that reaches reach into a segment of length
    // d (its time offset, towards the other key): when the handle's time is clamped into the
    // segment, its value offset is scaled by the same factor, so that the tangent keeps its slope.
    static double handleValue(double dv, double reach, double d) { return reach > d ? dv * (d / reach) : dv; }

    // Returns the solution s0 found at normalised time u0 moved along its rate (ds/du) to u, kept
    // inside [0, 1].
    static double predict(double s0, double u0, double rate, double u)
    {
        return std::min(std::max(s0 + (u - u0) * rate, 0.0), 1.0);
    }

    // Returns a first guess for normalised time u just past the start of a segment, where playback
    // enters it: where the timing curve's quadratic part bx s^2 + cx s reaches u.
    static double enter(double bx, double cx, double u)
    {
        double disc = cx * cx + 4.0 * bx * u;
        return disc > 0.0 ? std::min(2.0 * u / (cx + std::sqrt(disc)), 1.0) : u;
    }

    // Returns where steps Newton steps from s towards normalised time u end (one division each:
    // the reciprocal of the slope is both the step's divisor and the rate).
    static Solution refine(double ax, double bx, double cx, double u, double s, int steps)
    {
        Solution r;
        r.s = s;
        for (int i = 0; i < steps; ++i) {
            r.rate = 1.0 / slope(ax, bx, cx, r.s);
            r.step = (time(ax, bx, cx, r.s) - u) * r.rate;
            r.s -= r.step;
        }
        return r;
    }

    // Returns the solution for normalised time u without history. Fixed-point steps from u move it
    // most of the way where the timing curve bends; Halley steps (one division each, like Newton's,
    // but cubic convergence) then settle all but a few times in a million, which bracket
    // finishes. The rate is left for settle to work out. Vector passes over many times take the
    // same steps pass by pass (TrackCurveBatch).
    static Solution cold(double ax, double bx, double cx, double u)
    {
        Solution r;
        r.s = u;
        for (int i = 0; i < COLD_FIXED_STEPS; ++i)
            r.s = fixedStep(ax, bx, cx, u, r.s);
        for (int i = 0; i < COLD_STEPS; ++i) {
            r.step = halleyStep(ax, bx, cx, u, r.s);
            r.s -= r.step;
        }
        return r;
    }

    // Returns s moved by one fixed-point step s -= x(s) - u (no division), kept inside [0, 1].
    static double fixedStep(double ax, double bx, double cx, double u, double s)
    {
        return std::min(std::max(s - (time(ax, bx, cx, s) - u), 0.0), 1.0);
    }

    // Returns the Halley step from s towards u (to be subtracted from s).
    static double halleyStep(double ax, double bx, double cx, double u, double s)
    {
        double f = time(ax, bx, cx, s) - u;
        double d1 = slope(ax, bx, cx, s);
        double d2 = 6.0 * ax * s + 2.0 * bx;
        return 2.0 * f * d1 / (2.0 * d1 * d1 - f * d2);
    }

    // Returns the settled solution for normalised time u: r itself when it settled, else solved
    // again from nothing (solve), with the rate there.
    static Solution settle(double ax, double bx, double cx, double u, const Solution& r)
    {
        if (r.settled())
            return r;
        Solution c;
        c.s = solve(ax, bx, cx, u);
        c.step = 0.0;
        c.rate = 1.0 / slope(ax, bx, cx, c.s);
        return c;
    }

    // Returns the curve parameter s of normalised time u, settled.
    static double solve(double ax, double bx, double cx, double u)
    {
        Solution r = cold(ax, bx, cx, u);
        return r.settled() ? r.s : bracket(ax, bx, cx, u);
    }

    // The same answer by Newton steps kept inside a shrinking bracket, for segments whose slope
    // vanishes where plain Newton steps would leave [0, 1]: ends with the first step of at most
    // TOLERANCE (taken when it stays in the bracket), at an exact s, or when the bracket is that
    // narrow.
    static double bracket(double ax, double bx, double cx, double u)
    {
        double lo = 0.0;
        double hi = 1.0;
        double s = std::clamp(u, 0.0, 1.0);
        for (int i = 0; i < BRACKET_STEPS && hi - lo > TOLERANCE; ++i) {
            double f = time(ax, bx, cx, s) - u;
            if (f == 0.0)
                return s; // where the slope vanishes too, a step would be 0 / 0
            double step = f / slope(ax, bx, cx, s);
            double next = s - step;
            if (std::fabs(step) <= TOLERANCE)
                return next >= lo && next <= hi ? next : s;
            if (f > 0.0)
                hi = s;
            else
                lo = s;
            s = (next > lo && next < hi) ? next : 0.5 * (lo + hi);
        }
        return s;
    }
};
