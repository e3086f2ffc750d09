#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "support/Scenario.h"

// What each kind of parameter evaluates on its own, unbound. Float curves sampled frame by frame,
// backward and at random are checked against the Bezier reference in TrackCurveTest.

namespace {

using TrackParameterFloatTest = Scenario;
using TrackParameterColorTest = Scenario;
using TrackParameterDVec3Test = Scenario;
using TrackParameterToggleTest = Scenario;
using TrackParameterStringTest = Scenario;

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
    // Refilled as a whole with a constant key: the old segment is not played on.
    p.clearKeys();
    p.appendKey(0.5f, 7.0f, vec4_zero, TRACK_KEY_CONSTANT);
    p.update();
    EXPECT_EQ(p.getTrackValue(1.0f, found), 7.0f);
    EXPECT_EQ(p.getTrackValue(0.25f, found), 7.0f);
    p.release();
    EXPECT_EQ(p.getTrackValue(1.0f, found), 0.0f);
    EXPECT_FALSE(found);
}

// Played by a track, a colour is exactly its own evaluation (TrackPlaybackTest); on its own:
TEST_F(TrackParameterColorTest, HoldsNothingWithoutKeysAndReportsTheColourPlayedLast)
{
    TrackParameterColor p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(0.0f, found), vec4_zero);
    EXPECT_FALSE(found);
    p.appendKey(0.0f, vec4(0.0f, 0.0f, 0.0f, 1.0f));
    p.appendKey(2.0f, vec4(1.0f, 0.5f, 0.0f, 1.0f));
    p.update();
    // Unbound, the live value is the colour played last.
    p.apply(3.0f);
    EXPECT_EQ(p.getValue(), vec4(1.0f, 0.5f, 0.0f, 1.0f));
    p.clearKeys();
    p.update();
    EXPECT_EQ(p.getTrackValue(1.0f, found), vec4_zero);
    EXPECT_FALSE(found);
}

TEST_F(TrackParameterDVec3Test, KeepsDoublePrecisionPerComponent)
{
    TrackParameterDVec3 p;
    p.getComponent(VEC3_SWIZZLE_Y)->appendKey(0.0f, 6.4e6, vec4_zero, TRACK_KEY_LINEAR);
    p.getComponent(VEC3_SWIZZLE_Y)->appendKey(1.0f, 6.4e6 + 1.0, vec4_zero, TRACK_KEY_LINEAR);
    p.update();
    bool found = false;
    EXPECT_EQ(p.getTrackValue(0.25f, found), dvec3(0.0, 6.4e6 + 0.25, 0.0));
    EXPECT_TRUE(found);
}

TEST_F(TrackParameterToggleTest, UnboundLiveValueIsTheStatePlayedLast)
{
    TrackParameterToggle p;
    bool found = true;
    EXPECT_EQ(p.getTrackValue(0.0f, found), 0);
    EXPECT_FALSE(found);
    p.appendKey(1.0f, true);
    p.apply(0.5f); // before the first key: its state
    EXPECT_TRUE(p.getValue());
}

// keys: "a.mesh" at t=1, "b.mesh" at t=3
TEST_F(TrackParameterStringTest, HoldsTheLastTextAtOrBeforeTheTime)
{
    TrackParameterString p;
    bool found = true;
    EXPECT_TRUE(p.getTrackValue(0.0f, found).empty());
    EXPECT_FALSE(found);
    p.appendKey(1.0f, "a.mesh");
    p.appendKey(3.0f, "b.mesh");
    EXPECT_EQ(p.getTrackValue(0.5f, found), "a.mesh");
    EXPECT_TRUE(found);
    EXPECT_EQ(p.getTrackValue(2.9f, found), "a.mesh");
    EXPECT_EQ(p.getTrackValue(3.0f, found), "b.mesh");
}

TEST_F(TrackParameterStringTest, TheKindFollowsTheRegistration)
{
    TrackParameterString file;
    EXPECT_EQ(file.getType(), TRACK_PARAMETER_STRING_FILE);
    file.setTypeName("Object.material");
    EXPECT_EQ(file.getType(), TRACK_PARAMETER_STRING_MATERIAL);
    TrackParameterString material(TRACK_PARAMETER_STRING_MATERIAL);
    material.setTypeName("Object.mesh");
    EXPECT_EQ(material.getType(), TRACK_PARAMETER_STRING_FILE);
    // Under a registration of another kind, the kind it was made with.
    material.setTypeName("Light.intensity");
    EXPECT_EQ(material.getType(), TRACK_PARAMETER_STRING_MATERIAL);
}

} // namespace
