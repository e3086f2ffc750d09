#include "anim/TrackParameterDVec3.h"

#include "support/Scenario.h"

namespace {

using TrackParameterDVec3Test = Scenario;

TEST_F(TrackParameterDVec3Test, KeepsDoublePrecisionPerComponent)
{
    TrackParameterDVec3 p;
    EXPECT_EQ(p.getType(), TRACK_PARAMETER_DVEC3);
    p.getComponent(VEC3_SWIZZLE_Y)->appendKey(0.0f, 6.4e6, vec4_zero, TRACK_KEY_LINEAR);
    p.getComponent(VEC3_SWIZZLE_Y)->appendKey(1.0f, 6.4e6 + 1.0, vec4_zero, TRACK_KEY_LINEAR);
    p.setShow(VEC3_SWIZZLE_Y, true);
    bool found = false;
    EXPECT_EQ(p.getTrackValue(0.25f, found), dvec3(0.0, 6.4e6 + 0.25, 0.0));
    EXPECT_TRUE(found);
    EXPECT_TRUE(p.isShow(VEC3_SWIZZLE_Y));
    EXPECT_FALSE(p.isShow(VEC3_SWIZZLE_X));
}

} // namespace
