#include "scene/Node.h"

#include "scene/World.h"
#include "SceneSamples.h"
#include "support/Scenario.h"

class NodeTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        ASSERT_TRUE(m_world.load(demoWorldPath().c_str()));
    }
    void TearDown() override
    {
        World::SetCurrent(nullptr);
        m_world.release();
        Scenario::TearDown();
    }

    World m_world;
};

TEST_F(NodeTest, GetNodeSearchesTheCurrentWorld)
{
    EXPECT_EQ(Node::GetNode(2), nullptr) << "no current world";
    EXPECT_EQ(Node::GetNodeByName("Pillar"), nullptr);
    World::SetCurrent(&m_world);
    ASSERT_NE(Node::GetNode(2), nullptr);
    EXPECT_EQ(Node::GetNode(2)->getName(), "Pillar");
    EXPECT_EQ(Node::GetNode(13)->getName(), "Lamp.001");
    EXPECT_EQ(Node::GetNode(World::EDITOR_CAMERA_ID), m_world.getEditorCamera());
    EXPECT_EQ(Node::GetNode(99), nullptr);
    EXPECT_EQ(Node::GetNodeByName("Lamp")->getID(), 8);
    EXPECT_EQ(Node::GetNodeByName("__EDITOR_CAMERA__")->getType(), EDITOR_CAMERA);
    EXPECT_EQ(Node::GetNodeByName("Nobody"), nullptr);

    World other;
    other.addNode(OBJECT_MESH, "Pillar", 2);
    World::SetCurrent(&other);
    EXPECT_EQ(Node::GetNode(2), other.getNodeByID(2));
    EXPECT_EQ(Node::GetNode(8), nullptr);
    World::SetCurrent(nullptr);
}

TEST_F(NodeTest, InternalNodesAreReachedOnlyThroughTheirPrefab)
{
    World::SetCurrent(&m_world);
    EXPECT_EQ(Node::GetNode(10), nullptr);
    EXPECT_EQ(Node::GetNodeByName("LampBulb"), nullptr);
    Node* lamp = Node::GetNode(8);
    ASSERT_NE(lamp, nullptr);
    Node* bulb = lamp->getInternalNodeByID(10);
    ASSERT_NE(bulb, nullptr);
    EXPECT_EQ(bulb->getName(), "LampBulb");
    EXPECT_EQ(bulb->getParent(), lamp);
    EXPECT_EQ(lamp->getInternalNodeByID(15), nullptr) << "15 belongs to the other lamp";
    EXPECT_EQ(lamp->getInternalNodeByID(8), nullptr);
    EXPECT_EQ(lamp->getInternalNode(4), nullptr);
    EXPECT_EQ(lamp->getInternalNode(-1), nullptr);
    Node* pillar = Node::GetNode(2);
    EXPECT_EQ(pillar->getNumInternalNodes(), 0);
    EXPECT_EQ(pillar->getInternalNode(0), nullptr);
    EXPECT_EQ(pillar->getInternalNodeByID(10), nullptr);
}

TEST_F(NodeTest, WorldPositionAddsTheParentPosition)
{
    Node* lamp = m_world.getNodeByID(8);
    Node* bulb = m_world.getNodeByID(10);
    EXPECT_EQ(lamp->getWorldPosition(), dvec3(4.0, 0.0, -2.0));
    EXPECT_EQ(bulb->getPosition(), vec3(0.0f, 2.5f, 0.0f));
    EXPECT_EQ(bulb->getWorldPosition(), dvec3(4.0, 2.5, -2.0));
    EXPECT_EQ(m_world.getNodeByID(15)->getWorldPosition(), dvec3(-4.0, 2.5, -2.0));

    bulb->setWorldPosition(dvec3(5.0, 5.0, 5.0));
    EXPECT_EQ(bulb->getPosition(), vec3(1.0f, 5.0f, 7.0f));
    EXPECT_EQ(lamp->getWorldPosition(), dvec3(4.0, 0.0, -2.0)) << "the prefab stays put";

    lamp->setWorldPosition(dvec3(0.0, 10.0, 0.0));
    EXPECT_EQ(lamp->getPosition(), vec3(0.0f, 10.0f, 0.0f));
    EXPECT_EQ(bulb->getWorldPosition(), dvec3(1.0, 15.0, 7.0)) << "internal nodes move with their prefab";
    EXPECT_EQ(bulb->getPosition(), vec3(1.0f, 5.0f, 7.0f));
}

TEST_F(NodeTest, PropertiesComeFromTheFile)
{
    Node* sun = m_world.getNodeByName("Sun");
    EXPECT_EQ(sun->getLightColor(), vec4(1.0f, 0.95f, 0.85f, 1.0f));
    EXPECT_EQ(sun->getLightIntensity(), 5.0f);
    EXPECT_EQ(m_world.getNodeByName("Spot")->getRotation(), vec3(-60.0f, 0.0f, 0.0f));
    EXPECT_EQ(m_world.getNodeByName("MainCamera")->getCameraFov(), 50.0f);
    Node* crate = m_world.getNodeByName("Crate");
    EXPECT_FALSE(crate->isEnabled());
    EXPECT_EQ(crate->getScale(), vec3(1.0f, 1.0f, 1.5f));
    EXPECT_EQ(crate->getMaterial(), "glass");
    EXPECT_EQ(crate->getMesh(), "meshes/crate.mesh");
    EXPECT_TRUE(m_world.getNodeByName("Pillar")->isEnabled());
    EXPECT_EQ(m_world.getNodeByID(11)->getMaterial(), "emissive");
    EXPECT_EQ(m_world.getNodeByID(10)->getLightIntensity(), 3.0f);
}

TEST_F(NodeTest, TypeNamesFollowTheType)
{
    EXPECT_STREQ(m_world.getNodeByName("Ground")->getTypeName(), "ObjectMesh");
    EXPECT_STREQ(m_world.getNodeByName("Sun")->getTypeName(), "LightPoint");
    EXPECT_STREQ(m_world.getNodeByName("Spot")->getTypeName(), "LightSpot");
    EXPECT_STREQ(m_world.getNodeByName("MainCamera")->getTypeName(), "Camera");
    EXPECT_STREQ(m_world.getNodeByName("Pivot")->getTypeName(), "NodeDummy");
    EXPECT_STREQ(m_world.getNodeByName("Lamp")->getTypeName(), "ObjectPrefab");
    EXPECT_STREQ(m_world.getEditorCamera()->getTypeName(), "EditorCamera");
}

TEST_F(NodeTest, SettersChangeWhatGettersReturn)
{
    Node* node = m_world.getNodeByName("Pivot");
    node->setName("Hinge");
    node->setRotation(vec3(10.0f, 20.0f, 30.0f));
    node->setScale(vec3(0.5f, 0.5f, 0.5f));
    node->setEnabled(false);
    EXPECT_EQ(m_world.getNodeByName("Hinge"), node);
    EXPECT_EQ(node->getRotation(), vec3(10.0f, 20.0f, 30.0f));
    EXPECT_EQ(node->getScale(), vec3(0.5f, 0.5f, 0.5f));
    EXPECT_FALSE(node->isEnabled());
}
