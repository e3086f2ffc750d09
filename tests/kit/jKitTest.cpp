#include "kit/jKit.h"

#include <cstring>
#include <string>

#include "support/Scenario.h"

class jKitTest : public Scenario {
protected:
    void TearDown() override
    {
        jKit::setDataPath(""); // gives the folder's text back before the balance is checked
        Scenario::TearDown();
    }
};

TEST_F(jKitTest, FileNameIsTheTextAfterTheLastSeparator)
{
    EXPECT_EQ(jKit::getFileName("data/tracks/walk.anim"), "walk.anim");
    EXPECT_EQ(jKit::getFileName("C:\\scenes\\town\\run.anim"), "run.anim");
    EXPECT_EQ(jKit::getFileName("mixed\\dirs/last.cycle.anim"), "last.cycle.anim");
    EXPECT_EQ(jKit::getFileName("walk.anim"), "walk.anim");
    EXPECT_EQ(jKit::getFileName("data/tracks/"), "");
    EXPECT_EQ(jKit::getFileName(""), "");
}

TEST_F(jKitTest, NormalisingTidiesSeparatorsAndDots)
{
    EXPECT_EQ(jKit::normalizePath("a\\b\\c.anim"), "a/b/c.anim");
    EXPECT_EQ(jKit::normalizePath("/a//b/./c/"), "/a/b/c");
    EXPECT_EQ(jKit::normalizePath("/a/b/../c"), "/a/c");
    EXPECT_EQ(jKit::normalizePath("/.."), "/");
    EXPECT_EQ(jKit::normalizePath("a/../../b"), "../b");
    EXPECT_EQ(jKit::normalizePath("./"), "");
}

TEST_F(jKitTest, PathsInsideTheDataFolderBecomeRelative)
{
    jKit::setDataPath("/home/anna/kuvo/data/");
    EXPECT_EQ(jKit::getDataPath(), "/home/anna/kuvo/data");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/data/tracks/walk.anim"), "tracks/walk.anim");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/data/../data/a.anim"), "a.anim");
    EXPECT_EQ(jKit::convertToLocalPath("\\home\\anna\\kuvo\\data\\meshes\\box.mesh"), "meshes/box.mesh");
}

TEST_F(jKitTest, PathsOutsideTheDataFolderStayAsTheyAre)
{
    jKit::setDataPath("/home/anna/kuvo/data");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/database/x.anim"), "/home/anna/kuvo/database/x.anim");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/data"), "/home/anna/kuvo/data");
    EXPECT_EQ(jKit::convertToLocalPath("D:\\walk.anim"), "D:/walk.anim");
    jKit::setDataPath("");
    EXPECT_EQ(jKit::convertToLocalPath("/home/anna/kuvo/data/x.anim"), "/home/anna/kuvo/data/x.anim");
}

TEST_F(jKitTest, Crc32MatchesKnownVectors)
{
    EXPECT_EQ(jKit::crc32("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(jKit::crc32("", 0), 0u);
    EXPECT_EQ(jKit::crc32("a", 1), 0xE8B7BE43u);
    const char* fox = "The quick brown fox jumps over the lazy dog";
    EXPECT_EQ(jKit::crc32(fox, std::strlen(fox)), 0x414FA339u);
}

TEST_F(jKitTest, Crc32ContinuesOverPieces)
{
    const char* text = "The quick brown fox jumps over the lazy dog";
    uint32_t head = jKit::crc32(text, 10);
    EXPECT_EQ(jKit::crc32(text + 10, std::strlen(text) - 10, head), 0x414FA339u);
    EXPECT_NE(jKit::crc32("123456780", 9), 0xCBF43926u);
}
