#include "scene/World.h"

#include <limits>

#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/Node.h"
#include "SceneSamples.h"
#include "support/Scenario.h"

class WorldTest : public Scenario {
protected:
    void TearDown() override
    {
        World::SetCurrent(nullptr);
        Scenario::TearDown();
    }
    MaterialManager* materials() { return Engine::get()->getMaterialManager(); }
};

TEST_F(WorldTest, LoadsTheSampleNodesInFileOrder)
{
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    const char* names[] = {"Ground", "Pillar", "Pond", "Sun", "Spot", "MainCamera", "Pivot", "Lamp", "Lamp.001", "Crate"};
    const int ids[] = {1, 2, 3, 4, 5, 6, 7, 8, 13, 20};
    const int types[] = {OBJECT_MESH, OBJECT_MESH, OBJECT_MESH, LIGHT_POINT, LIGHT_SPOT,
                         CAMERA,      NODE_DUMMY,  OBJECT_PREFAB, OBJECT_PREFAB, OBJECT_MESH};
    ASSERT_EQ(world.getNumNodes(), 10);
    for (int i = 0; i < 10; ++i) {
        Node* node = world.getNode(i);
        EXPECT_EQ(node->getName(), names[i]);
        EXPECT_EQ(node->getID(), ids[i]);
        EXPECT_EQ(node->getType(), types[i]);
        EXPECT_EQ(node->getParent(), nullptr);
    }
    EXPECT_STREQ(world.getNode(7)->getTypeName(), "ObjectPrefab");
    EXPECT_EQ(world.getNode(10), nullptr);
    EXPECT_EQ(world.getNode(-1), nullptr);
}

TEST_F(WorldTest, PrefabsOwnTheirInternalNodes)
{
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    Node* lamp = world.getNodeByName("Lamp");
    ASSERT_NE(lamp, nullptr);
    ASSERT_EQ(lamp->getNumInternalNodes(), 4);
    EXPECT_EQ(lamp->getInternalNode(0)->getName(), "LampPost");
    EXPECT_EQ(lamp->getInternalNode(1)->getType(), LIGHT_POINT);
    EXPECT_EQ(lamp->getInternalNode(3)->getID(), 12);
    EXPECT_EQ(lamp->getInternalNode(2)->getParent(), lamp);
    Node* copy = world.getNodeByName("Lamp.001");
    ASSERT_EQ(copy->getNumInternalNodes(), 4);
    EXPECT_EQ(copy->getInternalNode(1)->getName(), "LampBulb");
    EXPECT_EQ(copy->getInternalNode(1)->getID(), 15);
}

TEST_F(WorldTest, LooksUpInternalNodesByIdButNotByName)
{
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    Node* bulb = world.getNodeByID(10);
    ASSERT_NE(bulb, nullptr);
    EXPECT_EQ(bulb->getName(), "LampBulb");
    EXPECT_EQ(bulb->getParent()->getName(), "Lamp");
    EXPECT_EQ(world.getNodeByID(15)->getParent()->getName(), "Lamp.001");
    EXPECT_EQ(world.getNodeByID(20)->getName(), "Crate");
    EXPECT_EQ(world.getNodeByID(19), nullptr);
    EXPECT_EQ(world.getNodeByID(-1), nullptr);
    // Both lamp prefabs hold a "LampBulb": a name alone cannot tell them apart.
    EXPECT_EQ(world.getNodeByName("LampBulb"), nullptr);
    EXPECT_EQ(world.getNodeByName("Spot")->getID(), 5);
    EXPECT_EQ(world.getNodeByName("spot"), nullptr);
}

