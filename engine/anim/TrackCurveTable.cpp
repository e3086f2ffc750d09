#include "anim/TrackCurveTable.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "anim/TrackSegment.h"
#include "kit/jAllocator.h"

namespace {

const char* const FILE_TAG = "engine/anim/TrackCurveTable";
const size_t CACHE_LINE = 64;

static_assert(sizeof(TrackCurveTable::Line) == CACHE_LINE, "a line of the table is one cache line");

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

} // namespace

void TrackCurveTable::build(const TrackCurveData<float>* const* curves, int count)
{
    clear();
    size_t lines = 0, entries = 0;
    for (int i = 0; i < count; ++i) {
        lines += curves[i]->times.size() + 2;
        entries += indexed(*curves[i]) ? curves[i]->index.entries() : 0;
    }
    // A cache line more than needed, so that the lines can start on one when the block does not.
    m_bytes = lines * sizeof(Line) + entries * sizeof(int) + CACHE_LINE;
    m_block = jAllocator::get()->largeAlloc(m_bytes);
    memAddInfo(m_block, true, FILE_TAG, __LINE__, "TrackCurveTable::build", m_bytes);
    auto start = (reinterpret_cast<uintptr_t>(m_block) + CACHE_LINE - 1) / CACHE_LINE * CACHE_LINE;
    Line* line = reinterpret_cast<Line*>(start);
    m_lines = line;
    int* entry = reinterpret_cast<int*>(line + lines);
    m_curves.reserve(count);
    for (int i = 0; i < count; ++i) {
        const TrackCurveData<float>& data = *curves[i];
        Curve c;
        c.lines = line;
        line = copy_lines(data, line);
        c.count = static_cast<int>(line - c.lines) - 1;
        if (indexed(data)) {
            const TrackCurveIndex& index = data.index;
            c.entries = entry;
            c.span = index.span();
            entry = std::copy(index.entry(0), index.entry(0) + index.entries(), entry);
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
    if (c.entries) {
        const int* e = c.entries + c.span.bucket(t);
        return within(c, e[0] + 1, e[1] + 1, t);
    }
    return TrackSegment::within(c.lines, 1, last, t);
}

int TrackCurveTable::within(const Curve& c, int lo, int hi, float t)
{
    // The line after the range starts after t (its key falls in a later bucket), or is the last,
    // which does when t is inside the curve.
    return TrackSegment::within(c.lines, lo, std::min(hi + 1, c.count - 1), t);
}
