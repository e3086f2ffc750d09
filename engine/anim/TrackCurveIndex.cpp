#include "anim/TrackCurveIndex.h"

#include <cmath>

void TrackCurveIndex::build(const float* times, int count)
{
    m_first.clear();
    m_keys = 0;
    double span = count > 1 ? static_cast<double>(times[count - 1]) - times[0] : 0.0;
    if (!(span > 0.0) || !std::isfinite(span))
        return;
    int buckets = (count + KEYS_PER_BUCKET - 1) / KEYS_PER_BUCKET;
    m_keys = count;
    m_span.origin = times[0];
    m_span.end = times[count - 1];
    m_span.scale = static_cast<float>(buckets / span);
    m_span.top = static_cast<float>(buckets - 1);
    m_first.reserve(buckets + 1);
    for (int b = 0; b <= buckets; ++b)
        m_first.append(0);
    // Each key marks the bucket after its own; carrying the largest mark forward leaves every
    // entry at the last key of an earlier bucket. Buckets come from bucket() itself, so lookups
    // agree with the table whatever the rounding.
    for (int k = 0; k < count; ++k)
        m_first[bucket(times[k]) + 1] = k;
    for (int b = 1; b <= buckets; ++b)
        m_first[b] = m_first[b] > m_first[b - 1] ? m_first[b] : m_first[b - 1];
}

void TrackCurveIndex::release()
{
    m_first.release();
    m_keys = 0;
    m_span = Span();
}
