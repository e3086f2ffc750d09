#include "anim/TrackCurveTable.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/Scenario.h"

// Finding the key segment that holds a time: by searching the key times, through the time index of
// a compiled curve, and in the curve table that copies curves with their index for playing and
// sampling many at once.

namespace {

using TrackSegmentTest = Scenario;
using TrackCurveIndexTest = Scenario;
using TrackCurveTableTest = Scenario;

const float INF = std::numeric_limits<float>::infinity();

TEST_F(TrackSegmentTest, AgreesWithABinarySearchOnUnevenAndRepeatedTimes)
{
    std::vector<float> times;
    std::mt19937 rng(2);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = 0.0f;
    for (int i = 0; i < 500; ++i) {
        times.push_back(t);
        // Mostly even steps, some long gaps, some repeated times.
        float r = unit(rng);
        t += r < 0.1f ? 0.0f : (r < 0.2f ? 40.0f * unit(rng) : 0.1f);
    }
    int cursor = 0;
    float q = -1.0f;
    for (int n = 0; n < 5000; ++n) {
        // Mostly a small step on from the last time with the cursor it left, as playback asks; else
        // any time with a hint anywhere, out of range too, as scrubbing asks.
        if (unit(rng) < 0.6f) {
            q += 0.05f;
        } else {
            q = unit(rng) * (t + 10.0f) - 5.0f;
            cursor = static_cast<int>(unit(rng) * 600.0f) - 50;
        }
        int expected = static_cast<int>(std::upper_bound(times.begin(), times.end(), q) - times.begin()) - 1;
        ASSERT_EQ(TrackSegment::find(times.data(), static_cast<int>(times.size()), q, cursor), expected) << q;
    }
    EXPECT_EQ(TrackSegment::find(times.data(), 0, 1.0f, cursor), -1);
}

// Gaps differ by a factor of three at most, so a bucket as long as the mean gap holds few keys: the
// entries of a time's bucket bound the last key at or before it to a range of at most four. (That
// lookups through the index find the right key, also for clustered and repeated times, is checked
// below.)
TEST_F(TrackCurveIndexTest, NarrowsIrregularTimesToTheRightFewKeys)
{
    std::mt19937 rng(4);
    std::uniform_real_distribution<float> gap(0.05f, 0.15f);
    std::vector<float> times(1000);
    float t = 3.0f;
    for (float& k : times) {
        k = t;
        t += gap(rng);
    }
    TrackCurveIndex index;
    index.build(times.data(), 1000);
    ASSERT_FALSE(index.empty());
    EXPECT_TRUE(index.covers(1000));
    EXPECT_FALSE(index.covers(999));
    std::vector<float> probes;
    for (float k : times)
        probes.insert(probes.end(), {k, std::nextafter(k, -1e30f), std::nextafter(k, 1e30f)});
    std::uniform_real_distribution<float> anywhere(times.front(), times.back());
    for (int n = 0; n < 20000; ++n)
        probes.push_back(anywhere(rng));
    for (float p : probes) {
        if (p < times.front() || p >= times.back())
            continue;
        const int* e = index.entry(index.bucket(p));
        int answer = static_cast<int>(std::upper_bound(times.begin(), times.end(), p) - times.begin()) - 1;
        ASSERT_LE(e[0], answer) << "t=" << p;
        ASSERT_GE(e[1], answer) << "t=" << p;
        ASSERT_LE(e[1] - e[0], 4) << "t=" << p;
    }
    index.release();
    EXPECT_TRUE(index.empty());
    EXPECT_FALSE(index.covers(1000));
    // With no span to divide, it stays empty.
    index.build(times.data(), 1);
    EXPECT_TRUE(index.empty());
    EXPECT_FALSE(index.covers(1));
    const float same[3] = {4.0f, 4.0f, 4.0f};
    index.build(same, 3);
    EXPECT_TRUE(index.empty());
    index.build(nullptr, 0);
    EXPECT_TRUE(index.empty());
}

TEST_F(TrackCurveIndexTest, LaterTimesNeverFallInEarlierBuckets)
{
    std::vector<float> times = {-2.0f, 0.5f, 1.0f, 30.0f};
    TrackCurveIndex index;
    index.build(times.data(), 4);
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(index.bucket(-inf), 0);
    EXPECT_EQ(index.bucket(-2.0f), 0);
    EXPECT_EQ(index.bucket(inf), 3);
    EXPECT_EQ(index.bucket(std::numeric_limits<float>::quiet_NaN()), 3);
    int previous = 0;
    for (float t = -3.0f; t < 32.0f; t += 0.01f) {
        ASSERT_GE(index.bucket(t), previous) << "t=" << t;
        previous = index.bucket(t);
    }
}

// Keys at irregular times of every type in turn, with three keys sharing a time (zero-length
// segments) and, when clustered, most keys packed at the start so that buckets hold many.
std::vector<TrackKeyFloat> makeKeys(int count, bool clustered, std::mt19937& rng)
{
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys;
    float t = -1.0f;
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        keys.push_back({t, unit(rng) * 2.0f - 1.0f, tangents, i % TRACK_KEY_TYPE_COUNT});
        bool repeat = i == count / 2 || i == count / 2 + 1;
        t += repeat ? 0.0f : (clustered && i < count * 3 / 4 ? 0.001f : 0.05f + 0.1f * unit(rng));
    }
    return keys;
}

