#pragma once

#include "kit/jVector.h"

// A bucket table over a compiled curve's span, from its first key to its last, for sampling at
// random times: a time's bucket is one multiply away, and its entry and the next one bound the key
// segment that holds the time to a few keys, so a lookup reads one entry and one or two cache lines
// of the time array instead of walking a search down a long time array (a chain of dependent cache
// misses per sample). One bucket per key keeps the table as small as the time array.
class TrackCurveIndex {
public:
    // Keys per bucket on average.
    static constexpr int KEYS_PER_BUCKET = 1;

    // Rebuilds the table over count time-sorted times; it stays empty (and must not be asked) when
    // the times do not span a range that buckets can divide.
    void build(const float* times, int count);
    // Frees the table.
    void release();

    // Which bucket a time falls in: the span the buckets divide and their scale, kept apart from
    // the entries so that a copy of the entries (TrackCurveTable) buckets times the same way.
    struct Span {
        float origin = 0.0f;
        float scale = 0.0f;
        float end = 0.0f;
        float top = 0.0f; // the last bucket, as a float for clamping

        // Returns the bucket of t, clamped into the table (a NaN falls in the last bucket). Later
        // times never fall in earlier buckets.
        int bucket(float t) const
        {
            float x = (t - origin) * scale;
            x = x < top ? x : top;
            x = x > 0.0f ? x : 0.0f;
            return static_cast<int>(x);
        }
    };

    // Returns whether the table was not built.
    bool empty() const { return m_first.empty(); }
    // Returns whether the table was built over count keys (false when empty): a curve recompiled
    // without its index keeps a table that no longer fits, and this keeps lookups off it when the
    // key count changed.
    bool covers(int count) const { return m_keys == count && count > 0; }
    // Returns how the table buckets times.
    const Span& span() const { return m_span; }
    // Returns the bucket of t (see Span::bucket).
    int bucket(float t) const { return m_span.bucket(t); }

    // Returns the address of bucket b's entry, which the entry of bucket b + 1 follows. For a time t
    // in bucket b between the first key and the last, the last key at or before t is in
    // [entry(b)[0], entry(b)[1]].
    const int* entry(int b) const { return m_first.data() + b; }
    // Returns the number of entries: one per bucket and one past the last (0 when empty).
    int entries() const { return m_first.size(); }

private:
    // Per bucket (and one past the last): the last key that falls in an earlier bucket, else 0.
    jVector<int> m_first;
    int m_keys = 0;
    Span m_span;
};
