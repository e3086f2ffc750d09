#include "anim/TrackReg.h"

#include "anim/Track.h"
#include "kit/jAllocator.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/NodeType.h"
#include "support/Scenario.h"

// What the editor's type and target choosers ask of the registrations; playing each one is in
// TrackTest.

namespace {

using TrackRegTest = Scenario;

TEST_F(TrackRegTest, FindsByNameOrGivesNull)
{
    TrackReg* reg = Track::GetRegByName("Node.position");
    ASSERT_NE(reg, nullptr);
    EXPECT_EQ(reg->getType(), TRACK_PARAMETER_VEC3);
    EXPECT_EQ(Track::GetRegByName("Node.Position"), nullptr);
    EXPECT_EQ(Track::GetRegByName(""), nullptr);
    EXPECT_EQ(Track::GetRegByName("Node"), nullptr);
    // Every registration the pickers list is found by its name.
    for (TrackReg* listed : Track::GetAllRegs())
        EXPECT_EQ(Track::GetRegByName(listed->getName()), listed) << listed->getName().c_str();
}

// What the node picker offers for a registration.
TEST_F(TrackRegTest, AcceptsOnlyTheNodeTypesThatCarryTheProperty)
{
    TrackReg* fov = Track::GetRegByName("Camera.fov");
    EXPECT_TRUE(fov->isAcceptNodeType(CAMERA));
    EXPECT_TRUE(fov->isAcceptNodeType(EDITOR_CAMERA));
    EXPECT_FALSE(fov->isAcceptNodeType(OBJECT_MESH));
    TrackReg* position = Track::GetRegByName("Node.position");
    for (int type : {NODE_DUMMY, OBJECT_MESH, LIGHT_POINT, LIGHT_SPOT, CAMERA, OBJECT_PREFAB})
        EXPECT_TRUE(position->isAcceptNodeType(type)) << type;
    EXPECT_FALSE(position->isAcceptNodeType(EDITOR_CAMERA));
    EXPECT_FALSE(Track::GetRegByName("Render.exposure")->isAcceptNodeType(OBJECT_MESH));
}

TEST_F(TrackRegTest, AcceptsMaterialsThatHoldAParameterOfItsKind)
{
    Material* m = jNew<Material>("tests/anim/TrackRegTest", __LINE__, "TrackRegTest", jString("Glass"));
    m->addParameter("tint", MaterialParameter::COLOR, 4, vec4(1.0f, 1.0f, 1.0f, 1.0f));
    m->addParameter("ior", MaterialParameter::SLIDER, 1, vec4(1.5f, 0.0f, 0.0f, 0.0f));
    EXPECT_TRUE(Track::GetRegByName("Material.color")->isAcceptMaterial(m));
    EXPECT_TRUE(Track::GetRegByName("Material.float")->isAcceptMaterial(m));
    EXPECT_FALSE(Track::GetRegByName("Material.vec3")->isAcceptMaterial(m));
    EXPECT_TRUE(Track::GetRegByName("Object.material")->isAcceptMaterial(m));
    EXPECT_FALSE(Track::GetRegByName("Node.position")->isAcceptMaterial(m));
    EXPECT_FALSE(Track::GetRegByName("Material.color")->isAcceptMaterial(nullptr));
    jDelete(m, "tests/anim/TrackRegTest", __LINE__, "TrackRegTest");
}

TEST_F(TrackRegTest, MaterialParametersMapToKindsByTypeCodeAndComponents)
{
    struct Case {
        int code;
        int components;
        int kind;
    } cases[] = {{0, 1, TRACK_PARAMETER_FLOAT}, {0, 3, TRACK_PARAMETER_VEC3}, {0, 4, TRACK_PARAMETER_COLOR},
                 {0, 2, -1},                    {1, 3, TRACK_PARAMETER_VEC3}, {10, 4, TRACK_PARAMETER_COLOR},
                 {2, 1, TRACK_PARAMETER_FLOAT}, {7, 1, TRACK_PARAMETER_FLOAT}, {9, 3, TRACK_PARAMETER_VEC3},
                 {3, 1, -1}, {4, 1, -1}, {5, 1, -1}, {6, 1, -1}, {8, 1, -1}, {11, 1, -1}};
    for (const Case& c : cases)
        EXPECT_EQ(TrackReg::MaterialParameterKind(c.code, c.components), c.kind) << c.code << " " << c.components;
}

} // namespace