TrackCurveData<float> compiled(const std::vector<TrackKeyFloat>& keys, bool indexed)
{
    TrackCurveData<float> curve;
    if (indexed)
        TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), curve);
    else
        TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), curve.times, curve.segments);
    return curve;
}

TEST_F(TrackCurveTableTest, FindsTheSegmentTheKeySearchFindsWithAndWithoutATimeIndex)
{
    std::mt19937 rng(17);
    for (bool clustered : {false, true}) {
        for (bool indexed : {true, false}) {
            SCOPED_TRACE(testing::Message() << (clustered ? "clustered" : "spread") << (indexed ? " indexed" : " searched"));
            std::vector<TrackKeyFloat> keys = makeKeys(400, clustered, rng);
            TrackCurveData<float> data = compiled(keys, indexed);
            const TrackCurveData<float>* curves[] = {&data};
            TrackCurveTable table;
            table.build(curves, 1);
            const TrackCurveTable::Curve& c = table.curve(0);
            EXPECT_EQ(c.entries != nullptr, indexed);
            std::vector<float> ts = {-INF, INF, std::numeric_limits<float>::quiet_NaN()};
            for (const TrackKeyFloat& k : keys)
                for (float t : {k.time, std::nextafter(k.time, -INF), std::nextafter(k.time, INF)})
                    ts.push_back(t);
            std::uniform_real_distribution<float> anywhere(-2.0f, keys.back().time + 1.0f);
            for (int n = 0; n < 5000; ++n)
                ts.push_back(anywhere(rng));
            for (float t : ts) {
                int cursor = 0;
                int key = TrackSegment::find(data.times.data(), data.times.size(), t, cursor);
                ASSERT_EQ(TrackCurveTable::find(c, t), key + 1) << "t=" << t;
            }
        }
    }
}

// Segments are read a cache line each, from one block of memory: one curve (64 KB of lines) or 60
// (over a huge page).
TEST_F(TrackCurveTableTest, SmallAndHugeTablesStartEveryLineOnACacheLine)
{
    std::mt19937 rng(3);
    TrackCurveData<float> data = compiled(makeKeys(1000, false, rng), true);
    TrackCurveTable table;
    for (int count : {1, 60}) {
        std::vector<const TrackCurveData<float>*> curves(count, &data);
        table.build(curves.data(), count);
        ASSERT_EQ(table.size(), count);
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(reinterpret_cast<uintptr_t>(table.curve(i).lines) % 64, 0u) << i;
    }
}

} // namespace
