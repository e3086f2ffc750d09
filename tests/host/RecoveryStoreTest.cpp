#include "RecoveryStore.h"

#include <filesystem>
#include <fstream>

#include "support/Scenario.h"

using RecoveryStoreTest = Scenario;
namespace fs = std::filesystem;

// Copies and files get their times set, minutes before now, so that nothing depends on the clock:
//
//   -30 untitled copy   -20 walk.anim   -15 copy of gone.anim   -10 copy of walk.anim
//    -5 copy of run.anim   -2 run.anim   -1 a copy without its note
//
// The copy of run.anim is older than its file (saved since) and the last one has no note: neither
// is offered; the others are, newest first, as each offered one is deleted.
TEST_F(RecoveryStoreTest, OffersTheNewestCopyNewerThanItsFile)
{
    TempDir dir;
    RecoveryStore store(dir.file("recovery"));
    EXPECT_TRUE(store.newest().path.empty());
    const fs::file_time_type now = fs::file_time_type::clock::now();
    auto write = [&](const std::string& path, int minutes) {
        std::ofstream(path) << "{}\n";
        fs::last_write_time(path, now - std::chrono::minutes(minutes));
    };
    auto copy = [&](const std::string& document, int minutes) {
        std::string path = store.copyPath(document);
        std::string error;
        EXPECT_TRUE(store.prepare(path, document, error)) << error;
        write(path, minutes);
        return path;
    };
    const std::string walk = dir.file("walk.anim"), run = dir.file("run.anim"), gone = dir.file("gone.anim");
    write(walk, 20);
    write(run, 2);
    const std::string untitled_copy = copy("", 30), gone_copy = copy(gone, 15), walk_copy = copy(walk, 10);
    copy(run, 5);
    write(dir.file("recovery/stray.anim"), 1);
    EXPECT_NE(untitled_copy, walk_copy);
    const std::pair<std::string, std::string> offers[] = {{walk_copy, walk}, {gone_copy, gone}, {untitled_copy, ""}};
    for (const auto& [path, document] : offers) {
        SCOPED_TRACE(path);
        RecoveryStore::Copy offered = store.newest();
        EXPECT_EQ(offered.path, path);
        EXPECT_EQ(offered.document, document);
        std::string error;
        EXPECT_TRUE(store.remove(offered.path, error)) << error;
        EXPECT_FALSE(fs::exists(path + RecoveryStore::NOTE_SUFFIX));
    }
    EXPECT_TRUE(store.newest().path.empty());
    std::string error;
    EXPECT_FALSE(RecoveryStore(walk + "/recovery").prepare(walk + "/recovery/a.anim", walk, error));
    EXPECT_NE(error.find(walk), std::string::npos) << error;
}
