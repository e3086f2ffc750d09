#include "anim/TrackCurveCursor.h"

#include <cmath>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/BezierReference.h"
#include "support/Scenario.h"

namespace {

using TrackCurveCursorTest = Scenario;

// Keys like the editor's broken-tangent curves: irregular times, handles up to the shortest
// segment long (so that the timing curve can have flat stretches), values in [-1, 1].
std::vector<TrackKeyFloat> longHandles(int count, unsigned seed)
{
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys;
    float t = 0.0f;
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        keys.push_back({t, unit(rng) * 2.0f - 1.0f, tangents, TRACK_KEY_BREAK});
        t += 0.05f + 0.1f * unit(rng);
    }
    return keys;
}

// The independent evaluation of the Bezier segment that holds t.
double reference(const std::vector<TrackKeyFloat>& keys, float t)
{
    size_t i = 0;
    while (i + 2 < keys.size() && keys[i + 1].time <= t)
        ++i;
    return bezierReference(keys[i], keys[i + 1], t);
}

struct Curve {
    explicit Curve(const std::vector<TrackKeyFloat>& keys)
    {
        TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), data.times, data.segments);
    }
    // The value at t from a cold start, as scrubbing gets it.
    float cold(float t) const
    {
        int cursor = 0;
        return TrackCurve::evaluate(data.times.data(), data.segments.data(), data.times.size(), t, cursor);
    }
    TrackCurveData<float> data;
};

TEST_F(TrackCurveCursorTest, FramesPlayedForwardMatchAnIndependentEvaluation)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::vector<TrackKeyFloat> keys = longHandles(40, seed);
        Curve curve(keys);
        TrackCurveCursor<float> cursor;
        cursor.attach(&curve.data);
        // Frame steps from 1/240 s (many frames per segment) to 1/24 s (a few).
        float step = 1.0f / static_cast<float>(24 * (1 + seed % 10));
        for (float t = 0.0f; t < keys.back().time; t += step)
            ASSERT_NEAR(cursor.value(t), reference(keys, t), 1e-6) << "seed " << seed << " t=" << t;
    }
}

TEST_F(TrackCurveCursorTest, FramesGiveWhatAColdStartGives)
{
    std::vector<TrackKeyFloat> keys = longHandles(200, 7);
    Curve curve(keys);
    TrackCurveCursor<float> cursor;
    cursor.attach(&curve.data);
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = -0.5f;
    for (int n = 0; n < 5000; ++n) {
        ASSERT_NEAR(cursor.value(t), curve.cold(t), 1e-6) << "t=" << t;
        // Mostly forward a frame, sometimes backward, sometimes a jump anywhere (or past the ends).
        float r = unit(rng);
        t = r < 0.8f ? t + 1.0f / 60.0f : (r < 0.9f ? t - 1.0f / 30.0f : unit(rng) * 25.0f - 2.0f);
    }
}

TEST_F(TrackCurveCursorTest, HandlesThatFlattenTheTimingCurveStillSolve)
{
    // Out handle of zero length (the curve leaves the key with no speed in time), both handles as
    // long as the segment (the timing curve stops in the middle), and the in handle of zero length.
    std::vector<TrackKeyFloat> keys = {
        {0.0f, 0.0f, vec4(0.0f, 0.0f, 0.0f, 1.0f), TRACK_KEY_BREAK},
        {1.0f, 1.0f, vec4(-1.0f, 0.5f, 1.0f, 0.5f), TRACK_KEY_BREAK},
        {2.0f, -1.0f, vec4(-1.0f, 0.5f, 0.5f, -0.5f), TRACK_KEY_BREAK},
        {3.0f, 0.5f, vec4(0.0f, 2.0f, 0.0f, 0.0f), TRACK_KEY_BREAK},
    };
    Curve curve(keys);
    TrackCurveCursor<float> cursor;
    cursor.attach(&curve.data);
    for (float t = 0.0f; t < 3.0f; t += 1.0f / 120.0f) {
        float v = cursor.value(t);
        ASSERT_NEAR(v, curve.cold(t), 1e-6) << "t=" << t;
        // Where the timing curve stops (the middle of the second segment, at 1.5 s), a millionth of
        // the segment in time is worth far more in value: a cold start is off there just as much.
        ASSERT_NEAR(v, reference(keys, t), std::fabs(t - 1.5f) < 1e-4f ? 1e-3 : 1e-6) << "t=" << t;
    }
}

TEST_F(TrackCurveCursorTest, AfterResetTheRecompiledCurveIsPlayed)
{
    std::vector<TrackKeyFloat> keys = {{0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR}, {2.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR}};
    Curve curve(keys);
    TrackCurveCursor<float> cursor;
    cursor.attach(&curve.data);
    EXPECT_EQ(cursor.value(0.5f), 0.5f);
    keys[1].value = 4.0f;
    TrackCurve::compile(keys.data(), 2, curve.data.times, curve.data.segments);
    EXPECT_EQ(cursor.value(0.5f), 0.5f); // still on the copy of the old segment
    cursor.reset();
    EXPECT_EQ(cursor.value(0.5f), 1.0f);
    EXPECT_EQ(cursor.value(-1.0f), 0.0f);
    EXPECT_EQ(cursor.value(9.0f), 4.0f);
}

} // namespace
