#include "anim/TrackCurveBatch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/BezierReference.h"
#include "support/Scenario.h"

namespace {

using TrackCurveBatchTest = Scenario;

const float INF = std::numeric_limits<float>::infinity();

bool isBezier(int type)
{
    return type >= TRACK_KEY_SMOOTH;
}

// A compiled curve with its time index (indexed) or without it, as parameters compile theirs.
struct Curve {
    Curve(const std::vector<TrackKeyFloat>& keys, bool indexed)
    {
        int count = static_cast<int>(keys.size());
        if (indexed)
            TrackCurve::compile(keys.data(), count, data);
        else
            TrackCurve::compile(keys.data(), count, data.times, data.segments);
    }
    // The single-sample evaluation the batch must agree with (0 without keys, as parameters say).
    float single(float t) const
    {
        int cursor = 0;
        if (data.times.empty())
            return 0.0f;
        return TrackCurve::evaluate(data.times.data(), data.segments.data(), data.times.size(), t, cursor);
    }
    TrackCurveData<float> data;
};

// Samples curves[i] at times[i] in one batch, from a table of the distinct curves.
std::vector<float> batch(const std::vector<const TrackCurveData<float>*>& curves, const std::vector<float>& times)
{
    std::vector<const TrackCurveData<float>*> distinct;
    std::vector<int> ids;
    for (const TrackCurveData<float>* c : curves) {
        auto at = std::find(distinct.begin(), distinct.end(), c);
        ids.push_back(static_cast<int>(at - distinct.begin()));
        if (at == distinct.end())
            distinct.push_back(c);
    }
    TrackCurveTable table;
    table.build(distinct.data(), static_cast<int>(distinct.size()));
    std::vector<float> out(times.size(), -12345.0f);
    TrackCurveBatch::sample(table, ids.data(), times.data(), static_cast<int>(times.size()), out.data());
    return out;
}

// Samples one curve at every time in one batch.
std::vector<float> batch(const Curve& curve, const std::vector<float>& times)
{
    return batch(std::vector<const TrackCurveData<float>*>(times.size(), &curve.data), times);
}

// Four keys with a zero-length segment at 2 (keys b and c share it):
//
//   value
//     4 |      b
//     3 |
//     2 | a
//     1 |      c       d
//       +--|---|-------|----> t
//          1   2       4
std::vector<TrackKeyFloat> edgeKeys(int type)
{
    return {{1.0f, 2.0f, vec4(-0.2f, 0.0f, 0.25f, 0.5f), type},
            {2.0f, 4.0f, vec4(-0.25f, -0.25f, 0.5f, 0.5f), type},
            {2.0f, 1.0f, vec4(-0.25f, 0.5f, 0.6f, -0.5f), type},
            {4.0f, 1.0f, vec4(-0.5f, 0.75f, 0.3f, 0.0f), type}};
}

// Before the first key, on each key, between keys, on the last key, after it, and the extremes.
const std::vector<float> EDGE_TIMES = {-INF, -1e30f, 0.0f, 0.9999f, 1.0f, 1.0001f, 1.5f, 1.9999f, 2.0f, 2.0001f,
                                       3.0f, 3.9999f, 4.0f, 4.0001f, 100.0f, 1e30f, INF};

TEST_F(TrackCurveBatchTest, GivesTheSingleSampleValuesAtTheEdgesForEveryKeyType)
{
    for (int type = TRACK_KEY_CONSTANT; type < TRACK_KEY_TYPE_COUNT; ++type) {
        for (bool indexed : {true, false}) {
            SCOPED_TRACE(testing::Message() << "type " << type << (indexed ? " indexed" : " searched"));
            Curve curve(edgeKeys(type), indexed);
            std::vector<float> out = batch(curve, EDGE_TIMES);
            for (size_t i = 0; i < EDGE_TIMES.size(); ++i) {
                float t = EDGE_TIMES[i];
                ASSERT_FALSE(std::isnan(out[i])) << "t=" << t;
                if (isBezier(type))
                    EXPECT_NEAR(out[i], curve.single(t), 1e-6) << "t=" << t;
                else
                    EXPECT_EQ(out[i], curve.single(t)) << "t=" << t;
            }
            EXPECT_EQ(out[0], 2.0f);          // -infinity: the first key's value
            EXPECT_EQ(out[4], 2.0f);          // on the first key
            EXPECT_EQ(out[8], 1.0f);          // on the zero-length segment: the later key takes over
            EXPECT_EQ(out[12], 1.0f);         // on the last key
            EXPECT_EQ(out.back(), 1.0f);      // +infinity: the last key's value
        }
    }
}

TEST_F(TrackCurveBatchTest, CurvesWithoutKeysGiveZeroAndOneKeyHoldsItsValue)
{
    Curve none({}, true);
    Curve one({{3.0f, 7.5f, vec4(-1.0f, 1.0f, 1.0f, 1.0f), TRACK_KEY_BREAK}}, true);
    std::vector<const TrackCurveData<float>*> curves;
    std::vector<float> times;
    for (float t : EDGE_TIMES) {
        curves.push_back(&none.data);
        times.push_back(t);
        curves.push_back(&one.data);
        times.push_back(t);
    }
    std::vector<float> out = batch(curves, times);
    for (size_t i = 0; i < out.size(); i += 2) {
        EXPECT_EQ(out[i], 0.0f) << "t=" << times[i];
        EXPECT_EQ(out[i + 1], 7.5f) << "t=" << times[i];
    }
}

TEST_F(TrackCurveBatchTest, ANaNTimeGivesTheLastKeysValueAsSingleSamplesDo)
{
    Curve curve(edgeKeys(TRACK_KEY_LINEAR), true);
    float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> out = batch(curve, {nan});
    EXPECT_EQ(out[0], curve.single(nan));
    EXPECT_EQ(out[0], 1.0f);
}

TEST_F(TrackCurveBatchTest, ACurveRecompiledWithoutItsIndexIsSearchedInstead)
{
    Curve curve(edgeKeys(TRACK_KEY_LINEAR), true);
    std::vector<TrackKeyFloat> fewer = {{0.0f, 0.0f, vec4(), TRACK_KEY_LINEAR}, {10.0f, 10.0f, vec4(), TRACK_KEY_LINEAR}};
    TrackCurve::compile(fewer.data(), 2, curve.data.times, curve.data.segments);
    std::vector<float> out = batch(curve, {2.5f, 3.75f, 9.0f});
    EXPECT_FLOAT_EQ(out[0], 2.5f);
    EXPECT_FLOAT_EQ(out[1], 3.75f);
    EXPECT_FLOAT_EQ(out[2], 9.0f);
}

// Keys at irregular times (0.05 to 0.15 s apart) of random types, values in [-1, 1] and handles
// inside their segments.
std::vector<TrackKeyFloat> randomKeys(int count, int type, std::mt19937& rng)
{
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys(count);
    float t = 0.0f;
    for (auto& k : keys) {
        int kind = type >= 0 ? type : static_cast<int>(rng() % TRACK_KEY_TYPE_COUNT);
        k = {t, unit(rng) * 2.0f - 1.0f, vec4(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f),
             kind};
        t += 0.05f + 0.1f * unit(rng);
    }
    TrackCurve::smoothTangents(keys.data(), count);
    return keys;
}

TEST_F(TrackCurveBatchTest, ManyCurvesEachAtItsOwnTimeMatchSingleSamples)
{
    std::mt19937 rng(21);
    std::vector<std::unique_ptr<Curve>> curves;
    for (int count : {0, 1, 2, 3, 5, 17, 100, 1000})
        for (bool indexed : {true, false})
            curves.push_back(std::make_unique<Curve>(randomKeys(count, -1, rng), indexed));
    std::uniform_real_distribution<float> times(-5.0f, 110.0f);
    // Batches shorter and longer than the pipeline, so that it fills and drains at every depth.
    for (int size : {1, 2, 7, 25, 5000}) {
        std::vector<const TrackCurveData<float>*> which;
        std::vector<float> at;
        for (int n = 0; n < size; ++n) {
            which.push_back(&curves[rng() % curves.size()]->data);
            at.push_back(times(rng));
        }
        std::vector<float> out = batch(which, at);
        for (int n = 0; n < size; ++n) {
            const TrackCurveData<float>& c = *which[n];
            int cursor = 0;
            int segment = TrackSegment::find(c.times.data(), c.times.size(), at[n], cursor);
            float single = c.times.empty() ? 0.0f
                                           : TrackCurve::evaluate(c.times.data(), c.segments.data(), c.times.size(), at[n], cursor);
            // Only solved Bezier segments may differ, by rounding; everything else is the same value.
            if (segment >= 0 && c.segments[segment].mode == TrackCurveSegment<float>::BEZIER)
                ASSERT_NEAR(out[n], single, 1e-6) << "sample " << n << " of " << size << " at t=" << at[n];
            else
                ASSERT_EQ(out[n], single) << "sample " << n << " of " << size << " at t=" << at[n];
        }
    }
}

TEST_F(TrackCurveBatchTest, BezierValuesStayWithinAMillionthOfTheReference)
{
    std::mt19937 rng(8);
    std::vector<std::vector<TrackKeyFloat>> keys;
    std::vector<std::unique_ptr<Curve>> curves;
    for (int i = 0; i < 20; ++i) {
        keys.push_back(randomKeys(500, TRACK_KEY_BREAK, rng));
        curves.push_back(std::make_unique<Curve>(keys.back(), true));
    }
    std::uniform_real_distribution<float> times(0.0f, 24.0f);
    std::vector<const TrackCurveData<float>*> which;
    std::vector<float> at;
    std::vector<int> owner;
    for (int n = 0; n < 50000; ++n) {
        owner.push_back(static_cast<int>(rng() % curves.size()));
        which.push_back(&curves[owner.back()]->data);
        at.push_back(times(rng));
    }
    std::vector<float> out = batch(which, at);
    double worst = 0.0;
    for (int n = 0; n < 50000; ++n) {
        const auto& k = keys[owner[n]];
        int i = 0;
        while (i + 2 < static_cast<int>(k.size()) && k[i + 1].time <= at[n])
            ++i;
        worst = std::max(worst, std::fabs(out[n] - bezierReference(k[i], k[i + 1], at[n])));
    }
    EXPECT_LE(worst, 1e-6);
}

} // namespace
