#include "kit/jKit.h"

#include "support/Scenario.h"

class jKitTest : public Scenario {
protected:
    void TearDown() override
    {
        jKit::setDataPath(""); // gives the folder's text back before the balance is checked
        Scenario::TearDown();
    }
};

// String-file keys show the name of the file the user picked, whichever separators its path uses.
TEST_F(jKitTest, FileNameIsTheTextAfterTheLastSeparator)
{
    EXPECT_EQ(jKit::getFileName("data/tracks/walk.anim"), "walk.anim");
    EXPECT_EQ(jKit::getFileName("mixed\\dirs/last.cycle.anim"), "last.cycle.anim");
    EXPECT_EQ(jKit::getFileName("walk.anim"), "walk.anim");
    EXPECT_EQ(jKit::getFileName("data/tracks/"), "");
}

// Files inside the data folder are stored relative to it, so tracks move with the project; other
// paths, and every path while no data folder is set, are stored whole and tidied.
TEST_F(jKitTest, PathsInsideTheDataFolderBecomeRelative)
{
    jKit::setDataPath("/home/anna/kuvo/data/");
    const char* cases[][2] = {
        {"/home/anna/kuvo/data/tracks/walk.anim", "tracks/walk.anim"},
        {"/home/anna/kuvo/data/../data/./a.anim", "a.anim"},
        {"\\home\\anna\\kuvo\\data\\meshes\\box.mesh", "meshes/box.mesh"},
        {"/home/anna/kuvo/database/x.anim", "/home/anna/kuvo/database/x.anim"},
        {"/home/anna/kuvo/data", "/home/anna/kuvo/data"},
        {"/home//../../x.anim", "/x.anim"},
        {"a/../../../b/", "../../b"},
        {"D:\\walk.anim", "D:/walk.anim"},
    };
    for (const auto& [path, local] : cases)
        EXPECT_EQ(jKit::convertToLocalPath(path), local) << path;
    jKit::setDataPath("");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/data/x.anim"), "/home/anna/kuvo/data/x.anim");
}

TEST_F(jKitTest, Crc32MatchesTheStandardCheckValueAlsoOverPieces)
{
    EXPECT_EQ(jKit::crc32("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(jKit::crc32("6789", 4, jKit::crc32("12345", 5)), 0xCBF43926u);
}
