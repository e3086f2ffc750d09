#include "anim/Track.h"

#include <cstdio>
#include <cstring>

#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterOpaque.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jAllocator.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialManager.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/Scenario.h"

namespace {

const char* const FILE_TAG = "tests/anim/TrackTest";

// A small scene: a mesh, a light, a camera and a prefab with an internal wheel; a base material
// "Metal" with a derived "Rusty".
class TrackTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        cube = world.addNode(OBJECT_MESH, "Cube", 3);
        lamp = world.addNode(LIGHT_POINT, "Lamp", 4);
        camera = world.addNode(CAMERA, "Camera", 5);
        car = world.addNode(OBJECT_PREFAB, "Car", 10);
        wheel = world.addNode(OBJECT_MESH, "Wheel", 11, car);
        metal = jNew<Material>(FILE_TAG, __LINE__, "TrackTest", jString("Metal"));
        metal->addParameter("roughness", MaterialParameter::SLIDER, 1, vec4(0.5f, 0.0f, 0.0f, 0.0f));
        metal->addParameter("tint", MaterialParameter::COLOR, 4, vec4(1.0f, 1.0f, 1.0f, 1.0f));
        rusty = jNew<Material>(FILE_TAG, __LINE__, "TrackTest", jString("Rusty"), metal);
        materials()->add(metal);
        materials()->add(rusty);
    }

    void TearDown() override
    {
        track.release();
        materials()->clear();
        world.release();
        Engine::get()->setDataPath(jString());
        Scenario::TearDown();
    }

    static MaterialManager* materials() { return Engine::get()->getMaterialManager(); }

    template <class P>
    P* add()
    {
        P* p = jNew<P>(FILE_TAG, __LINE__, "TrackTest");
        track.addParameter(p);
        return p;
    }

    // A position parameter of the cube moving x from 0 to 10 over one second.
    TrackParameterVec3* movingCube()
    {
        TrackParameterVec3* p = add<TrackParameterVec3>();
        p->getComponent(VEC3_SWIZZLE_X)->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->getComponent(VEC3_SWIZZLE_X)->appendKey(1.0f, 10.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->update();
        EXPECT_TRUE(track.bindNode(p, &world, 3, "Cube", -1, "", "Node.position"));
        return p;
    }

    // Parses text as a track; returns whether it loaded.
    bool loadText(const std::string& text)
    {
        mjl reader;
        if (!reader.parse(text.data(), text.size(), "test.anim"))
            return false;
        return track.load(reader.getRoot(), &world);
    }

    // Returns the canonical text of the track.
    std::string savedText()
    {
        Package root;
        EXPECT_TRUE(track.save(&root));
        std::string text;
        mjl::write(&root, text);
        return text;
    }

    World world;
    Track track;
    Node* cube = nullptr;
    Node* lamp = nullptr;
    Node* camera = nullptr;
    Node* car = nullptr;
    Node* wheel = nullptr;
    Material* metal = nullptr;
    Material* rusty = nullptr;
};

TEST_F(TrackTest, SetMovesTheBoundNode)
{
    cube->setPosition(vec3(0.0f, 2.0f, 3.0f));
    movingCube();
    track.set(0.5f);
    EXPECT_EQ(cube->getPosition(), vec3(5.0f, 2.0f, 3.0f));
    track.set(2.0f);
    EXPECT_EQ(cube->getPosition(), vec3(10.0f, 2.0f, 3.0f));
    EXPECT_EQ(track.getTime(), 2.0f);
    EXPECT_EQ(lamp->getPosition(), vec3());
}

TEST_F(TrackTest, ComponentsWithoutKeysOrSwitchedOffKeepTheNodesValue)
{
    TrackParameterVec3* p = movingCube();
    p->getComponent(VEC3_SWIZZLE_Y)->appendKey(0.0f, 7.0f, vec4_zero, TRACK_KEY_CONSTANT);
    p->setEnabled(VEC3_SWIZZLE_Y, false);
    cube->setPosition(vec3(1.0f, 2.0f, 3.0f));
    bool found = false;
    EXPECT_EQ(p->getTrackValue(0.25f, found), vec3(2.5f, 7.0f, 3.0f));
    track.set(0.25f);
    EXPECT_EQ(cube->getPosition(), vec3(2.5f, 2.0f, 3.0f));
}

