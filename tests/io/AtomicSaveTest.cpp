#include "io/mjl.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Scenario.h"

// A killed save is tested by making the saving process kill itself at a point the test chooses: this
// program stands in for the three system calls a save makes (the engine library reaches them through
// the dynamic linker, so these definitions take precedence over the C library's). Unless a kill point
// is armed they only pass the call on.
namespace {

enum class KillAt { Write, Sync, Rename, AfterRename };

struct KillPoint {
    bool armed = false;
    int save = 0;       // the save to stop, counted from 0 in the process that arms the point
    KillAt at = KillAt::Write;
    size_t offset = 0;  // with KillAt::Write: the bytes of the save that reach the file first
    int saves_done = 0; // saves renamed into place so far
    size_t written = 0; // bytes written by the current save
};

KillPoint g_kill;

bool killsHere(KillAt at)
{
    return g_kill.armed && g_kill.saves_done == g_kill.save && g_kill.at == at;
}

} // namespace

extern "C" ssize_t write(int fd, const void* data, size_t size)
{
    if (killsHere(KillAt::Write) && g_kill.written + size > g_kill.offset) {
        syscall(SYS_write, fd, data, g_kill.offset - g_kill.written);
        raise(SIGKILL);
    }
    ssize_t done = syscall(SYS_write, fd, data, size);
    if (g_kill.armed && done > 0)
        g_kill.written += static_cast<size_t>(done);
    return done;
}

extern "C" int fsync(int fd)
{
    // The save's own file is synced after its bytes; the folder is synced after the rename.
    if (killsHere(KillAt::Sync) && g_kill.written > 0)
        raise(SIGKILL);
    return static_cast<int>(syscall(SYS_fsync, fd));
}

extern "C" int rename(const char* from, const char* to) noexcept
{
    if (killsHere(KillAt::Rename))
        raise(SIGKILL);
    int result = static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
    if (killsHere(KillAt::AfterRename) && result == 0)
        raise(SIGKILL);
    if (g_kill.armed && result == 0) {
        ++g_kill.saves_done;
        g_kill.written = 0;
    }
    return result;
}

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

    // The names of the entries of a folder, in the folder's order.
    static std::string entries(const std::string& folder)
    {
        std::string names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
            names += entry.path().filename().string() + " ";
        return names;
    }
    // The path of the one hidden temporary file in the folder, or "" when there is none.
    static std::string temporaryFile(const std::string& folder)
    {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().filename().string().front() == '.')
                return entry.path().string();
        return "";
    }

    // Saves doc to path as an ordinary user; returns the error ("" after a success). Permissions
    // do not stop root, so root saves with its effective user switched to nobody.
    std::string saveAsUser(const std::string& path)
    {
        bool root = geteuid() == 0;
        EXPECT_TRUE(!root || seteuid(65534) == 0);
        std::string error;
        mjl::save(path.c_str(), &doc, mjl::DEFAULT, &error);
        EXPECT_TRUE(!root || seteuid(0) == 0);
        return error;
    }

    TempDir dir;
    Package doc;
};

const char OLD_CONTENT[] = "{\"old\": true}\n";

// A document of a few hundred kilobytes: keys of seven full-precision numbers, seeded so that two
// seeds give two different documents.
void fillLarge(Package& root, unsigned seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    root.addInt("seed", seed);
    Package* keys = root.addArray("keys");
    for (int k = 0; k < 2000; ++k) {
        Package* key = keys->addArray(nullptr);
        for (int c = 0; c < 7; ++c)
            key->addDouble(nullptr, value(random));
    }
}

} // namespace

