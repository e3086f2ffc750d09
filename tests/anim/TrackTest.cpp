#include "anim/Track.h"

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "TrackScene.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterOpaque.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackReadAhead.h"
#include "anim/TrackReader.h"
#include "io/mjl.h"

// How a track binds, plays, saves and loads its parameters; how its playback follows edits made
// between frames is in TrackPlaybackTest.

namespace {

using TrackTest = TrackScene;

TEST_F(TrackTest, SetDrivesLightsCamerasTogglesStringsAndTheWorldsRenderSettings)
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
    TrackParameterString* mesh = add<TrackParameterString>();
    mesh->appendKey(0.0f, "meshes/box.mesh");
    ASSERT_TRUE(track.bindNode(mesh, &world, 3, "Cube", -1, "", "Object.mesh"));
    TrackParameterDouble* exposure = add<TrackParameterDouble>();
    exposure->appendKey(0.0f, 1.0, vec4_zero, TRACK_KEY_LINEAR);
    exposure->appendKey(1.0f, 3.0, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindNode(exposure, &world, -1, "", -1, "", "Render.exposure"));
    TrackParameterColor* fog = add<TrackParameterColor>();
    fog->appendKey(0.0f, vec4(0.1f, 0.2f, 0.3f, 1.0f));
    ASSERT_TRUE(track.bindNode(fog, &world, -1, "", -1, "", "Render.fog_color"));
    updateAll();
    track.set(1.0f);
    EXPECT_EQ(lamp->getLightColor(), vec4(0.5f, 0.0f, 0.5f, 1.0f));
    EXPECT_EQ(camera->getCameraFov(), 90.0f);
    EXPECT_FALSE(cube->isEnabled());
    EXPECT_EQ(cube->getMaterial(), "Metal");
    EXPECT_EQ(cube->getMesh(), "meshes/box.mesh");
    track.set(0.5f);
    EXPECT_TRUE(cube->isEnabled());
    EXPECT_EQ(camera->getCameraFov(), 60.0f);
    EXPECT_DOUBLE_EQ(world.getExposure(), 2.0);
    EXPECT_EQ(world.getFogColor(), vec4(0.1f, 0.2f, 0.3f, 1.0f));
    track.set(1.5f);
    EXPECT_EQ(cube->getMaterial(), "Rusty");
}

