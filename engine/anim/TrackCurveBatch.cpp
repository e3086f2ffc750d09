#include "anim/TrackCurveBatch.h"

#include <cmath>

#include "kit/jPlatform.h"

namespace {

using Curve = TrackCurveTable::Curve;
using Line = TrackCurveTable::Line;

const int BEZIER = TrackCurveSegment<float>::BEZIER;

// How many samples each step of the pipeline runs ahead of the next: enough that the misses of
// the samples in between cover the memory latency, few enough that they fit the core's miss
// buffers.
constexpr int AHEAD = 8;
// Samples are evaluated GROUP at a time (at most AHEAD), so that their curve parameters are solved
// side by side: one solve is a chain of dependent divisions, several in step keep the divider busy.
constexpr int GROUP = 8;
constexpr int LAG = 2 * AHEAD; // from the first step of a sample to its evaluation
constexpr int RING = 32;       // at least LAG + GROUP slots, a power of two
constexpr int MASK = RING - 1;
// Halley steps after the start, and the largest last step taken as settled: the error left after
// it is about its cube, or a fraction of it where the timing curve is nearly flat.
constexpr int HALLEY = 3;
constexpr double SETTLED = 1e-6;
// How many lines after a bucket's first the lookup compares before it bisects the bucket instead
// (a bucket holds one key on average, but clustered keys pile up in few buckets).
constexpr int STEP = 4;

// Where a sample stands in the pipeline: its bucket, the range of lines the bucket bounds, or its
// line.
struct Slot {
    enum Kind { BUCKET, RANGE, LINE };
    int kind;
    int a; // the bucket, the first line of the range, or the line
    int b; // the last line of the range
};

void fetch(const void* p)
{
    J_PREFETCH(p);
}

// First step: the bucket of t, whose entries are fetched, or at the edges of the curve (and for
// curves without an index) the line itself.
void locate(const Curve& c, float t, Slot& s)
{
    if (c.entries && c.inside(t)) {
        s.kind = Slot::BUCKET;
        s.a = c.span.bucket(t);
        fetch(c.entries + s.a);
        fetch(c.entries + s.a + 1);
        return;
    }
    s.kind = Slot::LINE;
    s.a = TrackCurveTable::find(c, t);
    fetch(c.lines + s.a);
}

// Second step: the bucket's range of lines, whose first two (one of which holds t, mostly) are
// fetched.
void bound(const Curve& c, Slot& s)
{
    if (s.kind != Slot::BUCKET)
        return;
    const int* e = c.entries + s.a;
    s.kind = Slot::RANGE;
    s.a = e[0] + 1;
    s.b = e[1] + 1;
    fetch(c.lines + s.a);
    fetch(c.lines + (s.a < s.b ? s.a + 1 : s.a));
}

// Third step, right before the sample is evaluated: the line among the range's that holds t.
void pick(const Curve& c, float t, Slot& s)
{
    if (s.kind != Slot::RANGE)
        return;
    const Line* lines = c.lines;
    int lo = s.a, hi = s.b;
    if (hi - lo <= STEP) {
        // Counts the lines of the range that start at or before t, reading none past it.
        int at = lo;
        for (int k = 1; k <= STEP; ++k)
            at += (lo + k <= hi) & (lines[lo + k < hi ? lo + k : hi].t0 <= t);
        s.a = at;
    } else {
        s.a = TrackCurveTable::within(c, lo, hi, t);
    }
    s.kind = Slot::LINE;
}

// The timing curves of a group's Bezier segments (other segments get x(s) = s, harmless to solve
// and not used), their normalised times, and the solutions.
struct Timing {
    double ax[GROUP], bx[GROUP], cx[GROUP], u[GROUP], s[GROUP], step[GROUP];
};

double clamp01(double s)
{
    return s < 0.0 ? 0.0 : (s > 1.0 ? 1.0 : s);
}

// Solves the curve parameters of a group side by side (every slot of it: the loops have a fixed
// length so that they compile to vector code). Two fixed-point steps s -= x(s) - u (no division)
// move the start from u most of the way where the timing curve bends, so that three Halley steps
// (one division each, like Newton's, but cubic convergence) settle all but one or two samples in a
// thousand; those take the safeguarded search. From s = u, four Newton steps leave one in ten.
J_MULTIVERSION void solve(Timing& m)
{
    for (int pass = 0; pass < 2; ++pass)
        for (int k = 0; k < GROUP; ++k)
            m.s[k] = clamp01(m.s[k] - (((m.ax[k] * m.s[k] + m.bx[k]) * m.s[k] + m.cx[k]) * m.s[k] - m.u[k]));
    for (int pass = 0; pass < HALLEY; ++pass) {
        for (int k = 0; k < GROUP; ++k) {
            double s = m.s[k];
            double f = ((m.ax[k] * s + m.bx[k]) * s + m.cx[k]) * s - m.u[k];
            double slope = (3.0 * m.ax[k] * s + 2.0 * m.bx[k]) * s + m.cx[k];
            double bend = 6.0 * m.ax[k] * s + 2.0 * m.bx[k];
            m.step[k] = 2.0 * f * slope / (2.0 * slope * slope - f * bend);
            m.s[k] = s - m.step[k];
        }
    }
    for (int k = 0; k < GROUP; ++k) {
        if (!(std::fabs(m.step[k]) <= SETTLED && m.s[k] >= 0.0 && m.s[k] <= 1.0))
            m.s[k] = TrackCurve::bracket(m.ax[k], m.bx[k], m.cx[k], m.u[k]);
    }
}

// Last step: the values of samples [first, first + n).
void evaluate(const TrackCurveTable& table, const int* curves, const float* times, const Slot* ring, int first, int n,
              float* out)
{
    const Line* lines[GROUP];
    Timing m;
    bool curved = false;
    for (int k = 0; k < n; ++k) {
        int j = first + k;
        const Line& s = *(lines[k] = table.curve(curves[j]).lines + ring[j & MASK].a);
        bool bezier = s.mode == BEZIER;
        curved = curved || bezier;
        m.ax[k] = bezier ? s.ax : 0.0;
        m.bx[k] = bezier ? s.bx : 0.0;
        m.cx[k] = bezier ? s.cx : 1.0;
        // A Bezier segment's normalised time in double: the float difference that other segments
        // share with single samples would move a steep curve by more than its error bound.
        m.s[k] = m.u[k] = bezier ? (times[j] - static_cast<double>(s.t0)) * s.inv : TrackCurve::normalised(s, times[j]);
    }
    for (int k = n; k < GROUP; ++k) {
        m.ax[k] = m.bx[k] = m.u[k] = m.s[k] = 0.0;
        m.cx[k] = 1.0;
    }
    if (curved)
        solve(m);
    for (int k = 0; k < n; ++k)
        out[first + k] = TrackCurve::value(*lines[k], lines[k]->mode == BEZIER ? m.s[k] : m.u[k]);
}

} // namespace

void TrackCurveBatch::sample(const TrackCurveTable& table, const int* curves, const float* times, int count, float* out)
{
    Slot ring[RING];
    for (int i = 0; i < count + LAG; i += GROUP) {
        for (int k = i; k < i + GROUP; ++k) {
            if (k < count)
                locate(table.curve(curves[k]), times[k], ring[k & MASK]);
            int j = k - AHEAD;
            if (j >= 0 && j < count)
                bound(table.curve(curves[j]), ring[j & MASK]);
            j -= AHEAD;
            if (j >= 0 && j < count)
                pick(table.curve(curves[j]), times[j], ring[j & MASK]);
        }
        int first = i - LAG;
        int end = first + GROUP < count ? first + GROUP : count;
        first = first > 0 ? first : 0;
        if (first < end)
            evaluate(table, curves, times, ring, first, end - first, out);
    }
}
