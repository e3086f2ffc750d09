#include "anim/TrackCurveTable.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/Scenario.h"

namespace {

using TrackCurveTableTest = Scenario;

const float INF = std::numeric_limits<float>::infinity();

// Keys at irregular times of every type in turn, with two keys sharing a time (a zero-length
// segment) and, when clustered, most keys packed at the start so that buckets hold many.
std::vector<TrackKeyFloat> makeKeys(int count, bool clustered, std::mt19937& rng)
{
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys;
    float t = -1.0f;
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        keys.push_back({t, unit(rng) * 2.0f - 1.0f, tangents, i % TRACK_KEY_TYPE_COUNT});
        bool repeat = i == count / 2;
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

//   value
//     3 |           c
//     1 | a    b
//       +-|----|----|---> t
//         1    2    4
TEST_F(TrackCurveTableTest, LinesHoldTheValueBeforeTheFirstKeyEachSegmentAndNothingAfter)
{
    std::vector<TrackKeyFloat> keys = {{1.0f, 1.0f, vec4(), TRACK_KEY_CONSTANT},
                                       {2.0f, 1.0f, vec4(), TRACK_KEY_LINEAR},
                                       {4.0f, 3.0f, vec4(), TRACK_KEY_LINEAR}};
    TrackCurveData<float> data = compiled(keys, true);
    const TrackCurveData<float>* curves[] = {&data};
    TrackCurveTable table;
    table.build(curves, 1);
    ASSERT_EQ(table.size(), 1);
    const TrackCurveTable::Curve& c = table.curve(0);
    ASSERT_EQ(c.count, 4);
    EXPECT_EQ(c.lines[0].t0, -INF);
    EXPECT_EQ(c.lines[0].t1, 1.0f);
    EXPECT_EQ(TrackCurve::sample(c.lines[0], -5.0f), 1.0f);
    EXPECT_EQ(TrackCurve::sample(c.lines[1], 1.5f), 1.0f); // constant from a to b
    EXPECT_EQ(TrackCurve::sample(c.lines[2], 3.0f), 2.0f); // halfway from b to c
    EXPECT_EQ(c.lines[3].t0, 4.0f);
    EXPECT_EQ(c.lines[3].t1, INF);
    EXPECT_EQ(TrackCurve::sample(c.lines[3], 1e30f), 3.0f);
    // The line after the last holds no time, so no range check on it ever passes.
    EXPECT_FALSE(4.0f >= c.lines[4].t0 || 4.0f < c.lines[4].t1);
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

TEST_F(TrackCurveTableTest, ACurveWithoutKeysHoldsZeroAtEveryTime)
{
    TrackCurveData<float> empty;
    const TrackCurveData<float>* curves[] = {&empty};
    TrackCurveTable table;
    table.build(curves, 1);
    const TrackCurveTable::Curve& c = table.curve(0);
    ASSERT_EQ(c.count, 1);
    for (float t : {-INF, 0.0f, 1e30f, INF}) {
        EXPECT_EQ(TrackCurveTable::find(c, t), 0);
        EXPECT_EQ(TrackCurve::sample(c.lines[0], t), 0.0f);
    }
}

TEST_F(TrackCurveTableTest, SmallAndHugeTablesStartEveryLineOnACacheLine)
{
    std::mt19937 rng(3);
    std::vector<TrackKeyFloat> keys = makeKeys(1000, false, rng);
    TrackCurveData<float> data = compiled(keys, true);
    TrackCurveTable table;
    // One curve (64 KB of lines) and 60 (over a huge page).
    for (int count : {1, 60}) {
        std::vector<const TrackCurveData<float>*> curves(count, &data);
        table.build(curves.data(), count);
        ASSERT_EQ(table.size(), count);
        for (int i = 0; i < count; ++i) {
            const TrackCurveTable::Curve& c = table.curve(i);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(c.lines) % 64, 0u);
            EXPECT_EQ(c.count, 1001);
            EXPECT_EQ(c.lines[1000].t0, keys.back().time);
        }
    }
    table.clear();
    EXPECT_EQ(table.size(), 0);
}

} // namespace