TEST_F(WorldTest, EditorCameraExistsInEveryWorld)
{
    World empty;
    EXPECT_EQ(empty.getNumNodes(), 0);
    Node* camera = empty.getNodeByName("__EDITOR_CAMERA__");
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera, empty.getEditorCamera());
    EXPECT_EQ(camera->getType(), 45);
    EXPECT_STREQ(camera->getTypeName(), "EditorCamera");
    EXPECT_EQ(empty.getNodeByID(World::EDITOR_CAMERA_ID), camera);

    World loaded;
    Node* before = loaded.getEditorCamera();
    before->setCameraFov(35.0f);
    ASSERT_TRUE(loaded.load(demoWorldPath().c_str()));
    EXPECT_EQ(loaded.getEditorCamera(), before) << "loading keeps the editor's view";
    EXPECT_EQ(loaded.getNodeByName("__EDITOR_CAMERA__")->getCameraFov(), 35.0f);
    EXPECT_EQ(loaded.getNodeByID(World::EDITOR_CAMERA_ID), before);
    for (int i = 0; i < loaded.getNumNodes(); ++i)
        EXPECT_NE(loaded.getNode(i), before) << "the editor camera is not in the node list";

    loaded.release();
    EXPECT_EQ(loaded.getNumNodes(), 0);
    EXPECT_EQ(loaded.getNodeByName("__EDITOR_CAMERA__"), before);
}

TEST_F(WorldTest, EditorCameraIsNeverSaved)
{
    TempDir dir;
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    ASSERT_TRUE(world.save(dir.file("out.world").c_str()));
    std::string text = readFileText(dir.file("out.world"));
    EXPECT_EQ(text.find("__EDITOR_CAMERA__"), std::string::npos);
    EXPECT_EQ(text.find("EditorCamera"), std::string::npos);
}

TEST_F(WorldTest, LoadInstallsTheMaterialsUntilTheWorldIsReleased)
{
    {
        World world;
        ASSERT_TRUE(world.load(demoWorldPath().c_str()));
        ASSERT_EQ(materials()->getNumMaterials(), 7);
        EXPECT_EQ(materials()->getMaterial(0)->getName(), "surface");
        EXPECT_EQ(materials()->getMaterial(6)->getName(), "emissive");
        EXPECT_EQ(materials()->getOwner(), &world);
        World other;
        other.release();
        EXPECT_EQ(materials()->getNumMaterials(), 7) << "only the world that installed them clears them";
        world.release();
        EXPECT_EQ(materials()->getNumMaterials(), 0);
        ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    }
    EXPECT_EQ(materials()->getNumMaterials(), 0) << "destroying the world clears its materials";
}

TEST_F(WorldTest, LoadsAndSavesRenderSettings)
{
    TempDir dir;
    World world;
    EXPECT_EQ(world.getExposure(), 1.0);
    EXPECT_EQ(world.getFogColor(), vec4(0.5f, 0.5f, 0.5f, 1.0f));
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    EXPECT_EQ(world.getExposure(), 1.25);
    EXPECT_EQ(world.getFogColor(), vec4(0.6f, 0.7f, 0.8f, 1.0f));
    world.setExposure(0.1 + 0.2);
    world.setFogColor(vec4(0.1f, 0.2f, 0.3f, 0.4f));
    ASSERT_TRUE(world.save(dir.file("fog.world").c_str()));
    World again;
    ASSERT_TRUE(again.load(dir.file("fog.world").c_str()));
    EXPECT_EQ(again.getExposure(), 0.1 + 0.2);
    EXPECT_EQ(again.getFogColor(), vec4(0.1f, 0.2f, 0.3f, 0.4f));
}

TEST_F(WorldTest, SampleIsStoredInCanonicalForm)
{
    TempDir dir;
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    ASSERT_TRUE(world.save(dir.file("demo.world").c_str()));
    EXPECT_EQ(readFileText(dir.file("demo.world")), readFileText(demoWorldPath()));
}

