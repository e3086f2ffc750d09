#include "anim/TrackParameterFloat.h"

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
