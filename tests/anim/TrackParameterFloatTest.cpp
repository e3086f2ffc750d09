#include "anim/TrackParameterFloat.h"

#include <cmath>
#include <vector>

#include "support/Scenario.h"

namespace {

using TrackParameterFloatTest = Scenario;

TEST_F(TrackParameterFloatTest, WithoutKeysNothingIsFound)
{
    TrackParameterFloat p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(1.0f, found), 0.0f);
    EXPECT_FALSE(found);
    EXPECT_EQ(p.getType(), TRACK_PARAMETER_FLOAT);
}

// keys: 0 at t=1, 10 at t=3 (linear):   -eps | 1 ... 2 ... 3 | +eps
TEST_F(TrackParameterFloatTest, EvaluatesItsKeysAndHoldsTheEnds)
{
    TrackParameterFloat p;
    p.appendKey(1.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.appendKey(3.0f, 10.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.update();
    bool found = false;
    EXPECT_EQ(p.getTrackValue(0.0f, found), 0.0f);
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValue(1.0f, found), 0.0f);
    EXPECT_FLOAT_EQ(p.getTrackValue(2.0f, found), 5.0f);
    EXPECT_EQ(p.getTrackValue(3.0f, found), 10.0f);
    EXPECT_EQ(p.getTrackValue(3.5f, found), 10.0f);
    EXPECT_EQ(p.getNumKeys(), 2);
}

TEST_F(TrackParameterFloatTest, RefilledKeysAreSeenEvenWithoutUpdate)
{
    TrackParameterFloat p;
    p.appendKey(0.0f, 1.0f, vec4_zero, TRACK_KEY_CONSTANT);
    bool found = false;
    EXPECT_EQ(p.getTrackValue(5.0f, found), 1.0f);
    p.clearKeys();
    p.appendKey(0.0f, 7.0f, vec4_zero, TRACK_KEY_CONSTANT);
    EXPECT_EQ(p.getTrackValue(5.0f, found), 7.0f);
    p.getKeys()[0].value = 8.0f;
    EXPECT_EQ(p.getTrackValue(5.0f, found), 8.0f);
}

TEST_F(TrackParameterFloatTest, SmoothKeysFollowTheirNeighboursOnUpdate)
{
    TrackParameterFloat p;
    p.appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.appendKey(1.0f, 1.0f, vec4(-9.0f, 9.0f, 9.0f, 9.0f), TRACK_KEY_SMOOTH);
    p.appendKey(2.0f, 0.0f, vec4(-0.1f, 0.1f, 0.1f, 0.1f), TRACK_KEY_AUTO);
    p.update();
    // The smooth middle key of a symmetric peak gets a flat handle of a third of a second each way.
    EXPECT_EQ(p.getKey(1).tangents, vec4(-1.0f / 3.0f, 0.0f, 1.0f / 3.0f, 0.0f));
    // The auto key keeps the tangents stored with it.
    EXPECT_EQ(p.getKey(2).tangents, vec4(-0.1f, 0.1f, 0.1f, 0.1f));
    p.getKeys()[2].time = 4.0f;
    p.update();
    EXPECT_FLOAT_EQ(p.getKey(1).tangents.z, 4.0f / 6.0f);
}

TEST_F(TrackParameterFloatTest, ReleaseDropsTheKeysButKeepsTheBinding)
{
    TrackParameterFloat p;
    p.setTypeName("Light.intensity");
    p.setNodeID(4);
    p.appendKey(0.0f, 1.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.update();
    p.release();
    EXPECT_EQ(p.getNumKeys(), 0);
    EXPECT_EQ(p.getNodeID(), 4);
    EXPECT_EQ(p.getTypeName(), "Light.intensity");
    bool found = true;
    p.getTrackValue(0.0f, found);
    EXPECT_FALSE(found);
}

} // namespace

namespace {

// Five keys, one of each type, irregularly spaced, for the playback tests below.
void fillMixed(TrackParameterFloat& p)
{
    p.clearKeys();
    p.appendKey(1.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.appendKey(1.5f, 2.0f, vec4(-0.1f, 0.3f, 0.2f, -0.4f), TRACK_KEY_BREAK);
    p.appendKey(2.75f, -1.0f, vec4(-0.05f, 0.0f, 0.5f, 1.0f), TRACK_KEY_SMOOTH);
    p.appendKey(3.0f, 4.0f, vec4_zero, TRACK_KEY_CONSTANT);
    p.appendKey(4.0f, 3.0f, vec4(-0.3f, 0.2f, 0.3f, -0.2f), TRACK_KEY_AUTO);
    p.update();
}

// The value at t straight from the compiled segments, without the parameter's playback copy.
float compiledValue(const TrackParameterFloat& p, float t)
{
    jVector<float> times;
    jVector<TrackCurveSegment<float>> segments;
    jVector<TrackKeyFloat> keys = p.getKeys();
    TrackCurve::smoothTangents(keys.data(), keys.size());
    TrackCurve::compile(keys.data(), keys.size(), times, segments);
    int cursor = 0;
    return TrackCurve::evaluate(times.data(), segments.data(), times.size(), t, cursor);
}

} // namespace

TEST_F(TrackParameterFloatTest, PlaybackFrameByFrameMatchesTheCompiledCurveEverywhere)
{
    TrackParameterFloat p;
    fillMixed(p);
    bool found = false;
    for (float t = 0.0f; t < 5.0f; t += 1.0f / 240.0f) {
        EXPECT_EQ(p.getTrackValue(t, found), compiledValue(p, t)) << "at " << t;
        EXPECT_TRUE(found);
    }
}

TEST_F(TrackParameterFloatTest, PlaybackOnAndAroundEveryKeyMatchesTheCompiledCurve)
{
    TrackParameterFloat p;
    fillMixed(p);
    bool found = false;
    for (int i = 0; i < p.getNumKeys(); ++i) {
        float k = p.getKey(i).time;
        for (float t : {std::nextafter(k, -1e9f), k, std::nextafter(k, 1e9f)})
            EXPECT_EQ(p.getTrackValue(t, found), compiledValue(p, t)) << "at " << t;
    }
    // The hold values before the first and after the last key, reached by playback and by a jump.
    EXPECT_EQ(p.getTrackValue(-100.0f, found), 0.0f);
    EXPECT_EQ(p.getTrackValue(0.5f, found), 0.0f);
    EXPECT_EQ(p.getTrackValue(100.0f, found), 3.0f);
    EXPECT_EQ(p.getTrackValue(1e30f, found), 3.0f);
}

TEST_F(TrackParameterFloatTest, PlayingBackwardsAndJumpingGiveTheSameValuesAsForwards)
{
    TrackParameterFloat p;
    fillMixed(p);
    bool found = false;
    std::vector<float> forwards;
    for (int f = 0; f <= 300; ++f)
        forwards.push_back(p.getTrackValue(f / 60.0f, found));
    for (int f = 300; f >= 0; --f)
        EXPECT_EQ(p.getTrackValue(f / 60.0f, found), forwards[f]) << "frame " << f;
    for (int f : {250, 3, 180, 181, 60, 299, 0, 120})
        EXPECT_EQ(p.getTrackValue(f / 60.0f, found), forwards[f]) << "frame " << f;
}

TEST_F(TrackParameterFloatTest, KeysChangedDuringPlaybackAreSeenAtTheNextFrame)
{
    TrackParameterFloat p;
    p.appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.appendKey(2.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.update();
    bool found = false;
    EXPECT_FLOAT_EQ(p.getTrackValue(1.0f, found), 1.0f);
    // Edited in place and updated, as the editor does: same segment, new values.
    p.getKeys()[1].value = 4.0f;
    p.update();
    EXPECT_FLOAT_EQ(p.getTrackValue(1.0f, found), 2.0f);
    // Edited without update: the next sample still sees the edit.
    p.getKeys()[0].value = 2.0f;
    EXPECT_FLOAT_EQ(p.getTrackValue(1.0f, found), 3.0f);
    // Refilled as a whole with a constant key: the old segment is not played on.
    p.clearKeys();
    p.appendKey(0.5f, 7.0f, vec4_zero, TRACK_KEY_CONSTANT);
    EXPECT_EQ(p.getTrackValue(1.0f, found), 7.0f);
    EXPECT_EQ(p.getTrackValue(0.25f, found), 7.0f);
    p.release();
    EXPECT_EQ(p.getTrackValue(1.0f, found), 0.0f);
    EXPECT_FALSE(found);
}
