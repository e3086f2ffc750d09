#pragma once

#include <string>

#include "anim/Track.h"
#include "anim/TrackParameterFloat.h"
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

// A small scene to play tracks in: a mesh, a light, a camera and a prefab with an internal wheel; a
// base material "Metal" with a derived "Rusty".
class TrackScene : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        cube = world.addNode(OBJECT_MESH, "Cube", 3);
        lamp = world.addNode(LIGHT_POINT, "Lamp", 4);
        camera = world.addNode(CAMERA, "Camera", 5);
        car = world.addNode(OBJECT_PREFAB, "Car", 10);
        wheel = world.addNode(OBJECT_MESH, "Wheel", 11, car);
        metal = jNew<Material>(FILE_TAG, __LINE__, "TrackScene", jString("Metal"));
        metal->addParameter("roughness", MaterialParameter::SLIDER, 1, vec4(0.5f, 0.0f, 0.0f, 0.0f));
        metal->addParameter("tint", MaterialParameter::COLOR, 4, vec4(1.0f, 1.0f, 1.0f, 1.0f));
        rusty = jNew<Material>(FILE_TAG, __LINE__, "TrackScene", jString("Rusty"), metal);
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

    // Adds a new parameter of type P to the track.
    template <class P>
    P* add()
    {
        P* p = jNew<P>(FILE_TAG, __LINE__, "TrackScene");
        track.addParameter(p);
        return p;
    }

    // Compiles every parameter's keys, as the editor does after it edited them.
    void updateAll()
    {
        for (int i = 0; i < track.getNumParameters(); ++i)
            track.getParameter(i)->update();
    }

    // The lamp's intensity from 0 at t=0 to 10 at t=1.
    TrackParameterFloat* dimmer()
    {
        TrackParameterFloat* p = add<TrackParameterFloat>();
        p->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->appendKey(1.0f, 10.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->update();
        EXPECT_TRUE(track.bindNode(p, &world, 4, "Lamp", -1, "", "Light.intensity"));
        return p;
    }

    // The cube's position: x from 0 to 10 and y from 0 to 20 over one second; z has no keys.
    TrackParameterVec3* mover()
    {
        TrackParameterVec3* p = add<TrackParameterVec3>();
        p->getComponent(VEC3_SWIZZLE_X)->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->getComponent(VEC3_SWIZZLE_X)->appendKey(1.0f, 10.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->getComponent(VEC3_SWIZZLE_Y)->appendKey(0.0f, 0.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->getComponent(VEC3_SWIZZLE_Y)->appendKey(1.0f, 20.0f, vec4_zero, TRACK_KEY_LINEAR);
        p->update();
        EXPECT_TRUE(track.bindNode(p, &world, 3, "Cube", -1, "", "Node.position"));
        return p;
    }

    // Parses text as a track, as the file loaders do; returns whether it loaded.
    bool loadText(const std::string& text)
    {
        mjl reader;
        if (!reader.parse(text.data(), text.size(), "test.anim", mjl::NUMBER_ROWS))
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

    static constexpr const char* FILE_TAG = "tests/anim/TrackScene";

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
