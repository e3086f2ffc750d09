#pragma once

#include "anim/TrackKey.h"

// The value of the Bézier segment from key a to key b at time t, worked out independently of the
// engine in double precision: the curve parameter is found by bisecting the time polynomial, so
// the engine's faster solvers can be checked against it.
inline double bezierReference(const TrackKeyFloat& a, const TrackKeyFloat& b, float t)
{
    const double x[4] = {a.time, a.time + static_cast<double>(a.tangents.z), b.time + static_cast<double>(b.tangents.x),
                         b.time};
    const double y[4] = {a.value, a.value + static_cast<double>(a.tangents.w),
                         b.value + static_cast<double>(b.tangents.y), b.value};
    auto bern = [](const double* c, double s) {
        const double r = 1.0 - s;
        return r * r * r * c[0] + 3.0 * r * r * s * c[1] + 3.0 * r * s * s * c[2] + s * s * s * c[3];
    };
    double lo = 0.0, hi = 1.0;
    for (int k = 0; k < 100; ++k) {
        const double mid = 0.5 * (lo + hi);
        (bern(x, mid) < t ? lo : hi) = mid;
    }
    return bern(y, 0.5 * (lo + hi));
}
