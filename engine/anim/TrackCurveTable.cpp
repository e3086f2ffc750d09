#include "anim/TrackCurveTable.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "anim/TrackSegment.h"
#include "kit/jAllocator.h"

namespace {

const char* const FILE_TAG = "engine/anim/TrackCurveTable";
const size_t CACHE_LINE = 64;

static_assert(sizeof(TrackCurveTable::Line) == CACHE_LINE, "a line of the table is one cache line");
static_assert(CACHE_LINE % sizeof(TrackCurveTable::Bucket) == 0, "no bucket of the table straddles a cache line");

// Whether curve's time index is there and fits its keys.
bool indexed(const TrackCurveData<float>& curve)
{
    return curve.index.covers(curve.times.size());
}

// Writes curve's lines from at on, the line after them included; returns the end.
TrackCurveTable::Line* copy_lines(const TrackCurveData<float>& curve, TrackCurveTable::Line* at)
{
    const int keys = curve.times.size();
    const float* times = curve.times.data();
    const TrackCurveSegment<float>* segments = curve.segments.data();
    if (keys == 0)
        *at++ = TrackCurve::before(TrackCurveSegment<float>(), std::numeric_limits<float>::infinity());
    else
        *at++ = TrackCurve::before(segments[0], times[0]);
    for (int k = 0; k < keys; ++k)
        *at++ = TrackCurve::shape(segments[k], times[k]);
    *at++ = TrackCurve::none<float>();
    return at;
}

// Writes the buckets of curve's index from at on, one past the last included; returns the end.
TrackCurveTable::Bucket* copy_buckets(const TrackCurveData<float>& curve, TrackCurveTable::Bucket* at)
{
    using Bucket = TrackCurveTable::Bucket;
    const TrackCurveIndex& index = curve.index;
    const float* times = curve.times.data();
    const int entries = index.entries();
    for (int b = 0; b < entries; ++b) {
        const int* e = index.entry(b);
        const int last = b + 1 < entries ? e[1] : e[0]; // the last key of the bucket or an earlier one
        Bucket& bucket = *at++;
        bucket.line = last - e[0] > Bucket::KEYS ? -(e[0] + 1) : e[0] + 1;
        for (int j = 0; j < Bucket::KEYS; ++j) {
            int key = e[0] + 1 + j;
            bucket.next[j] = key <= last ? times[key] : std::numeric_limits<float>::infinity();
        }
    }
    return at;
}

} // namespace

void TrackCurveTable::build(const TrackCurveData<float>* const* curves, int count)
{
    clear();
    size_t lines = 0, buckets = 0;
    for (int i = 0; i < count; ++i) {
        lines += curves[i]->times.size() + 2;
        buckets += indexed(*curves[i]) ? curves[i]->index.entries() : 0;
    }
    // A cache line more than needed, so that the lines can start on one when the block does not.
    m_bytes = lines * sizeof(Line) + buckets * sizeof(Bucket) + CACHE_LINE;
    m_block = jAllocator::get()->largeAlloc(m_bytes);
    memAddInfo(m_block, true, FILE_TAG, __LINE__, "TrackCurveTable::build", m_bytes);
    auto start = (reinterpret_cast<uintptr_t>(m_block) + CACHE_LINE - 1) / CACHE_LINE * CACHE_LINE;
    Line* line = reinterpret_cast<Line*>(start);
    m_lines = line;
    Bucket* bucket = reinterpret_cast<Bucket*>(line + lines);
    m_curves.reserve(count);
    for (int i = 0; i < count; ++i) {
        const TrackCurveData<float>& data = *curves[i];
        Curve c;
        c.lines = line;
        line = copy_lines(data, line);
        c.count = static_cast<int>(line - c.lines) - 1;
        if (indexed(data)) {
            c.entries = bucket;
            c.span = data.index.span();
            bucket = copy_buckets(data, bucket);
        }
        m_curves.append(c);
    }
}

void TrackCurveTable::clear()
{
    m_curves.release();
    if (!m_block)
        return;
    memRemoveInfo(m_block, FILE_TAG, __LINE__, "TrackCurveTable::clear");
    jAllocator::get()->largeFree(m_block, m_bytes);
    m_block = nullptr;
    m_lines = nullptr;
    m_bytes = 0;
}

int TrackCurveTable::find(const Curve& c, float t)
{
    const int last = c.count - 1;
    if (last == 0 || t < c.lines[1].t0)
        return 0;
    if (!(t < c.lines[last].t0))
        return last;
    if (c.entries)
        return within(c, c.span.bucket(t), t);
    return TrackSegment::within(c.lines, 1, last, t);
}

int TrackCurveTable::within(const Curve& c, int b, float t)
{
    const Bucket& bucket = c.entries[b];
    if (bucket.line > 0) {
        int line = bucket.line;
        for (float next : bucket.next)
            line += next <= t;
        return line;
    }
    // More keys than a bucket holds: they run up to the line the next bucket starts from. The line
    // after them starts after t (its key falls in a later bucket), or is the last, which does when
    // t is inside the curve.
    const int hi = std::abs(c.entries[b + 1].line);
    return TrackSegment::within(c.lines, -bucket.line, std::min(hi + 1, c.count - 1), t);
}