TEST_F(TrackTest, DisabledAndUnboundParametersAreNotPlayed)
{
    TrackParameterVec3* p = movingCube();
    p->setEnabled(false);
    TrackParameterFloat* loose = add<TrackParameterFloat>();
    loose->appendKey(0.0f, 3.0f, vec4_zero, TRACK_KEY_LINEAR);
    EXPECT_TRUE(track.bindNode(loose, &world, -1, "", -1, "", "Light.intensity"));
    track.set(0.5f);
    EXPECT_EQ(cube->getPosition(), vec3());
    EXPECT_EQ(lamp->getLightIntensity(), 1.0f);
    EXPECT_EQ(loose->getValue(), 0.0f); // nothing was played, so nothing was kept either
}

TEST_F(TrackTest, SetDrivesLightsCamerasTogglesAndStrings)
{
    TrackParameterColor* color = add<TrackParameterColor>();
    color->appendKey(0.0f, vec4(1.0f, 0.0f, 0.0f, 1.0f));
    color->appendKey(2.0f, vec4(0.0f, 0.0f, 1.0f, 1.0f));
    ASSERT_TRUE(track.bindNode(color, &world, 4, "Lamp", -1, "", "Light.color"));
    TrackParameterFloat* fov = add<TrackParameterFloat>();
    fov->appendKey(0.0f, 30.0f, vec4_zero, TRACK_KEY_LINEAR);
    fov->appendKey(1.0f, 90.0f, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindNode(fov, &world, 5, "Camera", -1, "", "Camera.fov"));
    TrackParameterToggle* visible = add<TrackParameterToggle>();
    visible->appendKey(0.0f, true);
    visible->appendKey(1.0f, false);
    ASSERT_TRUE(track.bindNode(visible, &world, 3, "", -1, "", "Node.enabled"));
    TrackParameterString* mat = add<TrackParameterString>();
    mat->appendKey(0.0f, "Metal");
    mat->appendKey(1.5f, "Rusty");
    ASSERT_TRUE(track.bindNode(mat, &world, 3, "Cube", -1, "", "Object.material"));
    EXPECT_EQ(mat->getType(), TRACK_PARAMETER_STRING_MATERIAL);
    TrackParameterString* mesh = add<TrackParameterString>();
    mesh->appendKey(0.0f, "meshes/box.mesh");
    ASSERT_TRUE(track.bindNode(mesh, &world, 3, "Cube", -1, "", "Object.mesh"));

    track.set(1.0f);
    EXPECT_EQ(lamp->getLightColor(), vec4(0.5f, 0.0f, 0.5f, 1.0f));
    EXPECT_EQ(camera->getCameraFov(), 90.0f);
    EXPECT_FALSE(cube->isEnabled());
    EXPECT_EQ(cube->getMaterial(), "Metal");
    EXPECT_EQ(cube->getMesh(), "meshes/box.mesh");
    track.set(0.5f);
    EXPECT_TRUE(cube->isEnabled());
    EXPECT_EQ(camera->getCameraFov(), 60.0f);
    track.set(1.5f);
    EXPECT_EQ(cube->getMaterial(), "Rusty");
}

TEST_F(TrackTest, SetDrivesTheWorldsRenderSettings)
{
    TrackParameterDouble* exposure = add<TrackParameterDouble>();
    exposure->appendKey(0.0f, 1.0, vec4_zero, TRACK_KEY_LINEAR);
    exposure->appendKey(1.0f, 3.0, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindNode(exposure, &world, -1, "", -1, "", "Render.exposure"));
    TrackParameterColor* fog = add<TrackParameterColor>();
    fog->appendKey(0.0f, vec4(0.1f, 0.2f, 0.3f, 1.0f));
    ASSERT_TRUE(track.bindNode(fog, &world, -1, "", -1, "", "Render.fog_color"));
    track.set(0.5f);
    EXPECT_DOUBLE_EQ(world.getExposure(), 2.0);
    EXPECT_EQ(world.getFogColor(), vec4(0.1f, 0.2f, 0.3f, 1.0f));
}

