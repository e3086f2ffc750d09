#include "anim/TrackCurveBatch.h"

#include <cmath>

namespace {

using Segment = TrackCurveSegment<float>;

// How many samples each step of the pipeline runs ahead of the next: enough that the misses of
// the samples in between cover the memory latency, few enough that they fit the core's miss
// buffers.
constexpr int AHEAD = 8;
constexpr int RING = 32; // at least 3 * AHEAD + 1 slots, a power of two
constexpr int MASK = RING - 1;
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
    int count = c.times.size();
    const float* times = c.times.data();
    if (count == 0) {
        s.kind = Slot::EMPTY;
        return;
    }
    s.kind = Slot::SEGMENT;
    if (t < times[0]) {
        s.a = -1;
    } else if (!(t < times[count - 1])) {
        s.a = count - 1;
    } else if (c.index.empty()) {
        int cursor = -1;
        s.a = TrackSegment::find(times, count, t, cursor);
    } else {
        s.kind = Slot::BUCKET;
        s.a = c.index.bucket(t);
        const int* e = c.index.entry(s.a);
        fetch(e);
        fetch(e + 1);
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
    int last = c.times.size() - 1;
    fetch(times + s.a);
    fetch(times + (s.a + STEP < last ? s.a + STEP : last));
}

// Third step: the segment among the range's keys (first key <= t < last key), which is fetched.
void pick(const TrackCurveData<float>& c, float t, Slot& s)
{
    if (s.kind == Slot::EMPTY)
        return;
    const float* times = c.times.data();
    int last = c.times.size() - 1;
    if (s.kind == Slot::RANGE) {
        int lo = s.a, hi = s.b;
        if (hi - lo <= STEP) {
            // Past the range every time is later than t (hi is not before it), and so is the last
            // key's, so reading on to min(lo + k, last) counts exactly the keys up to t's.
            int c0 = lo;
            for (int k = 1; k <= STEP; ++k)
                c0 += times[lo + k < last ? lo + k : last] <= t;
            s.a = c0;
        } else {
            s.a = TrackSegment::within(times, lo, hi + 1 < last ? hi + 1 : last, t);
        }
        s.kind = Slot::SEGMENT;
    }
    const Segment* g = c.segments.data() + (s.a > 0 ? s.a : 0);
    fetch(g);
    fetch(reinterpret_cast<const char*>(g) + sizeof(Segment) - 1);
}

// Last step: the value.
float evaluate(const TrackCurveData<float>& c, float t, const Slot& s)
{
    if (s.kind == Slot::EMPTY)
        return 0.0f;
    const float* times = c.times.data();
    const Segment* segments = c.segments.data();
    TrackCurveShape<float> shape =
        s.a >= 0 ? TrackCurve::shape(segments[s.a], times[s.a]) : TrackCurve::before(segments[0], times[0]);
    return TrackCurve::sample(shape, t);
}

} // namespace

void TrackCurveBatch::sample(const TrackCurveData<float>* const* curves, const float* times, int count, float* out)
{
    Slot ring[RING];
    for (int i = 0; i < count + 3 * AHEAD; ++i) {
        if (i + AHEAD < count)
            fetch(curves[i + AHEAD]);
        if (i < count)
            locate(*curves[i], times[i], ring[i & MASK]);
        int j = i - AHEAD;
        if (j >= 0 && j < count)
            bound(*curves[j], ring[j & MASK]);
        j -= AHEAD;
        if (j >= 0 && j < count)
            pick(*curves[j], times[j], ring[j & MASK]);
        j -= AHEAD;
        if (j >= 0)
            out[j] = evaluate(*curves[j], times[j], ring[j & MASK]);
    }
}
