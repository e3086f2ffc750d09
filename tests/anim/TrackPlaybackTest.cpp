#include "anim/TrackPlayback.h"

#include <vector>

#include "TrackScene.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterToggle.h"

// Track::set plays from a layout built at the first set and rebuilt after changes; every test
// plays once, changes something, and checks that the next set shows the change. Frame after frame
// over Bezier keys, playback is checked against the reference in TrackCurveTest.

namespace {

using TrackPlaybackTest = TrackScene;

TEST_F(TrackPlaybackTest, KeysEditedAfterASetArePlayedByTheNextSet)
{
    TrackParameterFloat* d = dimmer();
    TrackParameterVec3* p = mover();
    cube->setPosition(vec3(0.0f, 0.0f, 7.0f));
    updateAll();
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 5.0f);
    EXPECT_EQ(cube->getPosition(), vec3(5.0f, 10.0f, 7.0f));
    // Edited in place and updated, as the editor does, and keys added to a component without any.
    d->getKeys()[1].value = 20.0f;
    d->update();
    p->getComponent(VEC3_SWIZZLE_Z)->appendKey(0.0f, -1.0f, vec4_zero, TRACK_KEY_CONSTANT);
    p->update();
    track.set(0.5f);
    EXPECT_EQ(lamp->getLightIntensity(), 10.0f);
    EXPECT_EQ(cube->getPosition(), vec3(5.0f, 10.0f, -1.0f));
    // Refilled as a whole: the old segments are not played on.
    d->clearKeys();
    d->appendKey(0.0f, 4.0f, vec4_zero, TRACK_KEY_CONSTANT);
    d->update();
    track.set(0.25f);
    EXPECT_EQ(lamp->getLightIntensity(), 4.0f);
    d->clearKeys();
    lamp->setLightIntensity(1.5f);
    track.set(0.25f);
    EXPECT_EQ(lamp->getLightIntensity(), 1.5f); // no keys: nothing is played
}

