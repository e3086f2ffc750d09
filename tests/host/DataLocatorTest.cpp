#include "DataLocator.h"

#include <cstdlib>
#include <filesystem>

#include "support/Scenario.h"

namespace {

// Each scenario starts without the data override and restores it afterwards.
class DataLocatorTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        const char* old = std::getenv(DataLocator::DATA_VARIABLE);
        m_had = old != nullptr;
        m_saved = old ? old : "";
        unsetenv(DataLocator::DATA_VARIABLE);
    }
    void TearDown() override
    {
        if (m_had)
            setenv(DataLocator::DATA_VARIABLE, m_saved.c_str(), 1);
        else
            unsetenv(DataLocator::DATA_VARIABLE);
        Scenario::TearDown();
    }

    // Makes dir/relative a data folder and returns it.
    static std::string makeData(const TempDir& dir, const std::string& relative)
    {
        std::filesystem::create_directories(dir.file(relative + "/samples"));
        EXPECT_TRUE(writeFileText(dir.file(relative + "/" + DataLocator::MARKER), "{}"));
        return dir.file(relative);
    }

    bool m_had = false;
    std::string m_saved;
};

TEST_F(DataLocatorTest, InstalledDataBesideTheProgramsFolderComesFirst)
{
    TempDir dir;
    std::string installed = makeData(dir, "share/kuvo");
    std::string error;
    EXPECT_EQ(DataLocator::dataDir(dir.file("bin"), error), installed);
    EXPECT_EQ(error, "");
}

TEST_F(DataLocatorTest, ABuildFolderAnywhereFindsTheSourceData)
{
    TempDir dir;
    std::string error;
    EXPECT_EQ(DataLocator::dataDir(dir.file("elsewhere/build/bin"), error), KUVO_DATA_DIR);
    EXPECT_EQ(DataLocator::executableDir(), std::filesystem::canonical(KUVO_BIN_DIR).string());
    EXPECT_EQ(DataLocator::dataDir(DataLocator::executableDir(), error), KUVO_DATA_DIR);
}

TEST_F(DataLocatorTest, TheEnvironmentOverridesAndMustNameADataFolder)
{
    TempDir dir;
    std::string own = makeData(dir, "own");
    makeData(dir, "share/kuvo");
    std::string error;
    setenv(DataLocator::DATA_VARIABLE, (own + "/").c_str(), 1);
    EXPECT_EQ(DataLocator::dataDir(dir.file("bin"), error), own);
    setenv(DataLocator::DATA_VARIABLE, dir.file("share").c_str(), 1);
    EXPECT_EQ(DataLocator::dataDir(dir.file("bin"), error), "");
    EXPECT_EQ(error, "KUVO_DATA_DIR names " + dir.file("share") + ", which has no samples/demo.world");
}

} // namespace
