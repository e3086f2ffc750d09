#include "anim/TrackCurveIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "anim/TrackCurveBatch.h"
#include "anim/TrackKey.h"
#include "support/Scenario.h"

namespace {

using TrackCurveIndexTest = Scenario;

// The last index whose time is at or before t, by a plain binary search.
int lastAtOrBefore(const std::vector<float>& times, float t)
{
    return static_cast<int>(std::upper_bound(times.begin(), times.end(), t) - times.begin()) - 1;
}

// Checks that for every time in ts (between the first time and the last) the index narrows the
// search to a range that holds the right key, and returns the widest range seen.
int checkRanges(const TrackCurveIndex& index, const std::vector<float>& times, const std::vector<float>& ts)
{
    int widest = 0;
    for (float t : ts) {
        const int* e = index.entry(index.bucket(t));
        int answer = lastAtOrBefore(times, t);
        EXPECT_LE(e[0], answer) << "t=" << t;
        EXPECT_GE(e[1], answer) << "t=" << t;
        widest = std::max(widest, e[1] - e[0]);
    }
    return widest;
}

// Every key time, a hair either side of it, and random times, all inside [first, last).
std::vector<float> probeTimes(const std::vector<float>& times, std::mt19937& rng)
{
    std::vector<float> ts;
    float last = times.back();
    for (float k : times) {
        for (float t : {k, std::nextafter(k, -1e30f), std::nextafter(k, 1e30f)})
            if (t >= times.front() && t < last)
                ts.push_back(t);
    }
    std::uniform_real_distribution<float> anywhere(times.front(), last);
    for (int n = 0; n < 20000; ++n)
        ts.push_back(anywhere(rng));
    return ts;
}

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
    index.build(times.data(), static_cast<int>(times.size()));
    ASSERT_FALSE(index.empty());
    EXPECT_TRUE(index.covers(1000));
    EXPECT_FALSE(index.covers(999));
    // Gaps differ by a factor of three at most, so a bucket as long as the mean gap holds few keys.
    EXPECT_LE(checkRanges(index, times, probeTimes(times, rng)), 4);
    index.release();
    EXPECT_TRUE(index.empty());
    EXPECT_FALSE(index.covers(1000));
}

TEST_F(TrackCurveIndexTest, ClusteredTimesStillGiveTheRightKey)
{
    // 999 keys in the first second and one at 1,000 s: nearly every key shares the first bucket.
    std::vector<float> times;
    for (int i = 0; i < 999; ++i)
        times.push_back(i / 999.0f);
    times.push_back(1000.0f);
    TrackCurveIndex index;
    index.build(times.data(), static_cast<int>(times.size()));
    ASSERT_FALSE(index.empty());
    std::mt19937 rng(5);
    checkRanges(index, times, probeTimes(times, rng));
    index.release();
}

TEST_F(TrackCurveIndexTest, ClusteredKeysSampleAsSingleSamplesDo)
{
    std::vector<TrackKeyFloat> keys;
    for (int i = 0; i < 999; ++i)
        keys.push_back({i / 999.0f, std::sin(i * 0.1f), vec4(), TRACK_KEY_LINEAR});
    keys.push_back({1000.0f, 5.0f, vec4(), TRACK_KEY_LINEAR});
    TrackCurveData<float> curve;
    TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), curve);
    std::mt19937 rng(6);
    std::uniform_real_distribution<float> early(-0.1f, 1.1f), late(0.0f, 1001.0f);
    std::vector<float> ts;
    for (int n = 0; n < 5000; ++n)
        ts.push_back(n % 2 ? early(rng) : late(rng));
    const TrackCurveData<float>* one = &curve;
    TrackCurveTable table;
    table.build(&one, 1);
    std::vector<int> curves(ts.size(), 0);
    std::vector<float> out(ts.size());
    TrackCurveBatch::sample(table, curves.data(), ts.data(), static_cast<int>(ts.size()), out.data());
    for (size_t n = 0; n < ts.size(); ++n) {
        int cursor = 0;
        ASSERT_EQ(out[n], TrackCurve::evaluate(curve.times.data(), curve.segments.data(), curve.times.size(), ts[n], cursor))
            << "t=" << ts[n];
    }
}

TEST_F(TrackCurveIndexTest, RepeatedTimesFallInOneBucketRange)
{
    std::vector<float> times = {0.0f, 1.0f, 1.0f, 1.0f, 2.0f, 2.0f, 7.5f, 8.0f};
    TrackCurveIndex index;
    index.build(times.data(), static_cast<int>(times.size()));
    std::mt19937 rng(7);
    checkRanges(index, times, probeTimes(times, rng));
    index.release();
}

TEST_F(TrackCurveIndexTest, StaysEmptyWhenThereIsNoSpanToDivide)
{
    TrackCurveIndex index;
    float one = 2.0f;
    index.build(&one, 1);
    EXPECT_TRUE(index.empty());
    EXPECT_FALSE(index.covers(1));
    float same[3] = {4.0f, 4.0f, 4.0f};
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
        EXPECT_GE(index.bucket(t), previous) << "t=" << t;
        previous = index.bucket(t);
    }
    index.release();
}

} // namespace
