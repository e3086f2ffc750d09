#include "anim/TrackCurveBatch.h"

#include <cmath>

#include "anim/TrackCurveKernel.h"
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

// Solves the curve parameters of a group side by side with the kernel's cold start
// (TrackCurveKernel::cold), a pass per step over every slot: loops of a fixed length, which compile
// to vector code, so that the chains of dependent divisions of several samples keep the divider
// busy together. The few that do not settle take the safeguarded search.
J_MULTIVERSION void solve(Timing& m)
{
    using K = TrackCurveKernel;
    for (int k = 0; k < GROUP; ++k)
        m.s[k] = m.u[k];
    for (int pass = 0; pass < K::COLD_FIXED_STEPS; ++pass)
        for (int k = 0; k < GROUP; ++k)
            m.s[k] = K::fixedStep(m.ax[k], m.bx[k], m.cx[k], m.u[k], m.s[k]);
    for (int pass = 0; pass < K::COLD_STEPS; ++pass) {
        for (int k = 0; k < GROUP; ++k) {
            m.step[k] = K::halleyStep(m.ax[k], m.bx[k], m.cx[k], m.u[k], m.s[k]);
            m.s[k] -= m.step[k];
        }
    }
    for (int k = 0; k < GROUP; ++k) {
        if (!K::settled(m.s[k], m.step[k]))
            m.s[k] = K::bracket(m.ax[k], m.bx[k], m.cx[k], m.u[k]);
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
        m.u[k] = bezier ? (times[j] - static_cast<double>(s.t0)) * s.inv : TrackCurve::normalised(s, times[j]);
    }
    for (int k = n; k < GROUP; ++k) {
        m.ax[k] = m.bx[k] = m.u[k] = 0.0;
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
