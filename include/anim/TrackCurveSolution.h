#pragma once

#include <algorithm>
#include <cmath>

#include "anim/TrackCurve.h"

// Where Newton steps on a Bezier segment's timing polynomial ((ax s + bx) s + cx) s = u end: the
// curve parameter s, the last step and the reciprocal of the slope it was taken with (ds/du, the
// rate along which the next frame's solution is predicted: each step divides once, and the rate
// comes with it). Playback predicts each frame's solution from the last one along its rate and
// refines it with three steps; the solution has settled when the last step is below CONVERGED (the
// error left is then about its square) and s is inside [0, 1]. Anything else is solved cold
// (TrackCurve::solve).
struct TrackCurveSolution {
    static constexpr double CONVERGED = 1e-5;

    double s = 0.0;
    double step = 1.0; // a solution nobody refined has not settled
    double rate = 1.0;

    // Returns the slope of the timing polynomial at s.
    static double slopeAt(double ax, double bx, double cx, double s) { return (3.0 * ax * s + 2.0 * bx) * s + cx; }

    // Returns the solution s0 found at normalised time u0 moved along its rate (ds/du) to u, kept
    // inside [0, 1].
    static double predict(double s0, double u0, double rate, double u)
    {
        return std::min(std::max(s0 + (u - u0) * rate, 0.0), 1.0);
    }

    // Returns where three Newton steps from s towards normalised time u end.
    static TrackCurveSolution refine(double ax, double bx, double cx, double u, double s)
    {
        TrackCurveSolution r;
        r.s = s;
        for (int i = 0; i < 3; ++i) {
            r.rate = 1.0 / slopeAt(ax, bx, cx, r.s);
            r.step = (((ax * r.s + bx) * r.s + cx) * r.s - u) * r.rate;
            r.s -= r.step;
        }
        return r;
    }

    // Solves towards normalised time u cold (TrackCurve::solve) unless the solution has settled.
    void settle(double ax, double bx, double cx, double u)
    {
        if (settled())
            return;
        s = TrackCurve::solve(ax, bx, cx, u);
        rate = 1.0 / slopeAt(ax, bx, cx, s);
    }

    // Returns whether the solution settled inside its segment.
    bool settled() const { return (std::fabs(step) <= CONVERGED) & (s >= 0.0) & (s <= 1.0); }
};
