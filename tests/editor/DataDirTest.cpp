#include "editor/DataDir.h"

#include "support/Scenario.h"

#include <cstdlib>

namespace {

class DataDirTest : public Scenario {
protected:
    void TearDown() override
    {
        unsetenv("KUVO_DATA_DIR");
        DataDir::set(KUVO_DATA_DIR);
        Scenario::TearDown();
    }
};

} // namespace

TEST_F(DataDirTest, EditorPathsResolveUnderTheRoot)
{
    DataDir::set("/opt/kuvo/data/");
    EXPECT_EQ(DataDir::get(), "/opt/kuvo/data");
    EXPECT_EQ(DataDir::resolve("data/core/editor/gui/key.png"), "/opt/kuvo/data/core/editor/gui/key.png");
    EXPECT_EQ(DataDir::resolve("scenes/demo.world"), "/opt/kuvo/data/scenes/demo.world");
    EXPECT_EQ(DataDir::resolve("/home/me/walk.anim"), "/home/me/walk.anim");
    EXPECT_EQ(DataDir::iconDir(), "/opt/kuvo/data/core/editor/gui/");
}

TEST_F(DataDirTest, EnvironmentGivesTheRootUnlessOneWasSet)
{
    DataDir::set("");
    setenv("KUVO_DATA_DIR", "/srv/kuvo-data", 1);
    EXPECT_EQ(DataDir::get(), "/srv/kuvo-data");
    DataDir::set("/elsewhere");
    EXPECT_EQ(DataDir::get(), "/elsewhere");
    DataDir::set(nullptr);
    unsetenv("KUVO_DATA_DIR");
    EXPECT_EQ(DataDir::get(), "data");
    EXPECT_EQ(DataDir::resolve("data/core/editor/locale/en.json"), "data/core/editor/locale/en.json");
}
