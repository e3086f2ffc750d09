#include "anim/TrackParameterString.h"

#include "support/Scenario.h"

namespace {

using TrackParameterStringTest = Scenario;

// keys: "a.mesh" at t=1, "b.mesh" at t=3:   -eps | 1 ... | 3 ... +eps
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
    EXPECT_EQ(p.getTrackValue(1.0f, found), "a.mesh");
    EXPECT_EQ(p.getTrackValue(2.9f, found), "a.mesh");
    EXPECT_EQ(p.getTrackValue(3.0f, found), "b.mesh");
    EXPECT_EQ(p.getTrackValue(30.0f, found), "b.mesh");
}

TEST_F(TrackParameterStringTest, TheKindFollowsTheRegistration)
{
    TrackParameterString file;
    EXPECT_EQ(file.getType(), TRACK_PARAMETER_STRING_FILE);
    file.setTypeName("Object.material");
    EXPECT_EQ(file.getType(), TRACK_PARAMETER_STRING_MATERIAL);
    TrackParameterString material(TRACK_PARAMETER_STRING_MATERIAL);
    EXPECT_EQ(material.getType(), TRACK_PARAMETER_STRING_MATERIAL);
    material.setTypeName("Object.mesh");
    EXPECT_EQ(material.getType(), TRACK_PARAMETER_STRING_FILE);
    material.setTypeName("Light.intensity");
    EXPECT_EQ(material.getType(), TRACK_PARAMETER_STRING_MATERIAL);
}

} // namespace
