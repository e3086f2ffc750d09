#include "scene/Engine.h"

#include "support/Scenario.h"

using EngineTest = Scenario;

TEST_F(EngineTest, IsOneSharedEngine)
{
    EXPECT_EQ(Engine::get(), Engine::get());
    EXPECT_EQ(Engine::get()->getMaterialManager(), Engine::get()->getMaterialManager());
    EXPECT_STREQ(Engine::get()->getEditorIconPath(), "data/core/editor/gui/");
}

TEST_F(EngineTest, HoldsTheFrameTimeAndDataPath)
{
    Engine* engine = Engine::get();
    engine->setFrameTime(1.0f / 60.0f);
    EXPECT_EQ(engine->getFrameTime(), 1.0f / 60.0f);
    engine->setFrameTime(0.0f);
    engine->setDataPath("/srv/project/data");
    EXPECT_EQ(engine->getDataPath(), "/srv/project/data");
    // Resetting to empty must free the text, or this scenario would end with a live allocation.
    engine->setDataPath("");
    EXPECT_TRUE(engine->getDataPath().empty());
}
