#include "scene/World.h"

#include <limits>

#include "kit/jKit.h"
#include "SceneSamples.h"

using WorldTest = DemoWorld;

// The node list shows the sample's nodes in file order. Internal nodes share the world's ids but not
// its names (both lamps hold a "LampBulb"); bindings reach them only through their prefab.
TEST_F(WorldTest, NodesAreFoundByIdNameAndThroughTheCurrentWorld)
{
    const char* names[] = {"Ground", "Pillar", "Pond", "Sun", "Spot", "MainCamera", "Pivot", "Lamp", "Lamp.001", "Crate"};
    ASSERT_EQ(m_world.getNumNodes(), 10);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(m_world.getNode(i)->getName(), names[i]);
    Node* lamp = m_world.getNodeByName("Lamp");
    Node* bulb = m_world.getNodeByID(10);
    ASSERT_EQ(lamp->getNumInternalNodes(), 4);
    EXPECT_EQ(lamp->getInternalNode(1), bulb);
    EXPECT_EQ(bulb->getParent(), lamp);
    EXPECT_EQ(m_world.getNodeByID(15)->getParent()->getName(), "Lamp.001");
    EXPECT_EQ(m_world.getNodeByName("LampBulb"), nullptr);
    EXPECT_EQ(Node::GetNode(8), nullptr) << "no current world";
    EXPECT_EQ(Node::GetNodeByName("Lamp"), nullptr);
    World::SetCurrent(&m_world);
    EXPECT_EQ(Node::GetNode(8), lamp);
    EXPECT_EQ(Node::GetNodeByName("Lamp"), lamp);
    EXPECT_EQ(Node::GetNode(World::EDITOR_CAMERA_ID), m_world.getEditorCamera());
    EXPECT_EQ(Node::GetNode(10), nullptr);
    EXPECT_EQ(lamp->getInternalNodeByID(10), bulb);
    EXPECT_EQ(lamp->getInternalNodeByID(15), nullptr) << "15 belongs to the other lamp";
    EXPECT_EQ(lamp->getInternalNode(4), nullptr);
}

// Position tracks work in world space: an internal node's position adds its prefab's, setting it
// leaves the prefab alone, and moving the prefab moves it along.
TEST_F(WorldTest, WorldPositionAddsThePrefabPosition)
{
    Node* lamp = m_world.getNodeByID(8);
    Node* bulb = m_world.getNodeByID(10);
    EXPECT_EQ(bulb->getWorldPosition(), dvec3(4.0, 2.5, -2.0));
    bulb->setWorldPosition(dvec3(5.0, 5.0, 5.0));
    EXPECT_EQ(bulb->getPosition(), vec3(1.0f, 5.0f, 7.0f));
    EXPECT_EQ(lamp->getWorldPosition(), dvec3(4.0, 0.0, -2.0));
    lamp->setWorldPosition(dvec3(0.0, 10.0, 0.0));
    EXPECT_EQ(lamp->getPosition(), vec3(0.0f, 10.0f, 0.0f));
    EXPECT_EQ(bulb->getWorldPosition(), dvec3(1.0, 15.0, 7.0));
}

// A loaded file's materials stay installed until that world (and no other) is released or destroyed;
// loads and releases keep the editor's camera, with its settings, and nothing else.
TEST_F(WorldTest, LoadsAndReleasesKeepOnlyTheEditorCamera)
{
    Node* camera = m_world.getEditorCamera();
    camera->setCameraFov(35.0f);
    {
        World other;
        other.release();
        EXPECT_EQ(materials()->getOwner(), &m_world);
        ASSERT_TRUE(other.load(demoWorldPath().c_str()));
        EXPECT_EQ(materials()->getOwner(), &other);
    }
    EXPECT_EQ(materials()->getNumMaterials(), 0) << "destroying the world clears its materials";
    ASSERT_TRUE(m_world.load(demoWorldPath().c_str()));
    EXPECT_EQ(m_world.getNodeByName("__EDITOR_CAMERA__"), camera);
    EXPECT_EQ(camera->getCameraFov(), 35.0f);
    m_world.release();
    EXPECT_EQ(materials()->getNumMaterials(), 0);
    EXPECT_EQ(m_world.getNumNodes(), 0);
    EXPECT_EQ(m_world.getNodeByID(10), nullptr);
    EXPECT_EQ(m_world.getExposure(), 1.0);
    EXPECT_EQ(m_world.getNodeByID(World::EDITOR_CAMERA_ID), camera);
    EXPECT_EQ(m_world.addNode(NODE_DUMMY, "Fresh")->getID(), 1);
}

