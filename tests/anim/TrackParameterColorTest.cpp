#include "anim/TrackParameterColor.h"

#include "support/Scenario.h"

namespace {

using TrackParameterColorTest = Scenario;

// keys: black at t=0, (1, 0.5, 0, 1) at t=2:   -eps | 0 ... 1 ... 2 | +eps
TEST_F(TrackParameterColorTest, InterpolatesEachChannelLinearly)
{
    TrackParameterColor p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(0.0f, found), vec4_zero);
    EXPECT_FALSE(found);
    p.appendKey(0.0f, vec4(0.0f, 0.0f, 0.0f, 1.0f));
    p.appendKey(2.0f, vec4(1.0f, 0.5f, 0.0f, 1.0f));
    EXPECT_EQ(p.getTrackValue(-0.001f, found), vec4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValue(1.0f, found), vec4(0.5f, 0.25f, 0.0f, 1.0f));
    EXPECT_EQ(p.getTrackValue(2.0f, found), vec4(1.0f, 0.5f, 0.0f, 1.0f));
    EXPECT_EQ(p.getTrackValue(2.001f, found), vec4(1.0f, 0.5f, 0.0f, 1.0f));
}

TEST_F(TrackParameterColorTest, UnboundLiveValueIsTheColourLastPlayed)
{
    TrackParameterColor p;
    p.appendKey(0.0f, vec4(0.2f, 0.4f, 0.6f, 0.8f));
    EXPECT_EQ(p.getValue(), vec4_zero);
    p.apply(3.0f);
    EXPECT_EQ(p.getValue(), vec4(0.2f, 0.4f, 0.6f, 0.8f));
}

TEST_F(TrackParameterColorTest, EditedKeysAreEvaluatedAtOnce)
{
    TrackParameterColor p;
    bool found = false;
    p.appendKey(0.0f, vec4(0.0f, 0.0f, 0.0f, 1.0f));
    p.appendKey(2.0f, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_EQ(p.getTrackValue(1.0f, found), vec4(0.5f, 0.5f, 0.5f, 1.0f));
    p.getKeys()[1].value = vec4(0.0f, 0.0f, 4.0f, 0.0f);
    EXPECT_EQ(p.getTrackValue(1.0f, found), vec4(0.0f, 0.0f, 2.0f, 0.5f));
    p.appendKey(3.0f, vec4(1.0f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(p.getTrackValue(2.5f, found), vec4(0.5f, 0.0f, 2.0f, 0.0f));
    p.clearKeys();
    EXPECT_EQ(p.getTrackValue(1.0f, found), vec4_zero);
    EXPECT_FALSE(found);
}

} // namespace
