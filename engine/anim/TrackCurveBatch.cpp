#include "anim/TrackCurveBatch.h"

#include <cmath>

namespace {

using Segment = TrackCurveSegment<float>;

// How many samples each step of the pipeline runs ahead of the next: enough that the misses of
// the samples in between cover the memory latency, few enough that they fit the core's miss
// buffers.
constexpr int AHEAD = 8;
// Samples are evaluated GROUP at a time (at most AHEAD), so that their curve parameters are solved
// side by side: one solve is a chain of dependent divisions, several in step keep the divider busy.
constexpr int GROUP = 8;
constexpr int LAG = 3 * AHEAD; // from the first step of a sample to its evaluation
constexpr int RING = 64;       // at least LAG + GROUP slots, a power of two
constexpr int MASK = RING - 1;
// Halley steps after the start, and the largest last step taken as settled: the error left after
// it is about its cube, or a fraction of it where the timing curve is nearly flat.
constexpr int HALLEY = 3;
constexpr double SETTLED = 1e-6;
// How many keys after a bucket's entry the lookup compares before it bisects the bucket instead
// (a bucket holds one key on average, but clustered keys pile up in few buckets).
constexpr int STEP = 4;

// Where a sample stands in the pipeline.
struct Slot {
    enum Kind { EMPTY, BUCKET, RANGE, SEGMENT };
    int kind;
    int a; // the bucket, the first key of the range, or the segment (-1: before the first key)
    int b; // the last key of the range
};

void fetch(const void* p)
{
    __builtin_prefetch(p);
}

// First step: the edges, else the bucket of t, whose entries are fetched.
void locate(const TrackCurveData<float>& c, float t, Slot& s)
{
    const TrackCurveIndex& index = c.index;
    int count = c.times.size();
    s.kind = Slot::SEGMENT;
    if (index.covers(count) && t >= index.first() && t < index.last()) {
        s.kind = Slot::BUCKET;
        s.a = index.bucket(t);
        const int* e = index.entry(s.a);
        fetch(e);
        fetch(e + 1);
        return;
    }
    const float* times = c.times.data();
    if (count == 0) {
        s.kind = Slot::EMPTY;
    } else if (t < times[0]) {
        s.a = -1;
    } else if (!(t < times[count - 1])) {
        s.a = count - 1;
    } else {
        int cursor = -1;
        s.a = TrackSegment::find(times, count, t, cursor);
    }
}

// Second step: the bucket's range of keys, whose times are fetched.
void bound(const TrackCurveData<float>& c, Slot& s)
{
    if (s.kind != Slot::BUCKET)
        return;
    const int* e = c.index.entry(s.a);
    s.kind = Slot::RANGE;
    s.a = e[0];
    s.b = e[1];
    const float* times = c.times.data();
    fetch(times + s.a);
    fetch(times + s.b);
}

// Third step: the segment among the range's keys (first key <= t < last key), which is fetched.
void pick(const TrackCurveData<float>& c, float t, Slot& s)
{
    if (s.kind == Slot::EMPTY)
        return;
    if (s.kind == Slot::RANGE) {
        const float* times = c.times.data();
        int lo = s.a, hi = s.b;
        if (hi - lo <= STEP) {
            // Counts the keys of the range up to t, reading none past it.
            int c0 = lo;
            for (int k = 1; k <= STEP; ++k)
                c0 += (lo + k <= hi) & (times[lo + k < hi ? lo + k : hi] <= t);
            s.a = c0;
        } else {
            int last = c.times.size() - 1;
            s.a = TrackSegment::within(times, lo, hi + 1 < last ? hi + 1 : last, t);
        }
        s.kind = Slot::SEGMENT;
    }
    const Segment* g = c.segments.data() + (s.a > 0 ? s.a : 0);
    fetch(g);
    fetch(reinterpret_cast<const char*>(g) + sizeof(Segment) - 1);
}

// The segment a sample fell in, ready for sampling (a curve without keys gives 0 everywhere).
TrackCurveShape<float> shapeOf(const TrackCurveData<float>& c, const Slot& s)
{
    if (s.kind == Slot::EMPTY)
        return TrackCurveShape<float>();
    const float* times = c.times.data();
    const Segment* segments = c.segments.data();
    return s.a >= 0 ? TrackCurve::shape(segments[s.a], times[s.a]) : TrackCurve::before(segments[0], times[0]);
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
void solve(Timing& m)
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

// Room for a group's shapes, left uninitialised (each is assigned before it is read): clearing
// them costs a tenth of a straight segment's sample.
union Shapes {
    Shapes() {}
    TrackCurveShape<float> at[GROUP];
};

// Last step: the values of samples [first, first + n).
void evaluate(const TrackCurveData<float>* const* curves, const float* times, const Slot* ring, int first, int n,
              float* out)
{
    Shapes room;
    TrackCurveShape<float>* shapes = room.at;
    Timing m;
    bool curved = false;
    for (int k = 0; k < n; ++k) {
        int j = first + k;
        const TrackCurveShape<float>& s = shapes[k] = shapeOf(*curves[j], ring[j & MASK]);
        bool bezier = s.mode == Segment::BEZIER;
        curved = curved || bezier;
        m.ax[k] = bezier ? s.ax : 0.0;
        m.bx[k] = bezier ? s.bx : 0.0;
        m.cx[k] = bezier ? s.cx : 1.0;
        // A Bezier segment's normalised time in double: the float scale that other segments share
        // with single samples would move a steep curve by more than its error bound.
        double t = times[j];
        m.s[k] = m.u[k] = bezier ? (t - s.t0) / (static_cast<double>(s.t1) - s.t0) : TrackCurve::normalised(s, times[j]);
    }
    for (int k = n; k < GROUP; ++k) {
        m.ax[k] = m.bx[k] = m.u[k] = m.s[k] = 0.0;
        m.cx[k] = 1.0;
    }
    if (curved)
        solve(m);
    for (int k = 0; k < n; ++k)
        out[first + k] = TrackCurve::value(shapes[k], shapes[k].mode == Segment::BEZIER ? m.s[k] : m.u[k]);
}

} // namespace

void TrackCurveBatch::sample(const TrackCurveData<float>* const* curves, const float* times, int count, float* out)
{
    Slot ring[RING];
    for (int i = 0; i < count + LAG; i += GROUP) {
        for (int k = i; k < i + GROUP; ++k) {
            if (k + AHEAD < count)
                fetch(curves[k + AHEAD]);
            if (k < count)
                locate(*curves[k], times[k], ring[k & MASK]);
            int j = k - AHEAD;
            if (j >= 0 && j < count)
                bound(*curves[j], ring[j & MASK]);
            j -= AHEAD;
            if (j >= 0 && j < count)
                pick(*curves[j], times[j], ring[j & MASK]);
        }
        int first = i - LAG;
        int end = first + GROUP < count ? first + GROUP : count;
        first = first > 0 ? first : 0;
        if (first < end)
            evaluate(curves, times, ring, first, end - first, out);
    }
}
