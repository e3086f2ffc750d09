#include "anim/TrackParameterToggle.h"

#include "support/Scenario.h"

namespace {

using TrackParameterToggleTest = Scenario;

// keys: on at t=1, off at t=2:   -eps | 1 ... | 2 ... +eps
TEST_F(TrackParameterToggleTest, HoldsTheLastKeyAtOrBeforeTheTime)
{
    TrackParameterToggle p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(0.0f, found), 0);
    EXPECT_FALSE(found);
    p.appendKey(1.0f, true);
    p.appendKey(2.0f, false);
    EXPECT_EQ(p.getTrackValue(0.999f, found), 1);
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValue(1.0f, found), 1);
    EXPECT_EQ(p.getTrackValue(1.999f, found), 1);
    EXPECT_EQ(p.getTrackValue(2.0f, found), 0);
    EXPECT_EQ(p.getTrackValue(9.0f, found), 0);
    EXPECT_EQ(p.getType(), TRACK_PARAMETER_TOGGLE);
}

TEST_F(TrackParameterToggleTest, UnboundLiveValueIsTheStateLastPlayed)
{
    TrackParameterToggle p;
    EXPECT_FALSE(p.getValue());
    p.appendKey(0.0f, true);
    p.apply(0.5f);
    EXPECT_TRUE(p.getValue());
}

} // namespace