TEST_F(TrackTest, SetMovesAPrefabsInternalNodeAndTheEditorCamera)
{
    TrackParameterDVec3* p = add<TrackParameterDVec3>();
    p->getComponent(VEC3_SWIZZLE_Z)->appendKey(0.0f, 4.0, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(p, &world, 10, "Car", 11, "Wheel", "Node.world_position"));
    EXPECT_EQ(p->getInternalNodeID(), 11);
    TrackParameterFloat* fov = add<TrackParameterFloat>();
    fov->appendKey(0.0f, 45.0f, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(fov, &world, World::EDITOR_CAMERA_ID, World::EDITOR_CAMERA_NAME, -1, "", "Camera.fov"));
    car->setPosition(vec3(1.0f, 0.0f, 0.0f));
    track.set(0.0f);
    EXPECT_EQ(wheel->getWorldPosition().z, 4.0);
    EXPECT_EQ(car->getPosition(), vec3(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(world.getEditorCamera()->getCameraFov(), 45.0f);
}

TEST_F(TrackTest, SetDrivesAMaterialAndOptionallyItsDerivedMaterials)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    p->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p->appendKey(1.0f, 1.0f, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindMaterial(p, "Metal", "roughness", "Material.float"));
    EXPECT_TRUE(p->isForMaterial());
    EXPECT_EQ(p->getDisplayName(), "roughness");
    MaterialParameter* base = metal->getParameterByID(metal->findParameterIDByTag("roughness"));
    MaterialParameter* derived = rusty->getParameterByID(rusty->findParameterIDByTag("roughness"));
    derived->setValue(vec4(0.9f, 0.0f, 0.0f, 0.0f)); // Rusty overrides the base's roughness
    track.set(0.25f);
    EXPECT_EQ(base->getValue().x, 0.25f);
    EXPECT_EQ(derived->getValue().x, 0.9f);
    p->setMaterialHierarchy(true);
    track.set(0.75f);
    EXPECT_EQ(base->getValue().x, 0.75f);
    EXPECT_EQ(derived->getValue().x, 0.75f);

    TrackParameterColor* tint = add<TrackParameterColor>();
    tint->appendKey(0.0f, vec4(0.0f, 0.5f, 1.0f, 1.0f));
    ASSERT_TRUE(track.bindMaterial(tint, "Rusty", "tint", "Material.color"));
    track.set(0.0f);
    EXPECT_EQ(rusty->getParameterByID(rusty->findParameterIDByTag("tint"))->getValue(), vec4(0.0f, 0.5f, 1.0f, 1.0f));
    EXPECT_EQ(metal->getParameterByID(metal->findParameterIDByTag("tint"))->getValue(), vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

TEST_F(TrackTest, BindNodeRefusesWhatItCannotPlayAndKeepsTheOldBinding)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    ASSERT_TRUE(track.bindNode(p, &world, 4, "Lamp", -1, "", "Light.intensity"));
    EXPECT_FALSE(track.bindNode(p, &world, 3, "Cube", -1, "", "Light.intensity"));
    expectLogged("Track::bindNode:type \"Light.intensity\" does not animate nodes of type ObjectMesh");
    EXPECT_FALSE(track.bindNode(p, &world, 4, "Lamp", -1, "", "Light.brightness"));
    expectLogged("Track::bindNode:type \"Light.brightness\" is not registered");
    EXPECT_FALSE(track.bindNode(p, &world, 4, "Lamp", -1, "", "Node.position"));
    expectLogged("Track::bindNode:type \"Node.position\" animates kind 4, not kind 1");
    EXPECT_FALSE(track.bindNode(p, &world, 99, "Ghost", -1, "", "Light.intensity"));
    expectLogged("Track::bindNode:no node with id 99");
    EXPECT_FALSE(track.bindNode(p, &world, 10, "Car", 77, "", "Light.intensity"));
    expectLogged("no node with id 10");
    EXPECT_FALSE(track.bindNode(p, &world, -1, "", -1, "", "Material.float"));
    expectLogged("Track::bindNode:type \"Material.float\" binds to materials, not nodes");
    TrackParameterFloat stranger;
    EXPECT_FALSE(track.bindNode(&stranger, &world, 4, "Lamp", -1, "", "Light.intensity"));
    expectLogged("Track::bindNode:param is held by this track");
    EXPECT_EQ(p->getNodeID(), 4);
    EXPECT_EQ(p->getNodeName(), "Lamp");
    EXPECT_EQ(p->getTypeName(), "Light.intensity");
}

TEST_F(TrackTest, BindNodeFindsANodeByNameWhenTheIdIsGone)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    p->appendKey(0.0f, 5.0f, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(p, &world, 40, "Lamp", -1, "", "Light.intensity"));
    track.set(0.0f);
    EXPECT_EQ(lamp->getLightIntensity(), 5.0f);
}

TEST_F(TrackTest, BindMaterialRefusesWhatItCannotPlay)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    EXPECT_FALSE(track.bindMaterial(p, "Gold", "roughness", "Material.float"));
    expectLogged("Track::bindMaterial:no material \"Gold\"");
    EXPECT_FALSE(track.bindMaterial(p, "Metal", "shine", "Material.float"));
    expectLogged("Track::bindMaterial:material \"Metal\" has no parameter \"shine\"");
    EXPECT_FALSE(track.bindMaterial(p, "Metal", "roughness", "Light.intensity"));
    expectLogged("Track::bindMaterial:type \"Light.intensity\" does not bind to materials");
    EXPECT_TRUE(p->getMaterialName().empty());
    EXPECT_FALSE(p->isForMaterial());
}