TEST_F(AtomicSave, WritesTheCanonicalTextThatReadsBackEqualAndSavesAgainByteIdentical)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(mjl::save(path.c_str(), &doc));
    EXPECT_EQ(readFileText(path), "{\n  \"name\": \"walk\",\n  \"keys\": [\n    [0.5]\n  ]\n}\n");
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
    mjl reader;
    ASSERT_TRUE(reader.open(path.c_str()));
    EXPECT_TRUE(reader.getRoot()->equals(doc));
    std::string again = dir.file("again.anim");
    ASSERT_TRUE(mjl::save(again.c_str(), reader.getRoot()));
    EXPECT_EQ(readFileText(again), readFileText(path));
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
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(writeFileText(path, OLD_CONTENT));
    ASSERT_EQ(chmod(dir.path().c_str(), 0555), 0);
    EXPECT_EQ(saveAsUser(path), path + ": cannot create a temporary file beside it: Permission denied");
    chmod(dir.path().c_str(), 0755);
    expectLogged("mjl::save:" + path + ": cannot create a temporary file beside it: Permission denied");
    EXPECT_EQ(readFileText(path), OLD_CONTENT);
    EXPECT_EQ(entries(dir.path()), "walk.anim ");
}

// A rename needs only the folder's permission, so the save itself checks the file's.
TEST_F(AtomicSave, AFileTheUserMayNotWriteIsRefusedAndLeftAsItWas)
{
    std::string path = dir.file("walk.anim");
    ASSERT_TRUE(writeFileText(path, OLD_CONTENT));
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(dir.path().c_str(), 0777), 0);
    EXPECT_EQ(saveAsUser(path), path + ": the file is read-only: Permission denied");
    expectLogged("mjl::save:" + path + ": the file is read-only: Permission denied");
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

// A process killed anywhere in a save (in the middle of the write, at the sync, just before or just
// after the rename, in its first save or in a later one) leaves the file with the whole content of
// the last save that was renamed into place, and at most its own temporary file beside it.
TEST_F(AtomicSave, AKilledSaveLeavesEitherTheOldOrTheNewContent)
{
    std::string path = dir.file("large.json");
    Package contents[2];
    std::string texts[2];
    for (int i = 0; i < 2; ++i) {
        fillLarge(contents[i], static_cast<unsigned>(i + 1));
        ASSERT_TRUE(mjl::write(&contents[i], texts[i]));
    }
    ASSERT_TRUE(mjl::save(path.c_str(), &contents[0]));

    std::mt19937 random(7);
    const KillAt points[] = {KillAt::Write, KillAt::Sync, KillAt::Rename, KillAt::AfterRename};
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        // The child's save n writes contents[(n + 1) % 2], so the file starts as its save -1 left it.
        g_kill = KillPoint{true, static_cast<int>(random() % 3), points[round % 4], 0};
        const std::string& killed_text = texts[(g_kill.save + 1) % 2];
        g_kill.offset = random() % killed_text.size();
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int n = 0; n < 4; ++n)
                mjl::save(path.c_str(), &contents[(n + 1) % 2]);
            _exit(3); // the kill point was never reached
        }
        g_kill.armed = false;
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "the saving process ended on its own";

        bool renamed = g_kill.at == KillAt::AfterRename;
        int expected = (g_kill.save + (renamed ? 1 : 0)) % 2;
        EXPECT_EQ(readFileText(path), texts[expected]);
        mjl reader;
        ASSERT_TRUE(reader.open(path.c_str())) << reader.getError();
        EXPECT_TRUE(reader.getRoot()->equals(contents[expected]));

        // The killed save's temporary file holds exactly what reached it.
        std::string left = temporaryFile(dir.path());
        if (renamed) {
            EXPECT_EQ(left, "");
        } else {
            ASSERT_NE(left, "");
            std::string partial = g_kill.at == KillAt::Write ? killed_text.substr(0, g_kill.offset) : killed_text;
            EXPECT_EQ(readFileText(left), partial);
            std::filesystem::remove(left);
        }
        // Put the file back as the child's next round expects to find it.
        ASSERT_TRUE(mjl::save(path.c_str(), &contents[0]));
    }
    EXPECT_EQ(entries(dir.path()), "large.json ");
    contents[0].clear();
    contents[1].clear();
}
