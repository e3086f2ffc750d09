#include "anim/TrackCurvePlayer.h"

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/BezierReference.h"
#include "support/Scenario.h"

namespace {

using TrackCurvePlayerTest = Scenario;

// Keys of every type in turn (or all of one type), at irregular times, with handles up to the
// shortest segment long so that Bezier timing curves can have flat stretches.
std::vector<TrackKeyFloat> makeKeys(int count, unsigned seed, int type = -1)
{
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys;
    float t = 0.05f * static_cast<float>(seed % 7);
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        int keyType = type >= 0 ? type : static_cast<int>((seed + static_cast<unsigned>(i)) % TRACK_KEY_TYPE_COUNT);
        keys.push_back({t, unit(rng) * 2.0f - 1.0f, tangents, keyType});
        t += 0.05f + 0.1f * unit(rng);
    }
    return keys;
}

// A compiled curve and its keys.
struct Curve {
    explicit Curve(std::vector<TrackKeyFloat> k)
        : keys(std::move(k))
    {
        TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), data.times, data.segments);
    }
    // The value at t from a cold start, as scrubbing gets it.
    float cold(float t) const
    {
        int cursor = 0;
        return TrackCurve::evaluate(data.times.data(), data.segments.data(), data.times.size(), t, cursor);
    }
    std::vector<TrackKeyFloat> keys;
    TrackCurveData<float> data;
};

// Channels of a player over curves it does not own, with the values of the last frame.
struct Channels {
    void add(std::vector<TrackKeyFloat> keys)
    {
        curves.push_back(std::make_unique<Curve>(std::move(keys)));
        player.add(&curves.back()->data);
        values.resize(curves.size());
    }
    void play(float t) { player.play(t, values.data()); }

    std::vector<std::unique_ptr<Curve>> curves;
    TrackCurvePlayer player;
    std::vector<float> values;
};

// The independent evaluation of the Bezier segment of keys that holds t (which must be inside).
double reference(const std::vector<TrackKeyFloat>& keys, float t)
{
    size_t i = 0;
    while (i + 2 < keys.size() && keys[i + 1].time <= t)
        ++i;
    return bezierReference(keys[i], keys[i + 1], t);
}

TEST_F(TrackCurvePlayerTest, ChannelsAreNumberedInTheOrderTheyAreAdded)
{
    Channels c;
    for (int i = 0; i < 11; ++i) {
        c.curves.push_back(std::make_unique<Curve>(std::vector<TrackKeyFloat>{{0.0f, static_cast<float>(i), vec4_zero, TRACK_KEY_CONSTANT}}));
        EXPECT_EQ(c.player.add(&c.curves.back()->data), i);
    }
    EXPECT_EQ(c.player.size(), 11);
    c.values.resize(11);
    c.play(1.0f);
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(c.values[i], static_cast<float>(i));
    c.player.clear();
    EXPECT_EQ(c.player.size(), 0);
}

TEST_F(TrackCurvePlayerTest, PlaybackOfMixedKeyTypesGivesWhatAColdStartGives)
{
    // 21 channels: two full blocks of eight and a part block; every key type follows every other.
    Channels c;
    for (unsigned seed = 1; seed <= 21; ++seed)
        c.add(makeKeys(60, seed));
    for (float t = -0.2f; t < 7.0f; t += 1.0f / 60.0f) {
        c.play(t);
        for (size_t i = 0; i < c.curves.size(); ++i)
            ASSERT_NEAR(c.values[i], c.curves[i]->cold(t), 1e-6) << "channel " << i << " t=" << t;
    }
}

TEST_F(TrackCurvePlayerTest, BezierPlaybackMatchesAnIndependentEvaluation)
{
    Channels c;
    for (unsigned seed = 1; seed <= 16; ++seed)
        c.add(makeKeys(80, seed, TRACK_KEY_BREAK));
    float end = 1e9f;
    for (auto& curve : c.curves)
        end = std::min(end, curve->keys.back().time);
    // Frame steps from 1/240 s (many frames per segment) to 1/24 s (a few).
    for (int rate : {240, 60, 24}) {
        for (float t = 0.35f; t < end; t += 1.0f / static_cast<float>(rate)) {
            c.play(t);
            for (size_t i = 0; i < c.curves.size(); ++i)
                ASSERT_NEAR(c.values[i], reference(c.curves[i]->keys, t), 1e-6) << "channel " << i << " t=" << t;
        }
    }
}

