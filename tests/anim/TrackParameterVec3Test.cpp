#include "anim/TrackParameterVec3.h"

#include "support/Scenario.h"

namespace {

using TrackParameterVec3Test = Scenario;

TEST_F(TrackParameterVec3Test, ComponentsHaveTheirOwnSwitches)
{
    TrackParameterVec3 p;
    EXPECT_EQ(p.getType(), TRACK_PARAMETER_VEC3);
    EXPECT_TRUE(p.isEnabled(VEC3_SWIZZLE_Y));
    EXPECT_FALSE(p.isShow(VEC3_SWIZZLE_Y));
    p.setEnabled(VEC3_SWIZZLE_Y, false);
    p.setShow(VEC3_SWIZZLE_Z, true);
    EXPECT_TRUE(p.isEnabled(VEC3_SWIZZLE_X));
    EXPECT_FALSE(p.isEnabled(VEC3_SWIZZLE_Y));
    EXPECT_TRUE(p.isShow(VEC3_SWIZZLE_Z));
    EXPECT_FALSE(p.isShow(VEC3_SWIZZLE_X));
    EXPECT_FALSE(p.isShow(static_cast<VEC3_SWIZZLE_TYPE>(3)));
    EXPECT_EQ(p.getComponent(3), nullptr);
    EXPECT_TRUE(p.isEnabled()); // the parameter's own switch is separate
}

// x keyed 0 -> 2 over t = 0..1, z keyed constant 5; y has no keys.
TEST_F(TrackParameterVec3Test, ComposesKeyedComponentsWithTheRest)
{
    TrackParameterVec3 p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(0.5f, found), vec3());
    EXPECT_FALSE(found);
    p.getComponent(VEC3_SWIZZLE_X)->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.getComponent(VEC3_SWIZZLE_X)->appendKey(1.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR);
    p.getComponent(VEC3_SWIZZLE_Z)->appendKey(0.0f, 5.0f, vec4_zero, TRACK_KEY_CONSTANT);
    p.update();
    EXPECT_EQ(p.getTrackValue(0.5f, found), vec3(1.0f, 0.0f, 5.0f));
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValue(-1.0f, found), vec3(0.0f, 0.0f, 5.0f));
    EXPECT_EQ(p.getTrackValue(3.0f, found), vec3(2.0f, 0.0f, 5.0f));
    EXPECT_EQ(p.getNumKeys(), 3);
    p.release();
    EXPECT_EQ(p.getNumKeys(), 0);
}

} // namespace
