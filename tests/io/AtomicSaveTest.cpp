#include "io/mjl.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
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

// A document of a few megabytes: keys of seven full-precision numbers, seeded so that two seeds
// give two different documents of about the same size.
void fillLarge(Package& root, unsigned seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    root.addInt("seed", seed);
    Package* keys = root.addArray("keys");
    for (int k = 0; k < 15000; ++k) {
        Package* key = keys->addArray(nullptr);
        for (int c = 0; c < 7; ++c)
            key->addDouble(nullptr, value(random));
    }
}

// Saves the documents in turn until killed; never returns.
[[noreturn]] void saveForever(const std::string& path, const Package& first, const Package& second)
{
    for (long round = 0;; ++round)
        mjl::save(path.c_str(), round % 2 ? &first : &second);
}

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

TEST_F(AtomicSave, AKilledSaveLeavesEitherTheOldOrTheNewContent)
{
    std::string path = dir.file("large.json");
    Package first;
    Package second;
    fillLarge(first, 1);
    fillLarge(second, 2);
    std::string first_text;
    std::string second_text;
    ASSERT_TRUE(mjl::write(&first, first_text));
    ASSERT_TRUE(mjl::write(&second, second_text));
    ASSERT_GT(first_text.size(), 2000000u);

    auto started = std::chrono::steady_clock::now();
    ASSERT_TRUE(mjl::save(path.c_str(), &first));
    auto save_time = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - started);

    // Kill at any moment of the child's first save or soon after: while it writes, syncs or
    // renames, or while the next save starts.
    std::mt19937 random(7);
    std::uniform_int_distribution<long> delay(0, save_time.count() * 3 / 2 + 1000);
    int seen_first = 0;
    int seen_second = 0;
    for (int round = 0; round < 200; ++round) {
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            saveForever(path, first, second);
        usleep(static_cast<useconds_t>(delay(random)));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the saving process ended on its own";

        std::string now = readFileText(path);
        ASSERT_TRUE(now == first_text || now == second_text) << "round " << round << ": " << now.size() << " bytes";
        seen_first += now == first_text;
        seen_second += now == second_text;
        mjl reader;
        ASSERT_TRUE(reader.open(path.c_str())) << reader.getError();
        EXPECT_TRUE(reader.getRoot()->equals(now == first_text ? first : second));
    }
    // Both contents were seen, so saves did complete between kills; killed saves leave their
    // temporary files behind, and only those.
    EXPECT_GT(seen_first, 0);
    EXPECT_GT(seen_second, 0);
    std::string left = entries(dir.path());
    EXPECT_NE(left.find(".large.json."), std::string::npos) << "no save was interrupted";
    first.clear();
    second.clear();
}