// Nodes are found inside a prefab, as the editor's camera, and by name when their id is gone.
TEST_F(TrackTest, SetFindsPrefabsInternalNodesTheEditorCameraAndNodesByName)
{
    TrackParameterDVec3* p = add<TrackParameterDVec3>();
    p->getComponent(VEC3_SWIZZLE_Z)->appendKey(0.0f, 4.0, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(p, &world, 10, "Car", 11, "Wheel", "Node.world_position"));
    TrackParameterFloat* fov = add<TrackParameterFloat>();
    fov->appendKey(0.0f, 45.0f, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(fov, &world, World::EDITOR_CAMERA_ID, World::EDITOR_CAMERA_NAME, -1, "", "Camera.fov"));
    TrackParameterFloat* light = add<TrackParameterFloat>();
    light->appendKey(0.0f, 5.0f, vec4_zero, TRACK_KEY_CONSTANT);
    ASSERT_TRUE(track.bindNode(light, &world, 40, "Lamp", -1, "", "Light.intensity"));
    car->setPosition(vec3(1.0f, 0.0f, 0.0f));
    updateAll();
    track.set(0.0f);
    EXPECT_EQ(wheel->getWorldPosition().z, 4.0);
    EXPECT_EQ(car->getPosition(), vec3(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(world.getEditorCamera()->getCameraFov(), 45.0f);
    EXPECT_EQ(lamp->getLightIntensity(), 5.0f);
}

TEST_F(TrackTest, SetDrivesAMaterialAndOptionallyItsDerivedMaterials)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    p->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
    p->appendKey(1.0f, 1.0f, vec4_zero, TRACK_KEY_LINEAR);
    ASSERT_TRUE(track.bindMaterial(p, "Metal", "roughness", "Material.float"));
    EXPECT_EQ(p->getDisplayName(), "roughness");
    MaterialParameter* base = metal->getParameterByID(metal->findParameterIDByTag("roughness"));
    MaterialParameter* derived = rusty->getParameterByID(rusty->findParameterIDByTag("roughness"));
    derived->setValue(vec4(0.9f, 0.0f, 0.0f, 0.0f)); // Rusty overrides the base's roughness
    updateAll();
    track.set(0.25f);
    EXPECT_EQ(base->getValue().x, 0.25f);
    EXPECT_EQ(derived->getValue().x, 0.9f);
    p->setMaterialHierarchy(true);
    track.set(0.75f);
    EXPECT_EQ(base->getValue().x, 0.75f);
    EXPECT_EQ(derived->getValue().x, 0.75f);

    TrackParameterColor* tint = add<TrackParameterColor>();
    tint->appendKey(0.0f, vec4(0.0f, 0.5f, 1.0f, 1.0f));
    tint->update();
    ASSERT_TRUE(track.bindMaterial(tint, "Rusty", "tint", "Material.color"));
    track.set(0.0f);
    EXPECT_EQ(rusty->getParameterByID(rusty->findParameterIDByTag("tint"))->getValue(), vec4(0.0f, 0.5f, 1.0f, 1.0f));
    EXPECT_EQ(metal->getParameterByID(metal->findParameterIDByTag("tint"))->getValue(), vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

TEST_F(TrackTest, BindingRefusesWhatItCannotPlayAndKeepsTheOldBinding)
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
    EXPECT_FALSE(track.bindMaterial(p, "Gold", "roughness", "Material.float"));
    expectLogged("Track::bindMaterial:no material \"Gold\"");
    EXPECT_FALSE(track.bindMaterial(p, "Metal", "shine", "Material.float"));
    expectLogged("Track::bindMaterial:material \"Metal\" has no parameter \"shine\"");
    EXPECT_FALSE(track.bindMaterial(p, "Metal", "roughness", "Light.intensity"));
    expectLogged("Track::bindMaterial:type \"Light.intensity\" does not bind to materials");
    EXPECT_EQ(p->getNodeID(), 4);
    EXPECT_EQ(p->getNodeName(), "Lamp");
    EXPECT_EQ(p->getTypeName(), "Light.intensity");
    EXPECT_TRUE(p->getMaterialName().empty());
    EXPECT_FALSE(p->isForMaterial());
}

TEST_F(TrackTest, ParametersAreOwnedUntilRemoved)
{
    TrackParameterFloat* p = add<TrackParameterFloat>();
    EXPECT_FALSE(track.addParameter(p));
    expectLogged("Track::addParameter");
    EXPECT_TRUE(track.removeParameter(p));
    EXPECT_FALSE(track.removeParameter(p));
    EXPECT_EQ(p->getTrack(), nullptr);
    EXPECT_EQ(track.getNumParameters(), 0);
    EXPECT_EQ(track.getParameter(0), nullptr);
    jDelete(p, FILE_TAG, __LINE__, "TrackTest");
}

TEST_F(TrackTest, SavedTracksLoadBackTheSame)
{
    track.setEndTime(4.0f);
    track.setLoop(true);
    track.setFrameRate(23.976f);
    track.setSnapping(true);
    mover()->setShow(VEC3_SWIZZLE_X, true);
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
    EXPECT_EQ(back->getKey(1).tangents, vec4(-0.5f, 0.0f, 0.5f, 0.0f));
    EXPECT_NE(first.find("\n        [0.0, 0.1, 0.0, 0.0, 0.5, 0.25, 3],\n"), std::string::npos) << first;
    EXPECT_TRUE(track.isLoop());
    EXPECT_EQ(track.getEndTime(), 4.0f);
    EXPECT_EQ(track.getFrameRate(), 23.976f);
    EXPECT_TRUE(track.isSnapping());
    EXPECT_NE(first.find("\"loop\": true,\n  \"frame_rate\": 23.976,\n  \"snap\": true,\n"), std::string::npos)
        << first;
    // Without a frame rate the member is left out, as older writers did.
    track.setFrameRate(0.0f);
    EXPECT_EQ(savedText().find("frame_rate"), std::string::npos);
}

TEST_F(TrackTest, ParametersReadWhileTheFileIsParsedComeFromThatFileOnly)
{
    auto document = [](const char* name, const char* more) {
        return std::string(R"({"version": 1, "begin": 0, "end": 1, "parameters": [{"kind": 1, "type": "Light.intensity",
            "name": ")") + name + R"(", "keys": [[0, 2, 0, 0, 0, 0, 1]]})" + more + "]}";
    };
    auto read = [this](const std::string& text, TrackReadAhead* ahead, TrackReader& reader) {
        mjl parsed;
        EXPECT_TRUE(parsed.parse(text.data(), text.size(), "test.anim", mjl::NUMBER_ROWS, ahead));
        return track.read(reader, parsed.getRoot(), &world, ahead);
    };
    const std::string mine = document("mine", ""), other = document("other", "");
    TrackReadAhead ahead(false);
    mjl parsed, unrelated;
    ASSERT_TRUE(parsed.parse(mine.data(), mine.size(), "mine.anim", mjl::NUMBER_ROWS, &ahead));
    ASSERT_TRUE(unrelated.parse(other.data(), other.size(), "other.anim", mjl::NUMBER_ROWS));
    EXPECT_TRUE(ahead.readAny());
    TrackReader reader;
    ASSERT_TRUE(track.read(reader, unrelated.getRoot(), &world, &ahead));
    EXPECT_EQ(track.getParameter(0)->getName(), "other");
    ASSERT_TRUE(track.read(reader, parsed.getRoot(), &world, &ahead));
    EXPECT_EQ(track.getParameter(0)->getName(), "mine");
    // A parameter with a problem is read again, where the problem's place can be named.
    const std::string bad = document("bad", R"(,
        {"kind": 1, "type": "Camera.fov"})");
    TrackReadAhead badAhead(false);
    TrackReader plain, early;
    EXPECT_FALSE(read(bad, nullptr, plain));
    EXPECT_FALSE(read(bad, &badAhead, early));
    ASSERT_EQ(early.problems().size(), 1u);
    EXPECT_EQ(early.problems()[0].line, 3);
    EXPECT_EQ(early.problems()[0].column, plain.problems()[0].column);
    EXPECT_EQ(track.getParameter(0)->getName(), "mine");
}