TEST_F(TrackPlaybackTest, SwitchingParametersAndComponentsOffAndOnAfterASet)
{
    TrackParameterVec3* p = mover();
    TrackParameterFloat* d = dimmer();
    track.set(0.5f);
    p->setEnabled(false);
    d->setEnabled(false);
    cube->setPosition(vec3(1.0f, 2.0f, 3.0f));
    lamp->setLightIntensity(1.0f);
    track.set(0.75f);
    EXPECT_EQ(cube->getPosition(), vec3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(lamp->getLightIntensity(), 1.0f);

    p->setEnabled(true);
    p->setEnabled(VEC3_SWIZZLE_X, false);
    track.set(0.75f);
    EXPECT_EQ(cube->getPosition(), vec3(1.0f, 15.0f, 3.0f));
    // The evaluated value still shows the switched-off component's keys; z, without keys, is the cube's.
    bool found = false;
    EXPECT_EQ(p->getTrackValue(0.75f, found), vec3(7.5f, 15.0f, 3.0f));
    // Through the component itself, as the editor's rows do.
    p->setEnabled(VEC3_SWIZZLE_X, true);
    p->getComponent(VEC3_SWIZZLE_Y)->setEnabled(false);
    track.set(0.25f);
    EXPECT_EQ(cube->getPosition(), vec3(2.5f, 15.0f, 3.0f));
    d->setEnabled(true);
    track.set(0.25f);
    EXPECT_EQ(lamp->getLightIntensity(), 2.5f);
}

// Rebound through the track, given another node id directly, or played in another world after a
// set, a parameter plays its new target at the next set and leaves the old one as it was.
TEST_F(TrackPlaybackTest, RetargetedParametersPlayTheirNewTargetAtTheNextSet)
{
    TrackParameterVec3* p = mover();
    TrackParameterFloat* d = dimmer();
    Node* other = world.addNode(LIGHT_POINT, "Other", 8);
    track.set(1.0f);
    ASSERT_TRUE(track.bindNode(p, &world, 5, "Camera", -1, "", "Node.position"));
    d->setNodeID(8);
    track.set(0.5f);
    EXPECT_EQ(camera->getPosition(), vec3(5.0f, 10.0f, 0.0f));
    EXPECT_EQ(cube->getPosition(), vec3(10.0f, 20.0f, 0.0f));
    EXPECT_EQ(other->getLightIntensity(), 5.0f);
    EXPECT_EQ(lamp->getLightIntensity(), 10.0f);
    ASSERT_TRUE(track.bindNode(p, &world, 5, "Camera", -1, "", "Node.scale"));
    track.set(0.0f);
    EXPECT_EQ(camera->getScale(), vec3(0.0f, 0.0f, 1.0f));
    EXPECT_EQ(camera->getPosition(), vec3(5.0f, 10.0f, 0.0f));
    World next;
    Node* lamp2 = next.addNode(LIGHT_POINT, "Lamp", 8);
    track.setWorld(&next);
    track.set(0.2f);
    EXPECT_EQ(lamp2->getLightIntensity(), 2.0f);
    EXPECT_EQ(other->getLightIntensity(), 0.0f);
    track.setWorld(&world);
    next.release();
}

// A parameter removed after a set, or unbound, is no longer played and reports the value it played
// last; one added after a set starts playing.
TEST_F(TrackPlaybackTest, RemovedAndUnboundParametersStopAndAddedOnesStartPlaying)
{
    TrackParameterFloat* d = dimmer();
    TrackParameterVec3* p = mover();
    cube->setPosition(vec3(0.0f, 0.0f, 7.0f)); // z has no keys: played as the cube has it
    updateAll();
    track.set(0.5f);
    track.set(0.25f);
    ASSERT_TRUE(track.removeParameter(d));
    ASSERT_TRUE(track.bindNode(p, &world, -1, "", -1, "", "Node.position"));
    track.set(0.75f);
    EXPECT_EQ(lamp->getLightIntensity(), 2.5f);
    EXPECT_EQ(cube->getPosition(), vec3(2.5f, 5.0f, 7.0f));
    EXPECT_EQ(d->getValue(), 2.5f);
    EXPECT_EQ(p->getValue(), vec3(2.5f, 5.0f, 7.0f));
    jDelete(d, FILE_TAG, __LINE__, "TrackPlaybackTest");

    TrackParameterColor* color = add<TrackParameterColor>();
    color->appendKey(0.0f, vec4(0.0f, 1.0f, 0.0f, 1.0f));
    color->update();
    ASSERT_TRUE(track.bindNode(color, &world, 4, "Lamp", -1, "", "Light.color"));
    track.set(1.0f);
    EXPECT_EQ(lamp->getLightColor(), vec4(0.0f, 1.0f, 0.0f, 1.0f));
}

// A colour plays its four channels with the float curves: the lamp receives exactly what the
// parameter's own evaluation gives, before, on and between the keys and after the last, follows
// keys edited after a set, and hands the colour played last back when it is unbound.
//   keys: red at 0.1, (0.2, 0.9, 0.4, 0.5) at 0.35, two keys at 0.6, blue at 1.3
TEST_F(TrackPlaybackTest, ColoursPlayExactlyWhatTheyEvaluateTo)
{
    TrackParameterColor* color = add<TrackParameterColor>();
    color->appendKey(0.1f, vec4(1.0f, 0.0f, 0.0f, 1.0f));
    color->appendKey(0.35f, vec4(0.2f, 0.9f, 0.4f, 0.5f));
    color->appendKey(0.6f, vec4(0.7f, 0.1f, 0.3f, 1.0f));
    color->appendKey(0.6f, vec4(0.0f, 0.6f, 0.8f, 0.25f));
    color->appendKey(1.3f, vec4(0.0f, 0.0f, 1.0f, 1.0f));
    ASSERT_TRUE(track.bindNode(color, &world, 4, "Lamp", -1, "", "Light.color"));
    updateAll();
    bool found = false;
    for (float t : {-1.0f, 0.0f, 0.1f, 0.2f, 0.35f, 0.5999f, 0.6f, 0.61f, 1.0f, 1.3f, 5.0f}) {
        track.set(t);
        ASSERT_EQ(lamp->getLightColor(), color->getTrackValue(t, found)) << "t=" << t;
    }
    track.set(0.6f);
    EXPECT_EQ(lamp->getLightColor(), vec4(0.0f, 0.6f, 0.8f, 0.25f)); // the later of two keys at one time
    track.set(0.225f);
    vec4 halfway = lamp->getLightColor();
    EXPECT_NEAR(halfway.x, 0.6f, 1e-6f);
    EXPECT_NEAR(halfway.y, 0.45f, 1e-6f);
    EXPECT_NEAR(halfway.w, 0.75f, 1e-6f);

    color->getKeys()[0].value = vec4(0.0f, 0.0f, 0.0f, 0.0f);
    color->update();
    track.set(0.0f);
    EXPECT_EQ(lamp->getLightColor(), vec4(0.0f, 0.0f, 0.0f, 0.0f));

    track.set(1.3f);
    ASSERT_TRUE(track.bindNode(color, &world, -1, "", -1, "", "Light.color"));
    EXPECT_EQ(color->getValue(), vec4(0.0f, 0.0f, 1.0f, 1.0f));
}

// A track large enough that a frame is played on two threads, with outputs written while the
// worker still plays: every output is written, in track order (where two parameters animate the
// same property, the later one's value stays), and a parameter that plays through its own apply
// (the toggle, in the middle) is played too.
TEST_F(TrackPlaybackTest, LargeTracksWriteEveryOutputInTrackOrder)
{
    const int LAMPS = 1000; // a float and a colour each: 5,000 channels
    auto constant = [this](float value) {
        TrackParameterFloat* p = add<TrackParameterFloat>();
        p->appendKey(0.0f, value, vec4_zero, TRACK_KEY_CONSTANT);
        return p;
    };
    for (int i = 0; i < LAMPS; ++i)
        world.addNode(LIGHT_POINT, "", 100 + i);
    ASSERT_TRUE(track.bindNode(constant(-2.0f), &world, 100 + LAMPS - 1, "", -1, "", "Light.intensity"));
    std::vector<TrackParameterFloat*> intensities;
    std::vector<TrackParameterColor*> colors;
    for (int i = 0; i < LAMPS; ++i) {
        TrackParameterFloat* p = add<TrackParameterFloat>();
        p->appendKey(0.0f, static_cast<float>(i), vec4_zero, TRACK_KEY_LINEAR);
        p->appendKey(1.0f, static_cast<float>(i + 1), vec4(-0.2f, 0.5f, 0.2f, 0.5f), TRACK_KEY_BREAK);
        p->appendKey(2.0f, 0.0f, vec4(-0.3f, 0.0f, 0.3f, 0.0f), TRACK_KEY_BREAK);
        ASSERT_TRUE(track.bindNode(p, &world, 100 + i, "", -1, "", "Light.intensity"));
        TrackParameterColor* c = add<TrackParameterColor>();
        c->appendKey(0.0f, vec4(0.0f, 0.001f * i, 1.0f, 1.0f));
        c->appendKey(1.5f, vec4(1.0f, 0.0f, 0.001f * i, 0.5f));
        ASSERT_TRUE(track.bindNode(c, &world, 100 + i, "", -1, "", "Light.color"));
        intensities.push_back(p);
        colors.push_back(c);
        if (i == LAMPS / 3) {
            TrackParameterToggle* visible = add<TrackParameterToggle>();
            visible->appendKey(0.0f, true);
            visible->appendKey(0.5f, false);
            ASSERT_TRUE(track.bindNode(visible, &world, 3, "Cube", -1, "", "Node.enabled"));
        }
    }
    ASSERT_TRUE(track.bindNode(constant(-1.0f), &world, 100, "", -1, "", "Light.intensity"));
    updateAll();
    bool found = false;
    for (float t : {0.25f, 0.75f, 1.25f, 0.1f, 3.0f}) {
        track.set(t);
        EXPECT_EQ(cube->isEnabled(), t < 0.5f) << "t=" << t;
        EXPECT_EQ(world.getNodeByID(100)->getLightIntensity(), -1.0f) << "t=" << t;
        for (int i = 1; i < LAMPS; ++i) {
            const Node* lamp = world.getNodeByID(100 + i);
            ASSERT_EQ(lamp->getLightIntensity(), intensities[i]->getTrackValue(t, found)) << "lamp " << i << " t=" << t;
            ASSERT_EQ(lamp->getLightColor(), colors[i]->getTrackValue(t, found)) << "lamp " << i << " t=" << t;
        }
    }
}

} // namespace