TEST_F(TrackCurvePlayerTest, JumpsBackwardsAndLoopsAreFollowed)
{
    Channels c;
    for (unsigned seed = 1; seed <= 10; ++seed)
        c.add(makeKeys(40, seed));
    std::mt19937 rng(5);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = 0.0f;
    for (int n = 0; n < 3000; ++n) {
        c.play(t);
        for (size_t i = 0; i < c.curves.size(); ++i)
            ASSERT_NEAR(c.values[i], c.curves[i]->cold(t), 1e-6) << "channel " << i << " t=" << t;
        // Forward a frame, back to the start of a two-second loop, or a jump anywhere (past the
        // ends too).
        float r = unit(rng);
        t = r < 0.8f ? (t + 1.0f / 60.0f > 2.0f ? 0.0f : t + 1.0f / 60.0f) : unit(rng) * 8.0f - 1.0f;
    }
}

TEST_F(TrackCurvePlayerTest, EdgesOfTheCurveHoldTheEndKeys)
{
    Channels c;
    c.add({{1.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR}, {2.0f, 4.0f, vec4_zero, TRACK_KEY_LINEAR}});
    c.add({{0.5f, -3.0f, vec4_zero, TRACK_KEY_BREAK}}); // a single key holds everywhere
    // Two keys at one time: the later one takes over at once.
    c.add({{0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR}, {1.0f, 1.0f, vec4_zero, TRACK_KEY_LINEAR}, {1.0f, 5.0f, vec4_zero, TRACK_KEY_LINEAR}});
    const float inf = std::numeric_limits<float>::infinity();
    struct Expected {
        float t;
        float values[3];
    };
    const Expected frames[] = {
        {-inf, {2.0f, -3.0f, 0.0f}}, {0.0f, {2.0f, -3.0f, 0.0f}}, {1.0f, {2.0f, -3.0f, 5.0f}},
        {1.5f, {3.0f, -3.0f, 5.0f}}, {2.0f, {4.0f, -3.0f, 5.0f}}, {50.0f, {4.0f, -3.0f, 5.0f}},
        {inf, {4.0f, -3.0f, 5.0f}},  {0.5f, {2.0f, -3.0f, 0.5f}},  {-inf, {2.0f, -3.0f, 0.0f}},
    };
    for (const Expected& e : frames) {
        c.play(e.t);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(c.values[i], e.values[i]) << "channel " << i << " t=" << e.t;
    }
}

TEST_F(TrackCurvePlayerTest, LargePlayersSplitOverTwoThreadsPlayWhatAColdStartGives)
{
    // Enough channels that a frame is played half on the worker thread, of every key type.
    Channels c;
    for (unsigned seed = 1; seed <= 5000; ++seed)
        c.add(makeKeys(12, seed));
    for (float t : {0.0f, 0.3f, 0.31f, 0.32f, 0.9f, 0.1f, 5.0f}) {
        c.play(t);
        for (size_t i = 0; i < c.curves.size(); ++i)
            ASSERT_NEAR(c.values[i], c.curves[i]->cold(t), 1e-6) << "channel " << i << " t=" << t;
    }
}

TEST_F(TrackCurvePlayerTest, ChannelsAddedAfterPlayingStartOnTheirOwnCurve)
{
    Channels c;
    for (unsigned seed = 1; seed <= 8; ++seed)
        c.add(makeKeys(30, seed, TRACK_KEY_LINEAR));
    c.play(1.0f);
    c.add({{0.0f, 7.0f, vec4_zero, TRACK_KEY_LINEAR}, {4.0f, 11.0f, vec4_zero, TRACK_KEY_LINEAR}});
    c.play(2.0f);
    EXPECT_FLOAT_EQ(c.values[8], 9.0f);
    for (size_t i = 0; i < 8; ++i)
        EXPECT_NEAR(c.values[i], c.curves[i]->cold(2.0f), 1e-6);
}

} // namespace