TEST_F(TrackTest, ParametersAreOwnedUntilRemoved)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    EXPECT_EQ(track.getNumParameters(), 1);
    EXPECT_EQ(track.getParameter(0), p);
    EXPECT_EQ(track.getParameter(1), nullptr);
    EXPECT_EQ(p->getTrack(), &track);
    EXPECT_FALSE(track.addParameter(p));
    expectLogged("Track::addParameter");
    EXPECT_TRUE(track.removeParameter(p));
    EXPECT_FALSE(track.removeParameter(p));
    EXPECT_EQ(p->getTrack(), nullptr);
    EXPECT_EQ(track.getNumParameters(), 0);
    jDelete(p, FILE_TAG, __LINE__, "TrackTest");
}

TEST_F(TrackTest, RangeLoopAndReset)
{
    track.setBeginTime(-1.0f);
    track.setEndTime(10.0f);
    track.setLoop(true);
    EXPECT_EQ(track.getBeginTime(), 0.0f);
    EXPECT_EQ(track.getEndTime(), 10.0f);
    EXPECT_EQ(track.getLength(), 10.0f);
    EXPECT_TRUE(track.isLoop());
    track.setBeginTime(12.0f);
    EXPECT_EQ(track.getLength(), 0.0f);
    track.reset();
    EXPECT_EQ(track.getBeginTime(), 0.0f);
    EXPECT_EQ(track.getEndTime(), 0.0f);
    EXPECT_FALSE(track.isLoop());
}

TEST_F(TrackTest, SavedTracksLoadBackTheSame)
{
    track.setEndTime(4.0f);
    track.setLoop(true);
    movingCube()->setShow(VEC3_SWIZZLE_X, true);
    TrackParameterFloat* p = add<TrackParameterFloat>();
    p->setName("Roughness");
    p->appendKey(0.0f, 0.1f, vec4(0.0f, 0.0f, 0.5f, 0.25f), TRACK_KEY_BREAK);
    p->appendKey(2.0f, 0.9f, vec4(-0.5f, 0.0f, 0.5f, 0.0f), TRACK_KEY_AUTO);
    ASSERT_TRUE(track.bindMaterial(p, "Metal", "roughness", "Material.float"));
    p->setMaterialHierarchy(true);
    p->setCurveShown(true);
    std::string first = savedText();
    ASSERT_TRUE(loadText(first));
    EXPECT_EQ(savedText(), first);
    ASSERT_EQ(track.getNumParameters(), 2);
    const TrackParameterFloat* back = static_cast<const TrackParameterFloat*>(track.getParameter(1));
    EXPECT_EQ(back->getName(), "Roughness");
    EXPECT_EQ(back->getMaterialTag(), "roughness");
    EXPECT_TRUE(back->isMaterialHierarchy());
    EXPECT_TRUE(back->isCurveShown());
    EXPECT_EQ(back->getKey(0).value, 0.1f);
    EXPECT_EQ(back->getKey(1).tangents, vec4(-0.5f, 0.0f, 0.5f, 0.0f));
    EXPECT_NE(first.find("\n        [0.0, 0.1, 0.0, 0.0, 0.5, 0.25, 3],\n"), std::string::npos) << first;
    EXPECT_TRUE(track.isLoop());
    EXPECT_EQ(track.getEndTime(), 4.0f);
}

