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
constexpr int AHEAD = 16;
// Samples are evaluated GROUP at a time (at most AHEAD, so that every read has a group's work to
// arrive in), so that their curve parameters are solved side by side: one solve is a chain of
// dependent steps, and sixteen in step (four vectors of four) keep the arithmetic units busy where
// eight left them waiting on their chains.
constexpr int GROUP = 16;
constexpr int LAG = 2 * AHEAD; // from the first step of a sample to its evaluation
constexpr int RING = 64;       // at least LAG + GROUP slots, a power of two
constexpr int MASK = RING - 1;

// Where a sample stands in the pipeline: its index bucket, or its line.
struct Slot {
    enum Kind { BUCKET, LINE };
    int kind;
    int at; // the bucket or the line
};

void fetch(const void* p)
{
    J_PREFETCH(p);
}

// First step: the bucket of t, which is fetched, or at the edges of the curve (and for curves
// without an index) the line itself.
void locate(const Curve& c, float t, Slot& s)
{
    if (c.entries && c.inside(t)) {
        s.kind = Slot::BUCKET;
        s.at = c.span.bucket(t);
        fetch(c.entries + s.at);
        return;
    }
    s.kind = Slot::LINE;
    s.at = TrackCurveTable::find(c, t);
    fetch(c.lines + s.at);
}

// Second step: the line that holds t, from the bucket's own key times, which is fetched.
void pick(const Curve& c, float t, Slot& s)
{
    if (s.kind != Slot::BUCKET)
        return;
    s.kind = Slot::LINE;
    s.at = TrackCurveTable::within(c, s.at, t);
    fetch(c.lines + s.at);
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
        const Line& s = *(lines[k] = table.curve(curves[j]).lines + ring[j & MASK].at);
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
                pick(table.curve(curves[j]), times[j], ring[j & MASK]);
        }
        int first = i - LAG;
        int end = first + GROUP < count ? first + GROUP : count;
        first = first > 0 ? first : 0;
        if (first < end)
            evaluate(table, curves, times, ring, first, end - first, out);
    }
}
