#include "io/mjl.h"

#include <filesystem>
#include <limits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "support/Scenario.h"

namespace {

class AtomicSave : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        doc.addString("name", "walk");
        doc.addArray("keys")->addArray(nullptr)->addDouble(nullptr, 0.5);
    }
    void TearDown() override
    {
        doc.clear();
        Scenario::TearDown();
    }

    // The names of the entries of a folder, sorted.
    static std::string entries(const std::string& folder)
    {
        std::string names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
            names += entry.path().filename().string() + " ";
        return names;
    }

    TempDir dir;
    Package doc;
};

const char OLD_CONTENT[] = "{\"old\": true}\n";

} // namespace

TEST_F(AtomicSave, WritesTheCanonicalTextAndReadsBackEqual)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(mjl::save(path.c_str(), &doc));
    EXPECT_EQ(readFileText(path), "{\n  \"name\": \"walk\",\n  \"keys\": [\n    [0.5]\n  ]\n}\n");
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
    mjl reader;
    ASSERT_TRUE(reader.open(path.c_str()));
    EXPECT_TRUE(reader.getRoot()->equals(doc));
}

TEST_F(AtomicSave, ReplacesAnExistingFileAndKeepsItsPermissions)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(writeFileText(path, OLD_CONTENT));
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_TRUE(mjl::save(path.c_str(), &doc));
    EXPECT_NE(readFileText(path), OLD_CONTENT);
    struct stat info;
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
}

TEST_F(AtomicSave, SaveOpenSaveIsByteIdentical)
{
    std::string first = dir.file("first.json");
    std::string second = dir.file("second.json");
    ASSERT_TRUE(mjl::save(first.c_str(), &doc));
    mjl reader;
    ASSERT_TRUE(reader.open(first.c_str()));
    ASSERT_TRUE(mjl::save(second.c_str(), reader.getRoot()));
    EXPECT_EQ(readFileText(second), readFileText(first));
}

TEST_F(AtomicSave, AMissingFolderFailsNamingThePathAndTheReason)
{
    std::string path = dir.file("missing/walk.anim");
    EXPECT_FALSE(mjl::save(path.c_str(), &doc));
    expectLogged("mjl::save:" + path + ": cannot create a temporary file beside it: No such file or directory");
    EXPECT_EQ(entries(dir.path()), "");
}

TEST_F(AtomicSave, ATargetThatIsAFolderIsLeftAloneAndNoTemporaryFileRemains)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(std::filesystem::create_directory(path));
    ASSERT_TRUE(writeFileText(path + "/inside.txt", OLD_CONTENT));
    EXPECT_FALSE(mjl::save(path.c_str(), &doc));
    expectLogged("mjl::save:" + path + ": cannot replace the file: Is a directory");
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
    EXPECT_EQ(readFileText(path + "/inside.txt"), OLD_CONTENT);
}

TEST_F(AtomicSave, AFolderWithoutWritePermissionLeavesTheOldFile)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not stop root";
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(writeFileText(path, OLD_CONTENT));
    ASSERT_EQ(chmod(dir.path().c_str(), 0555), 0);
    EXPECT_FALSE(mjl::save(path.c_str(), &doc));
    chmod(dir.path().c_str(), 0755);
    expectLogged("mjl::save:" + path + ": cannot create a temporary file beside it: Permission denied");
    EXPECT_EQ(readFileText(path), OLD_CONTENT);
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
}

TEST_F(AtomicSave, ANonFiniteNumberFailsBeforeTouchingTheDisk)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(writeFileText(path, OLD_CONTENT));
    doc.find("keys")->getChild(0)->addDouble(nullptr, std::numeric_limits<double>::infinity());
    EXPECT_FALSE(mjl::save(path.c_str(), &doc));
    expectLogged("mjl::save:" + path + ": cannot write the document: keys[0][1] is not a finite number");
    EXPECT_EQ(readFileText(path), OLD_CONTENT);
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
}

TEST_F(AtomicSave, ARelativePathSavesInTheCurrentFolder)
{
    std::string previous = std::filesystem::current_path().string();
    std::filesystem::current_path(dir.path());
    bool saved = mjl::save("relative.json", &doc);
    std::filesystem::current_path(previous);
    ASSERT_TRUE(saved);
    EXPECT_EQ(entries(dir.path()), "relative.json ");
}