TEST_F(TrackTest, LoadedTracksAreBoundToTheWorld)
{
    ASSERT_TRUE(loadText(R"({"version": 1, "begin": 0, "end": 1, "parameters": [
        {"kind": 1, "type": "Light.intensity", "node": {"id": 4, "name": "Lamp"},
         "keys": [[0, 2, 0, 0, 0, 0, 1], [1, 4, 0, 0, 0, 0, 1]], "comment": "ignored"}],
        "author": "ignored too"})"));
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 3.0f);
    EXPECT_EQ(track.getParameter(0)->getName(), "Light.intensity");
    EXPECT_EQ(savedText().find("ignored"), std::string::npos);
}

TEST_F(TrackTest, AFailedLoadNamesThePlaceAndKeepsTheTrack)
{
    movingCube();
    struct Case {
        const char* text;
        const char* message;
    } cases[] = {
        {R"({"version": 1, "begin": 0, "parameters": []})", "Track::load:1:1: missing field \"end\""},
        {R"({"version": 2, "begin": 0, "end": 1, "parameters": []})", "Track::load:1:13: format version 2"},
        {R"({"version": 1, "begin": -1, "end": 1, "parameters": []})", "Track::load:1:25: time is negative"},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 12, "type": "X"}]})",
         "Track::load:1:62: kind 12 is not a parameter kind (0 to 9)"},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 0, "type": "Node.enabled", "keys": [[2, 1], [1, 0]]}]})",
         "keys are not sorted by time: 1 comes after 2"},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 1, "type": "Light.intensity", "keys": [[0, 1e39, 0, 0, 0, 0, 1]]}]})",
         "value is not finite as a 32-bit float"},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 1, "type": "Node.position", "keys": []}]})",
         "type \"Node.position\" animates kind 4, not kind 1"},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 4, "type": "Node.position"}]})",
         "missing field \"components\""},
        {R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 1, "type": "Light.intensity", "keys": [[0, 1, 0, 0, 0, 0, 9]]}]})",
         "key type 9 is not 0 to 4"},
        {R"([1, 2])", "a track document must be a JSON object"},
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(loadText(c.text)) << c.text;
        expectLogged(c.message);
    }
    ASSERT_EQ(track.getNumParameters(), 1);
    track.set(1.0f);
    EXPECT_EQ(cube->getPosition().x, 10.0f);
}

TEST_F(TrackTest, UnregisteredTypesLoadButDoNotPlay)
{
    ASSERT_TRUE(loadText(R"({"version": 1, "begin": 0, "end": 1, "parameters": [
        {"kind": 1, "type": "Light.glow", "node": {"id": 4}, "keys": [[0, 9, 0, 0, 0, 0, 1]]}]})"));
    EXPECT_EQ(track.getParameter(0)->getReg(), nullptr);
    track.set(0.0f);
    EXPECT_EQ(lamp->getLightIntensity(), 1.0f);
}

