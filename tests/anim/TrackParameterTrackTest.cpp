#include "anim/TrackParameterTrack.h"

#include "support/Scenario.h"

namespace {

using TrackParameterTrackTest = Scenario;

TEST_F(TrackParameterTrackTest, HasAFileAndATimeComponent)
{
    TrackParameterTrack p;
    EXPECT_EQ(p.getType(), TRACK_PARAMETER_TRACK);
    EXPECT_EQ(p.getNameParameter()->getName(), "Name");
    EXPECT_EQ(p.getNameParameter()->getType(), TRACK_PARAMETER_STRING_FILE);
    EXPECT_EQ(p.getTimeParameter()->getName(), "Time");
    EXPECT_EQ(p.getTimeParameter()->getType(), TRACK_PARAMETER_FLOAT);
}

// time keyed 0 -> 2 over t = 1..2; file "a.anim" from t=0, "b.anim" from t=5.
TEST_F(TrackParameterTrackTest, EvaluatesTheNestedFileAndTime)
{
    TrackParameterTrack p;
    bool found = true;
    EXPECT_EQ(p.getTrackValueTime(1.0f, found), 0.0f);
    EXPECT_FALSE(found);
    p.getTimeParameter()->appendKey(1.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.getTimeParameter()->appendKey(2.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.getNameParameter()->appendKey(0.0f, "a.anim");
    p.getNameParameter()->appendKey(5.0f, "b.anim");
    p.update();
    EXPECT_FLOAT_EQ(p.getTrackValueTime(1.5f, found), 1.0f);
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValueTime(0.0f, found), 0.0f);
    EXPECT_EQ(p.getTrackValueName(4.9f, found), "a.anim");
    EXPECT_EQ(p.getTrackValueName(5.0f, found), "b.anim");
    EXPECT_EQ(p.getNumKeys(), 4);
}

} // namespace
