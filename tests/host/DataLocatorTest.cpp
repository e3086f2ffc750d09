#include "DataLocator.h"

#include <filesystem>

#include "support/Scenario.h"

using DataLocatorTest = Scenario;

TEST_F(DataLocatorTest, FindsTheDataInAParentOfTheStartFolder)
{
    TempDir dir;
    std::filesystem::create_directories(dir.file("data/samples"));
    std::filesystem::create_directories(dir.file("build/default/bin"));
    ASSERT_TRUE(writeFileText(dir.file(DataLocator::MARKER), "{}"));
    std::string root = std::filesystem::canonical(dir.path()).string();
    EXPECT_EQ(DataLocator::findRoot(dir.file("build/default/bin")), root);
    EXPECT_EQ(DataLocator::findRoot(dir.path()), root);
}

TEST_F(DataLocatorTest, NearestDataFolderWins)
{
    TempDir dir;
    std::filesystem::create_directories(dir.file("data/samples"));
    std::filesystem::create_directories(dir.file("install/data/samples"));
    ASSERT_TRUE(writeFileText(dir.file(DataLocator::MARKER), "{}"));
    ASSERT_TRUE(writeFileText(dir.file(std::string("install/") + DataLocator::MARKER), "{}"));
    EXPECT_EQ(DataLocator::findRoot(dir.file("install")), std::filesystem::canonical(dir.file("install")).string());
}

TEST_F(DataLocatorTest, FolderWithoutTheSamplesIsNotTheDataFolder)
{
    TempDir dir;
    std::filesystem::create_directories(dir.file("data/samples"));
    EXPECT_EQ(DataLocator::findRoot(dir.file("data/samples")), "");
    EXPECT_EQ(DataLocator::findRoot(""), "");
}

TEST_F(DataLocatorTest, TheTestProgramFindsTheRepositoryData)
{
    EXPECT_EQ(DataLocator::executableDir(), std::filesystem::canonical(KUVO_BIN_DIR).string());
    std::string root = DataLocator::findRoot(DataLocator::executableDir());
    EXPECT_EQ(root + "/data", std::filesystem::canonical(KUVO_DATA_DIR).string());
}