TEST_F(TrackTest, EngineOnlyParametersSurviveUnchangedAndPlayAsNothing)
{
    const char* text = R"({"version": 1, "begin": 0, "end": 2, "parameters": [
        {"kind": 6, "type": "Engine.events", "custom": {"deep": [1, "two", null, true]},
         "keys": [[0.5, "footstep"], [1.5, "footstep"]]},
        {"kind": 1, "type": "Light.intensity", "node": {"id": 4}, "keys": [[0, 2, 0, 0, 0, 0, 1]]}]})";
    ASSERT_TRUE(loadText(text));
    ASSERT_EQ(track.getNumParameters(), 2);
    EXPECT_EQ(track.getParameter(0)->getType(), TRACK_PARAMETER_OPAQUE);
    EXPECT_EQ(track.getParameter(0)->getNumKeys(), 2);
    track.set(1.0f);
    EXPECT_EQ(lamp->getLightIntensity(), 2.0f);
    std::string saved = savedText();
    mjl original;
    ASSERT_TRUE(original.parse(text, strlen(text), "original"));
    mjl again;
    ASSERT_TRUE(again.parse(saved.data(), saved.size(), "again"));
    EXPECT_TRUE(original.getRoot()->find("parameters")->getChild(0)->equals(
        *again.getRoot()->find("parameters")->getChild(0)))
        << saved;
    ASSERT_TRUE(loadText(saved));
    EXPECT_EQ(savedText(), saved);
}

// outer.anim plays inner.anim, whose Light.intensity runs 0 -> 10 over ten seconds; the outer
// track's time component runs the inner time at twice the speed.
TEST_F(TrackTest, NestedTracksPlayAtTheirEvaluatedTimeAndLoadOnce)
{
    TempDir dir;
    Engine::get()->setDataPath(dir.path().c_str());
    ASSERT_TRUE(writeFileText(dir.file("inner.anim"), R"({"version": 1, "begin": 0, "end": 10, "parameters": [
        {"kind": 1, "type": "Light.intensity", "node": {"id": 4}, "keys": [[0, 0, 0, 0, 0, 0, 1], [10, 10, 0, 0, 0, 0, 1]]}]})"));
    TrackParameterTrack* p = add<TrackParameterTrack>();
    p->getNameParameter()->appendKey(0.0f, "sub/../inner.anim");
    p->getTimeParameter()->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p->getTimeParameter()->appendKey(1.0f, 2.0f, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindNode(p, &world, -1, "", -1, "", "Track.play"));
    track.setWorld(&world);
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 1.0f);
    Track* nested = track.getNestedTrack("inner.anim");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(track.getNestedTrack(dir.file("inner.anim").c_str()), nested);
    track.set(3.0f); // past the time component's last key, the nested time holds at 2
    EXPECT_EQ(lamp->getLightIntensity(), 2.0f);
}

TEST_F(TrackTest, ATrackThatPlaysItselfIsRefused)
{
    TempDir dir;
    Engine::get()->setDataPath(dir.path().c_str());
    const char* loop = R"({"version": 1, "begin": 0, "end": 1, "parameters": [
        {"kind": 1, "type": "Light.intensity", "node": {"id": 4}, "keys": [[0, 3, 0, 0, 0, 0, 1]]},
        {"kind": 7, "type": "Track.play", "file": [[0, "%s"]], "time": []}]})";
    char a[512], b[512];
    std::snprintf(a, sizeof(a), loop, "b.anim");
    std::snprintf(b, sizeof(b), loop, "a.anim");
    ASSERT_TRUE(writeFileText(dir.file("a.anim"), a));
    ASSERT_TRUE(writeFileText(dir.file("b.anim"), b));
    ASSERT_TRUE(track.loadFile(dir.file("a.anim").c_str(), &world));
    track.set(0.0f);
    expectLogged("TrackParameterTrack::apply:track \"b.anim\" plays itself");
    EXPECT_EQ(lamp->getLightIntensity(), 3.0f);
    track.set(0.5f); // reported once, not on every frame
    EXPECT_EQ(log().countAtLeast(jLogLevel::Warning), 0u);
}

TEST_F(TrackTest, AMissingNestedFileIsReportedOnce)
{
    TrackParameterTrack* p = add<TrackParameterTrack>();
    p->getNameParameter()->appendKey(0.0f, "/nonexistent/kuvo/missing.anim");
    ASSERT_TRUE(track.bindNode(p, &world, -1, "", -1, "", "Track.play"));
    track.set(0.0f);
    expectLogged("missing.anim");
    track.set(0.1f);
    EXPECT_EQ(log().countAtLeast(jLogLevel::Warning), 0u);
}

} // namespace