TEST_F(TrackTest, LoadedTracksAreBoundToTheWorldAndUnregisteredTypesDoNotPlay)
{
    track.setFrameRate(30.0f);
    ASSERT_TRUE(loadText(R"({"version": 1, "begin": 0, "end": 1, "parameters": [
        {"kind": 1, "type": "Light.intensity", "node": {"id": 4, "name": "Lamp"},
         "keys": [[0, 2, 0, 0, 0, 0, 1], [1, 4, 0, 0, 0, 0, 1]], "comment": "ignored"},
        {"kind": 1, "type": "Light.glow", "node": {"id": 4}, "keys": [[0, 9, 0, 0, 0, 0, 1]]}],
        "author": "ignored too"})"));
    EXPECT_EQ(track.getParameter(1)->getReg(), nullptr);
    EXPECT_EQ(track.getFrameRate(), 0.0f); // a file without one has none
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 3.0f);
    EXPECT_EQ(track.getParameter(0)->getName(), "Light.intensity");
    EXPECT_EQ(savedText().find("ignored"), std::string::npos);
}

TEST_F(TrackTest, AFailedLoadNamesThePlaceAndKeepsTheTrack)
{
    mover();
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
        {R"({"version": 1, "begin": 0, "end": 1, "frame_rate": 0, "parameters": []})",
         "Track::load:1:52: frame_rate 0 is not above 0 and at most 1000"},
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(loadText(c.text)) << c.text;
        expectLogged(c.message);
    }
    ASSERT_EQ(track.getNumParameters(), 1);
    track.set(1.0f);
    EXPECT_EQ(cube->getPosition().x, 10.0f);
}

TEST_F(TrackTest, EngineOnlyParametersSurviveUnchangedAndPlayAsNothing)
{
    const char* text = R"({"version": 1, "begin": 0, "end": 2, "parameters": [
        {"kind": 6, "type": "Engine.events", "custom": {"deep": [1, "two", null, true], "row": [1, 2.5]},
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
    EXPECT_EQ(p->getNumKeys(), 3); // as the command-line tool lists it: the file's keys and the time's
    track.setWorld(&world);
    updateAll();
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 1.0f);
    Track* nested = track.getNestedTrack("inner.anim");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(track.getNestedTrack(dir.file("inner.anim").c_str()), nested);
    track.set(3.0f); // past the time component's last key, the nested time holds at 2
    EXPECT_EQ(lamp->getLightIntensity(), 2.0f);
}

// A nested file inside the data folder is saved relative to it, as it is read, so that a project
// can move; any other path is saved exactly as it was given.
TEST_F(TrackTest, NestedFilesInsideTheDataFolderAreSavedRelativeToIt)
{
    TempDir dir, other;
    Engine::get()->setDataPath(dir.path().c_str());
    std::filesystem::create_directory_symlink(dir.path(), other.file("link"));
    const std::string files[][2] = {{dir.file("tracks/./walk.anim"), "tracks/walk.anim"},
                                    {other.file("link/tracks/run.anim"), "tracks/run.anim"},
                                    {"sub/../inner.anim", "sub/../inner.anim"},
                                    {dir.path() + "2/run.anim", dir.path() + "2/run.anim"},
                                    {"/elsewhere/../run.anim", "/elsewhere/../run.anim"}};
    TrackParameterTrack* p = add<TrackParameterTrack>();
    for (int k = 0; k < 5; ++k)
        p->getNameParameter()->appendKey(static_cast<float>(k), files[k][0].c_str());
    Package root;
    ASSERT_TRUE(track.save(&root));
    const Package* saved = root.find("parameters")->getChild(0)->find("file");
    ASSERT_EQ(saved->getNumChildren(), 5);
    for (int k = 0; k < 5; ++k)
        EXPECT_STREQ(saved->getChild(k)->getChild(1)->getString(), files[k][1].c_str());
}

// A track that plays itself through its nested tracks, and a nested file that is missing, are
// reported once, not on every frame, and the rest of the track plays on.
TEST_F(TrackTest, ANestedTrackThatPlaysItselfOrIsMissingIsReportedOnce)
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
    TrackParameterTrack* p = add<TrackParameterTrack>();
    p->getNameParameter()->appendKey(0.0f, "/nonexistent/kuvo/missing.anim");
    ASSERT_TRUE(track.bindNode(p, &world, -1, "", -1, "", "Track.play"));
    track.set(0.25f);
    expectLogged("missing.anim");
    track.set(0.5f);
    EXPECT_EQ(log().countAtLeast(jLogLevel::Warning), 0u);
}

} // namespace
