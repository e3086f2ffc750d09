#pragma once

#include <string>

#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/Scenario.h"

inline std::string demoWorldPath() { return std::string(KUVO_DATA_DIR) + "/samples/demo.world"; }

// A scenario on the sample world, loaded with its materials; no current world is left behind.
class DemoWorld : public Scenario {
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
    static MaterialManager* materials() { return Engine::get()->getMaterialManager(); }
    static Material* material(const char* name) { return materials()->get(name); }
    // Returns the first component of the named material's tagged parameter.
    static float value(const char* name, const char* tag)
    {
        Material* m = material(name);
        return m->getParameterByID(m->findParameterIDByTag(tag))->getValue().x;
    }

    World m_world;
};