TEST_F(WorldTest, SaveLoadSaveIsByteIdentical)
{
    TempDir dir;
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    // Values a naive float writer would spell differently on each pass.
    world.getNodeByName("Pillar")->setPosition(vec3(0.1f, 1.0f / 3.0f, -2.5e-7f));
    world.getNodeByID(10)->setLightIntensity(0.7f);
    world.setExposure(1.0 / 3.0);
    ASSERT_TRUE(world.save(dir.file("a.world").c_str()));
    World again;
    ASSERT_TRUE(again.load(dir.file("a.world").c_str()));
    EXPECT_EQ(again.getNodeByName("Pillar")->getPosition(), vec3(0.1f, 1.0f / 3.0f, -2.5e-7f));
    ASSERT_TRUE(again.save(dir.file("b.world").c_str()));
    EXPECT_EQ(readFileText(dir.file("a.world")), readFileText(dir.file("b.world")));
    EXPECT_NE(readFileText(dir.file("a.world")).find("0.1, "), std::string::npos);
}

TEST_F(WorldTest, SavedEditsReadBack)
{
    TempDir dir;
    World world;
    Node* prefab = world.addNode(OBJECT_PREFAB, "Tower", 40);
    Node* light = world.addNode(LIGHT_SPOT, "Beacon", -1, prefab);
    Node* mesh = world.addNode(OBJECT_MESH, "Wall");
    Node* camera = world.addNode(CAMERA, "Shot");
    ASSERT_TRUE(prefab && light && mesh && camera);
    prefab->setRotation(vec3(0.0f, 90.0f, 0.0f));
    light->setPosition(vec3(0.0f, 12.0f, 0.0f));
    light->setLightColor(vec4(1.0f, 0.0f, 0.0f, 1.0f));
    light->setLightIntensity(8.0f);
    mesh->setEnabled(false);
    mesh->setScale(vec3(2.0f, 3.0f, 4.0f));
    mesh->setMaterial("stone");
    mesh->setMesh("meshes/wall.mesh");
    camera->setCameraFov(24.0f);
    ASSERT_TRUE(world.save(dir.file("edit.world").c_str()));

    World loaded;
    ASSERT_TRUE(loaded.load(dir.file("edit.world").c_str()));
    ASSERT_EQ(loaded.getNumNodes(), 3);
    Node* tower = loaded.getNodeByID(40);
    ASSERT_EQ(tower->getNumInternalNodes(), 1);
    Node* beacon = tower->getInternalNode(0);
    EXPECT_EQ(beacon->getName(), "Beacon");
    EXPECT_EQ(beacon->getID(), 41);
    EXPECT_EQ(beacon->getLightColor(), vec4(1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(beacon->getLightIntensity(), 8.0f);
    EXPECT_EQ(tower->getRotation(), vec3(0.0f, 90.0f, 0.0f));
    Node* wall = loaded.getNodeByName("Wall");
    EXPECT_FALSE(wall->isEnabled());
    EXPECT_EQ(wall->getScale(), vec3(2.0f, 3.0f, 4.0f));
    EXPECT_EQ(wall->getMaterial(), "stone");
    EXPECT_EQ(wall->getMesh(), "meshes/wall.mesh");
    EXPECT_EQ(loaded.getNodeByName("Shot")->getCameraFov(), 24.0f);
    EXPECT_EQ(materials()->getNumMaterials(), 0);
}

TEST_F(WorldTest, FailedLoadLeavesWorldAndMaterialsAsTheyWere)
{
    TempDir dir;
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    Node* pillar = world.getNodeByName("Pillar");
    std::string sample = readFileText(demoWorldPath());
    size_t crate = sample.rfind("\"Crate\"");
    std::string broken = sample.substr(0, crate) + "7" + sample.substr(crate + 7);
    ASSERT_TRUE(writeFileText(dir.file("broken.world"), broken));

    EXPECT_FALSE(world.load(dir.file("broken.world").c_str()));
    expectLogged("broken.world:");
    EXPECT_EQ(world.getNumNodes(), 10);
    EXPECT_EQ(world.getNodeByName("Pillar"), pillar);
    EXPECT_EQ(world.getNodeByID(10)->getName(), "LampBulb");
    EXPECT_EQ(world.getExposure(), 1.25);
    EXPECT_EQ(materials()->getNumMaterials(), 7);
    EXPECT_EQ(materials()->getOwner(), &world);

    EXPECT_FALSE(world.load(dir.file("absent.world").c_str()));
    expectLogged("absent.world");
    EXPECT_EQ(world.getNumNodes(), 10);
}

TEST_F(WorldTest, FailedSaveLeavesTheFileAsItWas)
{
    TempDir dir;
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    ASSERT_TRUE(world.save(dir.file("keep.world").c_str()));
    std::string before = readFileText(dir.file("keep.world"));
    world.getNodeByName("Sun")->setLightIntensity(std::numeric_limits<float>::infinity());
    EXPECT_FALSE(world.save(dir.file("keep.world").c_str()));
    expectLogged("keep.world");
    EXPECT_EQ(readFileText(dir.file("keep.world")), before);

    EXPECT_FALSE(world.save(dir.file("missing/dir.world").c_str()));
    expectLogged("missing/dir.world");
}

TEST_F(WorldTest, AddNodeRefusesBadTypesIdsAndParents)
{
    World world;
    Node* a = world.addNode(NODE_DUMMY, "A");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->getID(), 1);
    EXPECT_EQ(world.addNode(OBJECT_MESH, "B", 7)->getID(), 7);
    EXPECT_EQ(world.addNode(OBJECT_MESH, "C")->getID(), 8) << "fresh ids follow the highest one";

    EXPECT_EQ(world.addNode(OBJECT_MESH, "Twin", 7), nullptr);
    expectLogged("World::addNode:node \"Twin\": id 7 is taken or out of range");
    EXPECT_EQ(world.addNode(CAMERA, "Far", World::EDITOR_CAMERA_ID), nullptr);
    expectLogged("id 2147483647 is taken");
    EXPECT_EQ(world.addNode(EDITOR_CAMERA, "Second editor camera"), nullptr);
    expectLogged("node type 45 cannot be added");
    EXPECT_EQ(world.addNode(3, "Odd"), nullptr);
    expectLogged("node type 3 cannot be added");
    EXPECT_EQ(world.addNode(LIGHT_POINT, "Inside", -1, a), nullptr);
    expectLogged("World::addNode:prefab->getType() == OBJECT_PREFAB");

    World other;
    Node* foreign = other.addNode(OBJECT_PREFAB, "Elsewhere");
    EXPECT_EQ(world.addNode(LIGHT_POINT, "Inside", -1, foreign), nullptr);
    expectLogged("prefab->getType() == OBJECT_PREFAB");
    EXPECT_EQ(world.getNumNodes(), 3);
    EXPECT_EQ(foreign->getNumInternalNodes(), 0);
}

TEST_F(WorldTest, ReleaseKeepsOnlyTheEditorCamera)
{
    World world;
    ASSERT_TRUE(world.load(demoWorldPath().c_str()));
    world.release();
    EXPECT_EQ(world.getNumNodes(), 0);
    EXPECT_EQ(world.getNodeByID(10), nullptr);
    EXPECT_EQ(world.getExposure(), 1.0);
    EXPECT_EQ(world.addNode(NODE_DUMMY, "Fresh")->getID(), 1);
    EXPECT_NE(world.getNodeByName("__EDITOR_CAMERA__"), nullptr);
}

TEST_F(WorldTest, DestroyingTheCurrentWorldLeavesNoCurrentWorld)
{
    World* world = jNew<World>("tests/scene/WorldTest", __LINE__, "WorldTest");
    World::SetCurrent(world);
    EXPECT_EQ(World::GetCurrent(), world);
    jDelete(world, "tests/scene/WorldTest", __LINE__, "WorldTest");
    EXPECT_EQ(World::GetCurrent(), nullptr);
    World kept;
    World::SetCurrent(&kept);
    {
        World passing;
    }
    EXPECT_EQ(World::GetCurrent(), &kept);
}