// The saved sample is the sample byte for byte (no editor camera in it); an edited world reads back
// as edited (a material override included) and saves to the same bytes, floats in shortest text.
TEST_F(WorldTest, SavedFilesReadBackAndSaveToTheSameBytes)
{
    TempDir dir;
    ASSERT_TRUE(m_world.save(dir.file("demo.world").c_str()));
    EXPECT_EQ(readFileText(dir.file("demo.world")), readFileText(demoWorldPath()));
    m_world.getNodeByName("Pillar")->setPosition(vec3(0.1f, 1.0f / 3.0f, -2.5e-7f));
    m_world.setExposure(1.0 / 3.0);
    m_world.setFogColor(vec4(0.1f, 0.2f, 0.3f, 0.4f));
    material("brick")->getParameter(1)->setValue(vec4(0.3f, 0.0f, 0.0f, 0.0f));
    ASSERT_TRUE(m_world.save(dir.file("a.world").c_str()));
    World again;
    ASSERT_TRUE(again.load(dir.file("a.world").c_str()));
    EXPECT_EQ(again.getNodeByName("Pillar")->getPosition(), vec3(0.1f, 1.0f / 3.0f, -2.5e-7f));
    EXPECT_EQ(again.getExposure(), 1.0 / 3.0);
    EXPECT_EQ(again.getFogColor(), vec4(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_FALSE(material("brick")->getParameter(1)->isInherited());
    EXPECT_EQ(value("brick_mossy", "roughness"), 0.3f);
    ASSERT_TRUE(again.save(dir.file("b.world").c_str()));
    EXPECT_EQ(readFileText(dir.file("a.world")), readFileText(dir.file("b.world")));
    EXPECT_NE(readFileText(dir.file("a.world")).find("0.1, "), std::string::npos);
}

// A file that cannot be read changes nothing in the world or its materials; the log names the file.
TEST_F(WorldTest, FailedLoadLeavesWorldAndMaterialsAsTheyWere)
{
    TempDir dir;
    Node* pillar = m_world.getNodeByName("Pillar");
    std::string sample = readFileText(demoWorldPath());
    size_t crate = sample.rfind("\"Crate\"");
    ASSERT_TRUE(writeFileText(dir.file("broken.world"), sample.substr(0, crate) + "7" + sample.substr(crate + 7)));
    EXPECT_FALSE(m_world.load(dir.file("broken.world").c_str()));
    expectLogged("broken.world:");
    EXPECT_FALSE(m_world.load(dir.file("absent.world").c_str()));
    expectLogged("absent.world");
    EXPECT_EQ(m_world.getNumNodes(), 10);
    EXPECT_EQ(m_world.getNodeByName("Pillar"), pillar);
    EXPECT_EQ(m_world.getNodeByID(10)->getName(), "LampBulb");
    EXPECT_EQ(m_world.getExposure(), 1.25);
    EXPECT_EQ(materials()->getNumMaterials(), 7);
    EXPECT_EQ(materials()->getOwner(), &m_world);
}

// A save that cannot complete (a value no file can hold, a missing folder) is logged with the file
// name and leaves an existing file as it was.
TEST_F(WorldTest, FailedSaveLeavesTheFileAsItWas)
{
    TempDir dir;
    ASSERT_TRUE(m_world.save(dir.file("keep.world").c_str()));
    std::string before = readFileText(dir.file("keep.world"));
    m_world.getNodeByName("Sun")->setLightIntensity(std::numeric_limits<float>::infinity());
    EXPECT_FALSE(m_world.save(dir.file("keep.world").c_str()));
    expectLogged("keep.world");
    EXPECT_EQ(readFileText(dir.file("keep.world")), before);
    EXPECT_FALSE(m_world.save(dir.file("missing/dir.world").c_str()));
    expectLogged("missing/dir.world");
}

TEST_F(WorldTest, AddNodeRefusesBadTypesIdsAndParents)
{
    World world;
    Node* a = world.addNode(NODE_DUMMY, "A");
    EXPECT_EQ(world.addNode(OBJECT_MESH, "B", 7)->getID(), 7);
    EXPECT_EQ(world.addNode(OBJECT_MESH, "C")->getID(), 8) << "fresh ids follow the highest one";
    EXPECT_EQ(world.addNode(OBJECT_MESH, "Twin", 7), nullptr);
    expectLogged("World::addNode:node \"Twin\": id 7 is taken or out of range");
    EXPECT_EQ(world.addNode(EDITOR_CAMERA, "Second editor camera"), nullptr);
    expectLogged("node type 45 cannot be added");
    EXPECT_EQ(world.addNode(3, "Odd"), nullptr);
    expectLogged("node type 3 cannot be added");
    EXPECT_EQ(NodeType::findByName(nullptr), -1);
    EXPECT_EQ(world.addNode(LIGHT_POINT, "Inside", -1, a), nullptr);
    expectLogged("World::addNode:prefab->getType() == OBJECT_PREFAB");
    Node* foreign = m_world.getNodeByName("Lamp");
    EXPECT_EQ(world.addNode(LIGHT_POINT, "Inside", -1, foreign), nullptr);
    expectLogged("prefab->getType() == OBJECT_PREFAB");
    Node* tower = world.addNode(OBJECT_PREFAB, "Tower");
    EXPECT_EQ(world.addNode(LIGHT_SPOT, "Beacon", -1, tower)->getParent(), tower);
    EXPECT_EQ(world.getNumNodes(), 4);
    EXPECT_EQ(foreign->getNumInternalNodes(), 4);
}

// A destroyed world never stays current; destroying another world leaves the current one. The
// engine's data folder is the kit's, so paths are stored relative to the folder the host set.
TEST_F(WorldTest, CurrentWorldAndDataFolderFollowTheirOwners)
{
    World* world = jNew<World>("tests/scene/WorldTest", __LINE__, "WorldTest");
    World::SetCurrent(world);
    jDelete(world, "tests/scene/WorldTest", __LINE__, "WorldTest");
    EXPECT_EQ(World::GetCurrent(), nullptr);
    World::SetCurrent(&m_world);
    World().release(); // another world, made and destroyed
    EXPECT_EQ(World::GetCurrent(), &m_world);
    Engine::get()->setDataPath("/srv/project/data/");
    EXPECT_EQ(jKit::convertToLocalPath("/srv/project/data/a.anim"), "a.anim");
    Engine::get()->setDataPath(""); // frees the text, or the scenario ends with a live allocation
    EXPECT_TRUE(Engine::get()->getDataPath().empty());
}
