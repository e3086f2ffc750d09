#include "NodeFrame.h"

#include "scene/Node.h"
#include "scene/NodeType.h"
#include "scene/World.h"
#include "support/Scenario.h"

using NodeFrameTest = Scenario;

namespace {

void expect_near(const vec3& a, const vec3& b)
{
    EXPECT_NEAR(a.x, b.x, 1e-5f);
    EXPECT_NEAR(a.y, b.y, 1e-5f);
    EXPECT_NEAR(a.z, b.z, 1e-5f);
}

} // namespace

TEST_F(NodeFrameTest, YawTurnsForwardTowardsMinusX)
{
    expect_near(NodeFrame::rotate(vec3(0, 0, -1), vec3(0, 90, 0)), vec3(-1, 0, 0));
    // A negative pitch tilts the view down, as the sample's spot light and camera use it.
    expect_near(NodeFrame::rotate(vec3(0, 0, -1), vec3(-90, 0, 0)), vec3(0, -1, 0));
    expect_near(NodeFrame::rotate(vec3(1, 0, 0), vec3(0, 0, 90)), vec3(0, 1, 0));
    // The engine's order, as glTF rotations are imported: X, then Y, then Z.
    expect_near(NodeFrame::rotate(vec3(1, 0, 0), vec3(90, 0, 90)), vec3(0, 1, 0));
    expect_near(NodeFrame::rotate(vec3(0, 0, -1), vec3(0, 90, 90)), vec3(0, -1, 0));
}

TEST_F(NodeFrameTest, CornersAreScaledTurnedAndPlaced)
{
    World world;
    Node* box = world.addNode(OBJECT_MESH, "Box");
    ASSERT_NE(box, nullptr);
    box->setPosition(vec3(1, 2, 3));
    box->setScale(vec3(2, 4, 6));
    box->setRotation(vec3(0, 90, 0));
    expect_near(NodeFrame::toWorld(box, vec3()), vec3(1, 2, 3));
    // +x half a unit, scaled to 1, yawed onto -z.
    expect_near(NodeFrame::toWorld(box, vec3(0.5f, 0, 0)), vec3(1, 2, 2));
    expect_near(NodeFrame::toWorld(box, vec3(0, 0.5f, 0)), vec3(1, 4, 3));
    // Directions turn but do not scale.
    expect_near(NodeFrame::direction(box, vec3(1, 0, 0)), vec3(0, 0, -1));
}

TEST_F(NodeFrameTest, InternalNodesSitRelativeToTheirPrefab)
{
    World world;
    Node* prefab = world.addNode(OBJECT_PREFAB, "Lamp");
    Node* bulb = world.addNode(LIGHT_POINT, "Bulb", -1, prefab);
    ASSERT_NE(bulb, nullptr);
    prefab->setPosition(vec3(4, 0, -2));
    bulb->setPosition(vec3(0, 2.5f, 0));
    expect_near(NodeFrame::toWorld(bulb, vec3()), vec3(4, 2.5f, -2));
    prefab->setPosition(vec3(-4, 1, 0));
    expect_near(NodeFrame::toWorld(bulb, vec3()), vec3(-4, 3.5f, 0));
}
