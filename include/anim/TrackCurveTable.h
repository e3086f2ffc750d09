#pragma once

#include <cstdint>

#include "anim/TrackCurve.h"
#include "anim/TrackCurveIndex.h"
#include "kit/jVector.h"

// Many compiled float curves copied into one table on huge pages, for playing and sampling them in
// bulk. Each curve becomes a run of lines, a segment ready for sampling per cache line: line 0
// holds the first key's value before it, line k + 1 is key k's segment with its range, normalised
// time scale and timing polynomial already worked out, and after the last comes a line that holds
// no time at all, so that a cursor may always look one line ahead. Moving onto a segment is then
// one memory read and no arithmetic, and reading lines all over the table misses no address
// translation.
// Curves compiled with their time index keep it in the table, each bucket with the times of its keys.
class TrackCurveTable {
public:
    using Line = TrackCurveShape<float>;

    // One bucket of a curve's time index as the table keeps it: the line of the last key that
    // falls in an earlier bucket, and the times of the keys after it, which fall in this bucket (up
    // to KEYS of them, infinity after the last), so that the line holding a time comes from
    // comparing the time with the bucket alone, without reading the lines in between. A bucket
    // that holds more keys has the line negated, and its lines are searched instead.
    struct Bucket {
        static constexpr int KEYS = 3;
        int line = 0;
        float next[KEYS] = {};
    };

    // Where one curve's lines and time index are.
    struct Curve {
        const Line* lines = nullptr;
        // The index buckets, one past the last included (null when the curve was compiled without
        // a current index), and how they bucket times.
        const Bucket* entries = nullptr;
        TrackCurveIndex::Span span;
        int count = 0; // lines: one more than the curve's keys (the line after them not counted)

        // Returns whether t is strictly between the first key and the last, where the index is asked.
        bool inside(float t) const { return t >= span.origin && t < span.end; }
    };

    TrackCurveTable() = default;
    ~TrackCurveTable() { clear(); }
    TrackCurveTable(const TrackCurveTable&) = delete;
    TrackCurveTable& operator=(const TrackCurveTable&) = delete;

    // Copies count curves into the table, replacing what it held. The table does not refer to the
    // curves afterwards; a curve without keys becomes one line that holds 0 at every time.
    void build(const TrackCurveData<float>* const* curves, int count);
    // Frees the table.
    void clear();

    // Returns the number of curves.
    int size() const { return m_curves.size(); }
    // Returns where curve i is.
    const Curve& curve(int i) const { return m_curves[i]; }
    // Returns line i of the whole table, counted from curve 0's first (curves follow each other;
    // a table holds far fewer than 2^32 lines, 256 GB).
    const Line* line(uint32_t i) const { return m_lines + i; }
    // Returns the index of a line of the table in the whole table (see line).
    uint32_t place(const Line* line) const { return static_cast<uint32_t>(line - m_lines); }
    // Returns the index of curve c's line that holds t: 0 before the first key, the last line from
    // the last key on (and for NaN), else the segment of the last key at or before t.
    static int find(const Curve& c, float t);
    // Returns the line of c that holds t, a time inside the curve (Curve::inside) in index bucket b.
    static int within(const Curve& c, int b, float t);

private:
    jVector<Curve> m_curves;
    void* m_block = nullptr; // every curve's lines, then every curve's index buckets
    const Line* m_lines = nullptr; // curve 0's first line, in m_block
    size_t m_bytes = 0;
};
