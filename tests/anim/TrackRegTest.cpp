#include "anim/TrackReg.h"

#include "anim/Track.h"
#include "kit/jAllocator.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/NodeType.h"
#include "support/Scenario.h"

namespace {

using TrackRegTest = Scenario;

TEST_F(TrackRegTest, TheTableListsTheBuiltInTypesInAStableOrder)
{
    const jVector<TrackReg*>& regs = Track::GetAllRegs();
    const char* expected[] = {"Node.enabled",    "Node.position",   "Node.rotation",   "Node.scale",
                              "Node.world_position", "Light.color", "Light.intensity", "Camera.fov",
                              "Object.material", "Object.mesh",     "Material.float",  "Material.vec3",
                              "Material.color",  "Track.play",      "Render.exposure", "Render.fog_color"};
    ASSERT_EQ(regs.size(), 16);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(regs[i]->getName(), expected[i]);
    EXPECT_EQ(&Track::GetAllRegs(), &regs);
}

TEST_F(TrackRegTest, FindsByNameOrGivesNull)
{
    TrackReg* reg = Track::GetRegByName("Node.position");
    ASSERT_NE(reg, nullptr);
    EXPECT_EQ(reg->getType(), TRACK_PARAMETER_VEC3);
    EXPECT_EQ(Track::GetRegByName("Node.Position"), nullptr);
    EXPECT_EQ(Track::GetRegByName(""), nullptr);
    EXPECT_EQ(Track::GetRegByName("Node"), nullptr);
}

TEST_F(TrackRegTest, KindsAndBindingsMatchWhatTheyAnimate)
{
    struct Row {
        const char* name;
        int kind;
        bool node;
        bool material;
    } rows[] = {{"Node.enabled", 0, true, false},        {"Node.world_position", 5, true, false},
                {"Light.color", 3, true, false},         {"Light.intensity", 1, true, false},
                {"Camera.fov", 1, true, false},          {"Object.material", 9, true, false},
                {"Object.mesh", 8, true, false},         {"Material.float", 1, false, true},
                {"Material.vec3", 4, false, true},       {"Material.color", 3, false, true},
                {"Track.play", 7, false, false},         {"Render.exposure", 2, false, false},
                {"Render.fog_color", 3, false, false}};
    for (const Row& row : rows) {
        TrackReg* reg = Track::GetRegByName(row.name);
        ASSERT_NE(reg, nullptr) << row.name;
        EXPECT_EQ(reg->getType(), row.kind) << row.name;
        EXPECT_EQ(reg->isForNode(), row.node) << row.name;
        EXPECT_EQ(reg->isForMaterial(), row.material) << row.name;
        EXPECT_EQ(reg->isShowDisplayName(), row.material) << row.name;
    }
}

TEST_F(TrackRegTest, AcceptsOnlyTheNodeTypesThatCarryTheProperty)
{
    TrackReg* fov = Track::GetRegByName("Camera.fov");
    EXPECT_TRUE(fov->isAcceptNodeType(CAMERA));
    EXPECT_TRUE(fov->isAcceptNodeType(EDITOR_CAMERA));
    EXPECT_FALSE(fov->isAcceptNodeType(OBJECT_MESH));
    TrackReg* light = Track::GetRegByName("Light.intensity");
    EXPECT_TRUE(light->isAcceptNodeType(LIGHT_POINT));
    EXPECT_TRUE(light->isAcceptNodeType(LIGHT_SPOT));
    EXPECT_FALSE(light->isAcceptNodeType(CAMERA));
    TrackReg* position = Track::GetRegByName("Node.position");
    for (int type : {NODE_DUMMY, OBJECT_MESH, LIGHT_POINT, LIGHT_SPOT, CAMERA, OBJECT_PREFAB})
        EXPECT_TRUE(position->isAcceptNodeType(type)) << type;
    EXPECT_FALSE(position->isAcceptNodeType(EDITOR_CAMERA));
    EXPECT_FALSE(Track::GetRegByName("Object.mesh")->isAcceptNodeType(LIGHT_POINT));
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
    EXPECT_EQ(TrackReg::MaterialParameterKind(0, 1), TRACK_PARAMETER_FLOAT);
    EXPECT_EQ(TrackReg::MaterialParameterKind(0, 3), TRACK_PARAMETER_VEC3);
    EXPECT_EQ(TrackReg::MaterialParameterKind(0, 4), TRACK_PARAMETER_COLOR);
    EXPECT_EQ(TrackReg::MaterialParameterKind(0, 2), -1);
    EXPECT_EQ(TrackReg::MaterialParameterKind(1, 3), TRACK_PARAMETER_VEC3);
    EXPECT_EQ(TrackReg::MaterialParameterKind(10, 4), TRACK_PARAMETER_COLOR);
    EXPECT_EQ(TrackReg::MaterialParameterKind(2, 1), TRACK_PARAMETER_FLOAT);
    EXPECT_EQ(TrackReg::MaterialParameterKind(7, 1), TRACK_PARAMETER_FLOAT);
    EXPECT_EQ(TrackReg::MaterialParameterKind(9, 3), TRACK_PARAMETER_VEC3);
    for (int code : {3, 4, 5, 6, 8, 11})
        EXPECT_EQ(TrackReg::MaterialParameterKind(code, 1), -1) << code;
}

} // namespace
