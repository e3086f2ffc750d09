#include <string>

#include "anim/Track.h"
#include "anim/TrackParameterVec3.h"
#include "anim/TrackReader.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "scene/Engine.h"
#include "scene/MaterialManager.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/Scenario.h"

namespace {

const char* const SAMPLES[] = {"demo.anim", "pulse.anim", "lamps.anim"};

// The sample tracks in data/samples, played in the sample scene.
class SampleTracksTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        Engine::get()->setDataPath(KUVO_DATA_DIR);
        ASSERT_TRUE(world.load(sample("demo.world").c_str()));
    }

    void TearDown() override
    {
        track.release();
        world.release();
        Engine::get()->setDataPath(jString());
        Scenario::TearDown();
    }

    static std::string sample(const char* name) { return std::string(KUVO_DATA_DIR) + "/samples/" + name; }

    World world;
    Track track;
};

// Every sample reads in strict mode, binds every parameter but the engine-only ones in the sample
// scene, and saves back byte for byte.
TEST_F(SampleTracksTest, EverySampleIsValidBoundAndRoundTripsByteForByte)
{
    for (const char* name : SAMPLES) {
        std::string text = readFileText(sample(name));
        mjl reader;
        ASSERT_TRUE(reader.parse(text.data(), text.size(), name)) << name;
        TrackReader strict(true);
        ASSERT_TRUE(track.read(strict, reader.getRoot(), &world)) << name;
        for (int i = 0; i < track.getNumParameters(); ++i) {
            const TrackParameter* p = track.getParameter(i);
            EXPECT_EQ(p->isBound(), p->getType() != TRACK_PARAMETER_OPAQUE) << name << " " << p->getName().c_str();
        }
        Package root;
        ASSERT_TRUE(track.save(&root));
        std::string saved;
        ASSERT_TRUE(mjl::write(&root, saved));
        EXPECT_EQ(saved, text) << name;
    }
}

TEST_F(SampleTracksTest, TogetherTheSamplesCoverEveryKindKeyTypeAndBinding)
{
    bool kinds[10] = {};
    bool node = false, internal = false, material = false, global = false;
    for (const char* name : SAMPLES) {
        ASSERT_TRUE(track.loadFile(sample(name).c_str(), &world));
        for (int i = 0; i < track.getNumParameters(); ++i) {
            const TrackParameter* p = track.getParameter(i);
            kinds[p->getType()] = true;
            node = node || p->getNodeID() != -1;
            internal = internal || p->getInternalNodeID() != -1;
            material = material || p->getMaterialName().nempty();
            global = global || (p->getReg() && p->getReg()->getBinding() == TrackReg::BIND_GLOBAL);
        }
    }
    for (int kind = 0; kind < 10; ++kind)
        EXPECT_TRUE(kinds[kind]) << kind;
    EXPECT_TRUE(node && internal && material && global);
    std::string all;
    for (const char* name : SAMPLES)
        all += readFileText(sample(name));
    // A curve record ends with its key type, the only integer besides toggle values.
    for (int type = 0; type < 5; ++type) {
        std::string end = ", " + std::to_string(type) + "]";
        bool found = all.find(end + ",\n") != std::string::npos || all.find(end + "\n") != std::string::npos;
        EXPECT_TRUE(found) << "key type " << type;
    }
}

TEST_F(SampleTracksTest, TheDemoLoopMovesTheScene)
{
    ASSERT_TRUE(track.loadFile(sample("demo.anim").c_str(), &world));
    EXPECT_TRUE(track.isLoop());
    Node* crate = world.getNodeByName("Crate");
    Node* pillar = world.getNodeByName("Pillar");
    Node* bulb = world.getNodeByID(15);
    ASSERT_TRUE(crate && pillar && bulb);
    track.set(0.0f);
    vec3 start = crate->getPosition();
    EXPECT_TRUE(crate->isEnabled());
    EXPECT_EQ(crate->getMaterial(), "glass");
    track.set(0.75f);
    EXPECT_GT(crate->getPosition().y, start.y + 1.0f);
    EXPECT_FLOAT_EQ(pillar->getRotation().y, 45.0f + 360.0f * 0.75f / 6.0f);
    EXPECT_NE(world.getExposure(), 1.25);
    track.set(2.5f);
    EXPECT_EQ(crate->getMaterial(), "metal");
    // The nested pulse track drives the second lamp's bulb.
    EXPECT_NE(bulb->getLightIntensity(), 3.0f);
}

} // namespace
